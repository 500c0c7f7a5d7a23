#include "RuntimeCore/Extraction/TableElements.h"

#include <utility>

#include "Common/include/Log.h"
#include "RuntimeCore/AccChildReaders.h"

namespace Zorvex {

namespace {

constexpr int HighestLevel = 10'000;
constexpr std::size_t MostRows = 1'000'000;

}  // namespace

AAElement GetTableFromElement(const AAElement& element) {
    AAElement current = element;
    for (int level = 0; current.IsValid() && level < HighestLevel; ++level) {
        if (GetAccRole(current.spAcc, current.child) == ROLE_SYSTEM_TABLE) return current;
        // A simple element stands below its container, which is asked next.
        current.spAcc = GetAccParent(current.spAcc, current.child);
        current.child = CComVariant(CHILDID_SELF);
    }
    if (current.IsValid()) LogError("GetTableFromElement: no table in %d levels", HighestLevel);
    return {};
}

std::vector<AAObjectWrapper> GetElementChildren(const AAObjectWrapper& element, LONG role) {
    return element.IsFullObject() ? GetAccChildren(element.container, role) : std::vector<AAObjectWrapper>();
}

std::vector<AAObjectWrapper> GetTableRows(const AAElement& table) {
    std::vector<AAObjectWrapper> rows;
    const auto add = [&rows](AAObjectWrapper&& row) {
        if (rows.size() < MostRows) rows.push_back(std::move(row));
    };
    for (AAObjectWrapper& child : GetElementChildren({table.spAcc, table.child})) {
        if (!child.IsValid() || rows.size() >= MostRows) continue;
        const LONG role = GetAccRole(child.container, child.childId);
        if (role == ROLE_SYSTEM_ROW) add(std::move(child));
        // One level deep: the head, body and foot of a table.
        else if (role == ROLE_SYSTEM_GROUPING)
            for (AAObjectWrapper& row : GetElementChildren(child, ROLE_SYSTEM_ROW)) add(std::move(row));
    }
    return rows;
}

}  // namespace Zorvex
