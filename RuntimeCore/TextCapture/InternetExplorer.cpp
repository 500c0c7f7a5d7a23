#include "RuntimeCore/TextCapture/InternetExplorer.h"

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "RuntimeCore/HTMLTools.h"
#include "RuntimeCore/LateBinding.h"
#include "RuntimeCore/TextCapture/HtmlMarkers.h"
#include "RuntimeCore/TextCapture/HtmlPage.h"
#include "RuntimeCore/TextCapture/HtmlPageText.h"

namespace Zorvex {

namespace {

bool IsSameObject(IUnknown* left, IUnknown* right) {
    CComPtr<IUnknown> leftIdentity, rightIdentity;
    return SUCCEEDED(CComPtr<IUnknown>(left).QueryInterface(leftIdentity)) &&
           SUCCEEDED(CComPtr<IUnknown>(right).QueryInterface(rightIdentity)) && leftIdentity &&
           leftIdentity.p == rightIdentity.p;
}

// The innermost document that holds both corners of the filter, else the document of the window.
HRESULT GetDocumentOfFilter(HWND hWnd, const RECT* prcFilter, CComPtr<IHTMLDocument2>& out_doc) {
    if (prcFilter) {
        CComPtr<IHTMLDocument2> spDocTopLeft, spDocBottomRight;
        if (SUCCEEDED(HTMLTools::GetMostInnerDocFromPoint(hWnd, {prcFilter->left, prcFilter->top}, spDocTopLeft)) &&
            SUCCEEDED(HTMLTools::GetMostInnerDocFromPoint(hWnd, {prcFilter->right, prcFilter->bottom}, spDocBottomRight)) &&
            IsSameObject(spDocTopLeft, spDocBottomRight)) {
            out_doc = spDocTopLeft;
            return S_OK;
        }
    }
    return HTMLTools::GetDocumentFromWindow(hWnd, out_doc);
}

// Logs, and makes the answer a failure.
HRESULT Failure(LocatedFormat<char> text, HRESULT result) {
    LogError(text);
    return FailureOrEFail(result);
}

}  // namespace

HRESULT CaptureDocumentTextIE(CaptureContext&, HWND hWnd, const RECT* prcFilter, CString& outText) {
    outText.clear();
    if (prcFilter && ::IsRectEmpty(prcFilter)) prcFilter = nullptr;
    CComPtr<IHTMLDocument2> doc;
    if (const HRESULT result = GetDocumentOfFilter(hWnd, prcFilter, doc); FAILED(result)) return result;
    // They go after everything that was read with their help.
    HtmlMarkers markers;
    HtmlPage page;
    const HRESULT result = PreparePage(doc, prcFilter, markers, page);
    return FAILED(result) ? result : ReadPageText(page, prcFilter, outText);
}

HRESULT CaptureTextAA_IE(HWND hWnd, CString& out_text) {
    out_text.clear();
    CComPtr<IAccessible> spAccIE;
    HRESULT result = ObjectFromWindow(hWnd, OBJID_WINDOW, spAccIE);
    if (FAILED(result) || !spAccIE) {
        LogError("CaptureTextAA_IE: AccessibleObjectFromWindow failed");
        return S_FALSE;
    }
    LogVerbose("CaptureTextAA_IE: AccessibleObjectFromWindow succeeded");

    CComVariant varFirstChild;
    result = spAccIE->accNavigate(NAVDIR_FIRSTCHILD, CComVariant(CHILDID_SELF), &varFirstChild);
    if (FAILED(result)) return Failure("CaptureTextAA_IE: spAccIE->accNavigate failed", result);
    if (varFirstChild.vt != VT_DISPATCH || !varFirstChild.pdispVal)
        return Failure("CaptureTextAA_IE: spAccIE->accNavigate succeeded but VT_DISPATCH != varFirstChild.vt", E_FAIL);

    CComPtr<IServiceProvider> spServiceProvider;
    result = CComPtr<IDispatch>(varFirstChild.pdispVal).QueryInterface(spServiceProvider);
    if (FAILED(result) || !spServiceProvider) return Failure("CaptureTextAA_IE: spServiceProvider failed", result);
    LogVerbose("CaptureTextAA_IE: spServiceProvider succeeded");

    CComPtr<IDispatch> spBodyElement;
    result = HTMLTools::GetElementFromServices(spServiceProvider, spBodyElement);
    if (FAILED(result)) return Failure("CaptureTextAA_IE: spBodyElement failed", result);
    LogVerbose("CaptureTextAA_IE: spBodyElement succeeded");

    CComPtr<IDispatch> spDocDisp;
    result = LateBinding::GetDispatch(spBodyElement, L"document", spDocDisp);
    if (FAILED(result)) return Failure("CaptureTextAA_IE: spDocDisp failed", result);
    CComPtr<IHTMLDocument2> spDoc2;
    result = spDocDisp.QueryInterface(spDoc2);
    if (FAILED(result) || !spDoc2) return Failure("CaptureTextAA_IE: spDoc2 failed", result);

    CComPtr<IDispatch> spBody;
    CString text;
    result = LateBinding::GetDispatch(spDoc2, L"body", spBody);
    if (SUCCEEDED(result)) result = LateBinding::GetText(spBody, L"innerText", text);
    if (FAILED(result)) return Failure("CaptureTextAA_IE: the text of the body can't be read", result);
    if (text.size() > LongestCapturedText) text.resize(LongestCapturedText);
    out_text = WithWindowsLineEnds(text);
    LogVerbose("CaptureTextAA_IE: return S_OK");
    return S_OK;
}

}  // namespace Zorvex
