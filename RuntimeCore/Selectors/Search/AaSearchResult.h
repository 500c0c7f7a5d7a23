// An accessible element met by the search.
#pragma once

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Windows.h"
#include "RuntimeCore/Selectors/Search/OwnerWindow.h"
#include "RuntimeCore/Selectors/Unified/SearchResultBase.h"

namespace Zorvex::Search {

class AaSearchResult final : public SearchResultBase {
public:
    // An element without an accessible: nothing can be read from it.
    AaSearchResult() : child(CHILDID_SELF) {}
    AaSearchResult(CComPtr<IAccessible> elementAccessible, CComVariant elementChild, OwnerWindow window, double sample = 1.0);

    // Renews the owner window. `withRectangle` also fills the rectangle, which stays zero for an element off the
    // screen or one whose place can't be read.
    void UpdateLocation(bool withRectangle) override;
    bool IsSelf() const override { return child.lVal == CHILDID_SELF; }
    // An element that can't say where it is counts as visible; one with an empty rectangle doesn't.
    bool IsVisible() const override;
    bool IsValid() const override { return accessible.p != nullptr; }

    CComPtr<IAccessible> accessible;
    CComVariant child;           // VT_I4
    OwnerWindow ownerWindow;     // the window that the element was met in; null when unknown
    RECT rectangle{};            // screen coordinates
};

}  // namespace Zorvex::Search
