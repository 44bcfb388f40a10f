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

/// A JSON value that shares ownership of the document it stands in.
///
///     const Qx::JSONNode root(R"({"data":{"id":"urn:x"},"files":["a","b"]})");
///     const std::string id = root.exists("data") ? Qx::JSONNode(root["data"])["id"].asHString("") : "";
///     for (const Qx::JSONRef file : Qx::JSONNode(root["files"])) std::cout << file.asHString("none") << '\n';
///
/// Copying a node and taking out a child cost a reference count each, never a subtree, and walking an array costs
/// not even that. A document is not written after parsing, so one node, or several of one document, may be read from
/// several threads at once. No operation throws for any JSON or any bytes; parsing and `toText` may throw
/// `std::bad_alloc`.
///
/// Of a key that an object holds twice, the first counts.
class QXBASECORE10_EXPORT JSONNode {
public:
    class const_iterator;

    /// The null node.
    JSONNode() = default;

    /// Parses UTF-8 text, with or without a byte order mark. Text that is not JSON (nested deeper than 1024 levels, the
    /// innermost value counted, or with anything after the value) gives the null node; where there is no
    /// memory for it, `std::bad_alloc` comes out. Linear in the length of the text.
    ///
    /// An odd value does not cost the others. In strings and keys an escaped surrogate without its other half, and each
    /// byte that is no part of UTF-8, become U+FFFD. An integer beyond 64 bits, or a number too large for a double,
    /// becomes a string of its digits as they came. A text with such a value is parsed from a changed copy, which takes
    /// longer.
    explicit JSONNode(const std::string& text);

    /// The value that `ref` refers to. It outlives the reference and the node that gave it.
    explicit JSONNode(const JSONRef& ref);

    /// True if this is an object that has `key`, also when the key's value is null. Linear in the number of
    /// the object's keys.
    bool exists(const char* key) const { return has(key); }
    bool exists(std::nullptr_t) const = delete;

    /// The value under `key`, or a null reference if this is no object or lacks the key. Good as long as any node of
    /// the document lives. Linear in the number of the object's keys, but quick for the key that `exists` has just
    /// found in this node.
    JSONRef operator[](const char* key) const { return at(key); }
    JSONRef operator[](std::nullptr_t) const = delete;

    /// True for an array, also an empty one.
    bool isArray() const;

    /// The elements of an array, in order; an empty range for anything else. Good as long as any node of the document
    /// lives.
    const_iterator begin() const;
    const_iterator end() const;

    /// The node as compact JSON text. Linear in its size.
    std::string toText() const;

    /// Parses as the constructor does, but reports failure: returns the root, or nothing with the reason in `status`,
    /// also if the parser itself runs out of memory. `padding` is how many bytes after `text` may be read; with 64 or
    /// more the parser works on `text` itself, with fewer on a copy.
    static std::optional<JSONNode> parse(std::string_view text, Status& status, std::size_t padding = 0);

private:
    // Where `exists` found its key, for the `operator[]` that follows; 0 is nowhere. It is checked before it is
    // believed, so threads that read one node may overwrite it. A node that is copied, moved or assigned starts
    // without, since the place means nothing in another document.
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

    // Behind inline operations, so that the length of a literal key is known where it is compiled.
    bool has(std::string_view key) const;
    JSONRef at(std::string_view key) const;

    JSONNode(std::shared_ptr<const void> document, std::size_t index);

    Detail::JSONPlace place() const { return {document_.get(), index_}; }

    std::shared_ptr<const void> document_;
    std::size_t index_ = 0;
    mutable FoundMember found_;
};

/// A place in the walk over an array, good as long as any node of the document lives. Compare places of one walk
/// only, and neither read nor advance its end.
class QXBASECORE10_EXPORT JSONNode::const_iterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = JSONRef;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = JSONRef;

    const_iterator() = default;

    bool operator==(const const_iterator& other) const { return place_.index == other.place_.index; }
    const_iterator& operator++();
    JSONRef operator*() const { return JSONRef(place_); }

private:
    friend class JSONNode;
    explicit const_iterator(const Detail::JSONPlace& place) : place_(place) {}

    Detail::JSONPlace place_;
};

} // namespace Qx
