#include "Testing/Detail/Exchange.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Testing/Detail/Files.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <cstdint>
#include <fmt/format.h>
#include <stdexcept>

namespace Orvane::Testing::Detail {

namespace {

using Qx::HTTPRequest;
using Qx::HTTPResponse;

std::filesystem::path bodyOf(std::filesystem::path file) {
    return file.replace_extension(".body");
}

HTTPResponse readResponse(const Qx::JSONNode& root, const std::filesystem::path& file) {
    using FailureKind = HTTPResponse::FailureKind;
    std::int32_t status = -1;
    std::int32_t kind = 0;
    root["status"].get(status);
    root["failureKind"].get(kind);
    const bool isFailure = status == 0 && kind > static_cast<std::int32_t>(FailureKind::NONE) &&
                           kind <= static_cast<std::int32_t>(FailureKind::OUT_OF_MEMORY);
    if (isFailure)
        return HTTPResponse::transportFailure(static_cast<FailureKind>(kind), root["reason"].asHString(""));
    if (!isFinalStatus(status))
        throw std::runtime_error(fmt::format("\"{}\" has no status from 200 to 599", file.string()));
    HTTPResponse::Headers headers;
    for (const Qx::JSONRef header : Qx::JSONNode(root["headers"])) {
        const Qx::JSONNode pair(header);
        headers.emplace_back(pair["name"].asHString(""), pair["value"].asHString(""));
    }
    return HTTPResponse(status, readFile(bodyOf(file)), std::move(headers));
}

} // namespace

bool isFinalStatus(int status) {
    return status >= 200 && status <= 599;
}

const char* nameOf(HTTPRequest::Method method) {
    return method == HTTPRequest::Method::POST ? "POST" : "GET";
}

Exchange readExchange(const std::filesystem::path& file) {
    const Qx::JSONNode root(readFile(file));
    if (!root.exists("url"))
        throw std::runtime_error(fmt::format("\"{}\" is not a recorded exchange", file.string()));
    const auto method = root["method"].asHString("") == "POST" ? HTTPRequest::Method::POST : HTTPRequest::Method::GET;
    std::int32_t time = 0;
    root["microseconds"].get(time);
    return {method, root["url"].asHString(""), readResponse(root, file), std::chrono::microseconds(time)};
}

void writeExchange(const Exchange& exchange, const std::filesystem::path& file) {
    const HTTPResponse& response = exchange.response;
    boost::json::array headers;
    for (const auto& [name, value] : response.getHeaders())
        headers.push_back({{"name", name}, {"value", value}});
    boost::json::object json{{"method", nameOf(exchange.method)},
                             {"url", exchange.url},
                             {"status", response.getStatus()},
                             {"headers", std::move(headers)},
                             {"microseconds", exchange.time.count()}};
    if (response.getStatus() == 0) {
        json["failureKind"] = static_cast<std::int32_t>(response.getFailureKind());
        json["reason"] = response.getReason();
    }
    // The body first, so that there is no exchange without one.
    writeFile(bodyOf(file), response.getBody());
    writeFile(file, boost::json::serialize(json) + '\n');
}

} // namespace Orvane::Testing::Detail
