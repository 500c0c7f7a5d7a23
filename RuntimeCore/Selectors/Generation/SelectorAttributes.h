// The attributes by which a selector names an element: the fewest that do, and all that it has.
#pragma once

#include <span>

#include "Common/include/AAElement.h"
#include "Common/include/CString.h"
#include "RuntimeCore/Requests/Records.h"

namespace Zorvex::Generation {

// The fewest attributes that identify the element among those below the scope: `rootAcc`, or the object of
// `hParentWnd` where that is null. Only attributes with a text are in the map, under the names "name", "role",
// "automationid", "labeledby", "virtualname". Long texts and trailing numbers come as wildcard patterns. `index` is 0
// where the attributes suffice or `computeIndex` is false, else the place among the matches; a search that fails or
// runs out of time gives 0 as well. False, with `index` -1 and no attributes, for an invalid argument, a window
// without an object, and, with `computeIndex`, an element without any attribute.
bool GetMinimalSelectorAttributes(HWND hParentWnd, IAccessible* rootAcc, IAccessible* acc, const VARIANT& childId, bool computeIndex,
                                  bool checkUnique, int timeoutMs, AttributeTexts& attributes, LONG& index);

// Every attribute of the handler table that has a text, but for the names in `leaveOut`. `strictOwner` is handed to
// the handlers. Empty for an element without an object.
void GetAllSelectorAttributes(const AAElement& element, bool strictOwner, std::span<const CString> leaveOut, AttributeTexts& attributes);
void GetAllSelectorAttributes(const AAElement& element, bool strictOwner, const AttributeTexts& leaveOut, AttributeTexts& attributes);

}  // namespace Zorvex::Generation
