#include "RuntimeCore/TextCapture/FormattedText.h"

#include <optional>
#include <utility>

#include "Common/include/CComBSTR.h"
#include "Common/include/Log.h"
#include "RuntimeCore/TextCapture/ElementReads.h"
#include "RuntimeCore/TextCapture/SafeName.h"
#include "RuntimeCore/TextCapture/TreeLevel.h"

namespace Zorvex {

namespace {

// Turns one element into its line. Each rule leaves the text in m_text, or answers a result with which the element
// ends without a line.
class LineOfElement {
public:
    LineOfElement(CaptureContext& context, IAccessible* acc, const VARIANT& child, LONG role, enAAType type, const CaptureParseContext* parseContext)
        : m_context(context), m_acc(acc), m_child(child), m_role(role), m_type(type), m_parse(parseContext) {}

    HRESULT AppendTo(CString& outText) {
        LogVerbose("AppendFormatedText varRole=%d", m_role);
        if (m_parse && m_parse->bIsWpf && m_role == ROLE_SYSTEM_LISTITEM) {
            LogVerbose("Ignore rows in WPF grid");
            return S_OK;
        }
        const HRESULT named = ReadName();
        if (m_role != ROLE_SYSTEM_TEXT && (FAILED(named) || m_text.IsEmpty())) {
            LogVerbose("AppendFormatedText exit, hr=%x", named);
            return named;
        }
        LogVerbose("before switch");
        if (const std::optional<HRESULT> end = ApplyRule()) return *end;
        return AppendLine(outText);
    }

private:
    using End = std::optional<HRESULT>;

    End ApplyRule() {
        switch (m_role) {
            case ROLE_SYSTEM_COLUMNHEADER:
            case ROLE_SYSTEM_CELL:
            case ROLE_SYSTEM_STATICTEXT:
            case ROLE_SYSTEM_TEXT: return m_type == AA_TYPE_CHROME ? ChromeValueRule() : ValueRule();
            case ROLE_SYSTEM_LISTITEM: return ListItemRule();
            // A radio button is indented by its value like a tree item; on purpose.
            case ROLE_SYSTEM_OUTLINEITEM:
            case ROLE_SYSTEM_RADIOBUTTON: return IndentationRule();
            case ROLE_SYSTEM_CHECKBUTTON: return HasColumns() ? VirtualNameRule() : IndentationRule();
            case ROLE_SYSTEM_PUSHBUTTON: return PushButtonRule();
            default: LogVerbose("AppendFormatedText: default->break"); return std::nullopt;
        }
    }

    End ChromeValueRule() {
        LogVerbose("ROLE_SYSTEM_TEXT and ROLE_SYSTEM_CELL case");
        const std::optional<LONG> state = ReadAccState(*m_acc, m_child);
        const bool useName = !state || (*state & STATE_SYSTEM_READONLY);
        const HRESULT result = useName ? ReadName() : ReadValue();
        if (Repeats(useName ? &CaptureParseContext::bstrCrntParentName : &CaptureParseContext::bstrCrntParentValue)) return S_OK;
        // A name that isn't there is an empty text, a value that isn't there is none.
        if (FAILED(result) || (!useName && !m_text)) return result;
        return std::nullopt;
    }

    End ValueRule() {
        LogVerbose("NOT AA_TYPE_CHROME branch");
        bool useName = false;
        if (m_role == ROLE_SYSTEM_TEXT) {
            LogVerbose("ROLE_SYSTEM_TEXT == varRole.lVal");
            const std::optional<LONG> state = ReadAccState(*m_acc, m_child);
            if (state && (*state & STATE_SYSTEM_LINKED)) {
                LogVerbose("state OK");
                useName = true;
            }
        }
        LogVerbose("bUseName=%d", useName);
        m_text.Empty();
        if (!useName) {
            LogVerbose("NOT bUseName branch");
            const HRESULT result = ReadValue();
            LogVerbose("pObject->get_accValue returned hr=%x, bstrVal='%ls'", result, m_text.View());
            if (Repeats(&CaptureParseContext::bstrCrntParentValue)) {
                LogVerbose("Avoid text duplicates, exit!!!");
                return S_OK;
            }
            if (SUCCEEDED(result) && !m_text.IsEmpty()) return std::nullopt;
        }
        LogVerbose("FAILED(hr) || !bstrVal calling CAATools::GetSafeAccName");
        const HRESULT result = ReadName();
        if (FAILED(result) || m_text.IsEmpty()) {
            LogError("GetSafeAccName failed with hr=%x", result);
            return result;
        }
        if (Repeats(&CaptureParseContext::bstrCrntParentName)) {
            LogVerbose("Avoid text duplicates, exit!!!");
            return S_OK;
        }
        return std::nullopt;
    }

