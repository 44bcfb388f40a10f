#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace OrvaneHost {

/// What a command found, for a person as text and for a program as JSON. Texts are UTF-8.
struct Report {
    struct Fact {
        std::string key; ///< In the JSON.
        std::string label;
        std::variant<std::string, std::int64_t> value;
    };

    struct Column {
        std::string key;
        std::string label;
    };

    struct Table {
        std::string key;
        std::string title;
        std::vector<Column> columns;
        std::vector<std::vector<std::string>> rows;
    };

    std::string title;
    std::vector<Fact> facts;
    std::vector<Table> tables;
};

/// The report with aligned columns, each as wide as its widest cell. Texts are made `printable`. Tables without rows
/// are left out.
std::string toText(const Report& report);

/// The report as one line of JSON: an object of the facts, and of the tables as arrays of objects.
std::string toJSON(const Report& report);

/// How many columns of a terminal a UTF-8 text takes, by the current locale.
std::size_t displayWidth(std::string_view text);

} // namespace OrvaneHost
