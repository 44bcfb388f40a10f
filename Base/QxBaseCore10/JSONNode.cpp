#include "Base/QxBaseCore10/JSONNode.h"

#include "Base/QxBaseCore10/Detail/JSONElement.h"
#include "Base/QxBaseCore10/Detail/JSONRepair.h"
#include "Base/QxBaseCore10/Detail/LargePages.h"
#include "Base/QxBaseCore10/Status.h"

#include <new>
#include <optional>
#include <utility>

namespace Qx {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string_view withoutByteOrderMark(std::string_view text) {
    return text.starts_with(byteOrderMark) ? text.substr(byteOrderMark.size()) : text;
}

// A parsed document whose shared ownership can be recovered from any place in it.
class SharedDocument : public simdjson::dom::document, public std::enable_shared_from_this<SharedDocument> {};

std::shared_ptr<const simdjson::dom::document> ownerOf(const Detail::JSONPlace& place) {
    if (!place.document)
        return nullptr;
    const auto* document = static_cast<const simdjson::dom::document*>(place.document);
    return static_cast<const SharedDocument*>(document)->shared_from_this();
}

// Allocates the buffers for a large text in advance, and asks for large pages. The parser would
// allocate them itself, but would then spend most of its time on page faults (docs/performance.md
// has figures).
simdjson::error_code allocateFor(std::size_t bytes, simdjson::dom::parser& parser, simdjson::dom::document& document) {
    const std::size_t largestBuffer = bytes * sizeof(std::uint64_t);
    if (largestBuffer < Detail::largePagesFrom)
        return simdjson::SUCCESS;
    if (const simdjson::error_code error = parser.allocate(bytes))
        return error;
    if (const simdjson::error_code error = document.allocate(bytes))
        return error;
    // These sizes are what the parser has allocated, or slightly less.
    Detail::preferLargePages(parser.implementation->structural_indexes.get(), bytes * sizeof(std::uint32_t));
    Detail::preferLargePages(document.tape.get(), largestBuffer);
    Detail::preferLargePages(document.string_buf.get(), bytes / 3 * 5);
    return simdjson::SUCCESS;
}

// A parsed document and the index of its root, or the error.
struct Parsed {
    simdjson::error_code error = simdjson::SUCCESS;
    std::shared_ptr<const simdjson::dom::document> document;
    std::size_t root = 0;
};

Parsed parseAsItIs(std::string_view json, std::size_t padding) {
    auto document = std::make_shared<SharedDocument>();
    simdjson::dom::parser parser;
    if (const simdjson::error_code error = allocateFor(json.size(), parser, *document))
        return {error, nullptr, 0};
    const bool needsCopy = padding < simdjson::SIMDJSON_PADDING;
    const auto root = parser.parse_into_document(*document, json.data(), json.size(), needsCopy);
    if (root.error() != simdjson::SUCCESS)
        return {root.error(), nullptr, 0};
    return {simdjson::SUCCESS, std::move(document), Detail::toPlace(root.value_unsafe()).index};
}

// Parses a repaired copy of JSON that the parser has rejected; returns `refused` if there is
// nothing to repair.
Parsed parseMended(std::string_view json, Parsed refused) {
    std::string repaired;
    try {
        repaired = Detail::repairJSON(json);
    } catch (const std::bad_alloc&) {
        return {simdjson::MEMALLOC, nullptr, 0};
    }
    if (repaired.empty())
        return refused;
    const std::size_t size = repaired.size() - simdjson::SIMDJSON_PADDING;
    return parseAsItIs(std::string_view(repaired).substr(0, size), simdjson::SIMDJSON_PADDING);
}

Parsed parseText(std::string_view text, std::size_t padding) {
    const std::string_view json = withoutByteOrderMark(text);
    if (json.empty())
        return {simdjson::EMPTY, nullptr, 0};
    // The parser may skip a byte order mark itself, and would then accept text with two of them.
    if (json.starts_with(byteOrderMark))
        return {simdjson::TAPE_ERROR, nullptr, 0};
    Parsed parsed = parseAsItIs(json, padding);
    switch (parsed.error) {
    case simdjson::NUMBER_ERROR:
    case simdjson::STRING_ERROR:
    case simdjson::UTF8_ERROR:
        return parseMended(json, std::move(parsed));
    default:
        return parsed;
    }
}

using Member = simdjson::dom::object::iterator;

// Returns the first member called `key` of the object at `place`; nothing if there is no such
// member, or the value is not an object.
std::optional<Member> findMember(const Detail::JSONPlace& place, std::string_view key) {
    simdjson::dom::object object;
    if (Detail::elementAt(place).get(object) != simdjson::SUCCESS)
        return std::nullopt;
    const Member end = object.end();
    for (Member member = object.begin(); member != end; ++member)
        if (member.key_equals(key))
            return member;
    return std::nullopt;
}

} // namespace

JSONNode::JSONNode(const std::string& text) {
    Parsed parsed = parseText(text, text.capacity() - text.size());
    if (parsed.error == simdjson::MEMALLOC)
        throw std::bad_alloc();
    if (parsed.error == simdjson::SUCCESS)
        *this = JSONNode(std::move(parsed.document), parsed.root);
}

JSONNode::JSONNode(const JSONRef& ref) : JSONNode(ownerOf(ref.place_), ref.place_.index) {}

JSONNode::JSONNode(std::shared_ptr<const void> document, std::size_t index)
    : document_(std::move(document)), index_(index) {}

std::optional<JSONNode> JSONNode::parse(std::string_view text, Status& status, std::size_t padding) {
    Parsed parsed = parseText(text, padding);
    if (parsed.error != simdjson::SUCCESS) {
        status = Status::failure(simdjson::error_message(parsed.error));
        return std::nullopt;
    }
    status = Status();
    return JSONNode(std::move(parsed.document), parsed.root);
}

bool JSONNode::has(std::string_view key) const {
    if (!document_)
        return false;
    const auto member = findMember(place(), key);
    if (member)
        found_.set(Detail::toPlace(*member).index);
    return member.has_value();
}

JSONRef JSONNode::at(std::string_view key) const {
    if (!document_)
        return {};
    if (const std::size_t index = found_.index(); index != 0) {
        const auto member = Detail::fromPlace<Member>({document_.get(), index});
        if (member.key_equals(key))
            return JSONRef(Detail::toPlace(member.value()));
    }
    const auto member = findMember(place(), key);
    return member ? JSONRef(Detail::toPlace(member->value())) : JSONRef();
}

bool JSONNode::isArray() const {
    return document_ && Detail::elementAt(place()).is_array();
}

JSONNode::const_iterator JSONNode::begin() const {
    if (!isArray())
        return {};
    const auto array = Detail::elementAt(place()).get_array().value_unsafe();
    return const_iterator(Detail::toPlace(array.begin()));
}

JSONNode::const_iterator JSONNode::end() const {
    if (!isArray())
        return {};
    const auto array = Detail::elementAt(place()).get_array().value_unsafe();
    return const_iterator(Detail::toPlace(array.end()));
}

std::string JSONNode::toText() const {
    return document_ ? simdjson::minify(Detail::elementAt(place())) : "null";
}

JSONNode::const_iterator& JSONNode::const_iterator::operator++() {
    auto place = Detail::fromPlace<simdjson::dom::array::iterator>(place_);
    place_ = Detail::toPlace(++place);
    return *this;
}

} // namespace Qx
