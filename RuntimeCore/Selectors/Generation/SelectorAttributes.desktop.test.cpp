#include "RuntimeCore/Selectors/Generation/SelectorAttributes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Common/include/CComVariant.h"
#include "Common/include/UtfConversion.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

using namespace Zorvex::Generation;

constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Frame", "objects": {"window": {"id": "root", "role": "window", "children": [
    {"id": "ok", "role": "push button", "name": "OK", "rectangle": [0, 0, 9, 9]},
    {"id": "cancel", "role": "push button", "name": "Cancel", "rectangle": [9, 0, 9, 9]},
    {"id": "secondOk", "role": "push button", "name": "OK", "rectangle": [18, 0, 9, 9]},
    {"id": "thirdOk", "role": "push button", "name": "OK", "rectangle": [27, 0, 9, 9]},
    {"id": "single", "role": "push button", "name": "Single", "uia": {"automationId": "singleButton", "labeledBy": "Label", "runtimeId": [9]}},
    {"id": "copy1", "role": "text", "name": "First", "uia": {"automationId": "shared", "labeledBy": "Label 1", "runtimeId": [1]}},
    {"id": "copy2", "role": "text", "name": "Second", "uia": {"automationId": "shared", "labeledBy": "Label 2", "runtimeId": [2]}},
    {"id": "noId", "role": "text", "name": "Third", "uia": {"automationId": "", "labeledBy": "Label 3", "runtimeId": [3]}},
    {"id": "helped", "role": "check box", "name": "Help", "help": "Helps", "state": ["checked"], "ia2": {"text": "IA2 text"}}]}}},
  {"id": "list", "class": "SysListView32", "listView": {"columns": [{"text": "Name"}, {"text": "Size"}], "items": [["a", "1"], ["b", "2"]]},
   "objects": {"client": {"id": "client", "role": "list", "children": [
      {"id": "row1", "role": "list item", "name": "a", "simple": true},
      {"id": "row2", "role": "list item", "name": "", "simple": true}]}}}]})";

std::string Joined(const AttributeTexts& attributes) {
    std::string joined;
    for (const auto& [name, text] : attributes) joined += NarrowText(name) + "=" + NarrowText(text) + ";";
    return joined;
}

class SelectorAttributesTest : public testing::Test {
protected:
    enum Index { NoIndex, ComputeIndex };

    // The attributes and the index as "name=value;... index", or "failed".
    std::string Minimal(const char* element, Index computeIndex = ComputeIndex, bool checkUnique = true, int timeoutMs = 1000,
                        const char* window = "main", const char* root = nullptr) {
        AttributeTexts attributes{{L"left", L"over"}};
        LONG index = 77;
        const bool found = GetMinimalSelectorAttributes(desktop.Window(window), root ? desktop.Element(root) : CComPtr<IAccessible>(),
                                                        desktop.Element(element), desktop.Child(element), computeIndex == ComputeIndex,
                                                        checkUnique, timeoutMs, attributes, index);
        if (found) return Joined(attributes) + " " + std::to_string(index);
        EXPECT_TRUE(attributes.empty());
        EXPECT_EQ(index, -1);
        return "failed";
    }
    // An element with that property in a window of its own.
    static std::string MinimalOf(const std::string& properties, Index computeIndex) {
        SelectorAttributesTestDesktop one(properties);
        AttributeTexts attributes;
        LONG index = 77;
        EXPECT_TRUE(GetMinimalSelectorAttributes(one.desktop.Window("w"), nullptr, one.desktop.Element("e"), CComVariant(0),
                                                 computeIndex == ComputeIndex, true, 1000, attributes, index));
        EXPECT_EQ(index, 0);
        return Joined(attributes);
    }
    std::string All(const char* element, bool strictOwner, const AttributeTexts& leaveOut = {}, const char* window = "main") {
        AttributeTexts attributes{{L"left", L"over"}};
        GetAllSelectorAttributes(AAElement{desktop.Window(window), desktop.Element(element), desktop.Child(element)}, strictOwner, leaveOut,
                                 attributes);
        return Joined(attributes);
    }
    // Each line begins with the name of the function that writes it.
    void ExpectLine(const std::string& line) {
        const std::string function = line.substr(2, line.find(':') - 2);
        for (const std::string& found : log.Lines())
            if (found == line.substr(0, 2) + "[" + function + "] " + line.substr(2)) return;
        ADD_FAILURE() << "no line \"" << line << "\" in\n" << log.Text();
    }
    void TearDown() override { EXPECT_EQ(desktop.OutstandingReferences(), 0); }

    struct SelectorAttributesTestDesktop {
        explicit SelectorAttributesTestDesktop(const std::string& properties)
            : desktop(R"({"windows": [{"id": "w", "class": "x", "objects": {"window": {"children": [{"id": "e", )" + properties + "}]}}}]}") {}
        DesktopFixture desktop;
    };

