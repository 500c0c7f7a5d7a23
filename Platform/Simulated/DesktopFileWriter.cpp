// Writing a desktop file: the counterpart of DesktopFile.cpp.
#include "Platform/Simulated/DesktopFile.h"
#include "Platform/Simulated/JsonPlace.h"

namespace Simulated {
namespace {

constexpr std::size_t LongestLine = 110;

bool HoldsObject(const OrderedJson& json) {
    for (const OrderedJson& part : json)
        if (part.is_object() || (part.is_structured() && HoldsObject(part))) return true;
    return false;
}

std::string OnOneLine(const OrderedJson& json) {
    if (!json.is_structured()) return json.dump();
    std::string text;
    for (const auto& item : json.items()) {
        if (!text.empty()) text += ", ";
        if (json.is_object()) text += OrderedJson(item.key()).dump() + ": ";
        text += OnOneLine(item.value());
    }
    return json.is_object() ? "{" + text + "}" : "[" + text + "]";
}

// What is short and flat stays on one line, so that a desktop reads like a table.
void Print(const OrderedJson& json, std::size_t indent, std::string& text) {
    if (!json.is_structured() || json.empty()) {
        text += json.dump();
        return;
    }
    if (!HoldsObject(json)) {
        const std::string line = OnOneLine(json);
        if (indent + line.size() <= LongestLine) {
            text += line;
            return;
        }
    }
    const std::string margin(indent + 1, ' ');
    text += json.is_object() ? "{\n" : "[\n";
    bool first = true;
    for (const auto& item : json.items()) {
        if (!first) text += ",\n";
        first = false;
        text += margin;
        if (json.is_object()) text += OrderedJson(item.key()).dump() + ": ";
        Print(item.value(), indent + 1, text);
    }
    text += "\n" + std::string(indent, ' ') + (json.is_object() ? "}" : "]");
}

OrderedJson WriteListView(const ListViewData& view) {
    OrderedJson json = OrderedJson::object();
    json["columns"] = OrderedJson::array();
    for (const ListViewColumn& column : view.columns)
        json["columns"].push_back({{"text", Narrow(column.text)}, {"width", column.width}, {"order", column.order}});
    json["items"] = OrderedJson::array();
    for (const auto& row : view.items) {
        OrderedJson texts = OrderedJson::array();
        for (const std::wstring& text : row) texts.push_back(Narrow(text));
        json["items"].push_back(std::move(texts));
    }
    if (!view.header) json["header"] = false;
    if (!view.headerVisible) json["headerVisible"] = false;
    return json;
}

OrderedJson WriteListBox(const ListBoxData& box) {
    OrderedJson items = OrderedJson::array();
    for (const std::wstring& text : box.items) items.push_back(Narrow(text));
    if (box.selection.empty() && !box.multiple) return items;
    OrderedJson json = {{"items", std::move(items)}};
    json["selection"] = std::vector<int>(box.selection.begin(), box.selection.end());
    if (box.multiple) json["multiple"] = true;
    return json;
}

OrderedJson WriteWindow(const Window& window) {
    OrderedJson json = OrderedJson::object();
    if (!window.id.empty()) json["id"] = window.id;
    if (window.handle) json["handle"] = window.handle;
    json["class"] = Narrow(window.className);
    if (!window.realClass.empty() && window.realClass != window.className) json["realClass"] = Narrow(window.realClass);
    if (!window.title.empty()) json["title"] = Narrow(window.title);
    json["rectangle"] = WriteRectangle(window.rectangle);
    if (!window.visible) json["visible"] = false;
    if (!window.enabled) json["enabled"] = false;
    if (window.hung) json["hung"] = true;
    if (window.style) json["style"] = HexText(window.style);
    if (window.extendedStyle) json["extendedStyle"] = HexText(window.extendedStyle);
    if (!window.owner.empty()) json["owner"] = window.owner;
    if (window.process) json["process"] = window.process;
    if (window.thread != 1) json["thread"] = window.thread;
    if (window.listView) json["listView"] = WriteListView(*window.listView);
    if (window.listBox) json["listBox"] = WriteListBox(*window.listBox);
    for (const auto& [message, answer] : window.messages) json["messages"][std::to_string(message)] = answer;
    for (const Fault& fault : window.faults) json["faults"].push_back(WriteFault(fault));
    for (const auto& [objectId, root] : window.objects)
        if (!root->made) json["objects"][std::string(ObjectName(objectId))] = WriteElement(*root);
    if (window.nativeObject) json["nativeObject"] = WriteAutomation(*window.nativeObject);
    for (const WindowPtr& child : window.children)
        if (!child->made) json["children"].push_back(WriteWindow(*child));
    return json;
}

}  // namespace

std::string WriteDesktop(const DesktopModel& model) {
    OrderedJson json = OrderedJson::object();
    json["format"] = "vantrel-desktop/1";
    OrderedJson system = {{"session", model.system.session}, {"osVersion", model.system.osVersion}};
    for (const auto& [name, value] : model.system.environment) system["environment"][Narrow(name)] = Narrow(value);
    json["system"] = std::move(system);
    for (const ProcessData& process : model.processes) {
        OrderedJson entry = {{"id", process.id}, {"path", Narrow(process.path)}};
        if (process.session) entry["session"] = process.session;
        if (process.current) entry["current"] = true;
        if (process.accessDenied) entry["accessDenied"] = true;
        json["processes"].push_back(std::move(entry));
    }
    json["windows"] = OrderedJson::array();
    for (const WindowPtr& window : model.windows) json["windows"].push_back(WriteWindow(*window));
    for (const Fault& fault : model.faults) json["faults"].push_back(WriteFault(fault));
    for (const ScheduledChange& change : model.schedule) {
        OrderedJson entry = {{"after", change.after}};
        if (!change.window.empty()) entry["window"] = change.window;
        if (change.message != 0x0400) entry["message"] = change.message;
        if (!change.posted) entry["posted"] = false;
        entry["do"] = WriteScheduledActions(change.actions);
        json["schedule"].push_back(std::move(entry));
    }
    const HRESULT usual = DesktopModel{}.removedResult;
    if (model.removedResult != usual) json["removedResult"] = HexText(static_cast<std::uint32_t>(model.removedResult));
    std::string text;
    Print(json, 0, text);
    return text + "\n";
}

}  // namespace Simulated
