#include "Host/LocalService/LocalService.h"

#include "Tests/Support/FailingCalls.h"

#include <chrono>
#include <gtest/gtest.h>
#include <httplib.h>
#include <stdexcept>

namespace {

using OrvaneHost::LocalService;
using OrvaneHost::ServiceData;
using namespace std::chrono_literals;

TEST(LocalService, TakesOnlyAFreePort) {
    const LocalService service(ServiceData::sample(), "t", 0);
    EXPECT_THROW(LocalService(ServiceData::sample(), "t", service.port()), std::runtime_error);
}

TEST(LocalService, IsNotMadeWithoutItsThreads) {
    for (const int threads : {0, 5, 32}) {
        const ScopedState scarcity = FailingCalls::scopedThreadsLeft(threads);
        EXPECT_THROW(LocalService(ServiceData::sample(), "t", 0), std::runtime_error) << threads;
    }
    EXPECT_GT(LocalService(ServiceData::sample(), "t", 0).port(), 0);
}

TEST(LocalService, AnswersAtOnceWhateverEncodingsAreAccepted) {
    ServiceData data;
    std::string body = R"({"data":{"id":"v"},"files":[)";
    for (int file = 0; body.size() < std::size_t{4} << 20; ++file)
        body += R"({"id":"urn:vrnk.dorlqa:dm.lineage:)" + std::to_string(file * 7919) + R"(","type":"files"},)";
    body += "{}]}";
    data.add(ServiceData::Address::FULL_ASSEMBLY, body, "here");
    const LocalService service(std::move(data), "t", 0);
    httplib::Client client("127.0.0.1", service.port());
    const auto start = std::chrono::steady_clock::now();
    const auto result = client.Get("/orvanedm/v3/versions/v/fullassembly",
                                   {{"Authorization", "Bearer t"}, {"Accept-Encoding", "gzip, deflate, br"}});
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->body, body);
}

} // namespace
