// What the host's own layer keeps when there is no memory.

#include "Host/ObservedHTTPClient.h"
#include "Tests/Support/FailingAllocation.h"
#include "Tests/Support/FakeHTTPClient.h"

#include <gtest/gtest.h>

namespace {

using Qx::HTTPResponse;

class RefusingClient : public FakeHTTPClient {
public:
    void queueRequest(Qx::HTTPRequest& request) override { request.getCallback()(response); }

private:
    const HTTPResponse response =
        HTTPResponse::transportFailure(HTTPResponse::FailureKind::NETWORK, std::string(100, 'x'));
};

TEST(ObservedHTTPClientWithoutMemory, TellsOfEachRequestAllTheSame) {
    const auto operation = [] {
        OrvaneHost::ObservedHTTPClient client(std::make_unique<RefusingClient>());
        bool isCompleted = false;
        Qx::HTTPRequest request(BOOST_CURRENT_LOCATION);
        request.setCallback([&](const HTTPResponse&) { isCompleted = true; });
        client.queueRequest(request);
        EXPECT_TRUE(isCompleted);
        EXPECT_EQ(client.waitForResponses().at(0).getStatus(), 0);
    };
    int kept = 0;
    EXPECT_GT(failEachAllocation(operation, [&](bool hasThrown) { kept += hasThrown ? 0 : 1; }), 5U);
    EXPECT_EQ(kept, 1) << "without memory for its reason a response is kept as one without memory";
}

} // namespace
