#include <gtest/gtest.h>

#include "Common/include/CString.h"
#include "RuntimeCore/AAUtilitiesFind.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

class FindByRole : public ::testing::Test {
protected:
    CString Found(LONG role, LONG depth = -1) {
        const AANode node = FindElementWithRole(desktop.Window("main"), role, depth);
        if (!node.IsValid()) return L"(none)";
        BSTR name = nullptr;
        node.container->get_accName(node.childId, &name);
        const CString result = name ? name : L"";
        ::SysFreeString(name);
        return result;
    }
    void TearDown() override { EXPECT_EQ(desktop.OutstandingReferences(), 0); }

    LogCapture log;
    DesktopFixture desktop{R"({ "format": "vantrel-desktop/1", "windows": [ { "id": "main", "class": "Frame", "objects": {
      "window": { "id": "frame", "role": "window", "name": "frame", "children": [
        { "id": "pane", "role": "pane", "name": "pane", "children": [
          { "id": "deep", "role": "document", "name": "deep", "children": [
            { "id": "link", "role": "link", "name": "link", "simple": true } ] } ] },
        { "id": "shallow", "role": "document", "name": "shallow" } ] } } } ] })"};
};

TEST_F(FindByRole, TakesTheShallowestElement) {
    EXPECT_EQ(Found(ROLE_SYSTEM_DOCUMENT), L"shallow");
    EXPECT_TRUE(log.Contains("[FindElementWithRole] Found element at depth: 1, iteratedNodes: 3")) << log.Text();
    EXPECT_TRUE(log.Contains("elementRole: 15, maxDepthToSearch: -1")) << log.Text();
}

TEST_F(FindByRole, FindsTheWindowsOwnObjectAndSimpleElements) {
    EXPECT_EQ(Found(ROLE_SYSTEM_WINDOW, 0), L"frame");
    EXPECT_EQ(Found(ROLE_SYSTEM_LINK, 3), L"link");
}

TEST_F(FindByRole, GoesNoDeeperThanTold) {
    EXPECT_EQ(Found(ROLE_SYSTEM_LINK, 2), L"(none)");
    EXPECT_TRUE(log.Contains("[FindElementWithRole] Element not found; iteratedNodes: 4")) << log.Text();
    EXPECT_EQ(Found(ROLE_SYSTEM_DOCUMENT, 0), L"(none)");
}

TEST_F(FindByRole, PassesOverAnElementWhoseRoleIsNoNumber) {
    Simulated::Fault fault;
    fault.call = "get_accRole";
    fault.type = VT_BSTR;
    desktop.AddFault("shallow", fault);
    EXPECT_EQ(Found(ROLE_SYSTEM_DOCUMENT), L"deep");
}

TEST_F(FindByRole, OfAWindowWithoutAnObjectIsLogged) {
    EXPECT_FALSE(FindElementWithRole(nullptr, 15, 3).IsValid());
    EXPECT_EQ(log.Count("[FindElementWithRole] Accessible from window failed, hRes=0x"), 1u) << log.Text();
    Simulated::Fault fault;
    fault.call = "AccessibleObjectFromWindow";
    fault.null = true;
    desktop.AddFault("main", fault);
    EXPECT_EQ(Found(15), L"(none)");
    EXPECT_TRUE(log.Contains("[FindElementWithRole] Accessible from window failed, hRes=0x0")) << log.Text();
}

TEST(FindByRoleInACycle, EndsAtTheBoundWithoutAResult) {
    // Each round through the cycle offers many simple elements for one list of children.
    std::string children;
    for (int i = 0; i < 2000; ++i) children += R"({ "role": "link", "simple": true },)";
    DesktopFixture desktop(R"({ "format": "vantrel-desktop/1", "windows": [ { "id": "main", "class": "Frame", "objects": {
      "window": { "id": "frame", "role": "window", "children": [ { "id": "a", "role": "pane", "children": [)" + children + R"({ "element": "a" }] } ] } } } ] })");
    LogCapture log;
    EXPECT_FALSE(FindElementWithRole(desktop.Window("main"), ROLE_SYSTEM_DOCUMENT, -1).IsValid());
    EXPECT_TRUE(log.Contains("[FindElementWithRole] Element not found; iteratedNodes: 1000001")) << log.Text();
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

}  // namespace
}  // namespace Zorvex::AAUtil
