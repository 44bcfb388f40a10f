#pragma once

#include "Testing/Detail/Exchange.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace Orvane::Testing::Detail {

/// Replaces what may identify a customer with made-up text of the same kind: an id with an id, and
/// the name of a file with a name with the same extension. The same text always gets the same
/// replacement, so that references remain intact.
class Anonymizer {
public:
    /// Replacements are numbered from `first`.
    explicit Anonymizer(std::size_t first = 1);

    /// Returns the exchange with made-up text in its URL and its body. Only these are kept: the
    /// service's own words, such as types and roles, keys that the library knows, numbers that are
    /// not ids, booleans, and the headers Content-Type and Retry-After. A body that is not JSON is
    /// replaced with an "x" for each byte.
    Exchange replaceIn(const Exchange& exchange);

private:
    std::string urlFor(const Exchange& exchange);
    std::string bodyFor(std::string_view body);
    std::string keyFor(const std::string& key);
    std::string textFor(const std::string& text, std::string_view key);
    std::string numberFor(const std::string& text, std::string_view key);
    std::string idFor(const std::string& text);
    std::string numberOf(const std::string& text);

    std::size_t first_;
    std::map<std::string, std::size_t> numbers_;
    std::set<std::string> ids_; ///< The ids in the current body.
};

} // namespace Orvane::Testing::Detail
