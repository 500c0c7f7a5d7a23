// Reading a desktop file: the text, the system, processes and windows.
#include "Platform/Simulated/DesktopFile.h"

#include "Platform/Simulated/JsonPlace.h"

namespace Simulated {
namespace {

constexpr int DeepestNesting = 1000;
constexpr std::int64_t Most = std::numeric_limits<std::int32_t>::max();

std::string LineAndColumn(std::string_view text, std::size_t offset) {
    std::size_t line = 1;
    std::size_t column = 1;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        ++column;
        if (text[i] != '\n') continue;
        ++line;
        column = 1;
    }
    return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
}

// Looked at before anything is read, as what is read nests calls as deep as the text nests.
void CheckNesting(std::string_view text) {
    int depth = 0;
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted && c == '\\') ++i;
        else if (c == '"') quoted = !quoted;
        else if (!quoted && (c == '{' || c == '[') && ++depth > DeepestNesting)
            throw DesktopFileError(LineAndColumn(text, i) + "more than " + std::to_string(DeepestNesting) + " levels");
        else if (!quoted && (c == '}' || c == ']')) --depth;
    }
}

Json Parse(std::string_view text) {
    CheckNesting(text);
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        // The library's own text has the place in it as well; what follows it is the problem.
        std::string problem = error.what();
        const std::size_t after = problem.find("column ");
        const std::size_t colon = problem.find(": ", after == std::string::npos ? 0 : after);
        if (colon != std::string::npos) problem = problem.substr(colon + 2);
        throw DesktopFileError(LineAndColumn(text, error.byte ? error.byte - 1 : 0) + problem);
    } catch (const Json::out_of_range&) {
        // The library doesn't tell where.
        throw DesktopFileError("desktop: a number is too large");
    }
}

void ReadSystem(const JsonPlace& place, SystemData& system) {
    place.ExpectKeys({"session", "osVersion", "environment"});
    place.IfKey("session", [&](const JsonPlace& at) { system.session = static_cast<DWORD>(at.Integer(0, Most)); });
    place.IfKey("osVersion", [&](const JsonPlace& at) {
        at.ExpectLength(3);
        std::size_t next = 0;
        at.ForEach([&](const JsonPlace& part) { system.osVersion[next++] = static_cast<DWORD>(part.Integer(0, Most)); });
    });
    place.IfKey("environment", [&](const JsonPlace& at) {
        if (!at.Value().is_object()) at.Fail("an object is expected");
        for (const auto& item : at.Value().items())
            system.environment.emplace_back(Widen(item.key()), JsonPlace(at, item.key(), item.value()).Text());
    });
}

ProcessData ReadProcess(const JsonPlace& place) {
    place.ExpectKeys({"id", "path", "session", "current", "accessDenied"});
    ProcessData process;
    place.IfKey("id", [&](const JsonPlace& at) { process.id = static_cast<DWORD>(at.Integer(1, Most)); });
    place.IfKey("path", [&](const JsonPlace& at) { process.path = at.Text(); });
    place.IfKey("session", [&](const JsonPlace& at) { process.session = static_cast<DWORD>(at.Integer(0, Most)); });
    place.IfKey("current", [&](const JsonPlace& at) { process.current = at.Flag(); });
    place.IfKey("accessDenied", [&](const JsonPlace& at) { process.accessDenied = at.Flag(); });
    return process;
}

