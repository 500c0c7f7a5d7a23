#include "RuntimeCore/TextCapture/OfficeCapture.h"

#include <algorithm>
#include <optional>

#include "Common/include/Log.h"
#include "RuntimeCore/TextCapture/Automation.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

namespace {

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
        if (!Automation::ReadText(object, L"Text", m_line) || m_line.empty() || !m_context.HasRoom(m_text, m_line.size() + 2)) return;
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
    const std::optional<LONG> count = Automation::ReadNumber(collection, L"Count");
    if (!count) return std::nullopt;
    return std::min(*count, static_cast<LONG>(MostCapturedElements) + 1);
}

}  // namespace

HRESULT CaptureTextAA_Word(HWND hWnd, CString& out_text) {
    const auto window = Automation::GetNativeObject(hWnd);
    const auto document = Automation::ReadObject(window, L"Document");
    const auto content = Automation::ReadObject(document, L"Content");
    CString text;
    if (!Automation::ReadText(content, L"Text", text)) return S_FALSE;
    if (text.size() > LongestCapturedText) text.resize(LongestCapturedText);
    out_text = std::move(text);
    return S_OK;
}

HRESULT CaptureTextAA_Excel(HWND hWnd, CString& out_text) {
    const auto window = Automation::GetNativeObject(hWnd);
    const auto sheet = Automation::ReadObject(window, L"ActiveSheet");
    const auto used = Automation::ReadObject(sheet, L"UsedRange");
    const auto rows = Automation::ReadObject(used, L"Rows");
    const auto columns = Automation::ReadObject(used, L"Columns");
    const std::optional<LONG> rowCount = ReadCount(rows);
    const std::optional<LONG> columnCount = ReadCount(columns);
    if (!rowCount || !columnCount) return S_FALSE;
    LinesOfObjects lines(out_text);
    for (LONG row = 1; row <= *rowCount; ++row)
        for (LONG column = 1; column <= *columnCount; ++column) {
            if (!lines.MayAsk()) return S_OK;
            lines.Append(Automation::ReadItem(used, {row, column}));
        }
    return S_OK;
}

HRESULT CaptureTextAA_PowerPoint(HWND hWnd, CString& out_text) {
    const auto window = Automation::GetNativeObject(hWnd);
    const auto presentation = Automation::ReadObject(window, L"Presentation");
    const auto slides = Automation::ReadObject(presentation, L"Slides");
    const std::optional<LONG> slideCount = ReadCount(slides);
    if (!slideCount) return S_FALSE;
    LinesOfObjects lines(out_text);
    for (LONG slide = 1; slide <= *slideCount; ++slide) {
        if (!lines.MayAsk()) return S_OK;
        const auto shapes = Automation::ReadObject(Automation::ReadItem(slides, {slide}), L"Shapes");
        const LONG shapeCount = ReadCount(shapes).value_or(0);
        for (LONG shape = 1; shape <= shapeCount; ++shape) {
            if (!lines.MayAsk()) return S_OK;
            const auto frame = Automation::ReadObject(Automation::ReadItem(shapes, {shape}), L"TextFrame");
            lines.Append(Automation::ReadObject(frame, L"TextRange"));
        }
    }
    return S_OK;
}

}  // namespace Zorvex
