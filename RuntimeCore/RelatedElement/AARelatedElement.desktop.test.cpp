#include "RuntimeCore/RelatedElement/AARelatedElement.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

// A combo box with panes one inside the other; "start" lies `depth` levels below it.
std::string Nested(int depth) {
    std::string text = R"({"id": "start", "role": "push button"})";
    for (int i = 1; i < depth; ++i) text = R"({"role": "pane", "children": [)" + text + "]}";
    return R"({"windows": [{"id": "main", "class": "Main", "objects": {"window": {"id": "combo", "role": "combo box", "children": [)" + text +
           "]}}}]}";
}

TEST(RelatedElement, AncestorIsLookedForUpTo128Levels) {
    for (const bool over : {false, true}) {
        DesktopFixture desktop(Nested(over ? 128 : 127));
        LogCapture log;
        EXPECT_EQ(FindAncestorWithRole(desktop.Element("start"), ROLE_SYSTEM_COMBOBOX) == nullptr, over);
        EXPECT_EQ(log.Contains("Found ancestor with role 0x2e at height 127"), !over);
        EXPECT_EQ(log.Contains("Found NO ancestors with requested roles up to height 128"), over);
        EXPECT_TRUE(log.Contains("Searching for ancestor"));
    }
}

TEST(RelatedElement, ElementOfTheRoleIsItsOwnAncestorAtHeightZero) {
    DesktopFixture desktop(Nested(1));
    LogCapture log;
    EXPECT_EQ(FindAncestorWithRole(desktop.Element("combo"), ROLE_SYSTEM_COMBOBOX), desktop.Element("combo"));
    EXPECT_TRUE(log.Contains("V [FindAncestorWithRole] Found ancestor with role 0x2e at height 0")) << log.Text();
    EXPECT_EQ(desktop.Calls("combo", "get_accParent"), 0);
}

TEST(RelatedElement, TopOfTheTreeEndsTheSearch) {
    FakeAccessible top(ROLE_SYSTEM_PANE);
    LogCapture log;
    EXPECT_EQ(FindAncestorWithRole(&top, ROLE_SYSTEM_COMBOBOX), nullptr);
    EXPECT_TRUE(log.Contains("V [FindAncestorWithRole] Found NO ancestors with requested roles up to height 1")) << log.Text();
    EXPECT_EQ(top.references, 0);
}

TEST(RelatedElement, NullElementHasNoAncestor) {
    LogCapture log;
    EXPECT_EQ(FindAncestorWithRole(nullptr, ROLE_SYSTEM_COMBOBOX), nullptr);
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{"V [FindAncestorWithRole] Searching for ancestor", "E [FindAncestorWithRole] Null element"}));
}

TEST(RelatedElement, ParentThatIsTheChildItselfEndsTheSearch) {
    FakeAccessible object(ROLE_SYSTEM_PANE);
    object.parent = &object;
    LogCapture log;
    EXPECT_EQ(FindAncestorWithRole(&object, ROLE_SYSTEM_COMBOBOX), nullptr);
    EXPECT_TRUE(log.Contains("The parent at height 0 is the same as the child. Stopping the ancestor search."));
    EXPECT_TRUE(log.Contains("Found NO ancestors with requested roles up to height 0"));
    EXPECT_EQ(object.references, 0);
}

constexpr char kOtherProcess[] = R"({"processes": [{"id": 1000, "path": "C:\\app.exe", "current": true}, {"id": 20, "path": "C:\\frame.exe"}],
  "windows": [{"id": "main", "class": "Main", "objects": {"window": {"id": "combo", "role": "combo box", "window": "frame", "children": [
    {"id": "pane", "role": "pane", "window": "main", "children": [{"id": "start", "role": "push button"}]}]}}},
    {"id": "frame", "class": "Frame", "process": 20}]})";

TEST(RelatedElement, ProcessBoundaryEndsTheSearch) {
    DesktopFixture desktop(kOtherProcess);
    LogCapture log;
    EXPECT_EQ(FindAncestorWithRole(desktop.Element("start"), ROLE_SYSTEM_COMBOBOX), nullptr);
    EXPECT_TRUE(log.Contains("Ancestor at height 1 crosses the process boundary. Current PID: 1000, Ancestor PID: 20"));
}

TEST(RelatedElement, ParentOfAnUnknownProcessIsComplainedAboutAndTaken) {
    for (const bool isNull : {false, true}) {
        DesktopFixture desktop(kOtherProcess);
        LogCapture log;
        Simulated::Fault fault{.call = "WindowFromAccessibleObject"};
        if (isNull) fault.null = true;
        else fault.result = E_FAIL;
        desktop.AddFault("combo", fault);
        EXPECT_EQ(FindAncestorWithRole(desktop.Element("start"), ROLE_SYSTEM_COMBOBOX), desktop.Element("combo"));
        EXPECT_TRUE(log.Contains("Failed to get the PID of the parent IAccessible at height 1. Can't ensure that process boundaries "
                                 "aren't crossed."));
    }
}

TEST(RelatedElement, ParentThatCannotBeReadEndsTheSearch) {
    DesktopFixture desktop(Nested(3));
    desktop.AddFault("start", {.call = "get_accParent", .result = E_FAIL});
    LogCapture log;
    EXPECT_EQ(FindAncestorWithRole(desktop.Element("start"), ROLE_SYSTEM_COMBOBOX), nullptr);
    EXPECT_TRUE(log.Contains("Found NO ancestors with requested roles up to height 1"));
}

}  // namespace
}  // namespace Zorvex::Testing
