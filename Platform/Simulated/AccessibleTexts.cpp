// IAccessible2 and IAccessibleText.
#include <algorithm>

#include "Platform/Simulated/AccessibleElement.h"

namespace Simulated {
namespace {

const Ia2Data& Ia2Of(const Element& element) {
    static const Ia2Data none;
    const auto& data = element.Details().ia2;
    return data ? *data : none;
}

std::wstring TextOf(const Element& element) { return Ia2Of(element).text.value_or(L""); }

// The given extents first; a text without them shares the element's width evenly.
Rectangle ExtentOf(const Element& element, const Rectangle& whole, std::size_t offset) {
    const Ia2Data& data = Ia2Of(element);
    if (offset < data.characters.size()) return data.characters[offset];
    const std::int64_t length = std::max<std::int64_t>(1, static_cast<std::int64_t>(data.text.value_or(L"").size()));
    const std::int64_t from = whole.width * static_cast<std::int64_t>(offset) / length;
    const std::int64_t to = whole.width * (static_cast<std::int64_t>(offset) + 1) / length;
    return {static_cast<LONG>(whole.left + from), whole.top, static_cast<LONG>(to - from), whole.height};
}

}  // namespace

// Counted under one name, as nothing tells them apart: the simulated server doesn't offer them.
HRESULT AccessibleElement::NotOffered(Call call) {
    CallScope scope(*this, call);
    return scope.early.value_or(E_NOTIMPL);
}

template <class Number, class Read>
HRESULT AccessibleElement::AnswerNumber(Call call, Number* number, Read read) {
    if (!number) return E_INVALIDARG;
    *number = 0;
    CallScope scope(*this, call);
    if (scope.early) return *scope.early;
    if (scope.fault && scope.fault->count) {
        *number = *scope.fault->count;
        return scope.Finish(S_OK);
    }
    const std::optional<LONG> answer = read(*m_element);
    if (!answer) return E_FAIL;
    *number = *answer;
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::role(LONG* role) {
    return AnswerNumber(Call::Ia2Role, role, [](const Element& element) { return std::optional(Ia2Of(element).role); });
}
HRESULT AccessibleElement::get_states(AccessibleStates* states) {
    return AnswerNumber(Call::Ia2States, states, [](const Element& element) { return std::optional(Ia2Of(element).states); });
}
HRESULT AccessibleElement::get_uniqueID(LONG* id) {
    return AnswerNumber(Call::Ia2UniqueId, id, [](const Element& element) { return Ia2Of(element).uniqueId; });
}
HRESULT AccessibleElement::get_indexInParent(LONG* index) {
    return AnswerNumber(Call::Ia2IndexInParent, index, [&](Element& element) {
        const ElementPtr container = m_desktop->ContainerOf(element);
        return container ? std::optional(static_cast<LONG>(m_desktop->PlaceOf(*container, element))) : std::nullopt;
    });
}
HRESULT AccessibleElement::get_windowHandle(HWND* window) {
    if (!window) return E_INVALIDARG;
    *window = nullptr;
    CallScope scope(*this, Call::Ia2WindowHandle);
    if (scope.early) return *scope.early;
    const WindowPtr found = m_desktop->WindowOf(*m_element);
    if (!found) return E_FAIL;
    *window = found->hwnd;
    return scope.Finish(S_OK);
}
HRESULT AccessibleElement::get_attributes(BSTR* attributes) {
    VARIANT self;
    ::VariantInit(&self);
    PutNumber(&self, CHILDID_SELF);
    return AnswerText(Call::Ia2Attributes, self, attributes, [](const Element& element) { return Ia2Of(element).attributes; });
}

HRESULT AccessibleElement::scrollTo(IA2ScrollType type) {
    CallScope scope(*this, Call::Ia2ScrollTo);
    if (scope.early) return *scope.early;
    m_desktop->Record("scrollTo " + (m_element->id.empty() ? std::string("?") : m_element->id) + " " + std::to_string(type));
    return scope.Finish(S_OK);
}
HRESULT AccessibleElement::scrollToPoint(IA2CoordinateType, LONG, LONG) { return NotOffered(Call::Ia2ScrollToPoint); }
HRESULT AccessibleElement::get_nRelations(LONG*) { return NotOffered(Call::Ia2Other); }
HRESULT AccessibleElement::get_relation(LONG, IAccessibleRelation**) { return NotOffered(Call::Ia2Other); }
HRESULT AccessibleElement::get_relations(LONG, IAccessibleRelation**, LONG*) { return NotOffered(Call::Ia2Other); }
HRESULT AccessibleElement::get_groupPosition(LONG*, LONG*, LONG*) { return NotOffered(Call::Ia2Other); }
HRESULT AccessibleElement::get_extendedRole(BSTR*) { return NotOffered(Call::Ia2Other); }
HRESULT AccessibleElement::get_localizedExtendedRole(BSTR*) { return NotOffered(Call::Ia2Other); }
HRESULT AccessibleElement::get_nExtendedStates(LONG*) { return NotOffered(Call::Ia2Other); }
HRESULT AccessibleElement::get_extendedStates(LONG, BSTR**, LONG*) { return NotOffered(Call::Ia2Other); }
HRESULT AccessibleElement::get_localizedExtendedStates(LONG, BSTR**, LONG*) { return NotOffered(Call::Ia2Other); }
HRESULT AccessibleElement::get_locale(IA2Locale*) { return NotOffered(Call::Ia2Other); }

HRESULT AccessibleElement::get_nCharacters(LONG* count) {
    return AnswerNumber(Call::TextCharacters, count, [](const Element& element) {
        return std::optional(static_cast<LONG>(TextOf(element).size()));
    });
}

HRESULT AccessibleElement::get_text(LONG start, LONG end, BSTR* text) {
    if (!text) return E_INVALIDARG;
    *text = nullptr;
    CallScope scope(*this, Call::TextText);
    if (scope.early) return *scope.early;
    const std::wstring whole = scope.fault && scope.fault->text ? *scope.fault->text : TextOf(*m_element);
    const LONG length = static_cast<LONG>(whole.size());
    // As published: -1 is the end of the text, and the two may stand the other way round.
    if (start == -1) start = length;
    if (end == -1) end = length;
    if (start > end) std::swap(start, end);
    if (start < 0 || end > length) return E_INVALIDARG;
    if (start == end) return S_FALSE;
    *text = NewText(std::wstring_view(whole).substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::get_characterExtents(LONG offset, IA2CoordinateType type, LONG* x, LONG* y, LONG* width, LONG* height) {
    if (!x || !y || !width || !height) return E_INVALIDARG;
    *x = *y = *width = *height = 0;
    CallScope scope(*this, Call::TextCharacterExtents);
    if (scope.early) return *scope.early;
    // The place behind the last character is the caret's.
    if (offset < 0 || static_cast<std::size_t>(offset) > TextOf(*m_element).size()) return E_INVALIDARG;
    Rectangle extent = ExtentOf(*m_element, m_desktop->RectangleOf(*m_element), static_cast<std::size_t>(offset));
    if (type == IA2_COORDTYPE_PARENT_RELATIVE) {
        const ElementPtr container = m_desktop->ContainerOf(*m_element);
        const Rectangle origin = container ? m_desktop->RectangleOf(*container) : Rectangle{};
        extent.left -= origin.left;
        extent.top -= origin.top;
    }
    *x = extent.left;
    *y = extent.top;
    *width = extent.width;
    *height = extent.height;
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::get_offsetAtPoint(LONG x, LONG y, IA2CoordinateType type, LONG* offset) {
    if (!offset) return E_INVALIDARG;
    *offset = -1;
    CallScope scope(*this, Call::TextOffsetAtPoint);
    if (scope.early) return *scope.early;
    if (type == IA2_COORDTYPE_PARENT_RELATIVE) return E_NOTIMPL;
    const Rectangle whole = m_desktop->RectangleOf(*m_element);
    for (std::size_t i = 0; i < TextOf(*m_element).size(); ++i) {
        if (!ExtentOf(*m_element, whole, i).Holds(x, y)) continue;
        *offset = static_cast<LONG>(i);
        return scope.Finish(S_OK);
    }
    return S_FALSE;
}

HRESULT AccessibleElement::get_caretOffset(LONG* offset) {
    return AnswerNumber(Call::TextCaretOffset, offset, [](const Element& element) { return std::optional(Ia2Of(element).caret); });
}
HRESULT AccessibleElement::addSelection(LONG, LONG) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::get_attributes(LONG, LONG*, LONG*, BSTR*) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::get_nSelections(LONG*) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::get_selection(LONG, LONG*, LONG*) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::get_textBeforeOffset(LONG, IA2TextBoundaryType, LONG*, LONG*, BSTR*) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::get_textAfterOffset(LONG, IA2TextBoundaryType, LONG*, LONG*, BSTR*) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::get_textAtOffset(LONG, IA2TextBoundaryType, LONG*, LONG*, BSTR*) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::removeSelection(LONG) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::setCaretOffset(LONG) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::setSelection(LONG, LONG, LONG) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::scrollSubstringTo(LONG, LONG, IA2ScrollType) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::scrollSubstringToPoint(LONG, LONG, IA2CoordinateType, LONG, LONG) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::get_newText(IA2TextSegment*) { return NotOffered(Call::TextOther); }
HRESULT AccessibleElement::get_oldText(IA2TextSegment*) { return NotOffered(Call::TextOther); }

}  // namespace Simulated
