#include "Host/Report.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Host/Printable.h"

#include <algorithm>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <cwchar>
#include <fmt/format.h>
#include <iterator>

namespace OrvaneHost {

namespace {

using Cells = std::vector<std::string>;

std::string factText(const Report::Fact& fact) {
    const auto* text = std::get_if<std::string>(&fact.value);
    return text ? printable(*text) : std::to_string(std::get<std::int64_t>(fact.value));
}

// Two spaces in front and between; nothing behind the last cell.
void appendLine(std::string& text, const Cells& cells, const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i)
        fmt::format_to(std::back_inserter(line), "  {}{:{}}", cells[i], "", widths[i] - displayWidth(cells[i]));
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
}

void appendAligned(std::string& text, const std::vector<Cells>& lines) {
    std::vector<std::size_t> widths;
    for (const Cells& cells : lines) {
        widths.resize(std::max(widths.size(), cells.size()));
        for (std::size_t i = 0; i < cells.size(); ++i)
            widths[i] = std::max(widths[i], displayWidth(cells[i]));
    }
    for (const Cells& cells : lines)
        appendLine(text, cells, widths);
}

std::vector<Cells> linesOf(const Report::Table& table) {
    std::vector<Cells> lines(1);
    for (const Report::Column& column : table.columns)
        lines.front().push_back(column.label);
    for (const auto& row : table.rows) {
        lines.emplace_back();
        std::transform(row.begin(), row.end(), std::back_inserter(lines.back()), printable);
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

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (const wchar_t character : Qx::ToIString(text))
        width += static_cast<std::size_t>(std::max(wcwidth(character), 0));
    return width;
}

std::string toText(const Report& report) {
    std::string text = printable(report.title) + '\n';
    std::vector<Cells> facts;
    for (const Report::Fact& fact : report.facts)
        facts.push_back({fact.label, factText(fact)});
    appendAligned(text, facts);
    for (const Report::Table& table : report.tables) {
        if (table.rows.empty())
            continue;
        fmt::format_to(std::back_inserter(text), "\n{} ({})\n", table.title, table.rows.size());
        appendAligned(text, linesOf(table));
    }
    return text;
}

std::string toJSON(const Report& report) {
    boost::json::object object;
    for (const Report::Fact& fact : report.facts)
        std::visit([&](const auto& value) { object[fact.key] = value; }, fact.value);
    for (const Report::Table& table : report.tables)
        object[table.key] = arrayOf(table);
    return boost::json::serialize(object) + '\n';
}

} // namespace OrvaneHost
