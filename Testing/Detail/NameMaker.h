#pragma once

#include "Testing/Detail/Exchange.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace Orvane::Testing::Detail {

/// Replaces what may tell of a customer by made-up texts of the same kind: an id by an id, a file's name by a name with
/// the same extension. The same text becomes the same each time, so that what refers to something still does.
class NameMaker {
public:
    /// Made-up texts are numbered from `first`.
    explicit NameMaker(std::size_t first = 1);

    /// The exchange with made-up texts in its URL and its body. Only these stay: the service's own words, such as types
    /// and roles, keys that the library knows, numbers that are no ids, flags, and the headers that tell what the body
    /// is and when to come back. A body that is not JSON becomes as many "x".
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
    std::set<std::string> ids_; ///< Of the body.
};

} // namespace Orvane::Testing::Detail
