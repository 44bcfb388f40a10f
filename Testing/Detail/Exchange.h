#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>

namespace Orvane::Testing::Detail {

/// A request and its outcome, as stored in two files: "NAME.exchange", which is human-readable
/// JSON, and "NAME.body", which contains the body byte for byte.
struct Exchange {
    Qx::HTTPRequest::Method method = Qx::HTTPRequest::Method::GET;
    std::string url;
    Qx::HTTPResponse response;
    std::chrono::microseconds time{0}; ///< From the request to the response.
};

/// Returns whether a final response may have that status, that is, whether it is 200 to 599.
bool isFinalStatus(int status);

inline constexpr const char* exchangeExtension = ".exchange";

/// Returns "GET" or "POST".
const char* nameOf(Qx::HTTPRequest::Method method);

/// Reads the exchange in `file`. Throws `std::runtime_error` with a one-line message if there is
/// none.
Exchange readExchange(const std::filesystem::path& file);

/// Writes the exchange to new files in `folder`, named by the first number from `number` on that is
/// not taken, and returns that number. Throws `std::runtime_error` with a one-line message on
/// failure, and then leaves no files.
std::size_t writeExchange(const Exchange& exchange, const std::filesystem::path& folder, std::size_t number);

/// Returns the highest number of an exchange in `folder`, or 0 if there is none.
std::size_t lastExchangeIn(const std::filesystem::path& folder);

} // namespace Orvane::Testing::Detail
