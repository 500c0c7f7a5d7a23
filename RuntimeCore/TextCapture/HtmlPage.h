// A document made ready for the reading of its text: the places where form fields and frames stand in it are marked,
// and what the fields show is known.
#pragma once

#include <memory>
#include <vector>

#include "Common/include/CComPtr.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/HtmlMarkers.h"

namespace Zorvex {

struct HtmlPage;

// What interrupts the text of a page.
struct HtmlInsert {
    CComPtr<IDispatch> element;
    CComPtr<IDispatch> marker;        // right before the element; null if none could be placed
    CString shown;                    // what a field shows
    std::unique_ptr<HtmlPage> frame;  // the document of a frame; null if it can't be read or lies outside the filter
    bool isFrame = false;
};

struct HtmlPage {
    CComPtr<IHTMLDocument2> doc;
    CComPtr<IDispatch> body;
    bool isFrameSet = false;          // the body has no text of its own, only frames
    std::vector<HtmlInsert> inserts;  // in document order
};

// Prepares a document and, through its frames, those below. `markers` is the caller's, and has to live as long as the
// page is read. Under a filter, in screen pixels, frames outside it are left out; it may be null. Fails if the document
// has no body; a frame that can't be prepared is left out.
HRESULT PreparePage(IHTMLDocument2* doc, const RECT* prcFilter, HtmlMarkers& markers, HtmlPage& out_page);

}  // namespace Zorvex
