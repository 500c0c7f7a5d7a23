#include "RuntimeCore/IA2ToolsText.h"

#include <algorithm>
#include <string>

#include "Common/include/CComPtr.h"
#include "Common/include/CString.h"
#include "Common/include/Log.h"
#include "RuntimeCore/IA2Tools.h"

namespace Zorvex::IA2Tools {

namespace {

// The object replacement character, which stands for an embedded child, and the replacement character.
bool IsPlaceholder(wchar_t unit) { return unit == L'\xFFFC' || unit == L'\xFFFD'; }

}  // namespace

HRESULT GetText(IAccessible* pAccElem, CComBSTR& out_text) {
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::GetText IAccessible pointer is null");
    out_text.Empty();
    CComPtr<IAccessible2> spIA2;
    if (FAILED(GetIA2FromAccElem(pAccElem, spIA2)) || !spIA2) {
        LogVerbose("IA2Tools::GetText Cannot get IAccessible2");
        return S_OK;
    }
    CComPtr<IAccessibleText> spIAText;
    if (FAILED(spIA2.QueryInterface(spIAText)) || !spIAText) {
        LogVerbose("IA2Tools::GetText Cannot get IAccessibleText");
        return S_OK;
    }
    LONG nLen = 0;
    HRESULT result = spIAText->get_nCharacters(&nLen);
    if (FAILED(result))
        return CallFailed("spIAText->get_nCharacters(&nLen)", result, "IA2Tools::GetText IAccessibleText::get_nCharacters(...) failed");
    CComBSTR bstrText;
    result = spIAText->get_text(0, nLen, &bstrText);
    if (FAILED(result))
        return CallFailed("spIAText->get_text(0, nLen, &bstrText)", result, "IA2Tools::GetText IAccessibleText::get_text(...) failed");

    CString text = bstrText.ToString();
    const bool wasRemoved = std::erase_if(text, IsPlaceholder) != 0;
    if (wasRemoved && text.find_first_not_of(L"\r\n\t ") == CString::npos) {
        LogVerbose(
            "IA2Tools::GetText Return empty text for element composed of replacement and spacing characters only. Original length: %u",
            bstrText.Length());
        return S_OK;
    }
    out_text = wasRemoved ? CComBSTR(text) : std::move(bstrText);
    return S_OK;
}

}  // namespace Zorvex::IA2Tools
