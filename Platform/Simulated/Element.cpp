#include "Platform/Simulated/Element.h"

#include <algorithm>
#include <utility>

namespace Simulated {

Element::~Element() {
    // What only this element keeps alive is moved to one list and dies from there, childless.
    std::vector<ElementPtr> dying = std::move(children);
    if (keeper) dying.push_back(std::move(keeper));
    while (!dying.empty()) {
        const ElementPtr last = std::move(dying.back());
        dying.pop_back();
        if (last.use_count() > 1) continue;
        dying.insert(dying.end(), std::make_move_iterator(last->children.begin()), std::make_move_iterator(last->children.end()));
        last->children.clear();
        if (last->keeper) dying.push_back(std::move(last->keeper));
    }
}

const ElementDetails& Element::Details() const {
    static const ElementDetails none;
    return details ? *details : none;
}

ElementDetails& Element::EditDetails() {
    if (!details) details = std::make_unique<ElementDetails>();
    return *details;
}

void Element::Add(ElementPtr child, std::size_t position) {
    const std::size_t place = std::min(position, children.size());
    child->parent = this;
    child->place = place;
    children.insert(children.begin() + static_cast<std::ptrdiff_t>(place), std::move(child));
    childrenGiven = true;
}

ElementPtr Element::CopyAlone() const {
    auto copy = std::make_shared<Element>();
    copy->id = id;
    copy->kind = kind;
    copy->simple = simple;
    copy->proxies = proxies;
    copy->endless = endless;
    copy->role = role;
    copy->state = state;
    copy->name = name;
    copy->value = value;
    copy->rectangle = rectangle;
    if (details) copy->details = std::make_unique<ElementDetails>(*details);
    copy->childrenGiven = childrenGiven;
    return copy;
}

ElementPtr Element::CopyTree() const {
    const ElementPtr copy = CopyAlone();
    std::vector<std::pair<const Element*, Element*>> open = {{this, copy.get()}};
    while (!open.empty()) {
        const auto [from, to] = open.back();
        open.pop_back();
        for (const ElementPtr& child : from->children) {
            to->Add(child->CopyAlone());
            open.emplace_back(child.get(), to->children.back().get());
        }
    }
    return copy;
}

}  // namespace Simulated
