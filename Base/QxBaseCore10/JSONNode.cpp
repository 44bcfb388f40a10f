#include "Base/QxBaseCore10/JSONNode.h"

#include "Base/QxBaseCore10/JSONElement.h"
#include "Base/QxBaseCore10/Status.h"

#include <utility>

namespace Qx {

namespace {

std::string_view withoutByteOrderMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

} // namespace

JSONNode::JSONNode(const std::string& text) {
    Status dropped;
    parse(text, text.capacity() - text.size(), *this, dropped);
}

JSONNode::JSONNode(const JSONRef& ref) : value_(ref.value_) {}

JSONNode::JSONNode(JSONRef&& ref) : value_(std::move(ref.value_)) {}

bool JSONNode::parse(std::string_view text, std::size_t spareBytes, JSONNode& node, Status& status) {
    const std::string_view json = withoutByteOrderMark(text);
    if (json.empty()) {
        status.setReason(simdjson::error_message(simdjson::EMPTY));
        return false;
    }
    const bool needsCopy = spareBytes < simdjson::SIMDJSON_PADDING;
    auto document = std::make_shared<simdjson::dom::document>();
    simdjson::dom::parser parser;
    simdjson::dom::element root;
    const simdjson::error_code error =
        parser.parse_into_document(*document, json.data(), json.size(), needsCopy).get(root);
    if (error != simdjson::SUCCESS) {
        status.setReason(simdjson::error_message(error));
        return false;
    }
    node.value_ = {std::move(document), Detail::toPlace(root)};
    status = Status();
    return true;
}

bool JSONNode::exists(const char* key) const {
    if (!value_.document)
        return false;
    return Detail::elementOf(value_).at_key(key).error() == simdjson::SUCCESS;
}

JSONRef JSONNode::operator[](const char* key) const {
    if (!value_.document)
        return {};
    simdjson::dom::element child;
    if (Detail::elementOf(value_).at_key(key).get(child) != simdjson::SUCCESS)
        return {};
    return JSONRef({value_.document, Detail::toPlace(child)});
}

bool JSONNode::isArray() const {
    return value_.document && Detail::elementOf(value_).is_array();
}

JSONNode::const_iterator JSONNode::begin() const {
    if (!isArray())
        return {};
    const auto array = Detail::elementOf(value_).get_array().value_unsafe();
    return const_iterator({value_.document, Detail::toPlace(array.begin())});
}

JSONNode::const_iterator JSONNode::end() const {
    if (!isArray())
        return {};
    const auto array = Detail::elementOf(value_).get_array().value_unsafe();
    return const_iterator({value_.document, Detail::toPlace(array.end())});
}

std::string JSONNode::toText() const {
    return value_.document ? simdjson::minify(Detail::elementOf(value_)) : "null";
}

JSONNode::const_iterator::const_iterator(Detail::JSONValue value) : value_(std::move(value)) {}

bool JSONNode::const_iterator::operator==(const const_iterator& other) const {
    return value_.place.index == other.value_.place.index;
}

JSONNode::const_iterator& JSONNode::const_iterator::operator++() {
    auto place = Detail::fromPlace<simdjson::dom::array::iterator>(value_.place);
    value_.place = Detail::toPlace(++place);
    return *this;
}

JSONRef JSONNode::const_iterator::operator*() const {
    return JSONRef(value_);
}

} // namespace Qx
