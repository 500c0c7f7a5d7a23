#include "RuntimeCore/TextCapture/HtmlText.h"

#include <list>
#include <utility>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "RuntimeCore/AAUtilitiesLocation.h"
#include "RuntimeCore/IA2Tools.h"
#include "RuntimeCore/TextCapture/FilterRectangle.h"
#include "RuntimeCore/TextCapture/TextCollectorHtml.h"

namespace Zorvex {

namespace {

constexpr int MostBrowsedElements = 10240;
constexpr LONG IA2_ROLE_INTERNAL_FRAME = 0x418;

bool IsNumber(const CComVariant& value, LONG number) { return value.vt == VT_I4 && value.lVal == number; }
bool HasState(const CComVariant& state, LONG bit) { return state.vt == VT_I4 && (state.lVal & bit); }

}  // namespace

namespace IA2Tools {

namespace {

// What is read of one element before it is decided whether it gives text.
struct BrowsedElement {
    CComVariant role;
    CComVariant state;
    bool meetsFilter = true;
    bool isFrame = false;  // known only under a filter
};

HRESULT Read(IAccessible* spAccCrt, const RECT* prcFilter, BrowsedElement& element) {
    const CComVariant varChildSelf(CHILDID_SELF);
    HRESULT result = spAccCrt->get_accRole(varChildSelf, &element.role);
    if (FAILED(result))
        return CallFailed("spAccCrt->get_accRole(varChildSelf, &varRole)", result,
                          "IA2Tools::GetHtmlTextContent current IAccessible::get_accRole() failed");
    result = spAccCrt->get_accState(varChildSelf, &element.state);
    if (FAILED(result))
        return CallFailed("spAccCrt->get_accState(varChildSelf, &varState)", result,
                          "IA2Tools::GetHtmlTextContent current IAccessible::get_accState() failed");
    if (!prcFilter) return S_OK;

    RECT rcScreen{};
    result = AAUtil::GetAALocation(spAccCrt, varChildSelf, rcScreen);
    if (FAILED(result))
        return CallFailed("AAUtil::GetAALocation(spAccCrt, varChildSelf, rcScreen)", result,
                          "IA2Tools::GetHtmlTextContent failed to get current IAccessible screen location");
    LONG lIA2Role = 0;
    result = GetRole(spAccCrt, lIA2Role);
    if (FAILED(result))
        return CallFailed("IA2Tools::GetRole(spAccCrt, lIA2Role)", result, "IA2Tools::GetHtmlTextContent failed to get IAccessible2 Role");
    RECT rcCommon{};
    element.meetsFilter = ::IntersectRect(&rcCommon, &rcScreen, prcFilter);
    element.isFrame = lIA2Role == IA2_ROLE_INTERNAL_FRAME;
    return S_OK;
}

}  // namespace

HRESULT GetHtmlTextContent(IAccessible* pAccElem, bool bIgnoreHidden, bool bIgnoreOffscreen, const RECT* prcFilter, CString& out_text) {
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::GetHtmlTextContent IAccessible pointer is NULL");
    out_text.clear();
    LogVerbose("IA2Tools::GetHtmlTextContent Start bIgnoreHidden=%d", bIgnoreHidden);
    CTextCollectorHtml textCollector;
    std::list<CComPtr<IAccessible>> lstBrowse{CComPtr<IAccessible>(pAccElem)};
    int nBrowseCounter = 0;
    for (; !lstBrowse.empty(); ++nBrowseCounter) {
        if (nBrowseCounter >= MostBrowsedElements) {
            LogError("IA2Tools::GetHtmlTextContent Elements browsing counter limit exceeded, nBrowseCounter=%d", nBrowseCounter);
            return E_FAIL;
        }
        const CComPtr<IAccessible> spAccCrt = std::move(lstBrowse.front());
        lstBrowse.pop_front();
        if (!spAccCrt) {
            LogWarning("IA2Tools::GetHtmlTextContent Invalid IAccessible pointer in browsing stack, nBrowseCounter=%d", nBrowseCounter);
            continue;
        }
        BrowsedElement element;
        HRESULT result = Read(spAccCrt, prcFilter, element);
        if (FAILED(result)) return result;
        // Anything but a frame may have children outside its own rectangle.
        if (element.isFrame && !element.meetsFilter) {
            LogVerbose("IA2Tools::GetHtmlTextContent Filter-out by rectangle IFRAME element and contents");
            continue;
        }
        std::list<CComPtr<IAccessible>> lstCrtChildren;
        result = GetAccChildList(spAccCrt, lstCrtChildren);
        if (FAILED(result))
            return CallFailed("IA2Tools::GetAccChildList(spAccCrt, lstCrtChildren)", result,
                              "IA2Tools::GetHtmlTextContent failed to get IAccessible Children List");
        lstBrowse.splice(lstBrowse.begin(), lstCrtChildren);
        // What lies deeper in the stack than the limit reaches is never taken: elements with 100,000 children each
        // would only fill the memory.
        const std::size_t reachable = static_cast<std::size_t>(MostBrowsedElements - nBrowseCounter);
        if (lstBrowse.size() > reachable) lstBrowse.resize(reachable);

        // The text of a static text is in that of its container as well.
        if (nBrowseCounter > 0 && IsNumber(element.role, ROLE_SYSTEM_STATICTEXT)) continue;
        if (bIgnoreHidden && HasState(element.state, STATE_SYSTEM_INVISIBLE)) continue;
        if (bIgnoreOffscreen && HasState(element.state, STATE_SYSTEM_OFFSCREEN)) continue;
        if (!element.meetsFilter) continue;

        bool bLineForceNew = false;
        if (IsNumber(element.role, ROLE_SYSTEM_CHECKBUTTON) || IsNumber(element.role, ROLE_SYSTEM_RADIOBUTTON)) {
            LogVerbose(
                "IA2Tools::GetHtmlTextContent Force new line due to Chromium bug: Text coordinates are wrong for checkboxes and radio "
                "buttons");
            bLineForceNew = true;
        }
        result = textCollector.Append(spAccCrt, bLineForceNew);
        if (FAILED(result))
            return CallFailed("textCollector.Append(spAccCrt, bLineForceNew)", result,
                              "IA2Tools::GetHtmlTextContent failed to append current element text to result");
    }
    out_text = std::move(textCollector.m_strText);
    LogVerbose("IA2Tools::GetHtmlTextContent End OK, result text length: %u", static_cast<unsigned>(out_text.size()));
    return S_OK;
}

}  // namespace IA2Tools

HRESULT CaptureTextAA_IA2Html(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& out_text, bool bUseRectangleForIdentification) {
    LogVerbose("CaptureTextAA_IA2Html start");
    out_text.clear();
    CComPtr<IAccessible> spRoot;
    const HRESULT result = ObjectFromWindow(hWnd, OBJID_CLIENT, spRoot);
    if (FAILED(result) || !spRoot) {
        LogError("CaptureTextAA_IA2Html: failed to get IAccessible of Widget client area, hResult=0x%x hWnd=0x%p", result, hWnd);
        return FailureOrEFail(result);
    }
    if (prcFilter && bUseRectangleForIdentification) {
        LogVerbose("CaptureTextAA_IA2Html: identify AA Element by rectangle (l,t,r,b)=(%d,%d,%d,%d)", prcFilter->left, prcFilter->top,
                   prcFilter->right, prcFilter->bottom);
        CComPtr<IAccessible> spFound;
        CComVariant varChild;
        if (GetAAChildWithRectangle(spRoot, prcFilter, spFound, varChild) && IsNumber(varChild, CHILDID_SELF) && spFound.p != spRoot.p)
            spRoot = spFound;
        // Found or not, the rectangle has done its service.
        prcFilter = nullptr;
    }
    return IA2Tools::GetHtmlTextContent(spRoot, context.m_bIgnoreHidden, context.m_bIgnoreOffscreen, prcFilter, out_text);
}

}  // namespace Zorvex
