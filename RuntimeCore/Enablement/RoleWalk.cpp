#include "RuntimeCore/Enablement/RoleWalk.h"

#include <algorithm>

#include "RuntimeCore/AttributeRules.h"
#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {

CString RoleTextOf(const AANode& node) {
    CString text;
    if (FAILED(AttributeRules::ReadRole(node.container, node.childId, text))) text.clear();
    return text;
}

bool IsRoleText(const CString& text, const wchar_t* role) {
    const std::wstring_view wanted = role;
    return std::equal(text.begin(), text.end(), wanted.begin(), wanted.end(),
                      [](wchar_t left, wchar_t right) { return ToLower(left) == ToLower(right); });
}

void LogRole(const CString& text, unsigned depth) { LogVerbose(L"%*s%s", depth * 2, L"", text); }

}  // namespace Zorvex
