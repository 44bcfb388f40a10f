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

// A parsed text that finds its owners again from a place in it.
class SharedDocument : public simdjson::dom::document, public std::enable_shared_from_this<SharedDocument> {};

std::shared_ptr<const void> ownerOf(const Detail::JSONPlace& place) {
    if (!place.document)
        return nullptr;
    const auto* document = static_cast<const simdjson::dom::document*>(place.document);
    return static_cast<const SharedDocument*>(document)->shared_from_this();
}

} // namespace

JSONNode::JSONNode(const std::string& text) {
    Status dropped;
    parse(text, text.capacity() - text.size(), *this, dropped);
}

JSONNode::JSONNode(const JSONRef& ref) : document_(ownerOf(ref.place_)), place_(ref.place_) {}

bool JSONNode::parse(std::string_view text, std::size_t spareBytes, JSONNode& node, Status& status) {
    const std::string_view json = withoutByteOrderMark(text);
    if (json.empty()) {
        status.setReason(simdjson::error_message(simdjson::EMPTY));
        return false;
    }
    const bool needsCopy = spareBytes < simdjson::SIMDJSON_PADDING;
    auto document = std::make_shared<SharedDocument>();
    simdjson::dom::parser parser;
    simdjson::dom::element root;
    const simdjson::error_code error =
        parser.parse_into_document(*document, json.data(), json.size(), needsCopy).get(root);
    if (error != simdjson::SUCCESS) {
        status.setReason(simdjson::error_message(error));
        return false;
    }
    node.document_ = std::move(document);
    node.place_ = Detail::toPlace(root);
    status = Status();
    return true;
}

bool JSONNode::exists(const char* key) const {
    if (!document_)
        return false;
    return Detail::elementAt(place_).at_key(key).error() == simdjson::SUCCESS;
}

JSONRef JSONNode::operator[](const char* key) const {
    if (!document_)
        return {};
    simdjson::dom::element child;
    if (Detail::elementAt(place_).at_key(key).get(child) != simdjson::SUCCESS)
        return {};
    return JSONRef(Detail::toPlace(child));
}

bool JSONNode::isArray() const {
    return document_ && Detail::elementAt(place_).is_array();
}

JSONNode::const_iterator JSONNode::begin() const {
    if (!isArray())
        return {};
    const auto array = Detail::elementAt(place_).get_array().value_unsafe();
    return const_iterator(Detail::toPlace(array.begin()));
}

JSONNode::const_iterator JSONNode::end() const {
    if (!isArray())
        return {};
    const auto array = Detail::elementAt(place_).get_array().value_unsafe();
    return const_iterator(Detail::toPlace(array.end()));
}

std::string JSONNode::toText() const {
    return document_ ? simdjson::minify(Detail::elementAt(place_)) : "null";
}

JSONNode::const_iterator& JSONNode::const_iterator::operator++() {
    auto place = Detail::fromPlace<simdjson::dom::array::iterator>(place_);
    place_ = Detail::toPlace(++place);
    return *this;
}

} // namespace Qx
