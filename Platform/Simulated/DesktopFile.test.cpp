#include "Platform/Simulated/DesktopFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "Platform/Simulated/PublishedNames.h"

namespace Simulated {
namespace {

std::string TextOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::erase(text, '\r');
    return text;
}

std::string ErrorOf(std::string_view json) {
    try {
        ReadDesktop(json);
    } catch (const DesktopFileError& error) {
        return error.what();
    }
    return "no error";
}

std::string WithElement(const std::string& element) {
    return R"({"windows":[{"id":"w","class":"C","objects":{"client":{"children":[)" + element + R"(]}}}]})";
}

TEST(DesktopFile, UnknownRoleIsToldWithItsPlace) {
    EXPECT_EQ(ErrorOf(R"({"windows":[{"class":"C","objects":{"client":{"children":[{},{},{"role":"buton"}]}}}]})"),
              "windows[0].objects.client.children[2].role: unknown role \"buton\"");
}

TEST(DesktopFile, UnknownStateIsToldWithItsPlace) {
    EXPECT_EQ(ErrorOf(WithElement(R"({"state":["focused","chekced"]})")),
              "windows[0].objects.client.children[0].state[1]: unknown state \"chekced\"");
}

TEST(DesktopFile, UnknownKeyIsAnErrorAndTheKnownOnesAreListed) {
    EXPECT_THAT(ErrorOf(R"({"windos":[]})"), testing::StartsWith("desktop: unknown key \"windos\"; known are format"));
    EXPECT_THAT(ErrorOf(WithElement(R"({"nmae":"x"})")), testing::StartsWith("windows[0].objects.client.children[0]: unknown key \"nmae\""));
}

TEST(DesktopFile, SyntaxErrorIsToldWithLineAndColumn) {
    EXPECT_THAT(ErrorOf("{\n \"windows\": [}"), testing::StartsWith("line 2, column 14: "));
    EXPECT_THAT(ErrorOf(""), testing::StartsWith("line 1, column 1: "));
}

TEST(DesktopFile, WrongTypesAreToldWithTheirPlace) {
    EXPECT_EQ(ErrorOf("[]"), "desktop: an object is expected");
    EXPECT_EQ(ErrorOf("[2e99999]"), "desktop: a number is too large");
    EXPECT_EQ(ErrorOf(R"({"windows":{}})"), "windows: a list is expected");
    EXPECT_EQ(ErrorOf(R"({"windows":[{"title":"x"}]})"), "windows[0]: a window needs a class");
    EXPECT_EQ(ErrorOf(R"({"windows":[{"class":1}]})"), "windows[0].class: a text is expected");
    EXPECT_EQ(ErrorOf(R"({"windows":[{"class":"C","rectangle":[1,2,3]}]})"), "windows[0].rectangle: a list of 4 is expected");
    EXPECT_EQ(ErrorOf(R"({"windows":[{"class":"C","rectangle":[1,2,3,4294967296]}]})"),
              "windows[0].rectangle[3]: the number must lie between -2147483648 and 2147483647");
    EXPECT_EQ(ErrorOf(R"({"windows":[{"class":"C","visible":"yes"}]})"), "windows[0].visible: true or false is expected");
    EXPECT_EQ(ErrorOf(R"({"windows":[{"class":"C","handle":18446744073709551615}]})"),
              "windows[0].handle: the number must lie between -2147483648 and 4294967295");
    EXPECT_EQ(ErrorOf(R"({"format":"vantrel-desktop/2"})"), "format: only \"vantrel-desktop/1\" can be read");
    EXPECT_EQ(ErrorOf(WithElement(R"({"faults":[{"call":"get_accNmae"}]})")),
              "windows[0].objects.client.children[0].faults[0].call: unknown call \"get_accNmae\"");
    EXPECT_EQ(ErrorOf(WithElement(R"({"faults":[{"type":"VT_I3"}]})")),
              "windows[0].objects.client.children[0].faults[0].type: unknown type \"VT_I3\"");
    EXPECT_EQ(ErrorOf(WithElement(R"({"faults":[{"result":"80004005"}]})")),
              "windows[0].objects.client.children[0].faults[0].result: a number, or a text such as \"0x80004005\", is expected");
}

TEST(DesktopFile, IdsThatAreTakenOrLeadNowhereAreErrors) {
    EXPECT_EQ(ErrorOf(WithElement(R"({"id":"a"},{"id":"a"})")), "two elements have the id \"a\"");
    EXPECT_EQ(ErrorOf(R"({"windows":[{"id":"a","class":"C"},{"id":"a","class":"C"}]})"), "two windows have the id \"a\"");
    EXPECT_EQ(ErrorOf(R"({"windows":[{"handle":8,"class":"C"},{"handle":8,"class":"C"}]})"), "two windows have the handle 8");
    EXPECT_EQ(ErrorOf(WithElement(R"({"element":"nobody"})")), "no element has the id \"nobody\"");
    EXPECT_EQ(ErrorOf(WithElement(R"({"windowObject":"nobody"})")), "no window has the id \"nobody\"");
    EXPECT_EQ(ErrorOf(WithElement(R"({"id":"s","simple":true},{"element":"s"})")), "element \"s\" is simple: it can't be referred to");
    EXPECT_EQ(ErrorOf(R"({"windows":[{"id":"a","class":"C","owner":"b"}]})"), "window \"a\": no window has the id \"b\"");
}

TEST(DesktopFile, SimpleElementWithChildrenIsAnError) {
    EXPECT_EQ(ErrorOf(WithElement(R"({"simple":true,"children":[]})")),
              "windows[0].objects.client.children[0].children: a simple element can't have children");
}

TEST(DesktopFile, NestingIsBoundedBeforeAnythingIsRead) {
    const std::string deep(1'000'000, '[');
    EXPECT_EQ(ErrorOf(deep), "line 1, column 1001: more than 1000 levels");
    // Brackets inside texts don't count.
    EXPECT_EQ(ErrorOf(R"({"comment":")" + std::string(5000, '[') + R"(\"[[["})"), "no error");
}

TEST(DesktopFile, DeepestAllowedTreeIsReadAndTakenApart) {
    std::string open, close;
    for (int i = 0; i < 490; ++i) {
        open += R"({"children":[)";
        close += "]}";
    }
    EXPECT_EQ(ErrorOf(WithElement(open + close)), "no error");
}

TEST(DesktopFile, TextsAreUtf16UnitsWhateverTheWidthOfACharacter) {
    const auto desktop = ReadDesktop(WithElement(R"({"id":"a","name":"ä€\ud83d\ude00\u0000x"})"));
    EXPECT_EQ(desktop->ElementById("a")->name, (std::wstring{0xE4, 0x20AC, 0xD83D, 0xDE00, 0, L'x'}));
}

TEST(DesktopFile, RolesAndStatesMayBeNamesNumbersOrConstants) {
    const auto desktop = ReadDesktop(WithElement(R"({"id":"a","role":"Push Button","state":["read only","multi_selectable",1]},
        {"id":"b","role":43,"state":"0x80000000"},{"id":"c","role":"CheckButton"},{"id":"d","role":"editable text"},{"id":"e","role":"static text"})"));
    EXPECT_EQ(desktop->ElementById("a")->role, 43);
    EXPECT_EQ(desktop->ElementById("a")->state, 0x40 | 0x1000000 | 1);
    EXPECT_EQ(desktop->ElementById("b")->role, 43);
    EXPECT_EQ(static_cast<std::uint32_t>(desktop->ElementById("b")->state), 0x80000000u);
    EXPECT_EQ(desktop->ElementById("c")->role, 44);
    EXPECT_EQ(desktop->ElementById("d")->role, 42);
    EXPECT_EQ(desktop->ElementById("e")->role, 41);
}

TEST(DesktopFile, EveryPublishedNameIsReadBack) {
    for (LONG role = 0; role <= 64; ++role) {
        LONG read = -1;
        const std::wstring_view name = RoleName(role);
        ASSERT_TRUE(RoleFromName(std::string(name.begin(), name.end()), read)) << role;
        EXPECT_EQ(read, role);
    }
    for (int bit = 0; bit < 31; ++bit) {
        LONG read = -1;
        const std::wstring_view name = StateName(LONG{1} << bit);
        ASSERT_TRUE(StateFromName(std::string(name.begin(), name.end()), read)) << bit;
        EXPECT_EQ(read, LONG{1} << bit);
    }
}

TEST(DesktopFile, WhatIsLeftOutHasDefaults) {
    const auto desktop = ReadDesktop(R"({"windows":[{"class":"C"},{"class":"D"}]})");
    const std::vector<WindowPtr> windows = desktop->AllWindows();
    ASSERT_EQ(windows.size(), 2u);
    EXPECT_NE(windows[0]->hwnd, nullptr);
    EXPECT_NE(windows[0]->hwnd, windows[1]->hwnd);
    EXPECT_TRUE(windows[0]->visible && windows[0]->enabled && !windows[0]->hung);
    EXPECT_EQ(windows[0]->process, 1000u);
    EXPECT_EQ(windows[0]->thread, 1u);
    EXPECT_EQ(windows[0]->realClass, L"C");
}

// Everything that a file can say, once.
constexpr std::string_view Everything = R"({
 "format": "vantrel-desktop/1",
 "system": { "session": 3, "osVersion": [6,1,7601], "environment": {"NAME": "wert ä"} },
 "processes": [ { "id": 1000, "path": "C:\\a.exe", "session": 2, "current": true }, { "id": 7, "path": "", "accessDenied": true } ],
 "windows": [ { "id": "w", "handle": 4294901760, "class": "C", "realClass": "R", "title": "T\n", "rectangle": [-1,2,3,4], "visible": false,
   "enabled": false, "hung": true, "style": "0x80000001", "extendedStyle": 8, "process": 7, "thread": 9,
   "listView": { "columns": [ {"text":"A","width":7,"order":1}, {"text":"B"} ], "items": [["a","b"],[]], "header": false, "headerVisible": false },
   "listBox": { "items": ["x"], "selection": [0], "multiple": true }, "messages": { "4100": -3 },
   "faults": [ { "call": "SendMessage", "at": 2, "times": 3, "every": 4, "stall": 5, "result": "0x80004005" } ],
   "objects": { "window": { "children": [ {"clientObject":"w"} ] }, "caret": { "role": 7 }, "client": { "id": "root", "focus": "self", "selection": ["a"],
     "selectionAsEnumerator": true, "hitTest": "deepest", "children": [
      { "id": "a", "role": 77, "roleText": "own", "name": "", "value": "v", "description": "d", "help": "h", "shortcut": "s", "defaultAction": "Press",
        "action": [ {"toggle":["checked"]}, {"change":"b","name":"n","state":1,"add":2,"clear":4}, {"remove":"b"}, {"insert":{"id":"new"},"into":"root","at":1},
                    {"destroyWindow":"w"}, {"window":"w","title":"t","visible":true,"enabled":true,"hung":false,"rectangle":[1,1,1,1]}, {"focus":"a"}, {"wait":9} ],
        "state": ["focusable","0x80000000"], "rectangle": [1,2,3,4], "window": "w", "proxies": true, "endless": true, "hitTest": "a",
        "ia2": { "role": 1029, "states": 4294967295, "uniqueId": -5, "attributes": "tag:p;", "text": "hi", "characters": [[1,2,3,4]], "caret": 1 },
        "uia": { "runtimeId": [42,-1], "automationId": "x", "30099": true, "30098": 1.5, "30097": 7 }, "identity": "i\u0001", "html": true, "serviceProvider": false,
        "removedResult": "0x80010108",
        "faults": [ { "call": "get_accName", "null": true }, { "call": "get_accRole", "type": "VT_I2" }, { "call": "get_accChildCount", "count": -1 },
                    { "call": "QueryInterface", "interface": "IAccessible2", "throw": true }, { "text": "t", "do": [ {"remove":"self"} ] } ] },
      { "id": "b", "simple": true }, { "windowObject": "child" }, { "element": "root" } ] } },
   "children": [ { "id": "child", "class": "K" } ] },
  { "id": "popup", "class": "P", "owner": "w" } ],
 "faults": [ { "at": 1000000, "result": "0x80004005" } ],
 "schedule": [ { "after": 10, "window": "w", "message": 18, "posted": false, "do": [ {"focus":"a"} ] } ],
 "removedResult": "0x80004005" })";

