// SPDX-License-Identifier: MIT
#include "Table.h"

#include "Numbers.h"

#include <cmath>

namespace Kelvo::Tool {
namespace {

std::string csvText(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char c : text) {
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return quoted + "\"";
}

std::string jsonText(const std::string& text)
{
    static constexpr char HEX[] = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (byte < 0x20) {
            quoted += "\\u00";
            quoted += HEX[byte >> 4];
            quoted += HEX[byte & 0xF];
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

} // namespace

TableWriter::TableWriter(std::ostream& out, std::vector<std::string> columns, Style style)
    : out(out)
    , columns(std::move(columns))
    , style(style)
{
    if (style == Style::csv) {
        for (std::size_t i = 0; i < this->columns.size(); ++i) {
            out << (i > 0 ? "," : "") << csvText(this->columns[i]);
        }
        out << '\n';
    } else {
        out << '[';
    }
}

void TableWriter::row(const std::vector<Cell>& cells)
{
    if (style == Style::csv) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            out << (i > 0 ? "," : "");
            if (const auto* number = std::get_if<double>(&cells[i])) {
                out << shortest(*number);
            } else if (const auto* text = std::get_if<std::string>(&cells[i])) {
                out << csvText(*text);
            }
        }
        out << '\n';
        return;
    }

    out << (firstRow ? "\n  {" : ",\n  {");
    for (std::size_t i = 0; i < cells.size() && i < columns.size(); ++i) {
        out << (i > 0 ? ", " : "") << jsonText(columns[i]) << ": ";
        if (const auto* number = std::get_if<double>(&cells[i]); number && std::isfinite(*number)) {
            out << shortest(*number);
        } else if (const auto* text = std::get_if<std::string>(&cells[i])) {
            out << jsonText(*text);
        } else {
            out << "null";
        }
    }
    out << '}';
    firstRow = false;
}

void TableWriter::finish()
{
    if (style == Style::json) {
        out << (firstRow ? "]\n" : "\n]\n");
    }
}

} // namespace Kelvo::Tool
