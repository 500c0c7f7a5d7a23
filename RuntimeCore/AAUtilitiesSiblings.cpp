#include "RuntimeCore/AAUtilitiesSiblings.h"

#include "Common/include/Log.h"
#include "Common/include/Timer.h"
#include "RuntimeCore/AAUtilitiesOwnerWindow.h"
#include "RuntimeCore/AccChildReaders.h"
#include "RuntimeCore/CompareAAObjects.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace Zorvex::AAUtil {

LONG GetIndexInSiblings(HWND hWnd, IAccessible* acc, const VARIANT& child, IAccessible* parent, DWORD flags, LONG timeoutMs,
                        std::vector<SiblingElement>& outSiblings) {
    outSiblings.clear();
    const std::vector<AAObjectWrapper> children = GetAccChildren(parent);
    // An only child is the first one, whatever it is.
    if (children.size() < 2) return 0;
    Timer timer(timeoutMs);
    const bool allowFallback = (flags & (AncestryStrictOwner | AncestryOwnerFallback)) != 0;
    outSiblings.reserve(children.size() - 1);
    LONG index = -1;
    for (std::size_t position = 0; position < children.size(); ++position) {
        if (timer.Remaining() < 1) {
            LogWarning("GetIndexInSiblings: the %d ms timeout has expired while getting siblings, not critical", timeoutMs);
            return index;
        }
        const AAObjectWrapper& candidate = children[position];
        if (index == -1 && CompareAAObjects(candidate.container, candidate.childId, acc, child, FALSE)) {
            index = static_cast<LONG>(position);
            continue;
        }
        // It has its place, but there is nothing to hand out.
        if (!candidate.IsValid()) continue;
        outSiblings.push_back({GetIAccOwnerWindow(hWnd, candidate.container, allowFallback), candidate.container, candidate.childId});
    }
    return index;
}

}  // namespace Zorvex::AAUtil
