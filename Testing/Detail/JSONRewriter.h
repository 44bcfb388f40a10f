#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace Orvane::Testing::Detail {

/// The functions that replace the parts of JSON. `key` is the key of the value; for an element of
/// an array, or the value of the key "value", it is the key of the enclosing array or object.
struct JSONReplacements {
    std::function<std::string(const std::string& key)> forKey;
    std::function<std::string(const std::string& text, std::string_view key)> forText;

    /// Receives a number as it is written, and returns the JSON to write instead.
    std::function<std::string(const std::string& number, std::string_view key)> forNumber;
};

/// Returns the JSON, with its members in the same order, after these replacements. `json` must be
/// valid JSON of at most 1024 levels. Throws `std::bad_alloc`, and whatever the replacements throw.
std::string rewriteJSON(std::string_view json, const JSONReplacements& replacements);

} // namespace Orvane::Testing::Detail
