#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace OrvaneHost {

/// What a command found, as text for people and as JSON for programs. Texts are UTF-8.
struct Report {
    struct Fact {
        std::string key; ///< The key in JSON.
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

/// Prints the report to standard output, with aligned columns, each as wide as its widest cell, up
/// to 80 columns. Texts are made `printable`, and `shortened` to 80 columns unless `isWide`. Tables
/// without rows are left out. Throws as `printOutput` does.
void printText(const Report& report, bool isWide);

/// Returns the report as one line of JSON: an object of the facts, and of the tables as arrays of
/// objects. Characters that could mislead on a terminal are escaped.
std::string toJSON(const Report& report);

} // namespace OrvaneHost
