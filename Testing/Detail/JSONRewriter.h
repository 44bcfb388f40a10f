#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace Orvane::Testing::Detail {

/// What JSON is made of that may be replaced. `key` is that under which a value stands, or, in an array or under the
/// key "value", the one under which that stands.
struct JSONReplacements {
    std::function<std::string(const std::string& key)> forKey;
    std::function<std::string(const std::string& text, std::string_view key)> forText;

    /// Takes a number as it stands, and returns JSON.
    std::function<std::string(const std::string& number, std::string_view key)> forNumber;
};

/// Writes the JSON again, member by member in the same order, with what is replaced. It has to be JSON, of 1024 levels
/// at most. Throws `std::bad_alloc` and what the replacements throw.
std::string rewriteJSON(std::string_view json, const JSONReplacements& replacements);

} // namespace Orvane::Testing::Detail
