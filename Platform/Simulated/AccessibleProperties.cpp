// Properties of an element, and what can be done to it.
#include <algorithm>

#include "Platform/Simulated/AccessibleElement.h"

namespace Simulated {
namespace {

std::optional<std::wstring> NameOf(const Element& element) {
    return element.made && element.rootOf ? std::optional(element.rootOf->title) : element.name;
}

LONG StateOf(const Element& element) {
    if (!element.made || !element.rootOf) return element.state;
    return element.state | (element.rootOf->visible ? 0 : STATE_SYSTEM_INVISIBLE) |
           (element.rootOf->enabled ? 0 : STATE_SYSTEM_UNAVAILABLE);
}

std::string Label(const Element& element) { return element.id.empty() ? "?" : element.id; }

// Only for the record of what was done: other characters than those of ASCII show as question marks.
std::string Plain(std::wstring_view text) {
    std::string plain;
    for (const wchar_t unit : text) plain += unit >= 0x20 && unit < 0x7F ? static_cast<char>(unit) : '?';
    return plain;
}

// A new value is also what the element shows: the text of an edit window, and the characters of an element with text.
void ShowValue(Element& element) {
    if (element.rootOf && element.rootOf->className == L"Edit") element.rootOf->title = *element.value;
    if (element.details && element.details->ia2 && element.details->ia2->text) element.details->ia2->text = element.value;
}

}  // namespace

HRESULT AccessibleElement::AnswerText(Call call, const VARIANT& child, BSTR* text, std::optional<std::wstring> (*read)(const Element&)) {
    if (!text) return E_INVALIDARG;
    *text = nullptr;
    CallScope scope(*this, call, &child);
    if (scope.early) return *scope.early;
    if (scope.fault && scope.fault->text) {
        *text = NewText(*scope.fault->text);
        return scope.Finish(S_OK);
    }
    const std::optional<std::wstring> answer = read(*scope.target);
    if (!answer) return S_FALSE;
    *text = NewText(*answer);
    return *text ? scope.Finish(S_OK) : E_OUTOFMEMORY;
}

HRESULT AccessibleElement::get_accName(VARIANT child, BSTR* name) {
    return AnswerText(Call::AccName, child, name, [](const Element& element) { return NameOf(element); });
}
HRESULT AccessibleElement::get_accValue(VARIANT child, BSTR* value) {
    return AnswerText(Call::AccValue, child, value, [](const Element& element) { return element.value; });
}
HRESULT AccessibleElement::get_accDescription(VARIANT child, BSTR* description) {
    return AnswerText(Call::AccDescription, child, description, [](const Element& element) { return element.Details().description; });
}
HRESULT AccessibleElement::get_accHelp(VARIANT child, BSTR* help) {
    return AnswerText(Call::AccHelp, child, help, [](const Element& element) { return element.Details().help; });
}
HRESULT AccessibleElement::get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) {
    return AnswerText(Call::AccKeyboardShortcut, child, shortcut, [](const Element& element) { return element.Details().shortcut; });
}
HRESULT AccessibleElement::get_accDefaultAction(VARIANT child, BSTR* action) {
    return AnswerText(Call::AccDefaultAction, child, action, [](const Element& element) { return element.Details().defaultAction; });
}
HRESULT AccessibleElement::get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) {
    if (topic) *topic = 0;
    return AnswerText(Call::AccHelpTopic, child, file, [](const Element&) { return std::optional<std::wstring>(); });
}

