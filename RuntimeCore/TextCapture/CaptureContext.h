// What one capture of text carries along: its settings and the places of its lines, and what the walk knows about the
// way down to an element.
#pragma once

#include <memory>
#include <vector>

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/ListViewItems.h"
#include "RuntimeCore/Requests/Records.h"

namespace Zorvex {

// A captured text ends here, in UTF-16 units: the target may name its elements as it likes.
inline constexpr std::size_t LongestCapturedText = std::size_t(1) << 25;
// No capture looks at more elements, cells or shapes than this: the target's tree may have no end.
inline constexpr std::size_t MostCapturedElements = 1'000'000;

// Lives for one request.
class CaptureContext {
public:
    bool m_bExtractHighlightInfo = false;  // gather the place of each line too
    bool m_bNoIndent = false;              // no tabs ahead of tree items; set by the tree view capture alone
    bool m_bIgnoreHidden = false;          // leave out what is STATE_SYSTEM_INVISIBLE
    bool m_bIgnoreOffscreen = false;       // leave out list items that are STATE_SYSTEM_OFFSCREEN
    bool m_bIsIETopFrame = false;          // set only during CaptureTextAA_Generic, for an old browser on an old system
    std::vector<HighlightInfo> highlights;  // in the order of capture

    CaptureContext() = default;
    // `dwFlags` are CaptureFlags.
    explicit CaptureContext(DWORD dwFlags);

    // Whether so many units more may be appended to `text`. After the first refusal, which is logged, nothing fits any
    // more: a text has no gaps.
    bool HasRoom(const CString& text, std::size_t units);
    bool IsFull() const noexcept { return m_bTextIsFull; }

private:
    bool m_bTextIsFull = false;
};

// Every level of a walk has one of its own, made from that of the level above.
struct CaptureParseContext {
    bool bIsWpf = false;
    bool bInWpfRows = false;  // a list or list item of a WPF window was passed on the way down
    LONG parentRole = 0;
    // Empty unless the parent gave text.
    CString bstrCrntParentName;
    CString bstrCrntParentValue;
    HWND hWnd = nullptr;
    std::shared_ptr<SysListViewColumnInfo> listViewInfo;  // null outside a list view with columns
};

}  // namespace Zorvex
