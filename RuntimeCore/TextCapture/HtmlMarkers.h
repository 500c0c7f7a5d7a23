// Empty, invisible elements that are put into a document to mark places in its text, and taken out again.
#pragma once

#include <vector>

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Every marker carries this attribute, so that whoever finds one in a document knows whose it is.
inline constexpr const wchar_t* MarkerAttribute = L"__zorvex_css_filter";

class HtmlMarkers {
public:
    HtmlMarkers() = default;
    HtmlMarkers(const HtmlMarkers&) = delete;
    HtmlMarkers& operator=(const HtmlMarkers&) = delete;
    // Takes all markers out of their documents, whatever happened to them since.
    ~HtmlMarkers();

    // Puts a SPAN that isn't displayed right before the element. A failure is logged, and leaves nothing behind that
    // the destructor doesn't remove.
    HRESULT PlaceBefore(IHTMLDocument2* doc, IDispatch* element, CComPtr<IDispatch>& out_marker);

private:
    std::vector<CComPtr<IDispatch>> m_markers;
};

}  // namespace Zorvex
