// Between accessible objects and the documents of Internet Explorer, and between screen pixels and CSS pixels. Points
// and rectangles are screen pixels. Every failure is logged and negative, and leaves its output empty.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex {

namespace HTMLTools {

// The HTML element that an accessible object, or anything else with services, stands for.
HRESULT GetElementFromServices(IUnknown* object, CComPtr<IDispatch>& out_element);

// The document of an accessible object: of its element, or of its window.
HRESULT GetDocumentFromIAccessible(IAccessible* acc, CComPtr<IHTMLDocument2>& out_doc);

// The outermost document in a window.
HRESULT GetDocumentFromWindow(HWND hWnd, CComPtr<IHTMLDocument2>& out_doc);

// The innermost document at a point: that of a frame rather than that around it.
HRESULT GetMostInnerDocFromPoint(HWND hWnd, POINT pt, CComPtr<IHTMLDocument2>& out_doc);

// The element at a point of an "Internet Explorer_Server" window.
HRESULT GetElementFromPoint(HWND hWnd, POINT pt, CComPtr<IDispatch>& out_element);

// The accessible object of an HTML element.
HRESULT HTMLToAccessible(IUnknown* element, CComPtr<IAccessible>& out_acc);

}  // namespace HTMLTools

// The element of an `object` tag at a point of the document; S_FALSE and null if the element there is another one.
HRESULT GetObjectFromPoint(IHTMLDocument2* doc, POINT pt, CComPtr<IDispatch>& out_element);

// The rectangle of an accessible object itself.
HRESULT GetAccessibleLocation(IAccessible* spAcc, RECT& out_rect);

// The zoom of a page: how many screen pixels 100 CSS pixels take, the smaller of the ratios of width and height.
// `window` is the document's window.
bool GetScreenToCssPxRatio(IDispatch* window, LONG* out_ratio);

// Where a document's window lies on the screen, and its zoom.
struct PagePlace {
    RECT screen{};
    LONG ratio = 100;  // above 0

    POINT ToCss(POINT screenPoint) const;
    RECT ToScreen(LONG left, LONG top, LONG width, LONG height) const;
};

// A window that doesn't tell its size in CSS pixels counts as not zoomed.
HRESULT GetPagePlace(IHTMLDocument2* doc, PagePlace& out_place);

}  // namespace Zorvex
