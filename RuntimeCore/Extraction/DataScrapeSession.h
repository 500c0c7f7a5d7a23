// What one extraction of a table saw: the IAccessible2 unique ids of its cells, by which a later extraction can tell
// whether the page is still the same.
#pragma once

#include <vector>

#include "Common/include/CComBSTR.h"
#include "Platform/Windows.h"

namespace Zorvex {

class DataScrapeSession {
public:
    // Only the windows of browsers whose elements have unique ids can have a session. Warns if this one can't.
    DataScrapeSession(HWND hWnd, CComBSTR sessionId);

    // Whether there is anything to remember: the window of such a browser, and an id to remember it under.
    bool IsCompatible() const noexcept { return m_compatible && !m_sessionId.IsEmpty(); }

    // Notes the unique id of the element. One without turns AllElementsIdentified off, with a warning. Does nothing in
    // an incompatible session. A null element has no id.
    void AddElementIdentifier(IAccessible* acc);

    const CComBSTR& SessionId() const noexcept { return m_sessionId; }
    bool AllElementsIdentified() const noexcept { return m_allElementsIdentified; }
    // The ids seen: in ascending order, each once.
    const std::vector<LONG>& ElementIds();

private:
    bool m_compatible = false;
    bool m_allElementsIdentified = true;
    bool m_isSorted = true;
    CComBSTR m_sessionId;
    // A plain list: it stays in memory from one extraction to the next, and a tree would take ten times as much.
    std::vector<LONG> m_elementIds;
};

}  // namespace Zorvex
