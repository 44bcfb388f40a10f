#pragma once

#include "Testing/Detail/Exchange.h"

#include <boost/json/fwd.hpp>
#include <map>
#include <string>
#include <string_view>

namespace Orvane::Testing::Detail {

/// Replaces what may tell of a customer by made-up texts of the same kind: an id by an id, a file's name by a name with
/// the same extension. The same text becomes the same each time.
class NameMaker {
public:
    /// The exchange with made-up texts in its URL and its body. Only the texts of a body that are the service's own
    /// words, such as types and roles, stay; of the headers, those that tell what the body is. A body that is not JSON
    /// becomes as many "x".
    Exchange replaceIn(const Exchange& exchange);

private:
    std::string urlFor(const Exchange& exchange);
    std::string bodyFor(std::string_view body);
    void replaceTexts(boost::json::value& value, std::string_view key);
    std::string textFor(const std::string& text);
    std::string numberOf(const std::string& text);

    std::map<std::string, std::size_t> numbers_;
};

} // namespace Orvane::Testing::Detail
