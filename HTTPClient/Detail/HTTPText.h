#pragma once

#include <string>
#include <string_view>

// The rules of HTTP for the texts of a request or response. None of them depends on the locale.
namespace Qx::Detail {

bool isControl(char character);
bool hasControl(std::string_view text);

/// Whether `name` may name a header: letters, digits and some signs, at least one.
bool isHeaderName(std::string_view name);

/// Whether two names or keywords are the same, ignoring the case of ASCII letters.
bool isSameName(const std::string& one, const std::string& other);

/// `text` without the blanks and line ends around it.
std::string_view withoutBlanks(std::string_view text);

} // namespace Qx::Detail
