#include "RuntimeCore/TextCapture/HtmlPageText.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "RuntimeCore/HTMLTools.h"
#include "RuntimeCore/LateBinding.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

namespace {

using LateBinding::Call;
using LateBinding::CallForDispatch;
using LateBinding::CallForNumber;
using LateBinding::GetNumber;

// A range may say forever that it has one more word.
constexpr int MostWords = 200'000;
constexpr std::wstring_view Blanks = L" \t\r\n\xA0";

bool IsBlank(wchar_t unit) { return Blanks.find(unit) != std::wstring_view::npos; }

// The text so far, and where its last words lie.
class PageText {
public:
    // On the line so far, behind a blank unless there is one.
    HRESULT Append(std::wstring_view text) {
        if (text.empty()) return S_OK;
        if (m_atLineStart) {
            if (text.find_first_not_of(Blanks) == std::wstring_view::npos) return S_OK;
            text.remove_prefix(std::min(text.find_first_not_of(L"\r\n"), text.size()));
            EndLine();
        } else if (!m_text.empty() && !IsBlank(m_text.back()) && !IsBlank(text.front())) {
            m_text += L' ';
        }
        m_atLineStart = false;
        if (m_text.size() + text.size() > LongestCapturedText) {
            LogError("ReadPageText: the text would have more than %zu characters", LongestCapturedText);
            return E_OUTOFMEMORY;
        }
        m_text += text;
        return S_OK;
    }

    // Text with a place: on the line so far, unless it lies wholly above or below what came last.
    HRESULT Append(std::wstring_view text, const RECT& first, const RECT& last) {
        if (!m_last || first.top >= m_last->bottom || first.bottom <= m_last->top) StartLine();
        m_last = last;
        return Append(text);
    }

    void StartLine() { m_atLineStart = true; }
    const CString& Get() const { return m_text; }

    // What was appended since is dropped.
    struct Mark { std::size_t size; bool atLineStart; std::optional<RECT> last; };
    Mark Here() const { return {m_text.size(), m_atLineStart, m_last}; }
    void GoBack(const Mark& mark) {
        m_text.resize(std::min(mark.size, m_text.size()));
        m_atLineStart = mark.atLineStart;
        m_last = mark.last;
    }

private:
    void EndLine() {
        m_text.erase(m_text.find_last_not_of(Blanks) + 1);
        if (!m_text.empty()) m_text += L"\r\n";
    }

    CString m_text;
    bool m_atLineStart = false;
    std::optional<RECT> m_last;
};

class Reading {
public:
    explicit Reading(const RECT* prcFilter) : m_prcFilter(prcFilter) {}

    const CString& Text() const { return m_text.Get(); }

    HRESULT Read(const HtmlPage& page) {
        if (page.isFrameSet) {
            for (const HtmlInsert& insert : page.inserts) ReadFrame(insert);
            return S_OK;
        }
        PagePlace place;
        HRESULT result = m_prcFilter ? GetPagePlace(page.doc, place) : S_OK;
        CComPtr<IDispatch> rest;
        if (SUCCEEDED(result)) result = CallForDispatch(page.body, L"createTextRange", {}, rest);
        for (const HtmlInsert& insert : page.inserts) {
            if (FAILED(result)) break;
            result = ReadUpTo(insert, page, place, rest);
            if (SUCCEEDED(result)) result = ReadInsert(insert);
        }
        return FAILED(result) ? result : ReadRange(rest, place);
    }

private:
    // The text before the insert; `rest` then begins behind it. An insert that has no place in the rest takes the place
    // where the reading is.
    HRESULT ReadUpTo(const HtmlInsert& insert, const HtmlPage& page, const PagePlace& place, IDispatch* rest) {
        CComPtr<IDispatch> anchor = RangeOf(insert.marker, page.body);
        if (!anchor) return S_OK;
        LONG toStart = 0, toEnd = 0;
        HRESULT result = CallForNumber(rest, L"compareEndPoints", {CComVariant(L"StartToStart"), CComVariant(anchor)}, toStart);
        if (SUCCEEDED(result)) result = CallForNumber(rest, L"compareEndPoints", {CComVariant(L"EndToEnd"), CComVariant(anchor)}, toEnd);
        if (FAILED(result)) return result;
        if (toStart > 0 || toEnd < 0) return S_OK;

        CComPtr<IDispatch> segment;
        CComVariant ignored;
        result = CallForDispatch(rest, L"duplicate", {}, segment);
        if (SUCCEEDED(result)) result = Call(segment, L"setEndPoint", {CComVariant(L"EndToStart"), CComVariant(anchor)}, ignored);
        if (SUCCEEDED(result)) result = ReadRange(segment, place);
        if (FAILED(result)) return result;
        // The options of a list are text of the document to a range: the reading goes on behind the whole element.
        if (CComPtr<IDispatch> whole = RangeOf(insert.element, page.body)) anchor = whole;
        return Call(rest, L"setEndPoint", {CComVariant(L"StartToEnd"), CComVariant(anchor)}, ignored);
    }