TEST(DesktopFile, WrittenFileReadsAsTheSame) {
    const std::string once = WriteDesktop(ReadDesktopModel(Everything));
    EXPECT_EQ(WriteDesktop(ReadDesktopModel(once)), once);
    // Nothing that the file said is missing.
    for (const char* key : {"listView", "listBox", "messages", "selectionAsEnumerator", "hitTest", "action", "toggle", "destroyWindow", "wait", "proxies",
                            "endless", "characters", "caret", "runtimeId", "automationId", "30099", "identity", "html", "serviceProvider", "removedResult", "throw",
                            "interface", "windowObject", "clientObject", "element", "owner", "schedule", "posted", "accessDenied", "environment", "roleText"})
        EXPECT_THAT(once, testing::HasSubstr("\"" + std::string(key) + "\":"));
}

TEST(DesktopFile, BuiltDesktopIsWrittenWithoutWhatWasMadeUp) {
    const auto desktop = ReadDesktop(R"({"windows":[{"id":"w","class":"L","listView":{"columns":[{"text":"A"}],"items":[]}}]})");
    desktop->RootOf(*desktop->WindowById("w"), OBJID_WINDOW);
    const std::string text = WriteDesktop(desktop->Model());
    EXPECT_EQ(text.find("SysHeader32"), std::string::npos);
    EXPECT_EQ(text.find("objects"), std::string::npos);
    EXPECT_EQ(ErrorOf(text), "no error");
}

