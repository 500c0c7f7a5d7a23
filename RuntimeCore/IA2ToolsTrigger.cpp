#include "RuntimeCore/IA2ToolsTrigger.h"

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "RuntimeCore/AAUtilitiesFind.h"
#include "RuntimeCore/IA2Tools.h"

namespace Zorvex::IA2Tools {

namespace {

constexpr int ContentDepth = 2;          // levels from the client object to the widget's content
constexpr LONG DocumentSearchDepth = 100;

// Under this name the lines of its steps stand as well.
constexpr char Operation[] = "TriggerAccChromium";

LONG NumberIn(const VARIANT& value) { return value.vt == VT_I4 ? value.lVal : 0; }

// Goes down from the client object by first children.
HRESULT GetWidgetContent(IAccessible* client, CComPtr<IAccessible>& content) {
    CComPtr<IAccessible> current = client;
    for (int level = 0; level < ContentDepth && current; ++level) {
        CComVariant child;
        const HRESULT result = AAObjectWrapper::GetChildAtIndex(current, 0, &child);
        if (FAILED(result) || child.vt != VT_DISPATCH) {
            LogError(LocatedFormat<char>(
                         "IA2Tools::TriggerAccChromium Cannot get level-%d child of Chromium Widget, hResult=0x%x, variantType=0x%x",
                         __builtin_FILE(), Operation),
                     level, result, child.vt);
            return FailureOrEFail(result);
        }
        CComPtr<IAccessible> next;
        if (FAILED(CComPtr<IDispatch>(child.pdispVal).QueryInterface(next))) next.Release();
        current = std::move(next);
    }
    if (!current) {
        LogError(LocatedFormat<char>("IA2Tools::TriggerAccChromium Cannot get IAccessible of Chromium Widget content", __builtin_FILE(), Operation));
        return E_FAIL;
    }
    content = std::move(current);
    return S_OK;
}

}  // namespace

HRESULT TriggerAccChromiumContainer(IAccessible* spAccContainer) {
    if (!spAccContainer) return ParameterConditionNotMet("spAccContainer", "TriggerAccChromiumContainer: IAccessible pointer is null");
    CComVariant varRole;
    HRESULT result = spAccContainer->get_accRole(CComVariant(CHILDID_SELF), &varRole);
    if (FAILED(result))
        return CallFailed("spAccContainer->get_accRole(CComVariant(CHILDID_SELF), &varRole)", result,
                          "TriggerAccChromiumContainer: IAcc->get_accRole() failed");
    CComVariant varState;
    result = spAccContainer->get_accState(CComVariant(CHILDID_SELF), &varState);
    if (FAILED(result))
        return CallFailed("spAccContainer->get_accState(CComVariant(CHILDID_SELF), &varState)", result,
                          "TriggerAccChromiumContainer: IAcc->get_accState() failed");
    CComPtr<IAccessible2> spIA2Container;
    result = GetIA2FromAccElem(spAccContainer, spIA2Container);
    if (FAILED(result) || !spIA2Container) {
        CallFailed("IA2Tools::GetIA2FromAccElem(spAccContainer, spIA2Container)", result,
                   "TriggerAccChromiumContainer: failed to get IAccessible2");
        return FailureOrEFail(result);
    }
    LONG lIA2States = 0;
    result = spIA2Container->get_states(&lIA2States);
    if (FAILED(result))
        return CallFailed("spIA2Container->get_states(&lIA2States)", result, "TriggerAccChromiumContainer: IA2->get_states() failed");
    LONG nChildCount = 0;
    result = spIA2Container->get_accChildCount(&nChildCount);
    if (FAILED(result))
        return CallFailed("spIA2Container->get_accChildCount(&nChildCount)", result,
                          "TriggerAccChromiumContainer: IA2->get_accChildCount() failed");
    LogVerbose("TriggerAccChromiumContainer: End state=0x%08x role=0x%x childCount=%d", NumberIn(varState), NumberIn(varRole), nChildCount);
    return S_OK;
}

HRESULT TriggerAccChromium(HWND hWnd) {
    if (!NWindows::IsChromeWidgetClass(hWnd)) return E_INVALIDARG;
    LogVerbose("IA2Tools::TriggerAccChromium Start hWnd=0x%p", hWnd);
    CComPtr<IAccessible> spAccClient;
    HRESULT result = ObjectFromWindow(hWnd, OBJID_CLIENT, spAccClient);
    if (FAILED(result) || !spAccClient) {
        LogError("IA2Tools::TriggerAccChromium Cannot get IAccessible of Widget Client area, hWnd=0x%p hResult=0x%x", hWnd, result);
        return FailureOrEFail(result);
    }
    result = TriggerAccChromiumContainer(spAccClient);
    if (FAILED(result)) return CallFailed("IA2Tools::TriggerAccChromiumContainer(spAccClient)", result, "");

    CComPtr<IAccessible> spAccContent;
    result = GetWidgetContent(spAccClient, spAccContent);
    if (FAILED(result)) return result;
    // A content that refuses an answer has been asked all the same: the way goes on to the document.
    result = TriggerAccChromiumContainer(spAccContent);
    if (FAILED(result)) CallFailed("IA2Tools::TriggerAccChromiumContainer(spAccContent)", result, "");

    const AANode documentElement = AAUtil::FindElementWithRole(hWnd, ROLE_SYSTEM_DOCUMENT, DocumentSearchDepth);
    if (documentElement.IsValid()) {
        result = TriggerAccChromiumContainer(documentElement.container);
        if (FAILED(result)) return CallFailed("IA2Tools::TriggerAccChromiumContainer(documentElement.GetContainer())", result, "");
    }
    LogVerbose("IA2Tools::TriggerAccChromium End hWnd=0x%p", hWnd);
    return S_OK;
}

}  // namespace Zorvex::IA2Tools
