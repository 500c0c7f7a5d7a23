// The tree as an object shows it: parent, children, focus, selection, neighbours, and what lies at a point.
#include "Platform/Simulated/AccessibleElement.h"
#include "Platform/Simulated/ElementEnumerator.h"

namespace Simulated {

void AccessibleElement::PutElement(VARIANT* variant, const ElementPtr& element) {
    if (element == m_element) return PutNumber(variant, CHILDID_SELF);
    if (!element->simple) return PutObject(variant, m_desktop->ObjectOf(element));
    const ElementPtr container = m_desktop->ContainerOf(*element);
    // Only its container can give a simple element by its child id; others give the container.
    if (container == m_element) return PutNumber(variant, static_cast<LONG>(m_desktop->PlaceOf(*m_element, *element) + 1));
    PutObject(variant, m_desktop->ObjectOf(container));
}

HRESULT AccessibleElement::get_accParent(IDispatch** parent) {
    if (!parent) return E_INVALIDARG;
    *parent = nullptr;
    CallScope scope(*this, Call::AccParent);
    if (scope.early) return *scope.early;
    *parent = m_desktop->ObjectOf(m_desktop->ContainerOf(*m_element));
    return *parent ? scope.Finish(S_OK) : S_FALSE;
}

HRESULT AccessibleElement::get_accChildCount(LONG* count) {
    if (!count) return E_INVALIDARG;
    *count = 0;
    CallScope scope(*this, Call::AccChildCount);
    if (scope.early) return *scope.early;
    *count = scope.fault && scope.fault->count ? *scope.fault->count : static_cast<LONG>(m_desktop->ChildCount(*m_element));
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::get_accChild(VARIANT child, IDispatch** object) {
    if (!object) return E_INVALIDARG;
    *object = nullptr;
    CallScope scope(*this, Call::AccChild);
    if (scope.early) return *scope.early;
    if (child.vt != VT_I4 || child.lVal < 0) return E_INVALIDARG;
    if (child.lVal == CHILDID_SELF) {
        *object = m_desktop->ObjectOf(m_element);
        return scope.Finish(S_OK);
    }
    const std::size_t index = static_cast<std::size_t>(child.lVal) - 1;
    const ElementPtr found = m_desktop->ChildAt(*m_element, index);
    // A stand-in for something that is gone still has its place; past the end there is nothing.
    if (!found) return index < m_desktop->ChildCount(*m_element) ? E_FAIL : E_INVALIDARG;
    if (found->simple) return S_FALSE;
    *object = m_desktop->ObjectOf(found);
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::get_accFocus(VARIANT* child) {
    if (!child) return E_INVALIDARG;
    ::VariantInit(child);
    CallScope scope(*this, Call::AccFocus);
    if (scope.early) return *scope.early;
    if (scope.fault && scope.fault->type) {
        PutWrongType(child, *scope.fault->type);
        return scope.Finish(S_OK);
    }
    if (scope.fault && scope.fault->count) {
        PutNumber(child, *scope.fault->count);
        return scope.Finish(S_OK);
    }
    const std::string& named = m_element->Details().focus;
    ElementPtr focused = named == "self" ? m_element : named.empty() ? m_desktop->Focused() : m_desktop->ElementById(named);
    if (named.empty()) {
        // Only the element itself and what contains it have the focus.
        ElementPtr at = focused;
        // A window's object may stand inside its own window: the bound ends the way round such a ring.
        for (int steps = 0; at && at != m_element; ++steps) at = steps < 100'000 ? m_desktop->ContainerOf(*at) : nullptr;
        if (!at) focused = nullptr;
    }
    if (!focused) return S_FALSE;
    PutElement(child, focused);
    return scope.Finish(S_OK);
}

std::vector<ElementPtr> AccessibleElement::Selected() {
    std::vector<ElementPtr> selected;
    if (const auto& listed = m_element->Details().selection) {
        for (const std::string& id : *listed)
            if (const ElementPtr element = m_desktop->ElementById(id)) selected.push_back(element);
    } else {
        for (const ElementPtr& child : m_element->children)
            if (child->state & STATE_SYSTEM_SELECTED) selected.push_back(child);
    }
    return selected;
}

HRESULT AccessibleElement::get_accSelection(VARIANT* children) {
    if (!children) return E_INVALIDARG;
    ::VariantInit(children);
    CallScope scope(*this, Call::AccSelection);
    if (scope.early) return *scope.early;
    if (scope.fault && scope.fault->type) {
        PutWrongType(children, *scope.fault->type);
        return scope.Finish(S_OK);
    }
    const ElementDetails& details = m_element->Details();
    bool selects = details.selection.has_value();
    for (std::size_t i = 0; i < m_element->children.size() && !selects; ++i)
        selects = (m_element->children[i]->state & (STATE_SYSTEM_SELECTED | STATE_SYSTEM_SELECTABLE)) != 0;
    if (!selects) return DISP_E_MEMBERNOTFOUND;
    std::vector<ElementPtr> selected = Selected();
    if (selected.size() == 1 && !details.selectionAsEnumerator) {
        PutElement(children, selected.front());
    } else if (!selected.empty() || details.selectionAsEnumerator) {
        children->vt = VT_UNKNOWN;
        children->punkVal = new ElementEnumerator(m_desktop, m_element, std::move(selected));
    }
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::accNavigate(LONG direction, VARIANT start, VARIANT* end) {
    if (!end) return E_INVALIDARG;
    ::VariantInit(end);
    CallScope scope(*this, Call::AccNavigate);
    if (scope.early) return *scope.early;
    if (scope.fault && scope.fault->type) {
        PutWrongType(end, *scope.fault->type);
        return scope.Finish(S_OK);
    }
    if (start.vt != VT_I4) return E_INVALIDARG;
    const bool toChild = direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD;
    ElementPtr from = m_element;
    if (start.lVal != CHILDID_SELF) {
        // As published: only the object itself has a first and a last child.
        from = start.lVal > 0 && !toChild ? m_desktop->ChildAt(*m_element, static_cast<std::size_t>(start.lVal) - 1) : nullptr;
        if (!from) return E_INVALIDARG;
    }
    const ElementPtr container = toChild ? from : m_desktop->ContainerOf(*from);
    if (!container) return S_FALSE;
    const std::ptrdiff_t count = static_cast<std::ptrdiff_t>(m_desktop->ChildCount(*container));
    std::ptrdiff_t place = -1;
    switch (direction) {
        case NAVDIR_FIRSTCHILD: place = 0; break;
        case NAVDIR_LASTCHILD: place = count - 1; break;
        // Of the directions on the screen only the order of the children is known.
        case NAVDIR_NEXT:
        case NAVDIR_DOWN:
        case NAVDIR_RIGHT:
            place = m_desktop->PlaceOf(*container, *from);
            place = place < 0 ? count : place + 1;
            break;
        case NAVDIR_PREVIOUS:
        case NAVDIR_UP:
        case NAVDIR_LEFT: place = m_desktop->PlaceOf(*container, *from) - 1; break;
        default: return E_INVALIDARG;
    }
    const ElementPtr found = place >= 0 && place < count ? m_desktop->ChildAt(*container, static_cast<std::size_t>(place)) : nullptr;
    if (!found) return S_FALSE;
    if (found->simple) PutNumber(end, static_cast<LONG>(place + 1));  // in its container, which the caller knows
    else PutObject(end, m_desktop->ObjectOf(found));
    return scope.Finish(S_OK);
}

ElementPtr AccessibleElement::ElementAt(const ElementPtr& container, LONG x, LONG y) {
    const std::size_t count = container->children.size();
    for (std::size_t place = 0; place < m_desktop->ChildCount(*container); ++place) {
        if (container->endless && place + 1 == m_desktop->ChildCount(*container)) break;
        const ElementPtr child = m_desktop->ChildAt(*container, place);
        if (!child || (child->state & STATE_SYSTEM_INVISIBLE)) continue;
        if (place >= count && child->rootOf && !child->rootOf->visible) continue;
        if (m_desktop->RectangleOf(*child).Holds(x, y)) return child;
    }
    return nullptr;
}

HRESULT AccessibleElement::accHitTest(LONG x, LONG y, VARIANT* child) {
    if (!child) return E_INVALIDARG;
    ::VariantInit(child);
    CallScope scope(*this, Call::AccHitTest);
    if (scope.early) return *scope.early;
    if (scope.fault && scope.fault->type) {
        PutWrongType(child, *scope.fault->type);
        return scope.Finish(S_OK);
    }
    if (scope.fault && scope.fault->count) {
        PutNumber(child, *scope.fault->count);
        return scope.Finish(S_OK);
    }
    const ElementDetails& details = m_element->Details();
    const bool inside = m_desktop->RectangleOf(*m_element).Holds(x, y);
    if (!inside || details.hitTest == HitTest::Nothing) return S_FALSE;
    ElementPtr hit = m_element;
    if (!details.hitTarget.empty()) {
        hit = m_desktop->ElementById(details.hitTarget);
        if (!hit) return S_FALSE;
    } else if (details.hitTest != HitTest::Self) {
        // A cycle of references would never reach a bottom, hence the bound.
        for (int depth = 0; depth < 1000; ++depth) {
            const ElementPtr below = ElementAt(hit, x, y);
            if (!below) break;
            hit = below;
            if (details.hitTest == HitTest::Child || hit->simple) break;
        }
    }
    PutElement(child, hit);
    return scope.Finish(S_OK);
}

}  // namespace Simulated
