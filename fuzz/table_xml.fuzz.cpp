// Any bytes, read as the XML of a table. What is a table is written and read as the same one, and the comma-separated
// values of it have every cell in its place.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/TableXml.h"

using namespace Zorvex;
using namespace Zorvex::Controller;

namespace {

using Records = std::vector<std::vector<std::string>>;

// By RFC 4180, and nothing but it.
Records ReadCsv(std::string_view csv) {
    Records records;
    const auto take = [&csv](std::string_view text) {
        if (!csv.starts_with(text)) return false;
        csv.remove_prefix(text.size());
        return true;
    };
    while (!csv.empty()) {
        std::vector<std::string>& record = records.emplace_back();
        do {
            std::string& field = record.emplace_back();
            if (take("\"")) {
                for (;;) {
                    if (csv.empty()) std::abort();
                    const char unit = csv.front();
                    csv.remove_prefix(1);
                    if (unit == '"' && !take("\"")) break;
                    field += unit;
                }
            } else {
                const std::size_t end = std::min(csv.find_first_of(",\r\n\""), csv.size());
                field = csv.substr(0, end);
                csv.remove_prefix(end);
            }
        } while (take(","));
        if (!take("\r\n")) std::abort();
    }
    return records;
}

Records Expected(const Table& table) {
    const std::vector<std::wstring> names = table.ColumnNames();
    Records records;
    if (!names.empty())
        for (auto& record = records.emplace_back(); const std::wstring& name : names)
            record.push_back(NarrowText(name));
    for (const auto& row : table.rows) {
        // An empty line reads as one empty field.
        auto& record = records.emplace_back(std::max<std::size_t>(names.size(), 1));
        for (std::size_t i = 0; i < row.size(); ++i) record[i] = NarrowText(row[i].text);
    }
    return records;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring xml = WideText(std::string_view(reinterpret_cast<const char*>(data), size));
    const auto table = ReadTableXml(xml);
    if (!table) return 0;
    for (const auto& row : table->rows)
        for (const TableCell& cell : row)
            if ((cell.column + cell.text).find(L'\r') != std::wstring::npos) std::abort();
    if (ReadTableXml(WriteTableXml(*table)) != table) std::abort();
    if (ReadCsv(WriteTableCsv(*table)) != Expected(*table)) std::abort();
    return 0;
}