    LogCapture log;
    DesktopFixture desktop{kDesktop};
};

// ---- What is found

TEST_F(SelectorAttributesTest, NameAndRoleIdentifyAnElementWithItsIndex) {
    EXPECT_EQ(Minimal("cancel"), "name=Cancel;role=push button; 0");
    EXPECT_EQ(Minimal("ok"), "name=OK;role=push button; 1");
    EXPECT_EQ(Minimal("ok", ComputeIndex, false), "name=OK;role=push button; 0");
    EXPECT_EQ(Minimal("secondOk"), "name=OK;role=push button; 2");
    EXPECT_EQ(Minimal("secondOk", NoIndex), "name=OK;role=push button; 0");
    ExpectLine("V GetMinimalSelectorAttributes: Enter");
    ExpectLine("V GetMinimalSelectorAttributes: Exit");
}

TEST_F(SelectorAttributesTest, AutomationIdThatSufficesIsTheOnlyAttribute) {
    EXPECT_EQ(Minimal("single"), "automationid=singleButton; 0");
    EXPECT_EQ(desktop.Calls("single", "get_accName"), 0);
    EXPECT_FALSE(log.Contains("GetMinimalSelectorAttributes: Exit"));
}

TEST_F(SelectorAttributesTest, AutomationIdThatIsSharedIsJoinedByTheOthers) {
    EXPECT_EQ(Minimal("copy2"), "automationid=shared;labeledby=Label 2;name=Second;role=text; 0");
    EXPECT_EQ(Minimal("copy1"), "automationid=shared;labeledby=Label 1;name=First;role=text; 0");
    // Where nobody checks, the first of them is told apart by the id.
    EXPECT_EQ(Minimal("copy1", ComputeIndex, false), "automationid=shared; 0");
    EXPECT_EQ(Minimal("copy2", ComputeIndex, false), "automationid=shared;labeledby=Label 2;name=Second;role=text; 0");
}

TEST_F(SelectorAttributesTest, WithoutAnIndexTheAutomationIdAloneIsRead) {
    EXPECT_EQ(Minimal("copy2", NoIndex), "automationid=shared; 0");
    EXPECT_EQ(desktop.Calls("copy2", "get_accName") + desktop.Calls("copy2", "get_accRole"), 0);
    EXPECT_EQ(desktop.Calls("main", "AccessibleObjectFromWindow"), 0);
}

TEST_F(SelectorAttributesTest, LabelIsReadUnlessTheAutomationIdCouldNotBe) {
    EXPECT_EQ(Minimal("noId"), "labeledby=Label 3;name=Third;role=text; 0");
    Simulated::Fault first{.call = "GetPropertyValue", .times = 1};
    first.at = static_cast<unsigned>(desktop.Calls("noId", "GetPropertyValue") + 1);
    first.result = E_FAIL;
    desktop.AddFault("noId", first);
    EXPECT_EQ(Minimal("noId", NoIndex), "name=Third;role=text; 0");
}

TEST_F(SelectorAttributesTest, ElementWithoutANameHasItsVirtualOne) {
    EXPECT_EQ(Minimal("row2", ComputeIndex, true, 1000, "list"), "role=list item;virtualname=b 2; 0");
    EXPECT_EQ(Minimal("row1", ComputeIndex, true, 1000, "list"), "name=a;role=list item; 0");
}

TEST_F(SelectorAttributesTest, ElementWithoutAnyAttributeFailsOnlyWhereAnIndexIsWanted) {
    for (const char* call : {"get_accRole", "get_accName"}) {
        Simulated::Fault fault{.call = call};
        fault.result = E_FAIL;
        desktop.AddFault("ok", fault);
    }
    EXPECT_EQ(Minimal("ok", ComputeIndex), "failed");
    EXPECT_FALSE(log.Contains("GetAAIndex"));
    EXPECT_EQ(Minimal("ok", NoIndex), " 0");
}

// ---- Where it is searched

TEST_F(SelectorAttributesTest, IndexIsThatBelowTheRootOrTheWindow) {
    EXPECT_EQ(Minimal("row1", ComputeIndex, true, 1000, "main", "client"), "name=a;role=list item; 0");
    EXPECT_EQ(desktop.Calls("main", "AccessibleObjectFromWindow"), 0);
    EXPECT_EQ(Minimal("row1", ComputeIndex, true, 1000, "main"), "name=a;role=list item; 0") << "the best that can be had";
    ExpectLine("E GetAAIndex: no elements with matching attributes were found");
}

