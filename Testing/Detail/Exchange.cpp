#include "Testing/Detail/Exchange.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Testing/Detail/Files.h"

#include <algorithm>
#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <charconv>
#include <cstdint>
#include <fmt/format.h>
#include <stdexcept>

namespace Orvane::Testing::Detail {

namespace {

using Qx::HTTPRequest;
using Qx::HTTPResponse;

constexpr const char* bodyExtension = ".body";

// Turns each byte into the character with that code: the bytes of a URL or a header need not be
// UTF-8, but JSON must be.
std::string toText(const std::string& bytes) {
    std::wstring characters;
    for (const char byte : bytes)
        characters += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    return Qx::ToHString(characters);
}

std::string toBytes(const std::string& text) {
    std::string bytes;
    for (const wchar_t character : Qx::ToIString(text))
        bytes += static_cast<char>(character);
    return bytes;
}

std::filesystem::path fileOf(const std::filesystem::path& folder, std::size_t number, const char* extension) {
    return folder / fmt::format("{:06}{}", number, extension);
}

std::filesystem::path bodyOf(std::filesystem::path file) {
    return file.replace_extension(bodyExtension);
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
        throw std::runtime_error(shown(file) + " has no status from 200 to 599");
    HTTPResponse::Headers headers;
    for (const Qx::JSONRef header : Qx::JSONNode(root["headers"])) {
        const Qx::JSONNode pair(header);
        headers.emplace_back(toBytes(pair["name"].asHString("")), toBytes(pair["value"].asHString("")));
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
    const std::string method = root["method"].asHString("");
    const std::string url = toBytes(root["url"].asHString(""));
    if (url.empty() || (method != "GET" && method != "POST"))
        throw std::runtime_error(shown(file) + " is not a recorded exchange");
    std::int32_t time = 0;
    root["microseconds"].get(time);
    return {method == "POST" ? HTTPRequest::Method::POST : HTTPRequest::Method::GET, url, readResponse(root, file),
            std::chrono::microseconds(time)};
}

std::size_t writeExchange(const Exchange& exchange, const std::filesystem::path& folder, std::size_t number) {
    const HTTPResponse& response = exchange.response;
    boost::json::array headers;
    for (const auto& [name, value] : response.getHeaders())
        headers.push_back({{"name", toText(name)}, {"value", toText(value)}});
    boost::json::object json{{"method", nameOf(exchange.method)},
                             {"url", toText(exchange.url)},
                             {"status", response.getStatus()},
                             {"headers", std::move(headers)},
                             {"microseconds", exchange.time.count()}};
    if (response.getStatus() == 0) {
        json["failureKind"] = static_cast<std::int32_t>(response.getFailureKind());
        json["reason"] = response.getReason();
    }
    // The body is created first: that claims the number, and no exchange is ever without its body.
    while (!createFile(fileOf(folder, number, bodyExtension), response.getBody()))
        ++number;
    try {
        createFile(fileOf(folder, number, exchangeExtension), boost::json::serialize(json) + '\n');
    } catch (...) {
        std::filesystem::remove(fileOf(folder, number, bodyExtension));
        throw;
    }
    return number;
}

std::size_t lastExchangeIn(const std::filesystem::path& folder) {
    std::size_t last = 0;
    for (const std::filesystem::path& file : filesIn(folder, bodyExtension)) {
        std::size_t number = 0;
        const std::string name = file.stem().string();
        std::from_chars(name.data(), name.data() + name.size(), number);
        last = std::max(last, number);
    }
    return last;
}

} // namespace Orvane::Testing::Detail
