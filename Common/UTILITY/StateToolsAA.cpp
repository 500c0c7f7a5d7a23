#include "Common/UTILITY/StateToolsAA.h"

#include "Common/UTILITY/NCOM.h"
#include "Common/include/Log.h"

namespace Zorvex::StateTools {

const std::map<LONG, const wchar_t*>& IA2StateTexts() {
    static const std::map<LONG, const wchar_t*> texts = {
        {0x1, L"active"},
        {0x2, L"armed"},
        {0x4, L"defunct"},
        {0x8, L"editable"},
        {0x10, L"horizontal"},
        {0x20, L"iconified"},
        {0x40, L"invalid entry"},
        {0x80, L"manages descendants"},
        {0x100, L"modal"},
        {0x200, L"multiline"},
        {0x400, L"opaque"},
        {0x800, L"required"},
        {0x1000, L"selectable text"},
        {0x2000, L"singleline"},
        {0x4000, L"stale"},
        {0x8000, L"autocomplete"},
        {0x10000, L"transient"},
        {0x20000, L"vertical"},
        // Spelled so on purpose: selectors in use hold this text.
        {0x40000, L"chekable"},
        {0x80000, L"pinned"},
    };
    return texts;
}

HRESULT GetAAState(CString& text, IAccessible* acc, const VARIANT& child, LONG ia2States) {
    if (!acc || child.vt != VT_I4) {
        LogError("Invalid argument(s) in CAAElement::GetAAState");
        return E_INVALIDARG;
    }
    const HRESULT result = N_COM::GetAAStateAsText(acc, child, text);
    if (FAILED(result))
        return CallFailed("N_COM::GetAAStateAsText (spAcc, vChildID, pResult)", result,
                          "CAAElement::GetAAState: N_COM::GetAAStateAsText failed");
    AppendIA2State(text, ia2States);
    return S_OK;
}

void AppendIA2State(CString& text, LONG ia2States) {
    if (ia2States == 0) return;
    CString states;
    for (const auto& [bit, name] : IA2StateTexts()) {
        if (!(ia2States & bit)) continue;
        if (!states.empty()) states += L", ";
        states += name;
    }
    if (states.empty()) return;
    if (!text.empty()) text += L", ";
    text += states;
    LogVerbose("StateTools::AppendIA2State Successfully appended IAccessible2 states, value=0x%x", ia2States);
}

}  // namespace Zorvex::StateTools
