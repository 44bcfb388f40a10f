#include "Testing/Detail/NameMaker.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Base/QxBaseCore10/Uri.h"
#include "Testing/Endpoint.h"

#include <algorithm>
#include <array>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <fmt/format.h>
#include <optional>

namespace Orvane::Testing::Detail {

namespace {

using Qx::HTTPResponse;

// The keys under which the service's own words stand.
constexpr std::array<std::string_view, 10> wordKeys{"type",     "status",         "containerType", "membership",
                                                    "role",     "isMember",       "communityType", "relationshipType",
                                                    "subTypes", "allowed-actions"};

constexpr std::string_view digits = "0123456789";

bool isWordKey(std::string_view key) {
    return std::find(wordKeys.begin(), wordKeys.end(), key) != wordKeys.end();
}

// From its last point, if that stands before a few letters.
std::string_view extensionOf(std::string_view name) {
    constexpr std::size_t most = 5;
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos || name.size() - point > most ? std::string_view() : name.substr(point);
}

} // namespace

Exchange NameMaker::replaceIn(const Exchange& exchange) {
    Exchange replaced = exchange;
    replaced.url = urlFor(exchange);
    const HTTPResponse& response = exchange.response;
    if (response.getStatus() == 0) {
        replaced.response = HTTPResponse::transportFailure(response.getFailureKind(), "");
        return replaced;
    }
    HTTPResponse::Headers headers;
    for (const char* name : {"Content-Type", "Retry-After"})
        if (const auto value = response.getHeader(name))
            headers.emplace_back(name, *value);
    replaced.response = HTTPResponse(response.getStatus(), bodyFor(response.getBody()), std::move(headers));
    return replaced;
}

std::string NameMaker::urlFor(const Exchange& exchange) {
    const auto endpoint = Endpoint::of(exchange.method, exchange.url);
    if (!endpoint)
        return "https://service.example/" + numberOf(exchange.url);
    const std::string urn = Qx::Uri::UriEncode(textFor(endpoint->urn));
    switch (endpoint->kind) {
    case Endpoint::Kind::FOLDER_CONTENTS:
        return "https://service.example/folders/" + urn + "/content";
    case Endpoint::Kind::FULL_ASSEMBLY:
        return "https://service.example/versions/" + urn + "/fullassembly";
    case Endpoint::Kind::FULL_ASSEMBLY_ACCESS:
        break;
    }
    return "https://service.example/versions/" + urn + "/fullassembly/access";
}

std::string NameMaker::bodyFor(std::string_view body) {
    Qx::Status status;
    const auto root = Qx::JSONNode::parse(body, status);
    if (!root)
        return std::string(body.size(), 'x');
    boost::json::value value = boost::json::parse(root->toText());
    replaceTexts(value, "");
    return boost::json::serialize(value);
}

// `key` is that of the value, or, in an array or under "value", of what it stands in.
void NameMaker::replaceTexts(boost::json::value& value, std::string_view key) {
    if (value.is_string() && !isWordKey(key))
        value = textFor(std::string(value.get_string()));
    else if (value.is_array())
        for (boost::json::value& element : value.get_array())
            replaceTexts(element, key);
    else if (value.is_object())
        for (boost::json::key_value_pair& member : value.get_object())
            replaceTexts(member.value(), member.key() == "value" ? key : std::string_view(member.key()));
}

std::string NameMaker::textFor(const std::string& text) {
    if (text.empty())
        return text;
    if (text.starts_with("urn:")) {
        const std::size_t end = std::min(text.find('?'), text.size());
        const std::size_t start = text.rfind(':', end) + 1;
        return text.substr(0, start) + numberOf(text.substr(start, end - start)) + text.substr(end);
    }
    if (text.find_first_not_of(digits) == std::string::npos)
        return fmt::format("{:0>{}}", numberOf(text), text.size());
    const std::string_view extension = extensionOf(text);
    return "name " + numberOf(text) + std::string(extension);
}

std::string NameMaker::numberOf(const std::string& text) {
    return std::to_string(numbers_.try_emplace(text, numbers_.size() + 1).first->second);
}

} // namespace Orvane::Testing::Detail
