// One window of the desktop.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Simulated/AutomationObject.h"
#include "Platform/Simulated/Element.h"

namespace Simulated {

struct ListViewColumn {
    std::wstring text = {};
    int width = 100;
    int order = 0;  // place on the screen, from 0
};
struct ListViewData {
    std::vector<ListViewColumn> columns = {};
    std::vector<std::vector<std::wstring>> items = {};  // rows of texts, by column index
    bool header = true;                                 // false: no header window at all
    bool headerVisible = true;
};
struct ListBoxData {
    std::vector<std::wstring> items = {};
    std::vector<LONG> selection = {};  // indexes
    bool multiple = false;
};

struct Window;
using WindowPtr = std::shared_ptr<Window>;

struct Window {
    std::string id;
    std::uint32_t handle = 0;  // 0: made up when the desktop is built
    std::wstring className;
    std::wstring realClass;
    std::wstring title;
    Rectangle rectangle;
    bool visible = true;
    bool enabled = true;
    bool hung = false;
    std::uint32_t style = 0;  // visible and enabled show in it without being listed
    std::uint32_t extendedStyle = 0;
    std::string owner;   // id; of a top-level window
    DWORD process = 0;   // 0: the current one
    DWORD thread = 1;
    std::optional<ListViewData> listView;
    std::optional<ListBoxData> listBox;
    std::map<UINT, LONGLONG> messages;    // answers by message
    std::map<LONG, ElementPtr> objects;   // roots by object id
    AutomationPtr nativeObject;           // what OBJID_NATIVEOM gives; null: nothing
    std::vector<Fault> faults;
    std::vector<WindowPtr> children;      // topmost first

    // Run time.
    HWND hwnd = nullptr;      // natively from `handle`; a serving program sets the real one
    Window* parent = nullptr;
    bool made = false;        // a list view's header, which answers from its parent: never written to a file
    Element* placedIn = nullptr;  // lists a stand-in for its window object, so the parent's client doesn't
    bool destroyed = false;
    CallCounts calls;
};

}  // namespace Simulated
