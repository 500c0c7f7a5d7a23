// A document as Internet Explorer's, made by a test: words and elements in a row, text ranges over them, frames. Its
// objects are asked by name, count their calls in FakeCalls, where one of them can be spoilt, and are owned by the test,
// so that what is outstanding stays visible. Portable.
//
//   FakeObjects objects;
//   FakeDocument page(objects, {0, 0, 800, 600});
//   page.AddText(L"Name ", {8, 8, 48, 28});
//   page.AddInput(L"text", L"Ada", {60, 8, 160, 28});
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/Support/FakeAccessible.h"

namespace Zorvex::Testing {

// One object of a document: what it knows by name, and the interfaces that it offers.
class FakeHtmlObject final : public IHTMLElement,
                             public IHTMLBodyElement,
                             public IHTMLDocument2,
                             public IHTMLWindow2,
                             public IHTMLWindow7,
                             public IServiceProvider {
public:
    using Arguments = std::vector<CComVariant>;

    std::vector<IID> interfaces;  // besides IUnknown, IDispatch and, if `accessible` is set, IServiceProvider
    std::map<std::wstring, CComVariant> values;
    // May give null.
    std::map<std::wstring, std::function<FakeHtmlObject*()>> objects;
    std::map<std::wstring, std::function<HRESULT(const Arguments&, VARIANT*)>> methods;
    FakeAccessible* accessible = nullptr;  // what the service provider gives
    LONG innerWidth = 0, innerHeight = 0;
    HRESULT innerResult = S_OK;

    IDispatch* Dispatch() { return static_cast<IHTMLElement*>(this); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*, UINT*) override;
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID, REFIID riid, void** object) override;
    HRESULT STDMETHODCALLTYPE getSelection(IUnknown**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE getComputedStyle(IUnknown*, BSTR, IUnknown**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_styleMedia(IUnknown**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_performance(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_performance(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_innerWidth(LONG* width) override;
    HRESULT STDMETHODCALLTYPE get_innerHeight(LONG* height) override;
};

// Rectangles are left, top, right, bottom: of the document's window in screen pixels, of what it holds in its own CSS
// pixels.
class FakeDocument {
public:
    FakeDocument(FakeObjects& accessibles, RECT screen);
    FakeDocument(const FakeDocument&) = delete;
    FakeDocument& operator=(const FakeDocument&) = delete;
    ~FakeDocument();

    // A word, or several when only the whole is asked for.
    void AddText(std::wstring text, RECT place = {});
    // An element; `text` is what a range over it reads.
    FakeHtmlObject& AddElement(const wchar_t* tag, RECT place, std::wstring text = {});
    FakeHtmlObject& AddInput(const wchar_t* type, const wchar_t* value, RECT place = {0, 0, 10, 10});
    FakeHtmlObject& AddTextArea(const wchar_t* value, RECT place = {0, 0, 10, 10});
    // A drop-down list. Its options are text to a range.
    FakeHtmlObject& AddSelect(std::vector<std::wstring> options, LONG selected, RECT place = {0, 0, 10, 10});
    FakeHtmlObject& AddFrame(FakeDocument& content, const wchar_t* tag = L"IFRAME", RECT place = {0, 0, 10, 10});
    // The body becomes a set of frames, which has no text.
    void MakeFrameSet();

    // Elements in the document that weren't added by the test, and how many there ever were.
    std::size_t MarkersLeft() const;
    std::size_t markersPlaced = 0;

    FakeHtmlObject document, body, window;
    FakeAccessible& windowAccessible;
    // Said instead of the right number of elements of a tag; then the first one comes again and again.
    std::optional<LONG> lengthOfCollections;
    bool endlessWords = false;   // a range always has one more word, and ends nowhere
    bool rangesOfMarkers = true; // whether a range can be moved to a marker

private:
    struct Piece {
        std::wstring text;
        RECT place{};
        FakeHtmlObject* element = nullptr;
        bool isMarker = false;
    };
    struct Range {
        std::size_t start = 0, end = 0;
        FakeHtmlObject object;
    };

    FakeHtmlObject& NewObject();
    FakeHtmlObject& NewRange(std::size_t start, std::size_t end);
    FakeHtmlObject& NewMarker();
    FakeHtmlObject& NewCollection(std::vector<FakeHtmlObject*> items);
    HRESULT Remove(const FakeHtmlObject& marker);
    std::size_t PlaceOf(const FakeHtmlObject& element) const;
    Range* RangeIn(const CComVariant& argument);
    RECT Bounds(const Range& range) const;

    FakeObjects& m_accessibles;
    std::vector<Piece> m_pieces;
    std::deque<FakeHtmlObject> m_objects;
    std::deque<Range> m_ranges;
};

// An accessible object with a document behind it, or a piece of one.
class FakeHtmlAccessible final : public FakeAccessible {
public:
    explicit FakeHtmlAccessible(FakeHtmlObject& html) : m_html(html) { hasAccessibleEx = true; }
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID, REFIID riid, void** object) override { return m_html.QueryInterface(riid, object); }

private:
    FakeHtmlObject& m_html;
};

}  // namespace Zorvex::Testing
