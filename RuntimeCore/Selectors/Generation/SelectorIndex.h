// The place of an element among those below a root that have the same attributes.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::Generation {

// The attributes that tell elements apart. An empty one isn't looked at. The role is compared as it stands; the others
// are wildcard patterns without regard to case.
struct IdentifyingAttributes {
    CString name = {};
    CString role = {};
    CString automationId = {};
    CString labeledBy = {};
    CString virtualName = {};

    bool IsEmpty() const {
        return name.empty() && role.empty() && automationId.empty() && labeledBy.empty() && virtualName.empty();
    }
};

// Whether the element has the attributes. Reads only as far as the first difference.
bool MatchesAttributes(const IdentifyingAttributes& wanted, IAccessible* acc, const VARIANT& childId);

// Walks the elements below `rootAcc` level by level. True: `index` is 0 if the element is the only match met, or is not
// below the root although there are matches, else its place from 1 among the matches. With `checkUnique` the walk goes
// on behind the element until a second match shows that the place matters; without it a first match has index 0. False:
// no match at all (`index` is -1), or the time or the number of elements that a walk may visit is used up (`index`
// says nothing).
bool GetAAIndex(IAccessible* rootAcc, IAccessible* acc, const VARIANT& childId, bool checkUnique, int timeoutMs,
                const IdentifyingAttributes& wanted, LONG& index);

// The place of the element from 1 among the matches below `rootAcc`, or below the window's object where `rootAcc` is
// null. The element itself counts as a match whatever its attributes are. False if it was not found; `index` is then
// the number of matches. There is no time limit; the walk gives up after AAUtil::MaximumSearchedElements elements.
bool GetSelectorIndexWithAttributes(HWND hParentWnd, IAccessible* rootAcc, IAccessible* acc, const VARIANT& childId,
                                    const IdentifyingAttributes& wanted, LONG& index);

}  // namespace Zorvex::Generation
