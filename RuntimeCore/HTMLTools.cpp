#include "RuntimeCore/HTMLTools.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComVariant.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "RuntimeCore/AAUtilitiesLocation.h"
#include "RuntimeCore/LateBinding.h"

namespace Zorvex {

namespace {

LONG Clamped(double value) {
    constexpr double Least = std::numeric_limits<LONG>::min(), Most = std::numeric_limits<LONG>::max();
    return static_cast<LONG>(std::clamp(std::round(value), Least, Most));
}

HRESULT GetClientObject(HWND hWnd, CComPtr<IAccessible>& out_acc) {
    const HRESULT result = ObjectFromWindow(hWnd, OBJID_CLIENT, out_acc);
    return SUCCEEDED(result) && out_acc ? S_OK : FailureOrEFail(result);
}

HRESULT DocumentOf(IDispatch* elementOrWindow, CComPtr<IHTMLDocument2>& out_doc) {
    CComPtr<IDispatch> spDocDisp;
    HRESULT result = LateBinding::GetDispatch(elementOrWindow, L"document", spDocDisp);
    if (FAILED(result)) return result;
    result = spDocDisp.QueryInterface(out_doc);
    return SUCCEEDED(result) && out_doc ? S_OK : FailureOrEFail(result);
}

template <class Interface>
HRESULT AskService(IServiceProvider* services, CComPtr<Interface>& out) {
    const HRESULT result = services->QueryService(IidOf<Interface>(), IidOf<Interface>(), reinterpret_cast<void**>(&out));
    return SUCCEEDED(result) && out ? S_OK : FailureOrEFail(result);
}

HRESULT ElementAt(IHTMLDocument2* doc, POINT pt, CComPtr<IDispatch>& out_element) {
    PagePlace place;
    if (const HRESULT result = GetPagePlace(doc, place); FAILED(result)) return result;
    const POINT css = place.ToCss(pt);
    return LateBinding::CallForDispatch(doc, L"elementFromPoint", {CComVariant(css.x), CComVariant(css.y)}, out_element);
}

}  // namespace

namespace HTMLTools {

HRESULT GetElementFromServices(IUnknown* object, CComPtr<IDispatch>& out_element) {
    out_element.Release();
    CComPtr<IServiceProvider> services;
    const HRESULT result = CComPtr<IUnknown>(object).QueryInterface(services);
    if (FAILED(result) || !services) return FailureOrEFail(result);
    // The body answers for both ids, other elements for the second alone. Either way it is asked by name only.
    CComPtr<IHTMLBodyElement> body;
    if (SUCCEEDED(AskService(services, body))) {
        out_element = body.p;
        return S_OK;
    }
    CComPtr<IHTMLElement> element;
    const HRESULT asked = AskService(services, element);
    out_element = element.p;
    return asked;
}

HRESULT GetDocumentFromIAccessible(IAccessible* acc, CComPtr<IHTMLDocument2>& out_doc) {
    out_doc.Release();
    CComPtr<IDispatch> element;
    if (SUCCEEDED(GetElementFromServices(acc, element))) {
        const HRESULT result = DocumentOf(element, out_doc);
        if (FAILED(result)) {
            LogError("HTMLTools::GetDocumentFromIAccessible: Cannot get spDoc from html element");
            return result;
        }
        LogVerbose("HTMLTools::GetDocumentFromIAccessible: Get a new doc from an html element");
        return S_OK;
    }
    CComPtr<IServiceProvider> services;
    CComPtr<IHTMLWindow2> window;
    HRESULT result = CComPtr<IAccessible>(acc).QueryInterface(services);
    if (SUCCEEDED(result)) result = services ? AskService(services, window) : E_FAIL;
    if (SUCCEEDED(result)) result = DocumentOf(window, out_doc);
    if (FAILED(result)) {
        LogError("HTMLTools::GetDocumentFromIAccessible: neither an html element nor an html window, hResult=0x%X", result);
        return result;
    }
    LogVerbose("HTMLTools::GetDocumentFromIAccessible: Get a new doc from an html window");
    return S_OK;
}

HRESULT GetDocumentFromWindow(HWND hWnd, CComPtr<IHTMLDocument2>& out_doc) {
    out_doc.Release();
    CComPtr<IAccessible> acc;
    const HRESULT result = GetClientObject(hWnd, acc);
    if (SUCCEEDED(result)) return GetDocumentFromIAccessible(acc, out_doc);
    LogError("HTMLTools::GetDocumentFromWindow: AccessibleObjectFromWindow failed, hResult=0x%X", result);
    return result;
}

HRESULT GetMostInnerDocFromPoint(HWND hWnd, POINT pt, CComPtr<IHTMLDocument2>& out_doc) {
    LogVerbose("HTMLTools::GetMostInnerDocFromPoint: enter");
    out_doc.Release();
    CComPtr<IAccessible> acc;
    HRESULT result = GetClientObject(hWnd, acc);
    if (FAILED(result)) {
        LogError("HTMLTools::GetMostInnerDocFromPoint: AccessibleObjectFromWindow failed");
        return result;
    }
    CComVariant vAccChild;
    result = acc->accHitTest(pt.x, pt.y, &vAccChild);
    if (FAILED(result)) {
        LogError("HTMLTools::GetMostInnerDocFromPoint: accHitTest failed");
        return result;
    }
    CComPtr<IAccessible> hit;
    if (vAccChild.vt == VT_DISPATCH) CComPtr<IDispatch>(vAccChild.pdispVal).QueryInterface(hit);
    else if (vAccChild.vt == VT_I4) hit = acc;  // itself, or a child without an object of its own
    if (!hit) {
        LogError("NULL value in vAccChild HTMLTools::GetMostInnerDocFromPoint");
        return E_FAIL;
    }
    result = GetDocumentFromIAccessible(hit, out_doc);
    if (FAILED(result)) {
        LogError("HTMLTools::GetMostInnerDocFromPoint: Cannot get spDoc");
        return result;
    }
    LogVerbose("HTMLTools::GetMostInnerDocFromPoint: return spDoc");
    return S_OK;
}

HRESULT GetElementFromPoint(HWND hWnd, POINT pt, CComPtr<IDispatch>& out_element) {
    LogVerbose("HTMLTools::GetElementFromPoint: enter hWnd=0x%p pt=(%d %d)", hWnd, pt.x, pt.y);
    out_element.Release();
    if (!NWindows::IsIEServerWindow(hWnd)) {
        LogError("HTMLTools::GetElementFromPoint: not an IE window");
        return E_INVALIDARG;
    }
    CComPtr<IHTMLDocument2> doc;
    HRESULT result = GetMostInnerDocFromPoint(hWnd, pt, doc);
    if (FAILED(result)) {
        LogError("HTMLTools::GetElementFromPoint: GetMostInnerDocFromPoint failed");
        return result;
    }
    result = ElementAt(doc, pt, out_element);
    if (FAILED(result)) LogError("HTMLTools::GetElementFromPoint: GetElementFromPoint failed");
    return result;
}

HRESULT HTMLToAccessible(IUnknown* element, CComPtr<IAccessible>& out_acc) {
    out_acc.Release();
    CComPtr<IServiceProvider> services;
    HRESULT result = CComPtr<IUnknown>(element).QueryInterface(services);
    if (FAILED(result) || !services) {
        LogError("Failed to QueryInterface for IServiceProvider");
        return FailureOrEFail(result);
    }
    result = AskService(services, out_acc);
    if (FAILED(result)) LogError("QueryService failed with 0x%X", result);
    return result;
}

}  // namespace HTMLTools

HRESULT GetObjectFromPoint(IHTMLDocument2* doc, POINT pt, CComPtr<IDispatch>& out_element) {
    out_element.Release();
    CComPtr<IDispatch> element;
    CString tag;
    HRESULT result = ElementAt(doc, pt, element);
    if (SUCCEEDED(result)) result = LateBinding::GetText(element, L"tagName", tag);
    if (FAILED(result)) {
        LogError("GetObjectFromPoint: no element at pt=(%d %d), hResult=0x%X", pt.x, pt.y, result);
        return result;
    }
    if (tag != L"OBJECT") return S_FALSE;
    out_element = element;
    return S_OK;
}

HRESULT GetAccessibleLocation(IAccessible* spAcc, RECT& out_rect) {
    return AAUtil::GetAALocation(spAcc, CComVariant(CHILDID_SELF), out_rect);
}

bool GetScreenToCssPxRatio(IDispatch* window, LONG* out_ratio) {
    LogVerbose("GetScreenToCssPxRatio: enter");
    if (!window || !out_ratio) {
        LogError("GetScreenToCssPxRatio: Invalid arguments");
        return false;
    }
    *out_ratio = 0;
    CComPtr<IHTMLWindow7> window7;
    if (FAILED(CComPtr<IDispatch>(window).QueryInterface(window7)) || !window7) {
        LogError("GetScreenToCssPxRatio: Cannot get IHTMLWindow7 interface");
        return false;
    }
    LONG innerWidth = 0, innerHeight = 0;
    // A negative size is as useless as none.
    HRESULT hRes = window7->get_innerWidth(&innerWidth);
    if (FAILED(hRes) || innerWidth <= 0) {
        LogError("GetScreenToCssPxRatio: failed to get window innerWidth or it is zero (in CSS coordinates) hRes=0x%X", hRes);
        return false;
    }
    hRes = window7->get_innerHeight(&innerHeight);
    if (FAILED(hRes) || innerHeight <= 0) {
        LogError("GetScreenToCssPxRatio: failed to get window innerHeight or it is zero (in CSS coordinates) hRes=0x%X", hRes);
        return false;
    }
    CComPtr<IAccessible> acc;
    RECT screen{};
    if (FAILED(HTMLTools::HTMLToAccessible(window, acc)) || FAILED(GetAccessibleLocation(acc, screen)) || ::IsRectEmpty(&screen)) {
        LogError("GetScreenToCssPxRatio: Cannot get window screen rectangle through AA or the rectangle is empty");
        return false;
    }
    const LONG nRatioX = Clamped((static_cast<double>(screen.right) - screen.left) * 100.0 / innerWidth);
    const LONG nRatioY = Clamped((static_cast<double>(screen.bottom) - screen.top) * 100.0 / innerHeight);
    *out_ratio = std::min(nRatioX, nRatioY);
    LogVerbose("GetScreenToCssPxRatio: return TRUE, pOutRatio = min(nRatioX=%ld nRatioY=%ld)", nRatioX, nRatioY);
    return true;
}

POINT PagePlace::ToCss(POINT screenPoint) const {
    return {Clamped((static_cast<double>(screenPoint.x) - screen.left) * 100.0 / ratio),
            Clamped((static_cast<double>(screenPoint.y) - screen.top) * 100.0 / ratio)};
}

RECT PagePlace::ToScreen(LONG left, LONG top, LONG width, LONG height) const {
    const double zoom = ratio / 100.0;
    return {Clamped(screen.left + left * zoom), Clamped(screen.top + top * zoom),
            Clamped(screen.left + (static_cast<double>(left) + width) * zoom), Clamped(screen.top + (static_cast<double>(top) + height) * zoom)};
}

HRESULT GetPagePlace(IHTMLDocument2* doc, PagePlace& out_place) {
    out_place = {};
    CComPtr<IDispatch> window;
    CComPtr<IAccessible> acc;
    HRESULT result = LateBinding::GetDispatch(doc, L"parentWindow", window);
    if (SUCCEEDED(result)) result = HTMLTools::HTMLToAccessible(window, acc);
    if (SUCCEEDED(result)) result = GetAccessibleLocation(acc, out_place.screen);
    if (FAILED(result)) {
        LogError("GetPagePlace: the document's window has no place, hResult=0x%X", result);
        return result;
    }
    LONG ratio = 0;
    if (GetScreenToCssPxRatio(window, &ratio) && ratio > 0) out_place.ratio = ratio;
    return S_OK;
}

}  // namespace Zorvex
