#include "Host/Report.h"

#include "Host/Console.h"
#include "Host/Printable.h"

#include <algorithm>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <fmt/format.h>
#include <iterator>
#include <utility>

namespace OrvaneHost {

namespace {

using Cells = std::vector<std::string>;

constexpr std::size_t maxCellWidth = 80;

std::string textOf(const Report::Fact& fact) {
    const auto* text = std::get_if<std::string>(&fact.value);
    return text ? *text : std::to_string(std::get<std::int64_t>(fact.value));
}

std::string cellOf(const std::string& text, bool isWide) {
    return isWide ? printable(text) : shortened(text, maxCellWidth);
}

// Prints two spaces before each cell that is not empty, and no trailing spaces.
void printLine(const Cells& cells, const std::vector<std::size_t>& widths) {
    std::string line;
    std::size_t missing = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (!cells[i].empty())
            fmt::format_to(std::back_inserter(line), "{:{}}{}", "", std::exchange(missing, 0) + 2, cells[i]);
        missing += widths[i] - std::min(displayWidth(cells[i]), widths[i]) + (cells[i].empty() ? 2 : 0);
    }
    printOutput(line + '\n');
}

void printAligned(const std::vector<Cells>& lines) {
    std::vector<std::size_t> widths;
    for (const Cells& cells : lines) {
        widths.resize(std::max(widths.size(), cells.size()));
        for (std::size_t i = 0; i < cells.size(); ++i)
            widths[i] = std::max(widths[i], displayWidth(cells[i]));
    }
    // When texts are printed in full, a long one must not widen its column in all lines.
    for (std::size_t& width : widths)
        width = std::min(width, maxCellWidth);
    for (const Cells& cells : lines)
        printLine(cells, widths);
}

std::vector<Cells> linesOf(const Report::Table& table, bool isWide) {
    std::vector<Cells> lines(1);
    for (const Report::Column& column : table.columns)
        lines.front().push_back(column.label);
    for (const auto& row : table.rows) {
        lines.emplace_back();
        for (const std::string& text : row)
            lines.back().push_back(cellOf(text, isWide));
    }
    return lines;
}

boost::json::array arrayOf(const Report::Table& table) {
    boost::json::array rows;
    for (const auto& row : table.rows) {
        boost::json::object object;
        for (std::size_t i = 0; i < row.size(); ++i)
            object[table.columns[i].key] = row[i];
        rows.push_back(std::move(object));
    }
    return rows;
}

} // namespace

void printText(const Report& report, bool isWide) {
    printHeading(cellOf(report.title, isWide));
    std::vector<Cells> facts;
    for (const Report::Fact& fact : report.facts)
        facts.push_back({fact.label, cellOf(textOf(fact), isWide)});
    printAligned(facts);
    for (const Report::Table& table : report.tables) {
        if (table.rows.empty())
            continue;
        printOutput("\n");
        printHeading(fmt::format("{} ({})", table.title, table.rows.size()));
        printAligned(linesOf(table, isWide));
    }
}

std::string toJSON(const Report& report) {
    boost::json::object object;
    for (const Report::Fact& fact : report.facts)
        std::visit([&](const auto& value) { object[fact.key] = value; }, fact.value);
    for (const Report::Table& table : report.tables)
        object[table.key] = arrayOf(table);
    return escapeDeceptive(boost::json::serialize(object)) + '\n';
}

} // namespace OrvaneHost