ListViewData ReadListView(const JsonPlace& place) {
    place.ExpectKeys({"columns", "items", "header", "headerVisible"});
    ListViewData view;
    place.IfKey("columns", [&](const JsonPlace& columns) {
        columns.ForEach([&](const JsonPlace& at) {
            at.ExpectKeys({"text", "width", "order"});
            ListViewColumn column;
            column.order = static_cast<int>(view.columns.size());
            at.IfKey("text", [&](const JsonPlace& value) { column.text = value.Text(); });
            at.IfKey("width", [&](const JsonPlace& value) { column.width = value.Long(); });
            at.IfKey("order", [&](const JsonPlace& value) { column.order = value.Long(); });
            view.columns.push_back(std::move(column));
        });
    });
    place.IfKey("items", [&](const JsonPlace& rows) {
        rows.ForEach([&](const JsonPlace& row) {
            auto& texts = view.items.emplace_back();
            row.ForEach([&](const JsonPlace& text) { texts.push_back(text.Text()); });
        });
    });
    place.IfKey("header", [&](const JsonPlace& at) { view.header = at.Flag(); });
    place.IfKey("headerVisible", [&](const JsonPlace& at) { view.headerVisible = at.Flag(); });
    return view;
}

ListBoxData ReadListBox(const JsonPlace& place) {
    ListBoxData box;
    const auto items = [&](const JsonPlace& at) { at.ForEach([&](const JsonPlace& text) { box.items.push_back(text.Text()); }); };
    if (place.Value().is_array()) {
        items(place);
        return box;
    }
    place.ExpectKeys({"items", "selection", "multiple"});
    place.IfKey("items", items);
    place.IfKey("selection", [&](const JsonPlace& at) {
        at.ForEach([&](const JsonPlace& index) { box.selection.push_back(static_cast<LONG>(index.Integer(0, Most))); });
    });
    place.IfKey("multiple", [&](const JsonPlace& at) { box.multiple = at.Flag(); });
    return box;
}

void ReadMessages(const JsonPlace& place, Window& window) {
    if (!place.Value().is_object()) place.Fail("an object is expected");
    for (const auto& item : place.Value().items()) {
        const JsonPlace at(place, item.key(), item.value());
        if (item.key().empty() || item.key().size() > 9 || item.key().find_first_not_of("0123456789") != std::string::npos)
            at.Fail("the number of a message is expected");
        window.messages[static_cast<UINT>(std::stoul(item.key()))] =
            at.Integer(std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max());
    }
}

WindowPtr ReadWindow(const JsonPlace& place) {
    place.ExpectKeys({"id", "handle", "class", "realClass", "title", "rectangle", "visible", "enabled", "hung", "style",
                      "extendedStyle", "owner", "process", "thread", "listView", "listBox", "messages", "objects", "nativeObject", "faults", "children"});
    auto window = std::make_shared<Window>();
    if (!place.IfKey("class", [&](const JsonPlace& at) { window->className = at.Text(); })) place.Fail("a window needs a class");
    place.IfKey("id", [&](const JsonPlace& at) { window->id = at.Bytes(); });
    place.IfKey("handle", [&](const JsonPlace& at) { window->handle = at.Bits(); });
    place.IfKey("realClass", [&](const JsonPlace& at) { window->realClass = at.Text(); });
    place.IfKey("title", [&](const JsonPlace& at) { window->title = at.Text(); });
    place.IfKey("rectangle", [&](const JsonPlace& at) { window->rectangle = ReadRectangle(at); });
    place.IfKey("visible", [&](const JsonPlace& at) { window->visible = at.Flag(); });
    place.IfKey("enabled", [&](const JsonPlace& at) { window->enabled = at.Flag(); });
    place.IfKey("hung", [&](const JsonPlace& at) { window->hung = at.Flag(); });
    place.IfKey("style", [&](const JsonPlace& at) { window->style = at.Bits(); });
    place.IfKey("extendedStyle", [&](const JsonPlace& at) { window->extendedStyle = at.Bits(); });
    place.IfKey("owner", [&](const JsonPlace& at) { window->owner = at.Bytes(); });
    place.IfKey("process", [&](const JsonPlace& at) { window->process = static_cast<DWORD>(at.Integer(0, Most)); });
    place.IfKey("thread", [&](const JsonPlace& at) { window->thread = static_cast<DWORD>(at.Integer(0, Most)); });
    place.IfKey("listView", [&](const JsonPlace& at) { window->listView = ReadListView(at); });
    place.IfKey("listBox", [&](const JsonPlace& at) { window->listBox = ReadListBox(at); });
    place.IfKey("messages", [&](const JsonPlace& at) { ReadMessages(at, *window); });
    place.IfKey("faults", [&](const JsonPlace& at) {
        at.ForEach([&](const JsonPlace& fault) { window->faults.push_back(ReadFault(fault)); });
    });
    place.IfKey("objects", [&](const JsonPlace& at) {
        if (!at.Value().is_object()) at.Fail("an object is expected");
        for (const auto& item : at.Value().items()) {
            const JsonPlace root(at, item.key(), item.value());
            LONG objectId = 0;
            if (!ObjectFromName(item.key(), objectId)) root.Fail("unknown object; known are window, client, systemMenu, titleBar, menu, verticalScrollBar, horizontalScrollBar, sizeGrip, caret");
            const ElementPtr element = ReadElement(root);
            if (element->kind != ElementKind::Own || element->simple) root.Fail("a window's object must be described here, and can't be simple");
            window->objects[objectId] = element;
        }
    });
    place.IfKey("nativeObject", [&](const JsonPlace& at) { window->nativeObject = ReadAutomation(at); });
    place.IfKey("children", [&](const JsonPlace& at) {
        at.ForEach([&](const JsonPlace& child) { window->children.push_back(ReadWindow(child)); });
    });
    return window;
}

