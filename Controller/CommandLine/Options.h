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

struct UnloadCommand {};

using Command = std::variant<WindowsCommand, TreeCommand, AtCommand, AttrsCommand, FindCommand, CallCommand, RecordCommand,
                             PictureCommand, UnloadCommand>;

struct Invocation {
    GeneralOptions general;
    Command command;
};

}  // namespace Zorvex::Controller
