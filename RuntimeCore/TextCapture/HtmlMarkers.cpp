#include "RuntimeCore/TextCapture/HtmlMarkers.h"

#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "RuntimeCore/LateBinding.h"

namespace Zorvex {

namespace {

using LateBinding::Call;
using LateBinding::CallForDispatch;
using LateBinding::GetDispatch;

// A marker that doesn't tell counts as placed.
bool IsPlaced(IDispatch* marker) {
    CComVariant parent;
    if (FAILED(LateBinding::Get(marker, L"parentNode", parent))) return true;
    return parent.vt == VT_DISPATCH && parent.pdispVal;
}

// Whether the marker is out of its document. What the document throws is caught: markers also go while an exception
// is on its way.
bool TryToRemove(IDispatch* marker) noexcept {
    try {
        CComVariant ignored;
        Call(marker, L"removeNode", {CComVariant(true)}, ignored);
        if (!IsPlaced(marker)) return true;
        // Newer documents have the standard's way alone.
        CComPtr<IDispatch> parent;
        if (SUCCEEDED(GetDispatch(marker, L"parentNode", parent))) Call(parent, L"removeChild", {CComVariant(marker)}, ignored);
        return !IsPlaced(marker);
    } catch (...) {
        return false;
    }
}

void Remove(IDispatch* marker) {
    constexpr int Attempts = 3;
    for (int attempt = 0; attempt < Attempts; ++attempt)
        if (TryToRemove(marker)) return;
    LogError("HtmlMarkers: a marker can't be removed from its document");
}

HRESULT Create(IHTMLDocument2* doc, CComPtr<IDispatch>& out_marker) {
    HRESULT result = CallForDispatch(doc, L"createElement", {CComVariant(L"SPAN")}, out_marker);
    if (FAILED(result)) return result;
    CComVariant ignored;
    result = Call(out_marker, L"setAttribute", {CComVariant(MarkerAttribute), CComVariant(L"1")}, ignored);
    if (FAILED(result)) return result;
    CComPtr<IDispatch> style;
    result = GetDispatch(out_marker, L"style", style);
    return FAILED(result) ? result : LateBinding::Put(style, L"display", CComVariant(L"none"));
}

}  // namespace

HtmlMarkers::~HtmlMarkers() {
    // The last one placed goes first.
    for (; !m_markers.empty(); m_markers.pop_back()) Remove(m_markers.back());
}

HRESULT HtmlMarkers::PlaceBefore(IHTMLDocument2* doc, IDispatch* element, CComPtr<IDispatch>& out_marker) {
    out_marker.Release();
    CComPtr<IDispatch> marker;
    HRESULT result = Create(doc, marker);
    if (SUCCEEDED(result)) {
        // Kept before it is placed: a call that fails may have placed it all the same.
        m_markers.push_back(marker);
        CComVariant ignored;
        result = Call(element, L"insertAdjacentElement", {CComVariant(L"beforeBegin"), CComVariant(marker)}, ignored);
    }
    if (FAILED(result)) {
        LogError("HtmlMarkers: no marker could be placed, hResult=0x%X", result);
        return result;
    }
    out_marker = marker;
    return S_OK;
}

}  // namespace Zorvex
