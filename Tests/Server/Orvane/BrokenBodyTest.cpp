// Bodies that a network cut short, changed or made up.

#include "Server/Orvane/Orvanedm.h"
#include "Tests/Support/AnsweringClient.h"
#include "Tests/Support/Documents.h"

#include <gtest/gtest.h>
#include <optional>
#include <pthread.h>

namespace {

using Orvane::Payloads::FullAssemblyData;

// What the status callback was told; nothing, unless it was called exactly once with a document just on success.
std::optional<bool> successOf(std::string body) {
    Qx::Orvanedm client(std::make_shared<AnsweringClient>(std::move(body)), "");
    int calls = 0;
    std::optional<bool> told;
    client.getFullAssemblyStatus(
        "urn",
        [&](bool success, const std::shared_ptr<FullAssemblyData>& document) {
            ++calls;
            if (success == (document != nullptr))
                told = success;
        },
        "ACTUAL", L"");
    return calls == 1 ? told : std::nullopt;
}

TEST(BrokenBody, EveryProperPrefixFails) {
    const std::string body = DocumentParts().root().toText();
    for (std::size_t size = 0; size < body.size(); ++size)
        ASSERT_EQ(successOf(body.substr(0, size)), false) << size;
    EXPECT_EQ(successOf(body), true);
}

TEST(BrokenBody, EveryChangeOfAByteIsToldOnce) {
    const std::string body = DocumentParts().root().toText();
    std::size_t successes = 0;
    for (std::size_t place = 0; place < body.size(); ++place)
        for (int change = 1; change < 256; ++change) {
            std::string changed = body;
            changed[place] = static_cast<char>(changed[place] ^ change);
            const auto success = successOf(std::move(changed));
            ASSERT_TRUE(success.has_value()) << place << ' ' << change;
            successes += *success ? 1 : 0;
        }
    EXPECT_GT(successes, body.size()) << "a change within a text is none to JSON";
    EXPECT_LT(successes, 255 * body.size()) << "a change elsewhere is";
}

TEST(BrokenBody, NestingTakesNoStack) {
    const auto readOnSmallStack = [](void* body) -> void* {
        auto& text = *static_cast<std::string*>(body);
        text = successOf(std::move(text)) == false ? "refused" : "taken";
        return nullptr;
    };
    constexpr std::size_t million = 1'000'000;
    for (std::string body : {std::string(million, '[') + std::string(million, ']'), std::string(million, '['),
                             R"({"data":)" + std::string(million, '[') + std::string(million, ']') + "}"}) {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, std::size_t{256} << 10);
        pthread_t thread{};
        ASSERT_EQ(pthread_create(&thread, &attributes, readOnSmallStack, &body), 0);
        pthread_join(thread, nullptr);
        pthread_attr_destroy(&attributes);
        EXPECT_EQ(body, "refused");
    }
}

} // namespace
