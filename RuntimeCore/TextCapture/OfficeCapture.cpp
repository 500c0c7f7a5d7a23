#include "RuntimeCore/TextCapture/OfficeCapture.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <utility>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "RuntimeCore/LateBinding.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

namespace {

// The object model behind a window. Null if it offers none.
CComPtr<IDispatch> GetNativeObject(HWND hWnd) {
    CComPtr<IDispatch> object, window;
    // What comes may be a stand-in for the object; the object itself is asked.
    if (FAILED(ObjectFromWindow(hWnd, OBJID_NATIVEOM, object)) || FAILED(object.QueryInterface(window))) return nullptr;
    return window;
}

// The object at the end of a path of properties. Null if any of them is missing, or the object itself.
CComPtr<IDispatch> ObjectAt(CComPtr<IDispatch> object, std::initializer_list<const wchar_t*> path) {
    for (const wchar_t* const name : path) {
        CComPtr<IDispatch> next;
        LateBinding::GetDispatch(object, name, next);
        object = std::move(next);
    }
    return object;
}

// Null if there is no such item.
CComPtr<IDispatch> ItemOf(IDispatch* collection, std::initializer_list<CComVariant> indexes) {
    CComPtr<IDispatch> item;
    LateBinding::GetItem(collection, indexes, item);
    return item;
}

// Texts on lines of their own, each with its line end before it. Ends at the limits of a capture: the target's
// counts are its own affair.
class LinesOfObjects {
public:
    explicit LinesOfObjects(CString& text) : m_text(text) {}

    // Whether one object more may be asked.
    bool MayAsk() {
        if (m_context.IsFull()) return false;
        if (m_asked < MostCapturedElements) return ++m_asked, true;
        LogError("Text capture ends after %zu objects", m_asked);
        return false;
    }
    // Takes the object's text, if it has one.
    void Append(IDispatch* object) {
        if (FAILED(LateBinding::GetText(object, L"Text", m_line)) || m_line.empty() ||
            !m_context.HasRoom(m_text, m_line.size() + 2))
            return;
        m_text += L"\r\n";
        m_text += m_line;
    }

private:
    CaptureContext m_context;
    CString& m_text;
    CString m_line;
    std::size_t m_asked = 0;
};

// The size of a collection, cut where no capture goes on. Nothing if it isn't one.
std::optional<LONG> ReadCount(IDispatch* collection) {
    LONG count = 0;
    if (FAILED(LateBinding::GetNumber(collection, L"Count", count))) return std::nullopt;
    return std::min(count, static_cast<LONG>(MostCapturedElements) + 1);
}

}  // namespace

HRESULT CaptureTextAA_Word(HWND hWnd, CString& out_text) {
    CString text;
    if (FAILED(LateBinding::GetText(ObjectAt(GetNativeObject(hWnd), {L"Document", L"Content"}), L"Text", text)))
        return S_FALSE;
    if (text.size() > LongestCapturedText) text.resize(LongestCapturedText);
    out_text = std::move(text);
    return S_OK;
}

HRESULT CaptureTextAA_Excel(HWND hWnd, CString& out_text) {
    const auto used = ObjectAt(GetNativeObject(hWnd), {L"ActiveSheet", L"UsedRange"});
    const std::optional<LONG> rowCount = ReadCount(ObjectAt(used, {L"Rows"}));
    const std::optional<LONG> columnCount = ReadCount(ObjectAt(used, {L"Columns"}));
    if (!rowCount || !columnCount) return S_FALSE;
    LinesOfObjects lines(out_text);
    for (LONG row = 1; row <= *rowCount; ++row)
        for (LONG column = 1; column <= *columnCount; ++column) {
            if (!lines.MayAsk()) return S_OK;
            lines.Append(ItemOf(used, {CComVariant(row), CComVariant(column)}));
        }
    return S_OK;
}

HRESULT CaptureTextAA_PowerPoint(HWND hWnd, CString& out_text) {
    const auto slides = ObjectAt(GetNativeObject(hWnd), {L"Presentation", L"Slides"});
    const std::optional<LONG> slideCount = ReadCount(slides);
    if (!slideCount) return S_FALSE;
    LinesOfObjects lines(out_text);
    for (LONG slide = 1; slide <= *slideCount; ++slide) {
        if (!lines.MayAsk()) return S_OK;
        const auto shapes = ObjectAt(ItemOf(slides, {CComVariant(slide)}), {L"Shapes"});
        const LONG shapeCount = ReadCount(shapes).value_or(0);
        for (LONG shape = 1; shape <= shapeCount; ++shape) {
            if (!lines.MayAsk()) return S_OK;
            lines.Append(ObjectAt(ItemOf(shapes, {CComVariant(shape)}), {L"TextFrame", L"TextRange"}));
        }
    }
    return S_OK;
}

}  // namespace Zorvex
