#include "InProc/Vantrel/ExtractTable.h"

#include <cstdint>
#include <optional>
#include <vector>

#include "Common/include/Log.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/AccChildReaders.h"
#include "RuntimeCore/Extraction/CellText.h"
#include "RuntimeCore/Extraction/DataScrapeContext.h"
#include "RuntimeCore/Extraction/TableDocument.h"
#include "RuntimeCore/Extraction/TableElements.h"

namespace Zorvex {

namespace {

constexpr const char* Function = "Vantrel::ExtractTableImpl";

CString DefaultColumnName(std::size_t number) { return FormatText(L"Column-%d", static_cast<std::int32_t>(number)); }

// The names that the column headers of the row give, in order.
std::vector<CString> ReadColumnNames(HWND hWnd, const AAObjectWrapper& row, DataScrapeSession& session) {
    std::vector<CString> names;
    for (const AAObjectWrapper& header : GetElementChildren(row, ROLE_SYSTEM_COLUMNHEADER)) {
        CString name;
        GetCellText(name, hWnd, header.container, header.childId, true);
        // A header without text is no part of the session either.
        if (name.empty()) name = DefaultColumnName(names.size());
        else session.AddElementIdentifier(header.container);
        names.push_back(std::move(name));
    }
    return names;
}

// Writes the cells of one row. `columns` becomes their number.
HRESULT AddCells(TableDocument& document, HWND hWnd, const std::vector<AAObjectWrapper>& children, const std::vector<CString>& names,
                 DataScrapeSession& session, std::size_t& columns) {
    columns = 0;
    for (const AAObjectWrapper& child : children) {
        if (!child.IsValid()) continue;
        const LONG role = GetAccRole(child.container, child.childId);
        if (role != ROLE_SYSTEM_CELL && role != ROLE_SYSTEM_ROWHEADER) continue;
        HRESULT result = document.BeginColumn();
        if (FAILED(result)) return result;
        CString text;
        GetCellText(text, hWnd, child.container, child.childId, false);
        result = document.PutText(text);
        if (FAILED(result)) return result;
        session.AddElementIdentifier(child.container);
        result = document.EndColumn(columns < names.size() ? names[columns] : DefaultColumnName(columns));
        if (FAILED(result)) return result;
        ++columns;
    }
    return S_OK;
}

HRESULT AddRows(TableDocument& document, HWND hWnd, const std::vector<AAObjectWrapper>& rows, const std::vector<CString>& names,
                std::int32_t maxRows, DataScrapeSession& session) {
    std::int32_t rowsAdded = 0;
    for (const AAObjectWrapper& row : rows) {
        const std::vector<AAObjectWrapper> children = GetElementChildren(row);
        std::size_t columns = 0;
        HRESULT result = document.BeginRow();
        if (SUCCEEDED(result)) result = AddCells(document, hWnd, children, names, session, columns);
        // A row without cells is dropped and doesn't count.
        if (SUCCEEDED(result) && columns > 0) result = document.EndRow();
        if (FAILED(result)) return result;
        // Compared after a row was added, on purpose: 0 and less stop after the first.
        if (columns > 0 && ++rowsAdded >= maxRows) break;
    }
    return S_OK;
}

// The answer to a request that only ends its session.
ExtractTableResponse EndSession(const DataScrapeSession& session) {
    const HRESULT result = DataScrapeContext::Instance().Cleanup(session);
    if (FAILED(result)) {
        CallFailed("dsContext.Cleanup(currentSessionData)", result, "%s: Session cleanup failed", Function);
        return {};
    }
    return {true, GetEmptyExtractXml().ToString(), 0};
}

}  // namespace

ExtractTableResponse ExtractTableImpl(const ExtractTableRequest& request) {
    LogVerbose("Calling LookupIdentifier");
    const AAElement target = AAContainerCache::Instance().LookupIdentifier(request.element);
    LogVerbose("%s: Start", Function);
    if (!target.hWnd) {
        ExpectationNotMet("targetAa.m_hWnd", "%s: Invalid input - elem.m_hWnd", Function);
        return {};
    }
    if (!target.spAcc) {
        ExpectationNotMet("targetAa.m_accElem", "%s: Invalid input - elem.m_accElem", Function);
        return {};
    }
    DataScrapeSession session(target.hWnd, CComBSTR(request.sessionId));
    if (request.cleanup) return EndSession(session);

    const AAElement table = GetTableFromElement(target);
    if (!table.spAcc) {
        ExpectationNotMet("tableElem.m_accElem", "%s: Object is not a table", Function);
        return {};
    }
    const std::vector<AAObjectWrapper> rows = GetTableRows(table);
    std::vector<CString> names;
    if (request.columnNamesFromHeader && !rows.empty()) names = ReadColumnNames(table.hWnd, rows.front(), session);

    TableDocument document;
    if (FAILED(document.Create())) return {};
    if (FAILED(AddRows(document, table.hWnd, rows, names, request.maxRows, session))) return {};

    ExtractTableResponse response;
    const HRESULT result = DataScrapeContext::Instance().AddSession(std::move(session), response.sessionFlags);
    if (FAILED(result)) {
        CallFailed("dsContext.AddSession(std::move(currentSessionData), out_dsFlags)", result, "%s: Failed to compute session data.", Function);
        return {};
    }
    CComBSTR xml;
    if (FAILED(document.GetXml(xml))) return {};
    LogVerbose("%s: End", Function);
    response.success = true;
    response.xml = xml.ToString();
    return response;
}

}  // namespace Zorvex
