// Writing elements, faults and actions: the counterpart of DesktopFileElements.cpp.
#include "Platform/Simulated/JsonPlace.h"
#include "Platform/Simulated/PublishedNames.h"

namespace Simulated {
namespace {

OrderedJson WriteRole(LONG role) {
    const std::string name = Narrow(RoleName(role));
    // "text" is the name of one role only; a number without a name stays one.
    if (name.empty()) return role;
    return name;
}

OrderedJson WriteStates(LONG states) {
    OrderedJson names = OrderedJson::array();
    for (int bit = 0; bit < 32; ++bit) {
        const LONG mask = static_cast<LONG>(std::uint32_t{1} << bit);
        if (!(states & mask)) continue;
        const std::string name = Narrow(StateName(mask));
        if (name.empty()) names.push_back(static_cast<std::uint32_t>(mask));
        else names.push_back(name);
    }
    return names;
}

void WriteText(OrderedJson& json, const char* key, const std::optional<std::wstring>& text) {
    if (text) json[key] = Narrow(*text);
}

OrderedJson WriteActions(const std::vector<Action>& actions) {
    OrderedJson list = OrderedJson::array();
    for (const Action& action : actions) {
        OrderedJson json = OrderedJson::object();
        switch (action.kind) {
            case Action::Kind::Change:
                if (!action.target.empty()) json["change"] = action.target;
                break;
            case Action::Kind::Remove: json["remove"] = action.target; break;
            case Action::Kind::Insert:
                json["insert"] = action.element ? WriteElement(*action.element) : OrderedJson::object();
                if (!action.target.empty()) json["into"] = action.target;
                if (action.position != static_cast<std::size_t>(-1)) json["at"] = action.position;
                break;
            case Action::Kind::DestroyWindow: json["destroyWindow"] = action.target; break;
            case Action::Kind::ChangeWindow: json["window"] = action.target; break;
            case Action::Kind::Focus: json["focus"] = action.target; break;
            case Action::Kind::Stall: json["wait"] = action.stall; break;
        }
        WriteText(json, "name", action.name);
        WriteText(json, "value", action.value);
        if (action.state) json["state"] = WriteStates(*action.state);
        if (action.add) json["add"] = WriteStates(action.add);
        if (action.clear) json["clear"] = WriteStates(action.clear);
        if (action.toggle) json["toggle"] = WriteStates(action.toggle);
        if (action.rectangle) json["rectangle"] = WriteRectangle(*action.rectangle);
        WriteText(json, "title", action.title);
        if (action.visible) json["visible"] = *action.visible;
        if (action.enabled) json["enabled"] = *action.enabled;
        if (action.hung) json["hung"] = *action.hung;
        list.push_back(std::move(json));
    }
    return list;
}

OrderedJson WriteIa2(const Ia2Data& data) {
    OrderedJson json = OrderedJson::object();
    if (data.role) json["role"] = data.role;
    if (data.states) json["states"] = static_cast<std::uint32_t>(data.states);
    if (data.uniqueId) json["uniqueId"] = *data.uniqueId;
    WriteText(json, "attributes", data.attributes);
    WriteText(json, "text", data.text);
    for (const Rectangle& extent : data.characters) json["characters"].push_back(WriteRectangle(extent));
    if (data.caret) json["caret"] = data.caret;
    return json;
}

OrderedJson WriteUia(const UiaData& data) {
    OrderedJson json = OrderedJson::object();
    if (data.runtimeId) json["runtimeId"] = std::vector<int>(data.runtimeId->begin(), data.runtimeId->end());
    for (const auto& [id, value] : data.properties) {
        // runtimeId names the array of the element; the property of that number goes by its number.
        std::string key(id == 30000 ? std::string_view() : NameIn(Properties, id));
        if (key.empty()) key = std::to_string(id);
        if (const auto* text = std::get_if<std::wstring>(&value)) json[key] = Narrow(*text);
        else if (const auto* number = std::get_if<LONG>(&value)) json[key] = *number;
        else if (const auto* flag = std::get_if<bool>(&value)) json[key] = *flag;
        else json[key] = std::get<double>(value);
    }
    return json;
}

void WriteDetails(OrderedJson& json, const ElementDetails& details) {
    static constexpr const char* HitTests[] = {"child", "deepest", "self", "nothing"};
    WriteText(json, "roleText", details.roleText);
    WriteText(json, "description", details.description);
    WriteText(json, "help", details.help);
    WriteText(json, "shortcut", details.shortcut);
    WriteText(json, "defaultAction", details.defaultAction);
    if (!details.action.empty()) json["action"] = WriteActions(details.action);
    if (!details.window.empty()) json["window"] = details.window;
    if (!details.focus.empty()) json["focus"] = details.focus;
    if (details.selection) json["selection"] = *details.selection;
    if (details.selectionAsEnumerator) json["selectionAsEnumerator"] = true;
    if (!details.hitTarget.empty()) json["hitTest"] = details.hitTarget;
    else if (details.hitTest != HitTest::Child) json["hitTest"] = HitTests[static_cast<int>(details.hitTest)];
    if (details.ia2) json["ia2"] = WriteIa2(*details.ia2);
    if (details.uia) json["uia"] = WriteUia(*details.uia);
    if (details.identity) json["identity"] = *details.identity;
    if (details.html) json["html"] = true;
    if (details.serviceProvider) json["serviceProvider"] = *details.serviceProvider;
    if (details.removedResult) json["removedResult"] = HexText(static_cast<std::uint32_t>(*details.removedResult));
    for (const Fault& fault : details.faults) json["faults"].push_back(WriteFault(fault));
}

}  // namespace

OrderedJson WriteRectangle(const Rectangle& rectangle) {
    return OrderedJson::array({rectangle.left, rectangle.top, rectangle.width, rectangle.height});
}

OrderedJson WriteFault(const Fault& fault) {
    OrderedJson json = OrderedJson::object();
    if (fault.call.call != Call::Any) json["call"] = std::string(NameOf(fault.call.call));
    if (fault.at != 1) json["at"] = fault.at;
    if (fault.times) json["times"] = fault.times;
    if (fault.every > 1) json["every"] = fault.every;
    if (!fault.iid.empty()) json["interface"] = fault.iid;
    if (!fault.actions.empty()) json["do"] = WriteActions(fault.actions);
    if (fault.stall) json["stall"] = fault.stall;
    if (fault.raise) json["throw"] = true;
    if (fault.result) json["result"] = HexText(static_cast<std::uint32_t>(*fault.result));
    if (fault.null) json["null"] = true;
    if (fault.type) json["type"] = std::string(NameIn(VariantTypes, *fault.type));
    if (fault.count) json["count"] = *fault.count;
    WriteText(json, "text", fault.text);
    return json;
}

OrderedJson WriteScheduledActions(const std::vector<Action>& actions) { return WriteActions(actions); }

OrderedJson WriteElement(const Element& element) {
    OrderedJson json = OrderedJson::object();
    const std::string& target = element.Details().target;
    switch (element.kind) {
        case ElementKind::WindowObject: json["windowObject"] = target; return json;
        case ElementKind::ClientObject: json["clientObject"] = target; return json;
        case ElementKind::Reference: json["element"] = target; return json;
        case ElementKind::Own: break;
    }
    if (!element.id.empty()) json["id"] = element.id;
    if (element.role) json["role"] = WriteRole(element.role);
    WriteText(json, "name", element.name);
    WriteText(json, "value", element.value);
    if (element.state) json["state"] = WriteStates(element.state);
    if (element.rectangle) json["rectangle"] = WriteRectangle(*element.rectangle);
    if (element.simple) json["simple"] = true;
    if (element.proxies) json["proxies"] = true;
    if (element.endless) json["endless"] = true;
    if (element.details) WriteDetails(json, *element.details);
    if (element.childrenGiven && !element.simple) json["children"] = OrderedJson::array();
    for (const ElementPtr& child : element.children) json["children"].push_back(WriteElement(*child));
    return json;
}

}  // namespace Simulated
