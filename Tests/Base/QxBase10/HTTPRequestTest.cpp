#include "Base/QxBase10/HTTPRequest.h"

#include <gtest/gtest.h>

namespace {

TEST(HTTPRequest, StartsEmptyInTheCallingThreadWithoutAuthentication) {
    const Qx::HTTPRequest request(BOOST_CURRENT_LOCATION);
    EXPECT_EQ(request.getURL() + request.getThreadName(), "");
    EXPECT_TRUE(request.getHeaders().empty());
    EXPECT_FALSE(request.getCallback());
    EXPECT_EQ(request.getMethod(), Qx::HTTPRequest::Method::GET);
    EXPECT_EQ(request.getAuthType(), Qx::HTTPRequest::AuthType::NONE);
    EXPECT_EQ(request.executionType, Qx::HTTPRequest::ExecutionType::CALLING_THREAD);
}

} // namespace
