// The rectangle functions, as published: an empty rectangle has no width or no height, and holds nothing.
#include <algorithm>

#include "Platform/Simulated/Sdk/User.h"

BOOL SetRect(RECT* rectangle, int left, int top, int right, int bottom) {
    *rectangle = {left, top, right, bottom};
    return TRUE;
}

BOOL IsRectEmpty(const RECT* rectangle) { return rectangle->left >= rectangle->right || rectangle->top >= rectangle->bottom; }

BOOL EqualRect(const RECT* a, const RECT* b) {
    return a->left == b->left && a->top == b->top && a->right == b->right && a->bottom == b->bottom;
}

BOOL PtInRect(const RECT* rectangle, POINT point) {
    return point.x >= rectangle->left && point.x < rectangle->right && point.y >= rectangle->top && point.y < rectangle->bottom;
}

BOOL IntersectRect(RECT* result, const RECT* a, const RECT* b) {
    RECT common = {std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right), std::min(a->bottom, b->bottom)};
    if (IsRectEmpty(a) || IsRectEmpty(b) || IsRectEmpty(&common)) common = {};
    *result = common;
    return !IsRectEmpty(result);
}