TEST(DesktopFile, HalfASurrogatePairIsWrittenAsTheReplacementCharacter) {
    DesktopModel model;
    model.windows.push_back(std::make_shared<Window>());
    model.windows[0]->className = std::wstring{L'a', 0xD800, L'b', 0xDFFF};
    EXPECT_EQ(ReadDesktopModel(WriteDesktop(model)).windows[0]->className, (std::wstring{L'a', 0xFFFD, L'b', 0xFFFD}));
}

TEST(DesktopFile, EveryShippedDesktopLoadsAndIsInTheWritersForm) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(VANTREL_SOURCE_DIR) / "tests" / "desktops")) {
        if (entry.path().extension() != ".json") continue;  // the folder of web pages
        const std::string text = TextOf(entry.path());
        EXPECT_EQ(ErrorOf(text), "no error") << entry.path();
        const std::string written = WriteDesktop(ReadDesktopModel(text));
        if (std::getenv("VANTREL_REWRITE_EXPECTED")) std::ofstream(entry.path(), std::ios::binary) << written;
        EXPECT_EQ(written, text) << entry.path() << ": VANTREL_REWRITE_EXPECTED=1 brings it into the writer's form";
        ++count;
    }
    EXPECT_GE(count, 4u);
}

TEST(DesktopFile, EveryTruncationOfAFileIsAnErrorOrAFile) {
    for (std::size_t length = 0; length < Everything.size(); length += 3) EXPECT_NE(ErrorOf(Everything.substr(0, length)), "no error") << length;
}