TEST_F(SelectorAttributesTest, WindowWithoutAnObjectFailsOnlyWhereItIsSearched) {
    for (const bool null : {false, true}) {
        log.Clear();
        desktop.ClearFaults();
        Simulated::Fault fault{.call = "AccessibleObjectFromWindow"};
        fault.null = null;
        if (!null) fault.result = E_FAIL;
        desktop.AddFault("main", fault);
        EXPECT_EQ(Minimal("ok", ComputeIndex), "failed");
        ExpectLine("E GetMinimalSelectorAttributes: AccessibleObjectFromWindow failed");
        EXPECT_EQ(Minimal("ok", NoIndex), "name=OK;role=push button; 0");
        EXPECT_EQ(Minimal("ok", ComputeIndex, true, 1000, "main", "root"), "name=OK;role=push button; 1");
    }
}

TEST_F(SelectorAttributesTest, InvalidArgumentsFail) {
    AttributeTexts attributes;
    LONG index = 0;
    const CComPtr<IAccessible> ok = desktop.Element("ok");
    EXPECT_FALSE(GetMinimalSelectorAttributes(nullptr, nullptr, ok, CComVariant(0), true, true, 1000, attributes, index));
    EXPECT_EQ(index, -1);
    EXPECT_FALSE(GetMinimalSelectorAttributes(desktop.Window("main"), nullptr, nullptr, CComVariant(0), true, true, 1000, attributes, index));
    EXPECT_FALSE(GetMinimalSelectorAttributes(desktop.Window("main"), nullptr, ok, CComVariant(L"0"), true, true, 1000, attributes, index));
    EXPECT_EQ(log.Count("E [GetMinimalSelectorAttributes] GetMinimalSelectorAttributes: Invalid input params hParentWnd=0x"), 3u) << log.Text();
    EXPECT_TRUE(log.Contains("vAccChild.vt=3"));
    EXPECT_TRUE(log.Contains("vAccChild.vt=8"));
}

TEST_F(SelectorAttributesTest, TimeOutOfTheFirstSearchLeavesOneThatTimesOutAtOnceAndIndexZero) {
    Simulated::Fault slow{.call = "QueryInterface"};
    slow.stall = 100;
    desktop.AddFault("ok", slow);
    EXPECT_EQ(Minimal("copy2", ComputeIndex, true, 50), "automationid=shared;labeledby=Label 2;name=Second;role=text; 0");
    ExpectLine("E GetAAIndex: the 50 ms timeout has expired");
    ExpectLine("E GetAAIndex: timeout");
    ExpectLine("V GetMinimalSelectorAttributes: Exit");
}

// ---- Long texts and numbers

TEST_F(SelectorAttributesTest, TextOf65UnitsIsMatchedByItsFirst64) {
    const std::string exact(64, 'n');
    for (const Index index : {NoIndex, ComputeIndex}) {
        EXPECT_EQ(MinimalOf(R"("role": 77, "roleText": ")" + exact + R"(x", "name": ")" + exact + "\"", index), "name=" + exact + ";role=" + exact + "x;");
        EXPECT_EQ(MinimalOf(R"("name": ")" + exact + "x\"", index), "name=" + exact + "*;role=client;");
        EXPECT_EQ(MinimalOf(R"("uia": {"automationId": ")" + exact + "\"}", index), "automationid=" + exact + ";");
        EXPECT_EQ(MinimalOf(R"("uia": {"automationId": ")" + exact + "x\"}", index), "automationid=" + exact + "*;");
        EXPECT_EQ(MinimalOf(R"("uia": {"automationId": "", "labeledBy": ")" + exact + "x\"}", index),
                  "labeledby=" + exact + "*;role=client;");
    }
}

TEST_F(SelectorAttributesTest, ElementsThatDifferBehindThe64thUnitShareTheirPattern) {
    const std::string beginning(64, 'n');
    DesktopFixture two(R"({"windows": [{"id": "w", "class": "x", "objects": {"window": {"children": [
        {"id": "a", "name": ")" + beginning + R"(a"}, {"id": "b", "name": ")" + beginning + R"(b"}]}}}]})");
    AttributeTexts attributes;
    LONG index = 0;
    EXPECT_TRUE(GetMinimalSelectorAttributes(two.Window("w"), nullptr, two.Element("b"), CComVariant(0), true, true, 1000, attributes, index));
    EXPECT_EQ(index, 2);
}

