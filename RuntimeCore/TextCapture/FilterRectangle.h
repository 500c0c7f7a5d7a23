// The rectangle that a capture is limited to, or that names one element by its place. Screen pixels.
#pragma once

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Windows.h"

namespace Zorvex {

// How an element's rectangle meets a filter.
enum class RectangleRelation : int {
    Apart = 0,
    Meets = 1,
    Encloses = 2,  // the filter lies inside the element, apart from its left and top edges
};

// No filter meets every element, and the location isn't read. An element whose location can't be read, is empty, or has
// a negative left or top edge is apart from every filter.
RectangleRelation RectanglesIntersect(IAccessible* acc, const VARIANT& child, const RECT* prcFilter);

// The first descendant of `acc`, level by level, that lies exactly in the rectangle. False, with both outputs empty, if
// none does among the first 1,000,000.
bool GetAAChildWithRectangle(IAccessible* acc, const RECT* prcFilter, CComPtr<IAccessible>& outAcc, CComVariant& outChild);

}  // namespace Zorvex
