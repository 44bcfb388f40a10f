#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>

namespace Orvane::Testing::Detail {

/// A request and what came back for it, as it is kept in files: "NAME.exchange", JSON that a person can read, and
/// "NAME.body" with the body byte for byte.
struct Exchange {
    Qx::HTTPRequest::Method method = Qx::HTTPRequest::Method::GET;
    std::string url;
    Qx::HTTPResponse response;
    std::chrono::microseconds time{0}; ///< From the request to the response.
};

/// Whether a response that a server sends may have that status.
bool isFinalStatus(int status);

inline constexpr const char* exchangeExtension = ".exchange";

/// "GET" or "POST".
const char* nameOf(Qx::HTTPRequest::Method method);

/// Reads the exchange of that file. Throws `std::runtime_error` with a message of one line if it is none.
Exchange readExchange(const std::filesystem::path& file);

/// Writes it into new files of `folder`, with the first number from `number` on that nobody has taken, and returns
/// that. Throws `std::runtime_error` with a message of one line if it can't, and then leaves none.
std::size_t writeExchange(const Exchange& exchange, const std::filesystem::path& folder, std::size_t number);

/// The highest number in `folder`, or 0.
std::size_t lastExchangeIn(const std::filesystem::path& folder);

} // namespace Orvane::Testing::Detail
