// The selected children of an element.
#pragma once

#include <vector>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

enum class SelectionResult : int { Failure = 0, Success = 1, NotSupported = 2 };
enum class SelectionExtent { All, FirstOnly };

// No more items than this are taken from one selection: an enumerator may never end.
constexpr ULONG MaximumSelectedChildren = 1'000'000;

// Appends the selected children to `outChildren`, as child ids of `outContainer` (VT_I4) or as objects of their
// own (VT_DISPATCH). Success with nothing appended means that nothing is selected; `outContainer` may then be
// null. A null element is a Failure.
SelectionResult GetSelectedChildren(IAccessible* pAccElem, CComPtr<IAccessible>& outContainer,
                                    std::vector<CComVariant>& outChildren, SelectionExtent extent);

// Whether the element's role can hold selected items, and the role text of such an item.
bool HasSelectSupport(IAccessible* spAcc, const VARIANT& varChild, CString& outExpectedItemRole);

}  // namespace Zorvex::AAUtil
