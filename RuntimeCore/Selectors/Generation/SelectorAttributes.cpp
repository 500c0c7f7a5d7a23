#include "RuntimeCore/Selectors/Generation/SelectorAttributes.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "Common/include/Timer.h"
#include "RuntimeCore/AaAttrHandler.h"
#include "RuntimeCore/AttributeRules.h"
#include "RuntimeCore/Selectors/Generation/SelectorIndex.h"

namespace Zorvex::Generation {

namespace {

// Longer texts change from run to run, and selectors are read by people.
constexpr std::size_t LongestAttribute = 64;

// A longer text becomes the pattern of its beginning.
void Truncate(CString& text) {
    if (text.size() <= LongestAttribute) return;
    text.resize(LongestAttribute);
    text += L'*';
}

// A number in parentheses at the end counts copies of a window or a document: "Report (12)" becomes "Report (*)".
// As an expression with the group in braces it would be "{\\([0-9]+\\)}$".
void MaskTrailingNumber(CString& text) {
    if (text.empty() || text.back() != L')') return;
    const std::size_t closing = text.size() - 1;
    std::size_t digits = closing;
    while (digits > 0 && text[digits - 1] >= L'0' && text[digits - 1] <= L'9') --digits;
    if (digits == closing || digits == 0 || text[digits - 1] != L'(') return;
    text.replace(digits - 1, CString::npos, L"(*)");
}

CString ReadVirtualNameOf(IAccessible* acc, const VARIANT& childId) {
    CString text;
    AttributeRules::ReadVirtualName(acc, childId, text);
    return text;
}

// The public function, into the five texts.
bool GetMinimalSelectorAttributes(HWND hParentWnd, IAccessible* rootAcc, IAccessible* acc, const VARIANT& childId, bool computeIndex,
                                  bool checkUnique, int timeoutMs, IdentifyingAttributes& found, LONG& index) {
    LogVerbose("GetMinimalSelectorAttributes: Enter");
    found = {};
    index = -1;
    if (!::IsWindow(hParentWnd) || !acc || childId.vt != VT_I4) {
        LogError("GetMinimalSelectorAttributes: Invalid input params hParentWnd=0x%p spAccElem=0x%p vAccChild.vt=%d",
                 static_cast<const void*>(hParentWnd), static_cast<const void*>(acc), childId.vt);
        return false;
    }
    Timer timer(timeoutMs);
    CComPtr<IAccessible> root(rootAcc);
    if (computeIndex && !root) {
        const HRESULT result = ObjectFromWindow(hParentWnd, OBJID_WINDOW, root);
        if (FAILED(result) || !root) {
            LogError("GetMinimalSelectorAttributes: AccessibleObjectFromWindow failed");
            return false;
        }
    }

    const HRESULT automationIdResult = AttributeRules::ReadAutomationId(acc, childId, found.automationId);
    const bool hasAutomationId = SUCCEEDED(automationIdResult) && !found.automationId.empty();
    if (hasAutomationId) {
        if (computeIndex) MaskTrailingNumber(found.automationId);
        Truncate(found.automationId);
    }
    if (hasAutomationId && computeIndex) {
        // Where it suffices nothing else is read: most elements that have one are told apart by it.
        if (GetAAIndex(root, acc, childId, checkUnique, timer.Remaining(), found, index) && index < 1) return true;
    }
    if (!hasAutomationId || computeIndex) {
        AttributeRules::ReadName(acc, childId, found.name);
        AttributeRules::ReadRole(acc, childId, found.role);
        if (found.name.empty()) found.virtualName = ReadVirtualNameOf(acc, childId);
        if (SUCCEEDED(automationIdResult)) AttributeRules::ReadLabeledBy(acc, childId, found.labeledBy);
        Truncate(found.name);
        Truncate(found.labeledBy);
    }
    if (computeIndex) {
        if (found.IsEmpty()) return false;
        // The index is the best that can be had: a search without an end leaves the attributes as good as they are.
        if (!GetAAIndex(root, acc, childId, checkUnique, timer.Remaining(), found, index)) index = 0;
    } else {
        index = 0;
    }
    LogVerbose("GetMinimalSelectorAttributes: Exit");
    return true;
}

}  // namespace

bool GetMinimalSelectorAttributes(HWND hParentWnd, IAccessible* rootAcc, IAccessible* acc, const VARIANT& childId, bool computeIndex,
                                  bool checkUnique, int timeoutMs, AttributeTexts& attributes, LONG& index) {
    attributes.clear();
    IdentifyingAttributes found;
    if (!GetMinimalSelectorAttributes(hParentWnd, rootAcc, acc, childId, computeIndex, checkUnique, timeoutMs, found, index)) return false;
    const auto add = [&](const wchar_t* name, CString& text) {
        if (!text.empty()) attributes.emplace(name, std::move(text));
    };
    add(L"name", found.name);
    add(L"role", found.role);
    add(L"automationid", found.automationId);
    add(L"labeledby", found.labeledBy);
    add(L"virtualname", found.virtualName);
    return true;
}

void GetAllSelectorAttributes(const AAElement& element, bool strictOwner, std::span<const CString> leaveOut, AttributeTexts& attributes) {
    attributes.clear();
    LogVerbose("GetAllSelectorAttributes: enter");
    if (!element.spAcc) {
        LogError("GetAllSelectorAttributes: null acc object, return FALSE");
        return;
    }
    LogVerbose("GetAllSelectorAttributes: return CAttrHandlerAA::GetAllSelectorAttributes");
    for (const auto& [name, handler] : AaAttrHandler::Instance().Handlers()) {
        if (std::ranges::find(leaveOut, name) != leaveOut.end()) continue;
        CComBSTR text;
        const HRESULT result = handler(element.hWnd, *element.spAcc, element.child, strictOwner, text);
        if (SUCCEEDED(result) && !text.IsEmpty()) attributes.emplace(name, text.ToString());
    }
}

void GetAllSelectorAttributes(const AAElement& element, bool strictOwner, const AttributeTexts& leaveOut, AttributeTexts& attributes) {
    std::vector<CString> names;
    for (const auto& [name, text] : leaveOut) names.push_back(name);
    GetAllSelectorAttributes(element, strictOwner, names, attributes);
}

}  // namespace Zorvex::Generation
