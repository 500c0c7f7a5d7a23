#include "RuntimeCore/TextCapture/TextCollectorHtml.h"

#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "RuntimeCore/IA2Tools.h"
#include "RuntimeCore/IA2ToolsText.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

namespace {

// The share of a character's height that counts for its line: what begins lower is on the next one.
constexpr std::int64_t LineShare = 8, LineWhole = 10;

// A target may say any numbers: the product is taken in 64 bits, the sum wraps around.
LONG LineBottom(LONG y, LONG height) {
    return static_cast<LONG>(static_cast<ULONG>(y) + static_cast<ULONG>(std::int64_t{height} * LineShare / LineWhole));
}

}  // namespace

HRESULT CTextCollectorHtml::Append(IAccessible* spAccElem, bool bLineForceNew) {
    m_bLineForceNew = m_bLineForceNew || bLineForceNew;
    CComBSTR bstrCrt;
    const HRESULT textResult = IA2Tools::GetText(spAccElem, bstrCrt);
    if (FAILED(textResult))
        return CallFailed("IA2Tools::GetText(spAccElem, bstrCrt)", textResult, "CTextCollectorHtml::Append failed to get element text");
    if (bstrCrt.IsEmpty()) return S_OK;

    bool bLineChanged = true;
    const HRESULT lineResult = LineUpdate(spAccElem, bLineChanged);
    if (FAILED(lineResult)) {
        LogWarning("CTextCollectorHtml::Append failed to update current line coordinates, insert new line, hResult=0x%x", lineResult);
        // This element begins a line, and so does the one after it: its line's end isn't known.
        m_bLineForceNew = true;
        bLineChanged = true;
    }
    const std::wstring_view separator = m_strText.empty() ? L"" : bLineChanged ? L"\r\n" : L" ";
    if (m_strText.size() + separator.size() + bstrCrt.Length() > LongestCapturedText) {
        LogError("CTextCollectorHtml::Append the text would have more than %zu characters", LongestCapturedText);
        return E_OUTOFMEMORY;
    }
    m_strText += separator;
    m_strText += bstrCrt.View();
    LogVerbose("CTextCollectorHtml::Append End, bLineChanged=%d nTextLenCrt=%u nTextLenAll=%d", bLineChanged, bstrCrt.Length(),
               static_cast<int>(m_strText.size()));
    return S_OK;
}

HRESULT CTextCollectorHtml::LineUpdate(IAccessible* spAccElem, bool& bLineChanged) {
    bLineChanged = false;
    CComPtr<IAccessible2> spIA2Elem;
    HRESULT result = IA2Tools::GetIA2FromAccElem(spAccElem, spIA2Elem);
    if (FAILED(result) || !spIA2Elem) {
        CallFailed("IA2Tools::GetIA2FromAccElem(spAccElem, spIA2Elem)", result, "CTextCollectorHtml::LineUpdate failed to get IAccessible2");
        return FailureOrEFail(result);
    }
    CComPtr<IAccessibleText> spIATextElem;
    result = spIA2Elem.QueryInterface(spIATextElem);
    if (FAILED(result) || !spIATextElem) {
        CallFailed("spIA2Elem->QueryInterface(&spIATextElem)", result, "CTextCollectorHtml::LineUpdate failed to get IAccessibleText");
        return FailureOrEFail(result);
    }
    LONG x = 0, y = 0, w = 0, h = 0;
    result = spIATextElem->get_characterExtents(0, IA2_COORDTYPE_SCREEN_RELATIVE, &x, &y, &w, &h);
    if (FAILED(result))
        return CallFailed("spIATextElem->get_characterExtents(0, IA2_COORDTYPE_SCREEN_RELATIVE, &x, &y, &w, &h)", result,
                          "CTextCollectorHtml::LineUpdate failed to get first character screen coordinate");
    if (m_bLineForceNew || y > m_nLineBootom) {
        m_bLineForceNew = false;
        bLineChanged = true;
        m_nLineBootom = LineBottom(y, h);
    }
    LogVerbose("CTextCollectorHtml::LineUpdate End S_OK, bLineChanged=%d, m_nLineBootom=%d, (x,y,w,h)=(%d,%d,%d,%d)", bLineChanged,
               m_nLineBootom, x, y, w, h);
    return S_OK;
}

}  // namespace Zorvex
