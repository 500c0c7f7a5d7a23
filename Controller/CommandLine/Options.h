// What a person asked for on the command line. Texts are UTF-16, as everywhere beyond the arguments themselves.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Controller/CommandLine/SelectorText.h"
#include "Platform/Windows.h"

namespace Zorvex::Controller {

// Of the whole run: which window, and how.
struct GeneralOptions {
    std::optional<std::uint32_t> processId;
    std::wstring windowTitle;  // with wildcards
    std::uint32_t windowHandle = 0;
    std::wstring launch;       // a command line
    std::wstring desktopFile;
    std::wstring serverLibrary;
    std::wstring besideLibrary;
    bool keep = false;  // leave the server, and the identifiers it gave, in the target
    bool json = false;
    std::wstring logLevel;  // empty: no log lines
    std::chrono::milliseconds timeout{10'000};
};

// An element, as a person names it.
struct TargetName {
    std::wstring text;
};

struct WindowsCommand {
    bool all = false;  // hidden ones too
};

struct TreeCommand {
    std::uint32_t depth = 100;
    std::uint32_t maximum = 20'000;  // elements
    std::vector<std::wstring> attributes;
    bool identifiers = false;
};

struct AtCommand {
    POINT point{};
    bool hitTestOnly = false;
    bool hierarchyOnly = false;
    bool fromTopLevel = false;
    bool domMode = false;
    bool relatedComboBox = false;
};

struct AttrsCommand {
    TargetName target;  // empty: the window's own element
    bool native = false;
};

struct FindCommand {
    std::wstring selector;
    std::uint32_t maximum = 1;  // of results
    double minimumScore = 0;
    bool visibleOnly = false;
    Search::ResultPolicy policy = Search::ResultPolicy::FirstMatch;
    TargetName from;  // empty: the window
};

struct SelectorCommand {
    TargetName target;
    std::wstring policyFile;  // empty: none
    std::optional<double> fuzzyLevel;
    bool aaOnly = false;
    bool explain = false;
    bool all = false;                // every element of the window, and how many are found again
    std::uint32_t maximum = 20'000;  // of these elements
};

struct TableCommand {
    TargetName target;
    std::wstring session;  // empty: none
    std::int32_t maximumRows = 0x7FFFFFFF;
    bool noHeader = false;
    bool cleanup = false;  // only forget the session
    bool csv = false;
};

struct TextCommand {
    TargetName target;               // empty: the window
    std::optional<RECT> rectangle;   // screen coordinates; of a window's text
    bool exact = false;              // the rectangle is one element's place, not a clip
    bool leaveOutHidden = false;
    bool leaveOutOffscreen = false;
    bool lines = false;              // the place of each line instead of the text
    std::optional<std::uint32_t> kind;  // how a window's text is captured; nothing: by its class
    std::wstring picture;            // a PNG file with the lines outlined; empty: none
};

enum class ElementAction { Focus, Click, Check, Uncheck, IsChecked, ScrollTo, Write, Expand, Collapse };

struct ActionCommand {
    ElementAction action = ElementAction::Click;
    TargetName target;
    std::wstring text;    // to write
    bool verify = false;  // look whether it took
};

struct SiblingCommand {
    TargetName target;
    std::int32_t offset = 1;  // negative: before it
};

struct FocusedCommand {};

struct EqualCommand {
    TargetName first, second;
};

enum class WakeScope { Window, Descendants, TopLevels, Chromium };

struct WakeCommand {
    WakeScope scope = WakeScope::Window;
};

struct DialogCommand {};

struct MarkerTabCommand {};

struct CallCommand {
    std::string request;
    std::string json;
    bool list = false;
};

struct RecordCommand {
    std::wstring file;  // "-": the standard output
};

struct PictureCommand {
    std::wstring file;
    TargetName outline;  // empty: none
};

struct ItemsCommand {
    TargetName target;
};

struct SelectedCommand {
    TargetName target;
};

struct SelectCommand {
    TargetName target;
    std::vector<std::wstring> items;  // with wildcards
    bool keepSelection = false;       // add to what is selected
    bool firstMatchOnly = false;
    bool allowDisabled = false;
    bool verify = false;  // look whether it took
};

struct ClearSelectionCommand {
    TargetName target;
    bool verify = false;  // look whether it took
};

struct UnloadCommand {};

using Command = std::variant<WindowsCommand, TreeCommand, AtCommand, AttrsCommand, FindCommand, SelectorCommand, ActionCommand, SiblingCommand,
                             FocusedCommand, EqualCommand, ItemsCommand, SelectedCommand, SelectCommand, ClearSelectionCommand, TextCommand, TableCommand,
                             WakeCommand, DialogCommand, MarkerTabCommand,
                             CallCommand, RecordCommand, PictureCommand, UnloadCommand>;

struct Invocation {
    GeneralOptions general;
    Command command;
};

}  // namespace Zorvex::Controller
