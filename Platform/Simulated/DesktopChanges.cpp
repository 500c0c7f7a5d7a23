// What happens to a desktop: counted calls, faults, changes, and messages that are due.
#include <algorithm>

#include "Platform/Simulated/Desktop.h"

namespace Simulated {
namespace {

std::optional<Fault> FaultFor(const std::vector<Fault>& faults, const CallCounts& calls, Call call, std::string_view iid) {
    for (const Fault& fault : faults) {
        if (fault.call.call != Call::Any && fault.call.call != call) continue;
        if (!fault.iid.empty() && fault.iid != iid) continue;
        if (fault.Meets(calls.Of(fault.call.call))) return fault;
    }
    return std::nullopt;
}

}  // namespace

std::optional<Fault> Desktop::Count(Element* element, Window* window, Call call, std::string_view iid) {
    BringAboutDueChanges();
    std::optional<Fault> met;
    if (element) {
        element->calls.Add(call);
        ++m_totalCalls;
        if (element->details && !element->details->faults.empty()) met = FaultFor(element->details->faults, element->calls, call, iid);
        for (std::size_t i = 0; i < m_faults.size() && !met; ++i) {
            const DesktopFault& planned = m_faults[i];
            const Call meant = planned.fault.call.call;
            if (meant != Call::Any && meant != call) continue;
            if (!planned.fault.iid.empty() && planned.fault.iid != iid) continue;
            const unsigned number = meant == Call::Any ? m_totalCalls : m_totals.Of(call) + 1;
            if (planned.fault.Meets(number - planned.before)) met = planned.fault;
        }
    } else if (window) {
        window->calls.Add(call);
        met = FaultFor(window->faults, window->calls, call, iid);
    }
    m_totals.Add(call);
    if (met) {
        Do(met->actions, element);
        if (met->stall) Wait(met->stall);
    }
    return met;
}

void Desktop::Do(const std::vector<Action>& actions, Element* self) {
    for (const Action& action : actions) Do(action, self);
}

void Desktop::Do(const Action& action, Element* self) {
    const std::lock_guard guard(m_lock);
    const auto element = [&]() -> ElementPtr {
        if (action.target.empty() || action.target == "self") return self ? self->shared_from_this() : nullptr;
        return ElementById(action.target);
    };
    switch (action.kind) {
        case Action::Kind::Change:
            if (const ElementPtr target = element()) Change(*target, action);
            break;
        case Action::Kind::Remove:
            if (const ElementPtr target = element()) Remove(target);
            break;
        case Action::Kind::Insert:
            if (const ElementPtr target = element(); target && action.element) {
                const ElementPtr inserted = action.element->CopyTree();
                // A second copy of the same plan has no ids, as they are taken.
                std::vector<Element*> open = {inserted.get()};
                while (!open.empty()) {
                    Element* const next = open.back();
                    open.pop_back();
                    if (AnyElementById(next->id)) next->id.clear();
                    for (const ElementPtr& child : next->children) open.push_back(child.get());
                }
                AdoptTree(inserted);
                target->Add(inserted, action.position);
            }
            break;
        case Action::Kind::DestroyWindow:
            if (const WindowPtr window = WindowById(action.target)) Destroy(window);
            break;
        case Action::Kind::ChangeWindow:
            if (const WindowPtr window = WindowById(action.target)) {
                if (action.title) window->title = *action.title;
                if (action.visible) window->visible = *action.visible;
                if (action.enabled) window->enabled = *action.enabled;
                if (action.hung) window->hung = *action.hung;
                if (action.rectangle) window->rectangle = *action.rectangle;
            }
            break;
        case Action::Kind::Focus:
            Focus(element());
            break;
        case Action::Kind::Stall:
            Wait(action.stall);
            break;
    }
}

void Desktop::Change(Element& element, const Action& action) {
    if (action.name) element.name = action.name;
    if (action.value) element.value = action.value;
    if (action.rectangle) element.rectangle = action.rectangle;
    if (action.state) element.state = *action.state;
    element.state |= action.add;
    element.state &= ~action.clear;
    element.state ^= action.toggle;
    if ((element.state & STATE_SYSTEM_FOCUSED) && m_focused.lock().get() != &element) Focus(element.shared_from_this());
}

void Desktop::Remove(const ElementPtr& element) {
    const std::lock_guard guard(m_lock);
    m_removed.push_back(element);
    ForgetTree(element);
    if (Element* const parent = std::exchange(element->parent, nullptr)) {
        const auto place = std::find(parent->children.begin(), parent->children.end(), element);
        if (place != parent->children.end()) parent->children.erase(place);
    }
}

void Desktop::Destroy(const WindowPtr& window) {
    const std::lock_guard guard(m_lock);
    if (window->destroyed) return;
    window->destroyed = true;
    m_handles.erase(window->hwnd);
    for (const auto& [objectId, root] : window->objects) ForgetTree(root);
    for (const WindowPtr& child : std::vector<WindowPtr>(window->children)) Destroy(child);
    std::vector<WindowPtr>& siblings = window->parent ? window->parent->children : m_model.windows;
    std::erase(siblings, window);
    // Owned windows go with their owner.
    for (const WindowPtr& other : std::vector<WindowPtr>(m_model.windows))
        if (!other->owner.empty() && other->owner == window->id) Destroy(other);
}

void Desktop::Focus(const ElementPtr& element) {
    const std::lock_guard guard(m_lock);
    if (const ElementPtr old = m_focused.lock()) old->state &= ~STATE_SYSTEM_FOCUSED;
    m_focused = element;
    if (element) element->state |= STATE_SYSTEM_FOCUSED;
}

ElementPtr Desktop::Focused() {
    const ElementPtr focused = m_focused.lock();
    // A plan may have cleared the state by itself.
    return focused && !focused->removed && (focused->state & STATE_SYSTEM_FOCUSED) ? focused : nullptr;
}

void Desktop::BringAboutDueChanges() {
    for (std::size_t i = 0; i < m_pending.size(); ++i) {
        Pending& pending = m_pending[i];
        if (pending.done || pending.change.posted || Now() - m_start < pending.change.after) continue;
        pending.done = true;
        Do(std::vector<Action>(pending.change.actions));
    }
}

bool Desktop::NextMessage(HWND window, bool remove, MSG& message) {
    const std::lock_guard guard(m_lock);
    BringAboutDueChanges();
    Pending* next = nullptr;
    for (Pending& pending : m_pending) {
        if (!pending.change.posted || pending.taken || Now() - m_start < pending.change.after) continue;
        const WindowPtr target = WindowById(pending.change.window);
        if (!pending.change.window.empty() && !target) continue;
        if (window && (!target || target->hwnd != window)) continue;
        if (!next || pending.change.after < next->change.after) next = &pending;
    }
    if (!next) return false;
    next->taken = remove;
    const WindowPtr target = WindowById(next->change.window);
    message = {};
    message.hwnd = target ? target->hwnd : nullptr;
    message.message = next->change.message;
    message.lParam = next - m_pending.data() + 1;
    message.time = static_cast<DWORD>(m_start + next->change.after);
    return true;
}

void Desktop::DispatchPosted(const MSG& message) {
    const std::lock_guard guard(m_lock);
    const std::size_t number = static_cast<std::size_t>(message.lParam);
    if (number == 0 || number > m_pending.size()) return;
    Pending& pending = m_pending[number - 1];
    if (!pending.taken || pending.done || pending.change.message != message.message) return;
    pending.done = true;
    Do(std::vector<Action>(pending.change.actions));
}

}  // namespace Simulated