HRESULT AccessibleElement::get_accRole(VARIANT child, VARIANT* role) {
    if (!role) return E_INVALIDARG;
    ::VariantInit(role);
    CallScope scope(*this, Call::AccRole, &child);
    if (scope.early) return *scope.early;
    if (scope.fault && scope.fault->type) PutWrongType(role, *scope.fault->type);
    else if (scope.fault && scope.fault->text) PutText(role, *scope.fault->text);
    else if (scope.fault && scope.fault->count) PutNumber(role, *scope.fault->count);
    else if (const auto& text = scope.target->Details().roleText) PutText(role, *text);
    else PutNumber(role, scope.target->role);
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::get_accState(VARIANT child, VARIANT* state) {
    if (!state) return E_INVALIDARG;
    ::VariantInit(state);
    CallScope scope(*this, Call::AccState, &child);
    if (scope.early) return *scope.early;
    if (scope.fault && scope.fault->type) PutWrongType(state, *scope.fault->type);
    else if (scope.fault && scope.fault->text) PutText(state, *scope.fault->text);
    else PutNumber(state, scope.fault && scope.fault->count ? *scope.fault->count : StateOf(*scope.target));
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) {
    if (!left || !top || !width || !height) return E_INVALIDARG;
    *left = *top = *width = *height = 0;
    CallScope scope(*this, Call::AccLocation, &child);
    if (scope.early) return *scope.early;
    Rectangle rectangle = m_desktop->RectangleOf(*scope.target);
    if (scope.fault && scope.fault->count) rectangle.width = rectangle.height = *scope.fault->count;
    *left = rectangle.left;
    *top = rectangle.top;
    *width = rectangle.width;
    *height = rectangle.height;
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::accSelect(LONG flags, VARIANT child) {
    CallScope scope(*this, Call::AccSelect, &child);
    if (scope.early) return *scope.early;
    const ElementPtr target = scope.target;
    m_desktop->Record("accSelect " + Label(*target) + " " + std::to_string(flags));
    const LONG changes = flags & (SELFLAG_TAKESELECTION | SELFLAG_EXTENDSELECTION | SELFLAG_ADDSELECTION | SELFLAG_REMOVESELECTION);
    // As published: removing can't be combined with taking or adding.
    if ((flags & SELFLAG_REMOVESELECTION) && (flags & (SELFLAG_TAKESELECTION | SELFLAG_ADDSELECTION))) return E_INVALIDARG;
    if (flags & ~31) return E_INVALIDARG;
    if (target->state & STATE_SYSTEM_UNAVAILABLE) return S_FALSE;
    if (flags & SELFLAG_TAKEFOCUS) m_desktop->Focus(target);
    const ElementPtr container = m_desktop->ContainerOf(*target);
    if (!changes || !container) return scope.Finish(S_OK);

    auto* const listed = container->Details().selection ? &*container->EditDetails().selection : nullptr;
    const auto unlist = [&] {
        if (listed) std::erase(*listed, target->id);
    };
    if (flags & SELFLAG_TAKESELECTION) {
        for (const ElementPtr& sibling : container->children) sibling->state &= ~STATE_SYSTEM_SELECTED;
        if (listed) listed->clear();
    }
    if (flags & SELFLAG_REMOVESELECTION) {
        target->state &= ~STATE_SYSTEM_SELECTED;
        unlist();
    } else {
        target->state |= STATE_SYSTEM_SELECTED;
        unlist();
        if (listed) listed->push_back(target->id);
    }
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::accDoDefaultAction(VARIANT child) {
    CallScope scope(*this, Call::AccDoDefaultAction, &child);
    if (scope.early) return *scope.early;
    const ElementDetails& details = scope.target->Details();
    if (!details.defaultAction && details.action.empty()) return DISP_E_MEMBERNOTFOUND;
    m_desktop->Record("accDoDefaultAction " + Label(*scope.target));
    // As a control that is greyed out: the order is taken, and nothing comes of it.
    if (scope.target->state & STATE_SYSTEM_UNAVAILABLE) return scope.Finish(S_OK);
    // A copy: the action may take its own element away.
    m_desktop->Do(std::vector<Action>(details.action), scope.target.get());
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::put_accName(VARIANT child, BSTR) {
    CallScope scope(*this, Call::PutAccName, &child);
    return scope.early.value_or(DISP_E_MEMBERNOTFOUND);
}

HRESULT AccessibleElement::put_accValue(VARIANT child, BSTR value) {
    CallScope scope(*this, Call::PutAccValue, &child);
    if (scope.early) return *scope.early;
    if (scope.target->state & (STATE_SYSTEM_READONLY | STATE_SYSTEM_UNAVAILABLE)) return E_ACCESSDENIED;
    scope.target->value = std::wstring(value ? value : L"", ::SysStringLen(value));
    ShowValue(*scope.target);
    m_desktop->Record("put_accValue " + Label(*scope.target) + " " + Plain(*scope.target->value));
    return scope.Finish(S_OK);
}

}  // namespace Simulated
