// Building a desktop, and finding what it holds.
#include "Platform/Simulated/Desktop.h"

#include <stdexcept>

#include "Platform/Simulated/AccessibleElement.h"

namespace Simulated {
namespace {

// Handles carry 32 bits; Windows widens them with their sign.
HWND HandleFrom(std::uint32_t bits) {
    return reinterpret_cast<HWND>(static_cast<std::intptr_t>(static_cast<std::int32_t>(bits)));
}

LONG DefaultRole(LONG objectId) {
    switch (objectId) {
        case OBJID_WINDOW: return ROLE_SYSTEM_WINDOW;
        case OBJID_SYSMENU: return ROLE_SYSTEM_MENUBAR;
        case OBJID_TITLEBAR: return ROLE_SYSTEM_TITLEBAR;
        case OBJID_MENU: return ROLE_SYSTEM_MENUBAR;
        case OBJID_VSCROLL:
        case OBJID_HSCROLL: return ROLE_SYSTEM_SCROLLBAR;
        case OBJID_SIZEGRIP: return ROLE_SYSTEM_GRIP;
        case OBJID_CARET: return ROLE_SYSTEM_CARET;
        default: return ROLE_SYSTEM_CLIENT;
    }
}

template <class Visit>
void ForEachElement(const ElementPtr& root, const Visit& visit) {
    std::vector<ElementPtr> open = {root};
    while (!open.empty()) {
        const ElementPtr element = std::move(open.back());
        open.pop_back();
        visit(element);
        open.insert(open.end(), element->children.rbegin(), element->children.rend());
    }
}

}  // namespace

DWORD DesktopModel::CurrentProcess() const {
    for (const ProcessData& process : processes)
        if (process.current) return process.id;
    return processes.empty() ? 1000 : processes.front().id;
}

Desktop::Desktop(DesktopModel model) : m_model(std::move(model)) {}

Desktop::~Desktop() = default;

std::shared_ptr<Desktop> Desktop::Build(DesktopModel model) {
    const std::shared_ptr<Desktop> desktop(new Desktop(std::move(model)));
    DesktopModel& own = desktop->m_model;
    // Handles that the file gives are taken before any is made up.
    std::vector<WindowPtr> open(own.windows.rbegin(), own.windows.rend());
    while (!open.empty()) {
        const WindowPtr window = std::move(open.back());
        open.pop_back();
        if (window->handle && !desktop->m_handles.emplace(HandleFrom(window->handle), window).second)
            throw std::invalid_argument("two windows have the handle " + std::to_string(window->handle));
        open.insert(open.end(), window->children.rbegin(), window->children.rend());
    }
    for (const WindowPtr& window : own.windows) desktop->Adopt(window, nullptr);
    for (const WindowPtr& window : desktop->AllWindows()) {
        if (!window->owner.empty() && !desktop->WindowById(window->owner))
            throw std::invalid_argument("window \"" + window->id + "\": no window has the id \"" + window->owner + "\"");
        for (const auto& [objectId, root] : window->objects) desktop->CheckNames(root);
    }
    for (Fault& fault : own.faults) desktop->m_faults.push_back({fault, 0});
    desktop->m_start = desktop->Now();
    for (const ScheduledChange& change : own.schedule) desktop->m_pending.push_back({change});
    return desktop;
}

void Desktop::Adopt(const WindowPtr& window, Window* parent) {
    window->parent = parent;
    if (window->process == 0) window->process = parent ? parent->process : m_model.CurrentProcess();
    if (window->realClass.empty()) window->realClass = window->className;
    if (window->handle == 0) {
        do m_nextHandle += 2;
        while (m_handles.contains(HandleFrom(m_nextHandle)));
        window->hwnd = HandleFrom(m_nextHandle);
        m_handles.emplace(window->hwnd, window);
    } else {
        window->hwnd = HandleFrom(window->handle);
    }
    if (window->id.empty()) window->id = "window" + std::to_string(m_windows.size() + 1);
    if (!m_windows.emplace(window->id, window).second)
        throw std::invalid_argument("two windows have the id \"" + window->id + "\"");

    if (window->listView && window->listView->header) {
        auto header = std::make_shared<Window>();
        header->id = window->id + ".header";
        header->className = L"SysHeader32";
        header->visible = window->listView->headerVisible;
        header->rectangle = {window->rectangle.left, window->rectangle.top, window->rectangle.width, 24};
        header->process = window->process;
        header->thread = window->thread;
        header->made = true;
        window->children.push_back(std::move(header));
    }
    for (auto& [objectId, root] : window->objects) {
        root->rootOf = window.get();
        root->rootObject = objectId;
        if (root->role == 0) root->role = DefaultRole(objectId);
        AdoptTree(root);
    }
    for (const WindowPtr& child : window->children) Adopt(child, window.get());
}

void Desktop::AdoptTree(const ElementPtr& root) {
    ForEachElement(root, [&](const ElementPtr& element) {
        element->removed = false;
        if (element->role == 0) element->role = ROLE_SYSTEM_CLIENT;
        if (element->simple && !element->children.empty())
            throw std::invalid_argument("element \"" + element->id + "\" is simple and can't have children");
        if (!element->id.empty() && !m_elements.emplace(element->id, element).second)
            throw std::invalid_argument("two elements have the id \"" + element->id + "\"");
        if (element->state & STATE_SYSTEM_FOCUSED) m_focused = element;
    });
}

void Desktop::CheckNames(const ElementPtr& root) {
    ForEachElement(root, [&](const ElementPtr& element) {
        const std::string& target = element->Details().target;
        const std::string& window = element->kind == ElementKind::WindowObject || element->kind == ElementKind::ClientObject
                                        ? target : element->Details().window;
        if (!window.empty()) {
            const WindowPtr found = WindowById(window);
            if (!found) throw std::invalid_argument("no window has the id \"" + window + "\"");
            if (element->kind == ElementKind::WindowObject) found->placedIn = element->parent;
        }
        if (element->kind == ElementKind::Reference) {
            const ElementPtr found = ElementById(target);
            if (!found) throw std::invalid_argument("no element has the id \"" + target + "\"");
            if (found->simple) throw std::invalid_argument("element \"" + target + "\" is simple: it can't be referred to");
        }
    });
}

void Desktop::ForgetTree(const ElementPtr& root) {
    ForEachElement(root, [&](const ElementPtr& element) { element->removed = true; });
}

WindowPtr Desktop::AnyWindowById(std::string_view id) {
    const auto found = m_windows.find(id);
    return found == m_windows.end() ? nullptr : found->second;
}

WindowPtr Desktop::WindowById(std::string_view id) {
    const WindowPtr window = AnyWindowById(id);
    return window && !window->destroyed ? window : nullptr;
}

WindowPtr Desktop::WindowByHandle(HWND handle) {
    const auto found = m_handles.find(handle);
    return found == m_handles.end() ? nullptr : found->second;
}

ElementPtr Desktop::AnyElementById(std::string_view id) {
    const auto found = m_elements.find(id);
    return found == m_elements.end() ? nullptr : found->second;
}

ElementPtr Desktop::ElementById(std::string_view id) {
    const ElementPtr element = AnyElementById(id);
    return element && !element->removed ? element : nullptr;
}

void Desktop::SetHandle(const WindowPtr& window, HWND handle) {
    const std::lock_guard guard(m_lock);
    m_handles.erase(window->hwnd);
    window->hwnd = handle;
    m_handles[handle] = window;
}

std::vector<WindowPtr> Desktop::AllWindows() {
    std::vector<WindowPtr> all;
    std::vector<WindowPtr> open(m_model.windows.rbegin(), m_model.windows.rend());
    while (!open.empty()) {
        all.push_back(std::move(open.back()));
        open.pop_back();
        const std::vector<WindowPtr>& children = all.back()->children;
        open.insert(open.end(), children.rbegin(), children.rend());
    }
    return all;
}

void Desktop::CountReference(Element* element, int change) {
    m_references += change;
    if (element) element->references += change;
}

AccessibleElement* Desktop::ObjectOf(const ElementPtr& element) {
    if (!element) return nullptr;
    const std::lock_guard guard(m_lock);
    if (element->object && !element->proxies) {
        element->object->AddRef();
        return element->object;
    }
    return new AccessibleElement(shared_from_this(), element);
}

void Desktop::AddFault(Fault fault) {
    const std::lock_guard guard(m_lock);
    const unsigned before = fault.call.call == Call::Any ? m_totalCalls : m_totals.Of(fault.call.call);
    m_faults.push_back({std::move(fault), before});
}

void Desktop::ClearFaults() {
    const std::lock_guard guard(m_lock);
    m_faults.clear();
    for (const auto& [id, element] : m_elements)
        if (element->details) element->details->faults.clear();
    for (const auto& [id, window] : m_windows) window->faults.clear();
}

void Desktop::Record(std::string text) { m_recorded.push_back(std::move(text)); }

}  // namespace Simulated