    End ListItemRule() {
        if (m_context.m_bIgnoreHidden || m_context.m_bIgnoreOffscreen) {
            const LONG state = ReadAccState(*m_acc, m_child).value_or(0);
            if ((m_context.m_bIgnoreOffscreen && (state & STATE_SYSTEM_OFFSCREEN)) ||
                (m_context.m_bIgnoreHidden && (state & STATE_SYSTEM_INVISIBLE))) {
                LogVerbose("NOT bVis branch");
                return S_OK;
            }
        }
        return HasColumns() ? VirtualNameRule() : std::nullopt;
    }

    End VirtualNameRule() {
        const std::optional<CString> name = GetListViewItemVisibleColumnsVirtualName(*m_parse->listViewInfo, m_acc, m_child);
        if (name) m_text = CComBSTR(*name);
        return std::nullopt;
    }

    // The value of a tree item is its level.
    End IndentationRule() {
        if (m_context.m_bNoIndent) return std::nullopt;
        CComBSTR value;
        if (FAILED(m_acc->get_accValue(m_child, &value)) || value.IsEmpty()) return std::nullopt;
        if (!ReadAccState(*m_acc, m_child)) return std::nullopt;
        m_indentation = TreeIndentation(ParseTreeLevel(value.View()));
        return std::nullopt;
    }

    End PushButtonRule() {
        if (m_parse && m_parse->bIsWpf && m_parse->bInWpfRows) {
            LogVerbose("Ignore buttons inside WPF grids");
            return S_OK;
        }
        const std::optional<LONG> state = ReadAccState(*m_acc, m_child);
        if (state && (*state & STATE_SYSTEM_INVISIBLE) && m_context.m_bIgnoreHidden) return S_OK;
        return std::nullopt;
    }

    HRESULT AppendLine(CString& outText) {
        if (m_text.IsEmpty()) {
            LogVerbose("NOT bVis branch");
            return S_OK;
        }
        LogVerbose("AppendFormatedText: appending '%ls'", m_text.View());
        if (!m_context.HasRoom(outText, m_indentation.size() + m_text.Length() + 2)) return S_FALSE;
        outText += m_indentation;
        outText += m_text.View();
        outText += L"\r\n";
        if (m_context.m_bExtractHighlightInfo) AddHighlight();
        return S_OK;
    }

    void AddHighlight() {
        LogVerbose("m_bExtractHighlightInfo branch");
        LONG x = 0, y = 0, width = 0, height = 0;
        if (FAILED(m_acc->accLocation(&x, &y, &width, &height, m_child))) return;
        RECT place{x, y, Sum(x, width), Sum(y, height)};
        if (place.left > place.right) std::swap(place.left, place.right);
        if (place.top > place.bottom) std::swap(place.top, place.bottom);
        m_context.highlights.push_back({m_text.ToString(), place});
    }

    HRESULT ReadName() { return GetSafeAccName(m_context, m_acc, m_child, m_text); }

    HRESULT ReadValue() {
        const HRESULT result = m_acc->get_accValue(m_child, &m_text);
        if (FAILED(result)) m_text.Empty();
        return result;
    }

    bool HasColumns() const { return m_parse && m_parse->listViewInfo; }

    // Whether the text is one that the parent has given already.
    bool Repeats(CString CaptureParseContext::* parentText) const {
        return m_parse && !(m_parse->*parentText).empty() && m_text.View() == m_parse->*parentText;
    }

    // Wraps around: the target may say any number.
    static LONG Sum(LONG left, LONG right) { return static_cast<LONG>(static_cast<DWORD>(left) + static_cast<DWORD>(right)); }

    CaptureContext& m_context;
    IAccessible* m_acc;
    const VARIANT& m_child;
    LONG m_role;
    enAAType m_type;
    const CaptureParseContext* m_parse;
    CComBSTR m_text;
    CString m_indentation;
};

}  // namespace

HRESULT AppendFormatedText(CaptureContext& context, IAccessible* acc, const VARIANT& child, LONG role, CString& outText, enAAType type,
                           const CaptureParseContext* parseContext) {
    return LineOfElement(context, acc, child, role, type, parseContext).AppendTo(outText);
}

}  // namespace Zorvex
