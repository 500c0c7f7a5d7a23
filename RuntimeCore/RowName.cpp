#include "RuntimeCore/RowName.h"

#include <atomic>
#include <vector>

#include "Common/include/Log.h"
#include "RuntimeCore/AccChildReaders.h"

namespace Zorvex {

namespace {

std::atomic<CellTextReader> cellTextReader = nullptr;

// The first row header, else the first cell; null if the row has neither. The children are read once for both.
const AAObjectWrapper* NamingChild(const std::vector<AAObjectWrapper>& children) {
    const AAObjectWrapper* firstCell = nullptr;
    for (const AAObjectWrapper& child : children) {
        if (!child.IsValid()) continue;
        const LONG role = GetAccRole(child.container, child.childId);
        if (role == ROLE_SYSTEM_ROWHEADER) return &child;
        if (role == ROLE_SYSTEM_CELL && !firstCell) firstCell = &child;
    }
    return firstCell;
}

}  // namespace

CellTextReader SetCellTextReader(CellTextReader reader) noexcept { return cellTextReader.exchange(reader); }

bool GetRowName(HWND hWnd, IAccessible* acc, const VARIANT& child, CComVariant& out_variant) {
    LogVerbose("GetRowName: Start");
    if (!hWnd || !acc || child.vt != VT_I4) {
        // The two blanks are on purpose.
        LogError("GetRowName: Invalid  arguments");
        return false;
    }
    if (GetAccRole(acc, child) != ROLE_SYSTEM_ROW) return false;
    // Only a full object has children; a simple row has none of its own.
    std::vector<AAObjectWrapper> children;
    if (child.lVal == CHILDID_SELF) children = GetAccChildren(acc);
    const AAObjectWrapper* cell = NamingChild(children);
    if (!cell) {
        LogError("GetRowName: No row header/cell found");
        return false;
    }
    const CellTextReader readText = cellTextReader.load();
    CString name;
    if (!readText || !readText(hWnd, *cell, name)) return false;
    out_variant = CComVariant(name);
    LogVerbose("GetRowName: End");
    return true;
}

}  // namespace Zorvex
