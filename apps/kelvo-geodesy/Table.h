// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <string>
#include <variant>
#include <vector>

namespace Kelvo::Tool {

/// One value of a table: nothing (an empty CSV field, JSON null), a number or a text.
using Cell = std::variant<std::monostate, double, std::string>;

/// Writes rows as CSV with a header line, or as a JSON array of objects keyed by the column
/// names. Numbers are written in their shortest round-trip form, whatever the locale; in
/// JSON, NaN and infinities (which it cannot express) become null.
class TableWriter {
public:
    enum class Style { csv, json };

    TableWriter(std::ostream& out, std::vector<std::string> columns, Style style = Style::csv);

    /// One row; `cells` holds one cell per column.
    void row(const std::vector<Cell>& cells);
    /// Ends the table (closes the JSON array). Call once, after the last row.
    void finish();

private:
    std::ostream& out;
    std::vector<std::string> columns;
    Style style;
    bool firstRow = true;
};

} // namespace Kelvo::Tool
