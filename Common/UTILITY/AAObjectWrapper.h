// The value that stands for one accessible element, and the one place where the children of an element are read.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Windows.h"

namespace Zorvex {

// What a visitor of WalkDescendantsBfs answers. Any value but Stop goes on.
enum class AATreeVisitResult : int { Continue = 0, Stop = 1 };

// Copied freely; a copy owns a reference and a variant of its own. A default element is invalid.
class AAObjectWrapper {
public:
    AAObjectWrapper() noexcept = default;
    AAObjectWrapper(CComPtr<IAccessible> spContainer, CComVariant child) noexcept
        : container(std::move(spContainer)), childId(std::move(child)) {}

    // The accessible object that answers for the element; null in an invalid element.
    CComPtr<IAccessible> container;
    // VT_I4: 0 (CHILDID_SELF) is the container itself, anything else a simple element that the container answers for.
    CComVariant childId;

    bool IsValid() const noexcept { return container.p != nullptr && childId.vt == VT_I4; }
    // A valid element that is its container: only such a one can have children.
    bool IsFullObject() const noexcept { return IsValid() && childId.lVal == CHILDID_SELF; }

    // The element's children. A simple or invalid element has none: `out` is cleared and the answer is false.
    bool GetChildren(std::vector<AAObjectWrapper>& out) const;

    // The element behind one raw child: invalid for another type than VT_I4 and VT_DISPATCH, and for an object that is
    // no IAccessible. Takes the child out of `raw`, so that a list of children and its elements never hold two
    // references.
    static AAObjectWrapper FromChild(IAccessible* parent, CComVariant raw);

    // The raw children of `parent`: VT_I4 child ids, VT_DISPATCH objects, and whatever else a bad server sends.
    // S_OK with an empty list when there are none. A failure, also a positive result of the count, leaves `out`
    // empty. A count below 0 or of 1,000,000 and more is garbage: E_FAIL.
    static HRESULT GetVariantChildren(IAccessible& parent, std::vector<CComVariant>& out);

    // The children of `parent` as elements, in its order, one for each child obtained. A child that can't be made
    // an element stays in the list as an invalid one, so every consumer tests for validity. False when the
    // children could not be read (then `out` is empty); a null parent has no children and answers false.
    static bool GetChildren(IAccessible* parent, std::vector<AAObjectWrapper>& out);

    // One raw child by its position from 0. `out` must be initialised, is cleared first, and stays empty on
    // failure. Null arguments answer E_INVALIDARG.
    static HRESULT GetChildAtIndex(IAccessible* parent, int index, VARIANT* out);

    // Visits all descendants of `root` level by level, never the root itself. Simple elements are visited but not
    // entered; invalid ones are skipped; a node whose children can't be read is passed over. False only without a
    // visitor. A null root throws ComException(E_FAIL). Nothing limits the walk but the tree and the visitor.
    static bool WalkDescendantsBfs(IAccessible* root, const std::function<AATreeVisitResult(const AAObjectWrapper&)>& visitor);
};

// An element in a log line: "<null object>", the address alone for a full object, address and child id for a
// simple element. A child id that is no VT_I4 counts as 0.
std::string ElementDebugText(const IAccessible* object, const VARIANT& child);

}  // namespace Zorvex
