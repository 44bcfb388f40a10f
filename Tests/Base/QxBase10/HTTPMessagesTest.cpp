// Tests of requests and responses in addition to Tests/Cases/requests.json.

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Base/QxBase10/HTTPUtils.h"
#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"

#include <gtest/gtest.h>

namespace {

using Qx::HTTPRequest;
using Qx::HTTPResponse;

TEST(HTTPRequest, DefaultsToAnUnauthenticatedGetInTheCallingThread) {
    const HTTPRequest request(BOOST_CURRENT_LOCATION);
    EXPECT_EQ(request.getURL() + request.getThreadName(), "");
    EXPECT_TRUE(request.getHeaders().empty());
    EXPECT_FALSE(request.getCallback());
    EXPECT_EQ(request.getMethod(), HTTPRequest::Method::GET);
    EXPECT_EQ(request.getAuthType(), HTTPRequest::AuthType::NONE);
    EXPECT_EQ(request.executionType, HTTPRequest::ExecutionType::CALLING_THREAD);
}

TEST(HTTPResponse, SharesItsBodyWithCopiesAndHasNoneAfterAFailure) {
    std::string body(1000, 'x');
    body.reserve(body.size() + HTTPResponse::padding);
    const char* bytes = body.data();
    const HTTPResponse response(200, std::move(body));
    const HTTPResponse copy = response;
    EXPECT_EQ(response.getBody().data(), bytes);
    EXPECT_EQ(copy.getBody().data(), bytes);
    EXPECT_EQ(copy.getBody(), std::string(1000, 'x'));
    EXPECT_EQ(HTTPResponse(500, "").getFailureKind(), HTTPResponse::FailureKind::NONE)
        << "an error status is a response";
    EXPECT_NE(HTTPResponse().getFailureKind(), HTTPResponse::FailureKind::NONE);
    EXPECT_TRUE(HTTPResponse().getBody().empty());
}

TEST(HTTPUtils, LeavesTheNodeAloneUnlessTheBodyIsJSON) {
    Qx::JSONNode node(R"({"before":1})");
    Qx::Status status;
    for (const HTTPResponse& response : {HTTPResponse(), HTTPResponse(200, ""), HTTPResponse(200, "<html>")}) {
        EXPECT_FALSE(Qx::HTTPUtils::extractJSON(status, response, node));
        EXPECT_FALSE(status.reason().empty());
        EXPECT_TRUE(node.exists("before"));
    }
    EXPECT_TRUE(Qx::HTTPUtils::extractJSON(status, HTTPResponse(200, R"({ "results": "yes" })"), node));
    EXPECT_TRUE(status.isOk());
    EXPECT_EQ(node.toText(), R"({"results":"yes"})") << "the node outlives the body";
}

} // namespace
