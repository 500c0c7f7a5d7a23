#include "RuntimeCore/TextCapture/FilterRectangle.h"

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/Log.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

namespace {

// Sums and differences wrap around: the target may say any number.
LONG Sum(LONG left, LONG right) { return static_cast<LONG>(static_cast<DWORD>(left) + static_cast<DWORD>(right)); }
LONG Difference(LONG left, LONG right) { return static_cast<LONG>(static_cast<DWORD>(left) - static_cast<DWORD>(right)); }

// Four bits: whether each edge of the element lies before each edge of the filter.
unsigned SignFlags(LONG low, LONG high, LONG filterLow, LONG filterHigh) {
    return (low < filterLow ? 0x1u : 0u) | (low < filterHigh ? 0x2u : 0u) | (high < filterLow ? 0x4u : 0u) | (high < filterHigh ? 0x8u : 0u);
}

}  // namespace

RectangleRelation RectanglesIntersect(IAccessible* acc, const VARIANT& child, const RECT* prcFilter) {
    if (!acc) return RectangleRelation::Apart;
    if (!prcFilter) return RectangleRelation::Meets;
    LONG left = 0, top = 0, width = 0, height = 0;
    if (acc->accLocation(&left, &top, &width, &height, child) != S_OK) return RectangleRelation::Apart;
    // What begins left of or above the primary screen counts as apart; on purpose.
    if (left < 0 || top < 0 || width < 1 || height < 1) return RectangleRelation::Apart;
    const LONG right = Sum(left, width), bottom = Sum(top, height);
    LogVerbose("RectanglesIntersect: this=(%d %d %d %d) ref=(%d %d %d %d)", left, top, right, bottom, prcFilter->left, prcFilter->top,
               prcFilter->right, prcFilter->bottom);
    const unsigned flags = SignFlags(left, right, prcFilter->left, prcFilter->right) |
                           SignFlags(top, bottom, prcFilter->top, prcFilter->bottom) << 4;
    LogVerbose("RectanglesIntersect: SignFlagsX=0x%X", flags & 0x0F);
    if ((flags & 0x0F) == 0 || (flags & 0x0F) == 0x0F) return RectangleRelation::Apart;
    LogVerbose("RectanglesIntersect: SignFlagsY=0x%X", flags);
    if ((flags & 0xF0) == 0 || (flags & 0xF0) == 0xF0) return RectangleRelation::Apart;
    return flags == 0x33 ? RectangleRelation::Encloses : RectangleRelation::Meets;
}

bool GetAAChildWithRectangle(IAccessible* acc, const RECT* prcFilter, CComPtr<IAccessible>& outAcc, CComVariant& outChild) {
    outAcc.Release();
    outChild.Clear();
    if (!acc || !prcFilter) return false;
    std::size_t visited = 0;
    AAObjectWrapper::WalkDescendantsBfs(acc, [&](const AAObjectWrapper& element) {
        // A tree without end ends here.
        if (++visited > MostCapturedElements) return AATreeVisitResult::Stop;
        LONG x = 0, y = 0, width = 0, height = 0;
        if (element.container->accLocation(&x, &y, &width, &height, element.childId) != S_OK) return AATreeVisitResult::Continue;
        if (x != prcFilter->left || y != prcFilter->top || width != Difference(prcFilter->right, prcFilter->left) ||
            height != Difference(prcFilter->bottom, prcFilter->top))
            return AATreeVisitResult::Continue;
        outAcc = element.container;
        outChild = element.childId;
        return AATreeVisitResult::Stop;
    });
    return outAcc.p != nullptr;
}

}  // namespace Zorvex
