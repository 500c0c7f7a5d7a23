// A table as the server gives it, in XML, and as other programs read it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Zorvex::Controller {

struct TableCell {
    std::wstring column;
    std::wstring text;
    bool operator==(const TableCell&) const = default;
};
// Rows may have different numbers of cells. Cells at the same place belong to one column, whose name is the same in
// all of them; two columns may have the same name.
struct Table {
    std::vector<std::vector<TableCell>> rows;
    bool operator==(const Table&) const = default;

    // The names in order, as many as the longest row has cells.
    std::vector<std::wstring> ColumnNames() const;
};

// Reads the XML of a table, on one line or indented: XML libraries write it differently. Line ends in texts come as one
// line feed each. Nothing if it is no such XML.
std::optional<Table> ReadTableXml(std::wstring_view xml);

// On one line, without blanks between the elements.
std::wstring WriteTableXml(const Table& table);

// Comma-separated values by RFC 4180: UTF-8, CR LF behind each record, the first one the column names, all records of
// one length. A table without rows is an empty text.
std::string WriteTableCsv(const Table& table);

}  // namespace Zorvex::Controller
