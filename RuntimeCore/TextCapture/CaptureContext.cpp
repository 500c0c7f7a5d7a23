#include "RuntimeCore/TextCapture/CaptureContext.h"

#include <utility>

#include "Common/include/Log.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace Zorvex {

CaptureContext::CaptureContext(DWORD dwFlags)
    : m_bExtractHighlightInfo(dwFlags & CaptureHighlightInfo),
      m_bIgnoreHidden(dwFlags & CaptureIgnoreHidden),
      m_bIgnoreOffscreen(dwFlags & CaptureIgnoreOffscreen) {}

bool CaptureContext::HasRoom(const CString& text, std::size_t units) {
    if (!m_bTextIsFull && text.size() <= LongestCapturedText && units <= LongestCapturedText - text.size()) return true;
    if (!std::exchange(m_bTextIsFull, true)) LogError("Text capture ends: the text would have more than %zu characters", LongestCapturedText);
    return false;
}

}  // namespace Zorvex
