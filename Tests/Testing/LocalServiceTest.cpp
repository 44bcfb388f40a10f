#include "Testing/LocalService.h"

#include "Tests/Support/FailingCalls.h"

#include <chrono>
#include <gtest/gtest.h>
#include <httplib.h>
#include <stdexcept>

namespace {

using Orvane::Testing::LocalService;
using Orvane::Testing::PreparedAnswers;
using namespace std::chrono_literals;

TEST(LocalService, TakesOnlyAFreePort) {
    const LocalService service(PreparedAnswers::sample(), "t", 0);
    EXPECT_THROW(LocalService(PreparedAnswers::sample(), "t", service.port()), std::runtime_error);
}

TEST(LocalService, IsNotMadeWithoutItsThreads) {
    for (const int threads : {0, 5, 32}) {
        const auto scarcity = FailingCalls::scopedThreadsLeft(threads);
        EXPECT_THROW(LocalService(PreparedAnswers::sample(), "t", 0), std::runtime_error) << threads;
    }
    EXPECT_GT(LocalService(PreparedAnswers::sample(), "t", 0).port(), 0);
}

TEST(LocalService, AnswersAtOnceWhateverEncodingsAreAccepted) {
    PreparedAnswers answers;
    std::string body = R"({"data":{"id":"v"},"files":[)";
    for (int file = 0; body.size() < std::size_t{4} << 20; ++file)
        body += R"({"id":"urn:vrnk.dorlqa:dm.lineage:)" + std::to_string(file * 7919) + R"(","type":"files"},)";
    body += "{}]}";
    answers.addJSON(Orvane::Testing::Endpoint::Kind::FULL_ASSEMBLY, body, "here");
    const LocalService service(std::move(answers), "t", 0);
    httplib::Client client("127.0.0.1", service.port());
    const auto start = std::chrono::steady_clock::now();
    const auto result = client.Get("/orvanedm/v3/versions/v/fullassembly",
                                   {{"Authorization", "Bearer t"}, {"Accept-Encoding", "gzip, deflate, br"}});
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->body, body);
}

} // namespace
