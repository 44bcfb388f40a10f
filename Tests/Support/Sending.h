#pragma once

#include "HTTPClient/CurlHTTPClient.h"
#include "Tests/Support/ProcessResources.h"

#include <future>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Requests that the tests of the client send, and functions that wait for the responses.
inline const std::string token = "secret-token";

inline Qx::CurlHTTPClientOptions clientOptions() {
    Qx::CurlHTTPClientOptions made;
    made.token = token;
    made.maxRetries = 0; // So that most faults are visible as failures.
    return made;
}

inline Qx::HTTPRequest makeRequest(const std::string& url, Qx::HTTPRequest::ExecutionType type,
                                   const Qx::HTTPRequest::Callback& callback = nullptr) {
    Qx::HTTPRequest request(BOOST_CURRENT_LOCATION);
    request.setURL(url);
    request.setAuthType(Qx::HTTPRequest::AuthType::BEARER);
    request.setCallback(callback);
    request.setThreadName("a-thread-name-longer-than-15");
    request.executionType = type;
    return request;
}

/// Sends the request, with its callback replaced, and returns its response.
inline Qx::HTTPResponse send(Qx::IHTTPClient& client, Qx::HTTPRequest request) {
    std::promise<Qx::HTTPResponse> answered;
    request.setCallback([&](const Qx::HTTPResponse& response) { answered.set_value(response); });
    client.queueRequest(request);
    return answered.get_future().get();
}

inline Qx::HTTPResponse send(Qx::IHTTPClient& client, const std::string& url) {
    return send(client, makeRequest(url, Qx::HTTPRequest::ExecutionType::CALLING_THREAD));
}

inline std::vector<Qx::HTTPResponse> sendAll(Qx::IHTTPClient& client, std::vector<Qx::HTTPRequest> requests,
                                             Qx::HTTPRequest::ExecutionType type) {
    std::promise<std::vector<Qx::HTTPResponse>> answered;
    client.whenAllRequests(
        requests, [&](std::vector<Qx::HTTPResponse> responses) { answered.set_value(std::move(responses)); }, type);
    return answered.get_future().get();
}

/// Returns the number of requests in what a server has received.
inline int countExchanges(std::string_view requests) {
    constexpr std::string_view end = " HTTP/1.1\r\n";
    int count = 0;
    for (std::size_t at = requests.find(end); at != std::string_view::npos; at = requests.find(end, at + 1))
        ++count;
    return count;
}
