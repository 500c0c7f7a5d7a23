// Reading elements, faults and actions.
#include <cctype>

#include "Platform/Simulated/JsonPlace.h"
#include "Platform/Simulated/PublishedNames.h"

namespace Simulated {
namespace {

LONG ReadRole(const JsonPlace& place) {
    if (!place.Value().is_string()) return place.Long();
    LONG role = 0;
    const std::string name = place.Bytes();
    if (!RoleFromName(name, role)) place.Fail("unknown role \"" + name + "\"");
    return role;
}

HitTest ReadHitTest(const JsonPlace& place, std::string& target) {
    const std::string text = place.Bytes();
    if (text == "child") return HitTest::Child;
    if (text == "deepest") return HitTest::Deepest;
    if (text == "self") return HitTest::Self;
    if (text == "nothing") return HitTest::Nothing;
    target = text;
    return HitTest::Child;
}

Ia2Data ReadIa2(const JsonPlace& place) {
    place.ExpectKeys({"role", "states", "uniqueId", "attributes", "text", "characters", "caret"});
    Ia2Data data;
    place.IfKey("role", [&](const JsonPlace& at) { data.role = ReadRole(at); });
    place.IfKey("states", [&](const JsonPlace& at) { data.states = static_cast<LONG>(at.Bits()); });
    place.IfKey("uniqueId", [&](const JsonPlace& at) { data.uniqueId = at.Long(); });
    place.IfKey("attributes", [&](const JsonPlace& at) { data.attributes = at.Text(); });
    place.IfKey("text", [&](const JsonPlace& at) { data.text = at.Text(); });
    place.IfKey("caret", [&](const JsonPlace& at) { data.caret = at.Long(); });
    place.IfKey("characters", [&](const JsonPlace& at) {
        at.ForEach([&](const JsonPlace& extent) { data.characters.push_back(ReadRectangle(extent)); });
    });
    return data;
}

PropertyData ReadProperty(const JsonPlace& place) {
    if (place.Value().is_string()) return place.Text();
    if (place.Value().is_boolean()) return place.Flag();
    if (place.Value().is_number_float()) return place.Value().get<double>();
    return place.Long();
}

UiaData ReadUia(const JsonPlace& place) {
    UiaData data;
    if (!place.Value().is_object()) place.Fail("an object is expected");
    for (const auto& item : place.Value().items()) {
        const JsonPlace at(place, item.key(), item.value());
        if (item.key() == "runtimeId") {
            data.runtimeId.emplace();
            at.ForEach([&](const JsonPlace& part) { data.runtimeId->push_back(static_cast<LONG>(part.Bits())); });
        } else if (const auto known = NumberOf(Properties, item.key())) {
            data.properties.emplace_back(*known, ReadProperty(at));
        } else if (item.key().size() == 5 && item.key().find_first_not_of("0123456789") == std::string::npos) {
            data.properties.emplace_back(static_cast<LONG>(std::stoi(item.key())), ReadProperty(at));
        } else {
            place.Fail("unknown key \"" + item.key() + "\"; known are runtimeId, the properties such as automationId, and their numbers");
        }
    }
    return data;
}

// A child that stands for something described elsewhere.
ElementPtr ReadStandIn(const JsonPlace& place) {
    auto element = std::make_shared<Element>();
    const auto standFor = [&](ElementKind kind) {
        return [&element, kind](const JsonPlace& at) {
            element->kind = kind;
            element->EditDetails().target = at.Bytes();
        };
    };
    place.ExpectKeys({"windowObject", "clientObject", "element"});
    if (place.Value().size() != 1) place.Fail("one of windowObject, clientObject and element is expected");
    place.IfKey("windowObject", standFor(ElementKind::WindowObject));
    place.IfKey("clientObject", standFor(ElementKind::ClientObject));
    place.IfKey("element", standFor(ElementKind::Reference));
    return element;
}

void ReadDetails(const JsonPlace& place, Element& element) {
    const auto text = [&](std::string_view key, std::optional<std::wstring> ElementDetails::*member) {
        place.IfKey(key, [&](const JsonPlace& at) { element.EditDetails().*member = at.Text(); });
    };
    text("roleText", &ElementDetails::roleText);
    text("description", &ElementDetails::description);
    text("help", &ElementDetails::help);
    text("shortcut", &ElementDetails::shortcut);
    text("defaultAction", &ElementDetails::defaultAction);
    place.IfKey("action", [&](const JsonPlace& at) { element.EditDetails().action = ReadActions(at); });
    place.IfKey("window", [&](const JsonPlace& at) { element.EditDetails().window = at.Bytes(); });
    place.IfKey("focus", [&](const JsonPlace& at) { element.EditDetails().focus = at.Bytes(); });
    place.IfKey("hitTest", [&](const JsonPlace& at) {
        element.EditDetails().hitTest = ReadHitTest(at, element.EditDetails().hitTarget);
    });
    place.IfKey("selection", [&](const JsonPlace& at) {
        auto& selection = element.EditDetails().selection.emplace();
        at.ForEach([&](const JsonPlace& id) { selection.push_back(id.Bytes()); });
    });
    place.IfKey("selectionAsEnumerator", [&](const JsonPlace& at) { element.EditDetails().selectionAsEnumerator = at.Flag(); });
    place.IfKey("identity", [&](const JsonPlace& at) { element.EditDetails().identity = at.Bytes(); });
    place.IfKey("ia2", [&](const JsonPlace& at) { element.EditDetails().ia2 = ReadIa2(at); });
    place.IfKey("uia", [&](const JsonPlace& at) { element.EditDetails().uia = ReadUia(at); });
    place.IfKey("html", [&](const JsonPlace& at) { element.EditDetails().html = at.Flag(); });
    place.IfKey("serviceProvider", [&](const JsonPlace& at) { element.EditDetails().serviceProvider = at.Flag(); });
    place.IfKey("removedResult", [&](const JsonPlace& at) { element.EditDetails().removedResult = static_cast<HRESULT>(at.Bits()); });
    place.IfKey("faults", [&](const JsonPlace& at) {
        at.ForEach([&](const JsonPlace& fault) { element.EditDetails().faults.push_back(ReadFault(fault)); });
    });
}

}  // namespace

Rectangle ReadRectangle(const JsonPlace& place) {
    place.ExpectLength(4);
    LONG numbers[4] = {};
    std::size_t next = 0;
    place.ForEach([&](const JsonPlace& at) { numbers[next++] = at.Long(); });
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

LONG ReadStates(const JsonPlace& place) {
    if (!place.Value().is_array()) return static_cast<LONG>(place.Bits());
    LONG states = 0;
    place.ForEach([&](const JsonPlace& at) {
        const std::string name = at.Value().is_string() ? at.Bytes() : "0x";
        if (name.starts_with("0x")) {
            states |= static_cast<LONG>(at.Bits());
            return;
        }
        LONG bit = 0;
        if (!StateFromName(name, bit)) at.Fail("unknown state \"" + name + "\"");
        states |= bit;
    });
    return states;
}

ElementPtr ReadElement(const JsonPlace& place) {
    const Json& value = place.Value();
    if (value.is_object() && (value.contains("windowObject") || value.contains("clientObject") || value.contains("element")))
        return ReadStandIn(place);
    place.ExpectKeys({"id", "role", "roleText", "name", "value", "description", "help", "shortcut", "defaultAction", "action",
                      "state", "rectangle", "window", "simple", "proxies", "endless", "children", "focus", "selection",
                      "selectionAsEnumerator", "hitTest", "ia2", "uia", "identity", "html", "serviceProvider", "removedResult", "faults"});
    auto element = std::make_shared<Element>();
    place.IfKey("id", [&](const JsonPlace& at) { element->id = at.Bytes(); });
    place.IfKey("role", [&](const JsonPlace& at) { element->role = ReadRole(at); });
    place.IfKey("name", [&](const JsonPlace& at) { element->name = at.Text(); });
    place.IfKey("value", [&](const JsonPlace& at) { element->value = at.Text(); });
    place.IfKey("state", [&](const JsonPlace& at) { element->state = ReadStates(at); });
    place.IfKey("rectangle", [&](const JsonPlace& at) { element->rectangle = ReadRectangle(at); });
    place.IfKey("simple", [&](const JsonPlace& at) { element->simple = at.Flag(); });
    place.IfKey("proxies", [&](const JsonPlace& at) { element->proxies = at.Flag(); });
    place.IfKey("endless", [&](const JsonPlace& at) { element->endless = at.Flag(); });
    ReadDetails(place, *element);
    place.IfKey("children", [&](const JsonPlace& at) {
        element->childrenGiven = true;
        if (element->simple) at.Fail("a simple element can't have children");
        element->children.reserve(at.Value().size());
        at.ForEach([&](const JsonPlace& child) { element->Add(ReadElement(child)); });
    });
    return element;
}

Fault ReadFault(const JsonPlace& place) {
    place.ExpectKeys({"call", "at", "times", "every", "interface", "do", "stall", "throw", "result", "null", "type", "count", "text"});
    constexpr std::int64_t Most = std::numeric_limits<std::int32_t>::max();
    Fault fault;
    place.IfKey("call", [&](const JsonPlace& at) {
        const std::string name = at.Bytes();
        if (!CallFromName(name, fault.call.call)) at.Fail("unknown call \"" + name + "\"");
    });
    place.IfKey("at", [&](const JsonPlace& at) { fault.at = static_cast<unsigned>(at.Integer(1, Most)); });
    place.IfKey("times", [&](const JsonPlace& at) { fault.times = static_cast<unsigned>(at.Integer(0, Most)); });
    place.IfKey("every", [&](const JsonPlace& at) { fault.every = static_cast<unsigned>(at.Integer(1, Most)); });
    place.IfKey("interface", [&](const JsonPlace& at) { fault.iid = at.Bytes(); });
    place.IfKey("do", [&](const JsonPlace& at) { fault.actions = ReadActions(at); });
    place.IfKey("stall", [&](const JsonPlace& at) { fault.stall = static_cast<unsigned>(at.Integer(0, Most)); });
    place.IfKey("throw", [&](const JsonPlace& at) { fault.raise = at.Flag(); });
    place.IfKey("result", [&](const JsonPlace& at) { fault.result = static_cast<HRESULT>(at.Bits()); });
    place.IfKey("null", [&](const JsonPlace& at) { fault.null = at.Flag(); });
    place.IfKey("count", [&](const JsonPlace& at) { fault.count = at.Long(); });
    place.IfKey("text", [&](const JsonPlace& at) { fault.text = at.Text(); });
    place.IfKey("type", [&](const JsonPlace& at) {
        const std::string name = at.Bytes();
        const std::optional<LONG> type = NumberOf(VariantTypes, name);
        if (!type) at.Fail("unknown type \"" + name + "\"");
        fault.type = static_cast<VARTYPE>(*type);
    });
    return fault;
}

std::vector<Action> ReadActions(const JsonPlace& place) {
    std::vector<Action> actions;
    place.ForEach([&](const JsonPlace& at) {
        at.ExpectKeys({"change", "remove", "insert", "into", "at", "destroyWindow", "window", "focus", "wait", "name", "value",
                       "state", "add", "clear", "toggle", "rectangle", "title", "visible", "enabled", "hung"});
        Action action;
        int kinds = 0;
        const auto kind = [&](std::string_view key, Action::Kind meant) {
            return at.IfKey(key, [&](const JsonPlace& named) {
                ++kinds;
                action.kind = meant;
                if (meant == Action::Kind::Insert) action.element = ReadElement(named);
                else if (meant == Action::Kind::Stall) action.stall = static_cast<unsigned>(named.Integer(0, std::numeric_limits<std::int32_t>::max()));
                else action.target = named.Bytes();
            });
        };
        kind("change", Action::Kind::Change);
        kind("remove", Action::Kind::Remove);
        kind("insert", Action::Kind::Insert);
        kind("destroyWindow", Action::Kind::DestroyWindow);
        kind("window", Action::Kind::ChangeWindow);
        kind("focus", Action::Kind::Focus);
        kind("wait", Action::Kind::Stall);
        if (kinds > 1) at.Fail("one of change, remove, insert, destroyWindow, window, focus and wait is expected");
        // Without any of them the element changes that the plan belongs to.
        at.IfKey("into", [&](const JsonPlace& named) { action.target = named.Bytes(); });
        at.IfKey("at", [&](const JsonPlace& named) { action.position = static_cast<std::size_t>(named.Integer(0, 1'000'000'000)); });
        at.IfKey("name", [&](const JsonPlace& named) { action.name = named.Text(); });
        at.IfKey("value", [&](const JsonPlace& named) { action.value = named.Text(); });
        at.IfKey("state", [&](const JsonPlace& named) { action.state = ReadStates(named); });
        at.IfKey("add", [&](const JsonPlace& named) { action.add = ReadStates(named); });
        at.IfKey("clear", [&](const JsonPlace& named) { action.clear = ReadStates(named); });
        at.IfKey("toggle", [&](const JsonPlace& named) { action.toggle = ReadStates(named); });
        at.IfKey("rectangle", [&](const JsonPlace& named) { action.rectangle = ReadRectangle(named); });
        at.IfKey("title", [&](const JsonPlace& named) { action.title = named.Text(); });
        at.IfKey("visible", [&](const JsonPlace& named) { action.visible = named.Flag(); });
        at.IfKey("enabled", [&](const JsonPlace& named) { action.enabled = named.Flag(); });
        at.IfKey("hung", [&](const JsonPlace& named) { action.hung = named.Flag(); });
        actions.push_back(std::move(action));
    });
    return actions;
}

}  // namespace Simulated
