#pragma once

#include "Base/QxBaseCore10/JSONNode.h"

#include <optional>
#include <string>

// Private: the functions with which all records and documents read JSON. No key is required: if a
// key is missing, or `JSONRef::get` can't convert its value, the destination is unchanged. Only
// `child` checks for null: it treats a null object as missing, since it has no keys or elements
// anyway.
namespace Orvane::Payloads {

template <class Destination>
void read(const Qx::JSONNode& node, const char* key, Destination& destination) {
    if (node.exists(key))
        node[key].get(destination);
}

/// Returns the text of `key`, or the empty string; for members that are converted before they are
/// stored.
inline std::string readText(const Qx::JSONNode& node, const char* key) {
    std::string text;
    read(node, key, text);
    return text;
}

/// Returns the value of `key` as a node; nothing if the key is missing or its value is null.
inline std::optional<Qx::JSONNode> child(const Qx::JSONNode& node, const char* key) {
    if (!node.exists(key))
        return std::nullopt;
    Qx::JSONRef value = node[key];
    if (value.isNull())
        return std::nullopt;
    return std::make_optional<Qx::JSONNode>(value);
}

/// Returns the id of the child object `key`; empty if there is no such child, or it has no id.
inline std::string idOf(const Qx::JSONNode& node, const char* key) {
    const auto object = child(node, key);
    return object ? readText(*object, "id") : std::string();
}

/// Calls `visit` with each element of the array `key`, as a node, in order. Does nothing if the key
/// is missing or its value is not an array.
template <class Visit>
void forEachElement(const Qx::JSONNode& node, const char* key, Visit visit) {
    const auto array = child(node, key);
    if (!array || !array->isArray())
        return;
    for (Qx::JSONRef element : *array)
        visit(Qx::JSONNode(element));
}

} // namespace Orvane::Payloads