TEST_F(SelectorAttributesTest, NumberInParenthesesAtTheEndOfAnAutomationIdIsMaskedWhereItIsSearched) {
    const auto id = [](const std::string& text, Index index) { return MinimalOf(R"("uia": {"automationId": ")" + text + "\"}", index); };
    for (const auto& [text, masked] : std::vector<std::pair<std::string, std::string>>{
             {"Report (12)", "Report (*)"}, {"(0)", "(*)"}, {"a(1)(2)", "a(1)(*)"}, {"((7)", "((*)"}, {"Report (12) ", "Report (12) "},
             {"Report ()", "Report ()"}, {"Report (1a)", "Report (1a)"}, {"Report 12)", "Report 12)"}, {"12)", "12)"}, {")", ")"},
             {"Report [12]", "Report [12]"}, {"Report (-1)", "Report (-1)"}, {"Report (12", "Report (12"}}) {
        EXPECT_EQ(id(text, ComputeIndex), "automationid=" + masked + ";");
        EXPECT_EQ(id(text, NoIndex), "automationid=" + text + ";");
    }
    // The number goes first, then the length counts.
    EXPECT_EQ(id(std::string(61, 'a') + "(123)", ComputeIndex), "automationid=" + std::string(61, 'a') + "(*);");
    EXPECT_EQ(id(std::string(62, 'a') + "(123)", ComputeIndex), "automationid=" + std::string(62, 'a') + "(**;");
    // A name keeps its number.
    EXPECT_EQ(MinimalOf("\"name\": \"Report (12)\"", ComputeIndex), "name=Report (12);role=client;");
}

// ---- All attributes

TEST_F(SelectorAttributesTest, AllAttributesWithATextAreListed) {
    EXPECT_EQ(All("helped", false), "aastate=checked;helpText=Helps;name=Help;role=check box;text=checked;");
    ExpectLine("V GetAllSelectorAttributes: enter");
    ExpectLine("V GetAllSelectorAttributes: return CAttrHandlerAA::GetAllSelectorAttributes");
}

TEST_F(SelectorAttributesTest, StrictOwnerIsHandedToTheHandlers) {
    EXPECT_EQ(All("helped", true, {{L"aastate", L""}}), "helpText=Helps;name=Help;role=check box;text=IA2 text;");
}

TEST_F(SelectorAttributesTest, AttributesToLeaveOutAreNotRead) {
    EXPECT_EQ(All("helped", false, {{L"name", L"any"}, {L"text", L""}, {L"aastate", L""}}), "helpText=Helps;role=check box;");
    EXPECT_EQ(desktop.Calls("helped", "get_accName"), 0);
    const std::vector<CString> names{L"role", L"unknown", L"Name", L"text", L"aastate"};
    AttributeTexts attributes;
    GetAllSelectorAttributes(AAElement{desktop.Window("main"), desktop.Element("helped"), CComVariant(0)}, false, names, attributes);
    EXPECT_EQ(Joined(attributes), "helpText=Helps;name=Help;");
}

TEST_F(SelectorAttributesTest, AttributeThatFailsIsNotListed) {
    Simulated::Fault fault{.call = "get_accState"};
    fault.result = E_FAIL;
    desktop.AddFault("helped", fault);
    EXPECT_EQ(All("helped", false, {{L"text", L""}}), "helpText=Helps;name=Help;role=check box;");
}

TEST_F(SelectorAttributesTest, NullElementHasNoAttributes) {
    AttributeTexts attributes{{L"left", L"over"}};
    GetAllSelectorAttributes(AAElement{desktop.Window("main"), nullptr, CComVariant(0)}, false, AttributeTexts(), attributes);
    EXPECT_TRUE(attributes.empty());
    ExpectLine("E GetAllSelectorAttributes: null acc object, return FALSE");
}

// ---- Hostile servers

TEST(SelectorAttributesOnHostileServers, FaultAtAnyCallLeavesNoReference) {
    for (const char* id : {"copy2", "row2"})
        for (int kind = 0; kind < 3; ++kind)
            for (unsigned nth = 1;; ++nth) {
                DesktopFixture desktop(kDesktop);
                const CComPtr<IAccessible> element = desktop.Element(id);
                const long before = desktop.OutstandingReferences();
                Simulated::Fault fault{.at = nth, .times = 1};
                if (kind == 0) fault.result = E_FAIL;
                if (kind == 1) fault.null = true;
                if (kind == 2) fault.raise = true;
                desktop.AddFault(fault);
                AttributeTexts attributes;
                LONG index = 0;
                const HWND window = desktop.Window(id == std::string("row2") ? "list" : "main");
                try {
                    GetMinimalSelectorAttributes(window, nullptr, element, desktop.Child(id), true, true, 1000, attributes, index);
                    GetAllSelectorAttributes(AAElement{window, element, desktop.Child(id)}, true, AttributeTexts(), attributes);
                } catch (const Simulated::ServerFailure&) {
                    EXPECT_EQ(kind, 2);
                }
                ASSERT_EQ(desktop.OutstandingReferences(), before) << id << " kind " << kind << " call " << nth;
                if (desktop.TotalCalls() < static_cast<int>(nth)) break;
            }
}

}  // namespace
}  // namespace Zorvex::Testing
