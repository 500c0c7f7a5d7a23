#include "RuntimeCore/Extraction/DataScrapeSession.h"

#include <algorithm>
#include <utility>

#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"
#include "RuntimeCore/IA2Tools.h"

namespace Zorvex {

DataScrapeSession::DataScrapeSession(HWND hWnd, CComBSTR sessionId)
    : m_compatible(NWindows::IsChromeWidgetClass(hWnd) || NWindows::IsFirefoxWindow(hWnd)), m_sessionId(std::move(sessionId)) {
    if (!IsCompatible()) LogWarning("DataScrapeSession for AA is not compatible with the current hWnd & sessionID.");
}

void DataScrapeSession::AddElementIdentifier(IAccessible* acc) {
    if (!IsCompatible()) return;
    LONG id = 0;
    if (FAILED(IA2Tools::GetUniqueID(acc, id))) {
        m_allElementsIdentified = false;
        LogWarning("could not get IA2 uniqueID for element. We will not be able to detect the session for this extraction.");
        return;
    }
    m_elementIds.push_back(id);
    m_isSorted = false;
}

const std::vector<LONG>& DataScrapeSession::ElementIds() {
    if (!m_isSorted) {
        std::sort(m_elementIds.begin(), m_elementIds.end());
        m_elementIds.erase(std::unique(m_elementIds.begin(), m_elementIds.end()), m_elementIds.end());
        m_elementIds.shrink_to_fit();
        m_isSorted = true;
    }
    return m_elementIds;
}

}  // namespace Zorvex