    HRESULT ReadInsert(const HtmlInsert& insert) {
        if (insert.isFrame) return ReadFrame(insert);
        if (!m_prcFilter || insert.shown.empty()) return m_text.Append(insert.shown);
        CComPtr<IAccessible> acc;
        RECT screen{}, common{};
        const bool isInside = SUCCEEDED(HTMLTools::HTMLToAccessible(insert.element, acc)) && SUCCEEDED(GetAccessibleLocation(acc, screen)) &&
                              ::IntersectRect(&common, &screen, m_prcFilter);
        return isInside ? m_text.Append(insert.shown, screen, screen) : S_OK;
    }

    // Only a text without bounds is a failure.
    HRESULT ReadFrame(const HtmlInsert& insert) {
        if (!insert.frame) return S_OK;
        const PageText::Mark before = m_text.Here();
        m_text.StartLine();
        const HRESULT result = Read(*insert.frame);
        if (FAILED(result)) {
            LogError("ReadPageText: the text of a frame can't be read, hResult=0x%X", result);
            m_text.GoBack(before);
        }
        m_text.StartLine();
        return result == E_OUTOFMEMORY ? result : S_OK;
    }

    HRESULT ReadRange(IDispatch* range, const PagePlace& place) {
        if (m_prcFilter) return ReadWords(range, place);
        CString text;
        const HRESULT result = LateBinding::GetText(range, L"text", text);
        return FAILED(result) ? result : m_text.Append(text);
    }

    // Words in a row that meet the filter are read as one range, so that the line ends between them come along.
    HRESULT ReadWords(IDispatch* range, const PagePlace& place) {
        CComPtr<IDispatch> word, run;
        RECT first{}, last{};
        CComVariant ignored;
        HRESULT result = CallForDispatch(range, L"duplicate", {}, word);
        if (SUCCEEDED(result)) result = Call(word, L"collapse", {CComVariant(true)}, ignored);
        for (LONG compared = -1; SUCCEEDED(result) && compared < 0;) {
            if (++m_words > MostWords) {
                LogError("ReadPageText: the page has more than %d words", MostWords);
                return E_FAIL;
            }
            LONG moved = 0;
            result = CallForNumber(word, L"moveEnd", {CComVariant(L"word"), CComVariant(1)}, moved);
            if (FAILED(result) || moved == 0) break;
            result = CallForNumber(word, L"compareEndPoints", {CComVariant(L"EndToEnd"), CComVariant(range)}, compared);
            if (SUCCEEDED(result) && compared > 0)
                result = Call(word, L"setEndPoint", {CComVariant(L"EndToEnd"), CComVariant(range)}, ignored);
            if (FAILED(result)) break;
            RECT screen{}, common{};
            if (!GetPlace(word, place, screen) || !::IntersectRect(&common, &screen, m_prcFilter)) {
                result = ReadRun(run, first, last);
            } else if (run) {
                result = Call(run, L"setEndPoint", {CComVariant(L"EndToEnd"), CComVariant(word)}, ignored);
                last = screen;
            } else {
                result = CallForDispatch(word, L"duplicate", {}, run);
                first = last = screen;
            }
            if (SUCCEEDED(result)) result = Call(word, L"collapse", {CComVariant(false)}, ignored);
        }
        return FAILED(result) ? result : ReadRun(run, first, last);
    }

    HRESULT ReadRun(CComPtr<IDispatch>& run, const RECT& first, const RECT& last) {
        if (!run) return S_OK;
        CString text;
        const HRESULT result = LateBinding::GetText(run, L"text", text);
        run.Release();
        return FAILED(result) ? result : m_text.Append(text, first, last);
    }

    // The range of an element. Null if it has none.
    static CComPtr<IDispatch> RangeOf(IDispatch* element, IDispatch* body) {
        CComPtr<IDispatch> range;
        CComVariant ignored;
        if (!element || FAILED(CallForDispatch(body, L"createTextRange", {}, range)) ||
            FAILED(Call(range, L"moveToElementText", {CComVariant(element)}, ignored)))
            return nullptr;
        return range;
    }

    static bool GetPlace(IDispatch* range, const PagePlace& place, RECT& out_screen) {
        LONG left = 0, top = 0, width = 0, height = 0;
        if (FAILED(GetNumber(range, L"boundingLeft", left)) || FAILED(GetNumber(range, L"boundingTop", top)) ||
            FAILED(GetNumber(range, L"boundingWidth", width)) || FAILED(GetNumber(range, L"boundingHeight", height)))
            return false;
        out_screen = place.ToScreen(left, top, width, height);
        return true;
    }

    const RECT* m_prcFilter;
    PageText m_text;
    int m_words = 0;
};

}  // namespace

HRESULT ReadPageText(const HtmlPage& page, const RECT* prcFilter, CString& out_text) {
    out_text.clear();
    Reading reading(prcFilter);
    const HRESULT result = reading.Read(page);
    if (FAILED(result)) {
        LogError("ReadPageText: the text of the document can't be read, hResult=0x%X", result);
        return result;
    }
    out_text = WithWindowsLineEnds(reading.Text());
    return S_OK;
}

CString WithWindowsLineEnds(const CString& text) {
    CString result;
    result.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        const wchar_t unit = text[index];
        if (unit == L'\r' && index + 1 < text.size() && text[index + 1] == L'\n') continue;  // the next one ends the line
        if (unit == L'\r' || unit == L'\n') result += L"\r\n";
        else result += unit;
    }
    return result;
}

}  // namespace Zorvex
