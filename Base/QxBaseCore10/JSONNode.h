#pragma once

#include "Base/QxBaseCore10/JSONPlace.h"
#include "Base/QxBaseCore10/JSONRef.h"
#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <atomic>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Qx {

class Status;

/// A JSON value that shares ownership of the document it belongs to.
///
///     const Qx::JSONNode root(R"({"data":{"id":"urn:x"},"files":["a","b"]})");
///     const std::string id = root.exists("data") ? Qx::JSONNode(root["data"])["id"].asHString("") : "";
///     for (const Qx::JSONRef file : Qx::JSONNode(root["files"])) std::cout << file.asHString("none") << '\n';
///
/// Copying a node, or making a node from a child, costs one reference-count update and never copies
/// a subtree; iterating over an array updates no reference count. A document is immutable after
/// parsing, so one node, or several nodes of one document, may be read from several threads at
/// once. No operation throws because of its input, even if that is malformed JSON or arbitrary
/// bytes; parsing and `toText` may throw `std::bad_alloc`.
///
/// If an object contains a key more than once, the first occurrence is used.
class QXBASECORE10_EXPORT JSONNode {
public:
    class const_iterator;

    /// The null node.
    JSONNode() = default;

    /// Parses UTF-8 text, with or without a byte order mark. Text that is not valid JSON, is nested
    /// deeper than 1024 levels (counting the innermost value), or has anything after the value
    /// results in the null node. Throws `std::bad_alloc` when memory runs out. Linear in the length
    /// of the text.
    ///
    /// Some values are repaired, so that one bad value does not make the whole text unreadable. In
    /// strings and keys, an escaped unpaired surrogate, and each byte that is not part of valid
    /// UTF-8, becomes U+FFFD. An integer beyond 64 bits, or a number too large for a double,
    /// becomes a string of its digits, exactly as in the text. Text with such a value is parsed
    /// from a repaired copy, which takes longer.
    explicit JSONNode(const std::string& text);

    /// The value that `ref` refers to. Remains valid after the reference, and the node that it came
    /// from, are gone.
    explicit JSONNode(const JSONRef& ref);

    /// Returns true if this is an object that contains `key`, even with the value null. Linear in
    /// the number of the object's keys.
    bool exists(const char* key) const { return has(key); }
    bool exists(std::nullptr_t) const = delete;

    /// Returns the value of `key`, or a null reference if this is not an object or lacks the key.
    /// Valid as long as any node of the document exists. Linear in the number of the object's keys,
    /// but fast for the key that `exists` has just found in this node.
    JSONRef operator[](const char* key) const { return at(key); }
    JSONRef operator[](std::nullptr_t) const = delete;

    /// Returns true for an array, even an empty one.
    bool isArray() const;

    /// The elements of an array, in order; an empty range for anything else. Valid as long as any
    /// node of the document exists.
    const_iterator begin() const;
    /// The end of that range.
    const_iterator end() const;

    /// Returns the value as compact JSON text. Linear in its size.
    std::string toText() const;

    /// Parses as the constructor does, but reports failure: returns the root, or returns nothing
    /// and puts the reason into `status`, even if the parser itself runs out of memory. `padding`
    /// is the number of readable bytes after `text`: with 64 or more, the parser works on `text`
    /// itself; with fewer, on a copy.
    static std::optional<JSONNode> parse(std::string_view text, Status& status, std::size_t padding = 0);

private:
    // The index of the member that `exists` found last, a hint for the `operator[]` that usually
    // follows; 0 means none. It is checked before it is used, so threads that read the same node
    // may overwrite it. Copying, moving and assigning reset it, since an index means nothing in
    // another document.
    class FoundMember {
    public:
        FoundMember() = default;
        FoundMember(const FoundMember&) noexcept {}
        FoundMember& operator=(const FoundMember&) noexcept {
            set(0);
            return *this;
        }
        std::size_t index() const { return index_.load(std::memory_order_relaxed); }
        void set(std::size_t index) { index_.store(index, std::memory_order_relaxed); }

    private:
        std::atomic<std::size_t> index_ = 0;
    };

    // The inline operations above call these, so that the length of a literal key is computed at
    // compile time.
    bool has(std::string_view key) const;
    JSONRef at(std::string_view key) const;

    JSONNode(std::shared_ptr<const void> document, std::size_t index);

    Detail::JSONPlace place() const { return {document_.get(), index_}; }

    std::shared_ptr<const void> document_;
    std::size_t index_ = 0;
    mutable FoundMember found_;
};

/// An iterator over an array, valid as long as any node of the document exists. Compare only
/// iterators over the same array, and neither dereference nor increment its end.
class QXBASECORE10_EXPORT JSONNode::const_iterator {
public:
    /// @{
    /// Required of an input iterator.
    using iterator_category = std::input_iterator_tag;
    using value_type = JSONRef;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = JSONRef;
    /// @}

    const_iterator() = default;

    /// @{
    /// An operation of an input iterator.
    bool operator==(const const_iterator& other) const { return place_.index == other.place_.index; }
    const_iterator& operator++();
    JSONRef operator*() const { return JSONRef(place_); }
    /// @}

private:
    friend class JSONNode;
    explicit const_iterator(const Detail::JSONPlace& place) : place_(place) {}

    Detail::JSONPlace place_;
};

} // namespace Qx
