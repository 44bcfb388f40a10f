#pragma once

#include <string>
#include <string_view>

// HTTP's rules for the text of requests and responses. None of them depends on the locale.
namespace Qx::Detail {

bool isControl(char character);
bool hasControl(std::string_view text);

/// Returns whether `name` is a valid header name: one or more letters, digits and certain symbols.
bool isHeaderName(std::string_view name);

/// Returns whether two names or keywords are the same, ignoring the case of ASCII letters.
bool isSameName(const std::string& one, const std::string& other);

/// Returns `text` without leading and trailing spaces, tabs and line breaks.
std::string_view withoutBlanks(std::string_view text);

} // namespace Qx::Detail
