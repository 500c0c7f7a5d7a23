// Where elements stand: children, containers, windows, rectangles.
#include <algorithm>

#include "Platform/Simulated/Desktop.h"

namespace Simulated {

ElementPtr Desktop::MakeRoot(Window& window, LONG objectId) {
    auto root = std::make_shared<Element>();
    root->made = true;
    root->rootOf = &window;
    root->rootObject = objectId;
    root->role = objectId == OBJID_WINDOW ? ROLE_SYSTEM_WINDOW : ROLE_SYSTEM_CLIENT;
    window.objects[objectId] = root;
    return root;
}

ElementPtr Desktop::RootOf(Window& window, LONG objectId) {
    const auto found = window.objects.find(objectId);
    if (found != window.objects.end()) return found->second;
    return objectId == OBJID_WINDOW || objectId == OBJID_CLIENT ? MakeRoot(window, objectId) : nullptr;
}

ElementPtr Desktop::Resolve(const ElementPtr& element) {
    if (element->kind == ElementKind::Own) return element;
    const std::string& target = element->Details().target;
    if (element->kind == ElementKind::Reference) return ElementById(target);
    const WindowPtr window = WindowById(target);
    if (!window) return nullptr;
    return RootOf(*window, element->kind == ElementKind::WindowObject ? OBJID_WINDOW : OBJID_CLIENT);
}

std::vector<ElementPtr> Desktop::MadeChildren(Element& container) {
    std::vector<ElementPtr> children;
    if (!container.rootOf) return children;
    Window& window = *container.rootOf;
    if (container.rootObject == OBJID_WINDOW && !container.childrenGiven) {
        // The order of the published window object; what isn't described is left out.
        for (const LONG objectId : {OBJID_SYSMENU, OBJID_TITLEBAR, OBJID_MENU, OBJID_CLIENT, OBJID_VSCROLL, OBJID_HSCROLL, OBJID_SIZEGRIP})
            if (const ElementPtr root = RootOf(window, objectId)) children.push_back(root);
    } else if (container.rootObject == OBJID_CLIENT) {
        for (const WindowPtr& child : window.children)
            if (!child->placedIn && !child->made) children.push_back(RootOf(*child, OBJID_WINDOW));
    }
    return children;
}

std::size_t Desktop::ChildCount(Element& container) {
    return container.children.size() + MadeChildren(container).size() + (container.endless ? 1 : 0);
}

ElementPtr Desktop::ChildAt(Element& container, std::size_t index) {
    if (index < container.children.size()) return Resolve(container.children[index]);
    index -= container.children.size();
    const std::vector<ElementPtr> made = MadeChildren(container);
    if (index < made.size()) return made[index];
    if (!container.endless || index > made.size()) return nullptr;
    if (ElementPtr child = container.endlessChild.lock()) return child;
    const ElementPtr child = container.CopyAlone();
    child->id.clear();
    child->keeper = container.shared_from_this();
    container.endlessChild = child;
    return child;
}

ElementPtr Desktop::ContainerOf(Element& element) {
    if (element.parent) return element.parent->shared_from_this();
    if (element.keeper) return element.keeper;
    if (!element.rootOf) return nullptr;
    Window& window = *element.rootOf;
    if (element.rootObject != OBJID_WINDOW) return RootOf(window, OBJID_WINDOW);
    if (window.placedIn) return window.placedIn->shared_from_this();
    return window.parent ? RootOf(*window.parent, OBJID_CLIENT) : nullptr;
}

std::ptrdiff_t Desktop::PlaceOf(Element& container, const Element& child) {
    const std::vector<ElementPtr>& listed = container.children;
    // Asked one after the other, siblings are found near where they were before.
    if (child.place < listed.size() && listed[child.place].get() == &child) return static_cast<std::ptrdiff_t>(child.place);
    const std::size_t count = ChildCount(container);
    for (std::size_t index = 0; index < count; ++index) {
        if (ChildAt(container, index).get() != &child) continue;
        child.place = index;
        return static_cast<std::ptrdiff_t>(index);
    }
    return -1;
}

WindowPtr Desktop::WindowOf(Element& element) {
    for (ElementPtr at = element.shared_from_this(); at; at = ContainerOf(*at)) {
        if (!at->Details().window.empty()) return WindowById(at->Details().window);
        if (at->rootOf) return at->rootOf->destroyed ? nullptr : WindowById(at->rootOf->id);
    }
    return nullptr;
}

Rectangle Desktop::RectangleOf(Element& element) {
    if (element.rectangle) return *element.rectangle;
    return element.rootOf ? element.rootOf->rectangle : Rectangle{};
}

}  // namespace Simulated