ScheduledChange ReadScheduled(const JsonPlace& place) {
    place.ExpectKeys({"after", "window", "message", "posted", "do"});
    ScheduledChange change;
    place.IfKey("after", [&](const JsonPlace& at) { change.after = static_cast<ULONGLONG>(at.Integer(0, Most)); });
    place.IfKey("window", [&](const JsonPlace& at) { change.window = at.Bytes(); });
    place.IfKey("message", [&](const JsonPlace& at) { change.message = static_cast<UINT>(at.Integer(0, 0xFFFF)); });
    place.IfKey("posted", [&](const JsonPlace& at) { change.posted = at.Flag(); });
    place.IfKey("do", [&](const JsonPlace& at) { change.actions = ReadActions(at); });
    return change;
}

}  // namespace

DesktopModel ReadDesktopModel(std::string_view text) {
    const Json root = Parse(text);
    const JsonPlace place(root);
    place.ExpectKeys({"format", "comment", "system", "processes", "windows", "faults", "schedule", "removedResult"});
    place.IfKey("format", [&](const JsonPlace& at) {
        if (at.Bytes() != "vantrel-desktop/1") at.Fail("only \"vantrel-desktop/1\" can be read");
    });
    DesktopModel model;
    place.IfKey("system", [&](const JsonPlace& at) { ReadSystem(at, model.system); });
    place.IfKey("processes", [&](const JsonPlace& at) {
        at.ForEach([&](const JsonPlace& process) { model.processes.push_back(ReadProcess(process)); });
    });
    place.IfKey("windows", [&](const JsonPlace& at) {
        at.ForEach([&](const JsonPlace& window) { model.windows.push_back(ReadWindow(window)); });
    });
    place.IfKey("faults", [&](const JsonPlace& at) {
        at.ForEach([&](const JsonPlace& fault) { model.faults.push_back(ReadFault(fault)); });
    });
    place.IfKey("schedule", [&](const JsonPlace& at) {
        at.ForEach([&](const JsonPlace& change) { model.schedule.push_back(ReadScheduled(change)); });
    });
    place.IfKey("removedResult", [&](const JsonPlace& at) { model.removedResult = static_cast<HRESULT>(at.Bits()); });
    return model;
}

std::shared_ptr<Desktop> ReadDesktop(std::string_view text) {
    try {
        return Desktop::Build(ReadDesktopModel(text));
    } catch (const std::invalid_argument& error) {
        throw DesktopFileError(error.what());
    }
}

}  // namespace Simulated
