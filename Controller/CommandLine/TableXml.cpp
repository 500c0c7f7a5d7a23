#include "Controller/CommandLine/TableXml.h"

#include <algorithm>
#include <cstdint>

#include "Common/include/UtfConversion.h"

namespace Zorvex::Controller {

namespace {

constexpr std::wstring_view kBlanks = L" \t\r\n";

// Goes through the text once, without turning back. Every step answers false where something else stands.
class TableReader {
public:
    explicit TableReader(std::wstring_view xml) : m_rest(xml) {}

    std::optional<Table> Read() {
        Table table;
        SkipBlanks();
        if (Take(L"<?xml") && !SkipPast(L"?>")) return std::nullopt;
        SkipBlanks();
        bool empty = false;
        if (!Take(L"<extract") || !EndTag(empty) || (!empty && !ReadRows(table))) return std::nullopt;
        SkipBlanks();
        if (!m_rest.empty()) return std::nullopt;
        return table;
    }

private:
    bool ReadRows(Table& table) {
        for (;;) {
            SkipBlanks();
            if (Take(L"</extract>")) return true;
            bool empty = false;
            if (!Take(L"<row") || !EndTag(empty)) return false;
            table.rows.emplace_back();
            if (!empty && !ReadColumns(table.rows.back())) return false;
        }
    }

    bool ReadColumns(std::vector<TableCell>& row) {
        for (;;) {
            SkipBlanks();
            if (Take(L"</row>")) return true;
            TableCell cell;
            bool empty = false;
            if (!Take(L"<column name=\"") || !ReadText(L'"', cell.column) || !Take(L"\"") || !EndTag(empty)) return false;
            if (!empty && (!ReadText(L'<', cell.text) || !Take(L"</column>"))) return false;
            row.push_back(std::move(cell));
        }
    }

    // The end of a start tag.
    bool EndTag(bool& empty) {
        SkipBlanks();
        empty = Take(L"/>");
        return empty || Take(L">");
    }

    // Up to the unit, which stays.
    bool ReadText(wchar_t end, std::wstring& text) {
        while (!m_rest.empty() && m_rest.front() != end) {
            const wchar_t unit = m_rest.front();
            if (unit == L'<') return false;
            m_rest.remove_prefix(1);
            if (unit == L'&') {
                if (!ReadReference(text)) return false;
            } else if (unit == L'\r') {
                // Written as it is, it is a line end, alone or with the line feed behind it.
                Take(L"\n");
                text += L'\n';
            } else {
                text += unit;
            }
        }
        EvenReferencedLineEnds(text);
        return !m_rest.empty();
    }

    // Behind the ampersand.
    bool ReadReference(std::wstring& text) {
        const std::size_t end = m_rest.substr(0, 12).find(L';');
        if (end == m_rest.npos) return false;
        const std::wstring_view name = m_rest.substr(0, end);
        m_rest.remove_prefix(end + 1);
        constexpr std::pair<std::wstring_view, wchar_t> named[] = {{L"amp", L'&'}, {L"lt", L'<'}, {L"gt", L'>'}, {L"quot", L'"'}, {L"apos", L'\''}};
        for (const auto& [known, unit] : named) {
            if (name != known) continue;
            text += unit;
            return true;
        }
        return name.size() > 1 && name[0] == L'#' && AppendCharacter(name.substr(1), text);
    }

    static bool AppendCharacter(std::wstring_view digits, std::wstring& text) {
        const bool isHexadecimal = digits[0] == L'x';
        if (isHexadecimal) digits.remove_prefix(1);
        std::uint32_t code = 0;
        for (const wchar_t digit : digits) {
            std::uint32_t value = 99;
            if (digit >= L'0' && digit <= L'9') value = static_cast<std::uint32_t>(digit - L'0');
            else if (isHexadecimal && digit >= L'a' && digit <= L'f') value = static_cast<std::uint32_t>(digit - L'a') + 10;
            else if (isHexadecimal && digit >= L'A' && digit <= L'F') value = static_cast<std::uint32_t>(digit - L'A') + 10;
            if (value == 99 || code > 0x10FFFF) return false;
            code = code * (isHexadecimal ? 16 : 10) + value;
        }
        if (digits.empty() || code == 0 || code > 0x10FFFF) return false;
        if (code >= 0x10000) {
            text += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
            code = 0xDC00 + ((code - 0x10000) & 0x3FF);
        }
        text += static_cast<wchar_t>(code);
        return true;
    }

    // The carriage returns that are left were references. Some XML libraries write the first half of a line end so, and
    // the second half as a line end of its own.
    static void EvenReferencedLineEnds(std::wstring& text) {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') continue;
            text[kept++] = text[i] == L'\r' ? L'\n' : text[i];
        }
        text.resize(kept);
    }

    bool Take(std::wstring_view text) {
        if (!m_rest.starts_with(text)) return false;
        m_rest.remove_prefix(text.size());
        return true;
    }
    bool SkipPast(std::wstring_view text) {
        const std::size_t place = m_rest.find(text);
        if (place == m_rest.npos) return false;
        m_rest.remove_prefix(place + text.size());
        return true;
    }
    void SkipBlanks() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of(kBlanks), m_rest.size())); }

    std::wstring_view m_rest;
};

void AppendEscaped(std::wstring_view text, std::wstring& out) {
    for (const wchar_t unit : text) {
        switch (unit) {
            case L'&': out += L"&amp;"; break;
            case L'<': out += L"&lt;"; break;
            case L'>': out += L"&gt;"; break;
            case L'"': out += L"&quot;"; break;
            default: out += unit;
        }
    }
}

void AppendField(std::wstring_view text, std::string& out) {
    const bool isQuoted = text.find_first_of(L",\"\r\n") != text.npos;
    if (!isQuoted) {
        out += NarrowText(text);
        return;
    }
    out += '"';
    for (const char byte : NarrowText(text)) {
        if (byte == '"') out += '"';
        out += byte;
    }
    out += '"';
}

}  // namespace

std::vector<std::wstring> Table::ColumnNames() const {
    std::vector<std::wstring> names;
    for (const auto& row : rows)
        for (std::size_t i = names.size(); i < row.size(); ++i) names.push_back(row[i].column);
    return names;
}

std::optional<Table> ReadTableXml(std::wstring_view xml) { return TableReader(xml).Read(); }

std::wstring WriteTableXml(const Table& table) {
    std::wstring xml = L"<extract>";
    for (const auto& row : table.rows) {
        xml += L"<row>";
        for (const TableCell& cell : row) {
            xml += L"<column name=\"";
            AppendEscaped(cell.column, xml);
            xml += L"\">";
            AppendEscaped(cell.text, xml);
            xml += L"</column>";
        }
        xml += L"</row>";
    }
    return xml + L"</extract>";
}

std::string WriteTableCsv(const Table& table) {
    const std::vector<std::wstring> names = table.ColumnNames();
    std::string csv;
    const auto addRecord = [&csv, &names](auto&& fieldAt) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (i > 0) csv += ',';
            AppendField(fieldAt(i), csv);
        }
        csv += "\r\n";
    };
    if (!names.empty()) addRecord([&names](std::size_t i) { return std::wstring_view(names[i]); });
    for (const auto& row : table.rows)
        addRecord([&row](std::size_t i) { return i < row.size() ? std::wstring_view(row[i].text) : std::wstring_view(); });
    return csv;
}

}  // namespace Zorvex::Controller