TEST(DesktopFile, DamagedFilesNeverDoMoreThanFail) {
    std::mt19937 random(7);
    for (int round = 0; round < 1500; ++round) {
        std::string text(Everything);
        for (int i = 0; i < 3; ++i) text[random() % text.size()] = static_cast<char>(random() % 256);
        ErrorOf(text);
    }
}

// The example in the document is a desktop, and what the document says about it is true.
TEST(DesktopFile, ExampleOfTheDocumentLoads) {
    const std::string document = TextOf(std::filesystem::path(VANTREL_SOURCE_DIR) / "docs" / "desktop-files.md");
    const std::size_t begin = document.find("```json\n");
    ASSERT_NE(begin, std::string::npos);
    const std::size_t end = document.find("```", begin + 8);
    const auto desktop = ReadDesktop(std::string_view(document).substr(begin + 8, end - begin - 8));
    EXPECT_EQ(desktop->ElementById("save")->name, L"Save");
    EXPECT_TRUE(desktop->ElementById("line2")->simple);
    EXPECT_EQ(desktop->ChildCount(*desktop->RootOf(*desktop->WindowById("main"), OBJID_CLIENT)), 4u);
}

TEST(DesktopFile, EveryKeyStandsInTheDocument) {
    const std::string document = TextOf(std::filesystem::path(VANTREL_SOURCE_DIR) / "docs" / "desktop-files.md");
    const auto holds = [&](const std::string& text) { return document.find(text) != std::string::npos; };
    for (int i = 1; i < static_cast<int>(Call::Count); ++i) {
        const std::string name(NameOf(static_cast<Call>(i)));
        EXPECT_TRUE(holds("`" + name + "`")) << name;
    }
    const std::string all = WriteDesktop(ReadDesktopModel(Everything));
    for (std::size_t at = all.find("\": "); at != std::string::npos; at = all.find("\": ", at + 1)) {
        const std::size_t begin = all.rfind('"', at - 1) + 1;
        const std::string key = all.substr(begin, at - begin);
        if (key.find_first_not_of("0123456789") == std::string::npos || key == "NAME") continue;
        EXPECT_TRUE(holds("`" + key + "`") || holds("\"" + key + "\":")) << key;
    }
}

}  // namespace
}  // namespace Simulated
