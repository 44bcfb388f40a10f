#pragma once

#include "Base/QxBaseCore10/JSONNode.h"

#include <optional>
#include <string>

// Private: the few words in which every record and document reads JSON. Nothing is required: a key that a
// node lacks leaves its destination as it was, and a value of the wrong kind leaves what `JSONRef::get`
// leaves. Only `child` looks at null: a null object counts as none, which has no keys and no elements anyway.
namespace Orvane::Payloads {

template <class Destination>
void read(const Qx::JSONNode& node, const char* key, Destination& destination) {
    if (node.exists(key))
        node[key].get(destination);
}

/// The text under `key`, or the empty text: for members that are converted before they are stored.
inline std::string readText(const Qx::JSONNode& node, const char* key) {
    std::string text;
    read(node, key, text);
    return text;
}

/// The value under `key` as a node, unless the key is missing or its value is null.
inline std::optional<Qx::JSONNode> child(const Qx::JSONNode& node, const char* key) {
    if (!node.exists(key))
        return std::nullopt;
    Qx::JSONRef value = node[key];
    if (value.isNull())
        return std::nullopt;
    return std::make_optional<Qx::JSONNode>(value);
}

/// The id of the child object under `key`: empty if there is no such child, or it has no id.
inline std::string idOf(const Qx::JSONNode& node, const char* key) {
    const auto object = child(node, key);
    return object ? readText(*object, "id") : std::string();
}

/// Calls `visit` with each element of the array under `key`, as a node, in order. A key that is missing or
/// null or holds no array has no elements.
template <class Visit>
void forEachElement(const Qx::JSONNode& node, const char* key, Visit visit) {
    const auto array = child(node, key);
    if (!array || !array->isArray())
        return;
    for (Qx::JSONRef element : *array)
        visit(Qx::JSONNode(element));
}

} // namespace Orvane::Payloads
