#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

// How an answer looks as text. Both ways to read a document share this and nothing else.
namespace OrvaneFuzz {

/// A record as texts by name.
using Record = std::map<std::string, std::string>;

inline std::string text(const std::string& value) {
    return '"' + value + '"';
}

inline std::string text(std::int32_t value) {
    return std::to_string(value);
}

inline std::string text(bool value) {
    return value ? "yes" : "no";
}

/// Wide text as its code points, so that it is compared without being converted.
inline std::string text(const std::wstring& value) {
    std::string points;
    for (const wchar_t point : value)
        points += std::to_string(static_cast<std::int64_t>(point)) + ' ';
    return '<' + points + '>';
}

inline std::string text(const Record& record) {
    std::string fields;
    for (const auto& [name, value] : record)
        fields.append(name).append(": ").append(value).append("; ");
    return '{' + fields + '}';
}

template <class Entry>
std::string text(const std::vector<Entry>& list) {
    std::string entries;
    for (const Entry& entry : list)
        entries += text(entry) + ", ";
    return '[' + entries + ']';
}

/// A table in the order of its keys.
template <class Key, class Value>
std::string text(const std::unordered_map<Key, Value>& table) {
    std::string entries;
    for (const auto& [key, value] : std::map<Key, Value>(table.begin(), table.end()))
        entries += text(key) + " -> " + text(value) + ", ";
    return '[' + entries + ']';
}

} // namespace OrvaneFuzz
