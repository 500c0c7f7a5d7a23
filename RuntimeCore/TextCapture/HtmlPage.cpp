#include "RuntimeCore/TextCapture/HtmlPage.h"

#include <algorithm>
#include <limits>

#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "RuntimeCore/HTMLTools.h"
#include "RuntimeCore/LateBinding.h"
#include "RuntimeCore/TextCapture/HtmlFormFields.h"

namespace Zorvex {

namespace {

using LateBinding::CallForDispatch;
using LateBinding::GetDispatch;

// The target says how many there are; a document may hold itself as a frame.
constexpr LONG MostElementsOfOneTag = 10'000;
constexpr int MostFrames = 256;
constexpr int DeepestFrame = 16;

HRESULT GetDocument(IDispatch* frame, CComPtr<IHTMLDocument2>& out_doc) {
    CComPtr<IDispatch> window, document;
    HRESULT result = GetDispatch(frame, L"contentWindow", window);
    if (SUCCEEDED(result)) result = GetDispatch(window, L"document", document);
    if (SUCCEEDED(result)) result = document.QueryInterface(out_doc);
    return SUCCEEDED(result) && !out_doc ? E_FAIL : result;
}

class Preparation {
public:
    Preparation(const RECT* prcFilter, HtmlMarkers& markers) : m_prcFilter(prcFilter), m_markers(markers) {}

    HRESULT Prepare(IHTMLDocument2* doc, int depth, HtmlPage& page) {
        page.doc = doc;
        HRESULT result = GetDispatch(doc, L"body", page.body);
        CString bodyTag;
        if (SUCCEEDED(result)) result = LateBinding::GetText(page.body, L"tagName", bodyTag);
        if (FAILED(result)) {
            LogError("PreparePage: the document has no body, hResult=0x%X", result);
            return result;
        }
        page.isFrameSet = bodyTag == L"FRAMESET";
        Gather(page);
        for (HtmlInsert& insert : page.inserts) {
            // The frames of a set lie in no text.
            if (!page.isFrameSet) m_markers.PlaceBefore(doc, insert.element, insert.marker);
            if (insert.isFrame) PrepareFrame(insert, depth + 1);
        }
        return S_OK;
    }

private:
    // Before anything is put into the document: that changes the order numbers.
    void Gather(HtmlPage& page) {
        std::vector<std::pair<LONG, HtmlInsert>> found;
        for (const wchar_t* tag : {L"input", L"textarea", L"select", L"iframe", L"frame"}) {
            CComPtr<IDispatch> elements;
            LONG count = 0;
            if (FAILED(CallForDispatch(page.doc, L"getElementsByTagName", {CComVariant(tag)}, elements)) ||
                FAILED(LateBinding::GetNumber(elements, L"length", count)))
                continue;
            for (LONG index = 0; index < std::min(count, MostElementsOfOneTag); ++index) Add(elements, index, tag, found);
        }
        std::stable_sort(found.begin(), found.end(), [](const auto& left, const auto& right) { return left.first < right.first; });
        for (auto& [order, insert] : found) page.inserts.push_back(std::move(insert));
    }

    static void Add(IDispatch* elements, LONG index, std::wstring_view tag, std::vector<std::pair<LONG, HtmlInsert>>& found) {
        HtmlInsert insert;
        if (FAILED(CallForDispatch(elements, L"item", {CComVariant(index)}, insert.element))) return;
        if (tag == L"input" && !ShowsText(insert.element)) return;
        insert.isFrame = tag.ends_with(L"frame");
        if (!insert.isFrame) insert.shown = GetShownText(insert.element, tag);
        LONG order = 0;
        // One that doesn't know its place comes last.
        if (FAILED(LateBinding::GetNumber(insert.element, L"sourceIndex", order))) order = std::numeric_limits<LONG>::max();
        found.emplace_back(order, std::move(insert));
    }

    void PrepareFrame(HtmlInsert& insert, int depth) {
        if (depth > DeepestFrame || m_frames >= MostFrames || !IsDisplayed(insert.element)) return;
        ++m_frames;
        CComPtr<IHTMLDocument2> doc;
        if (const HRESULT result = GetDocument(insert.element, doc); FAILED(result)) {
            // The document of another site, as a rule.
            LogError("PreparePage: the document of a frame can't be had, hResult=0x%X", result);
            return;
        }
        if (m_prcFilter) {
            PagePlace place;
            RECT common{};
            if (FAILED(GetPagePlace(doc, place)) || !::IntersectRect(&common, &place.screen, m_prcFilter)) return;
        }
        auto frame = std::make_unique<HtmlPage>();
        if (SUCCEEDED(Prepare(doc, depth, *frame))) insert.frame = std::move(frame);
    }

    const RECT* m_prcFilter;
    HtmlMarkers& m_markers;
    int m_frames = 0;
};

}  // namespace

HRESULT PreparePage(IHTMLDocument2* doc, const RECT* prcFilter, HtmlMarkers& markers, HtmlPage& out_page) {
    return Preparation(prcFilter, markers).Prepare(doc, 0, out_page);
}

}  // namespace Zorvex
