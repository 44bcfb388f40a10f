#include "Testing/LocalService.h"

#include "Testing/Detail/Server.h"

#include <algorithm>
#include <fmt/format.h>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace Orvane::Testing {

namespace {

using Detail::errorResponse;
using Qx::HTTPResponse;

// The name of the scheme is case-insensitive.
bool isBearer(std::string_view authorization, std::string_view token) {
    constexpr std::string_view scheme = "bearer ";
    const auto lower = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter; };
    return authorization.size() == scheme.size() + token.size() && authorization.ends_with(token) &&
           std::equal(scheme.begin(), scheme.end(), authorization.begin(),
                      [&](char expected, char letter) { return expected == lower(letter); });
}

HTTPResponse answer(const PreparedAnswers& answers, const std::string& token, const Detail::Server::Request& request) {
    if (!isBearer(request.authorization, token))
        return errorResponse(401, "Unauthorized", "The request needs the right bearer token.",
                             {{"WWW-Authenticate", "Bearer"}});
    using Method = Qx::HTTPRequest::Method;
    const std::string target(request.target);
    if (auto prepared = answers.find(request.isPost ? Method::POST : Method::GET, target))
        return *std::move(prepared);
    return errorResponse(404, "Not found", "There is no answer for " + target + ".");
}

} // namespace

LocalService::LocalService(PreparedAnswers answers, const std::string& token, int port) {
    constexpr int maxPort = 65535;
    if (port < 0 || port > maxPort)
        throw std::runtime_error(fmt::format("there is no port {}; choose one up to {}", port, maxPort));
    const auto handler = [answers = std::move(answers), token](const Detail::Server::Request& request) {
        return answer(answers, token, request);
    };
    try {
        server_ = std::make_unique<Detail::Server>(handler, port);
    } catch (const std::system_error& error) {
        // Works for Winsock's errors too: Boost maps them to these conditions, while the standard
        // library does not.
        if (error.code() == std::errc::address_in_use || error.code() == std::errc::permission_denied)
            throw std::runtime_error(fmt::format("can't listen on port {} of this machine; choose another port", port));
        throw std::runtime_error("can't start the local service: " + error.code().message() +
                                 "; end other programs, or allow more threads and descriptors");
    }
}

LocalService::~LocalService() = default;

int LocalService::port() const {
    return server_->port();
}

std::string LocalService::baseUri() const {
    return fmt::format("http://127.0.0.1:{}/orvanedm", port());
}

std::string LocalService::baseUriV3() const {
    return baseUri() + "/v3";
}

} // namespace Orvane::Testing
