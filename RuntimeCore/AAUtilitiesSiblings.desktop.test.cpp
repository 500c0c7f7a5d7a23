#include <gtest/gtest.h>

#include "RuntimeCore/AAUtilitiesSiblings.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

class Siblings : public ::testing::Test {
protected:
    LONG Index(const char* element, const char* parent, DWORD flags = 0, LONG timeoutMs = 1000) {
        return GetIndexInSiblings(desktop.Window("main"), desktop.Element(element), desktop.Child(element), desktop.Element(parent),
                                  flags, timeoutMs, siblings);
    }
    std::wstring Names() const {
        std::wstring names;
        for (const SiblingElement& sibling : siblings) {
            BSTR name = nullptr;
            sibling.container->get_accName(sibling.child, &name);
            names += name ? name : L"?";
            ::SysFreeString(name);
        }
        return names;
    }
    void TearDown() override {
        siblings.clear();
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
    }

    LogCapture log;
    DesktopFixture desktop{R"({ "format": "vantrel-desktop/1", "windows": [ { "id": "main", "class": "Frame",
      "objects": { "client": { "id": "client", "role": "client", "children": [
        { "id": "bar", "role": "tool bar", "name": "bar", "rectangle": [0, 0, 400, 20], "children": [
          { "id": "a", "role": "push button", "name": "A", "rectangle": [0, 0, 20, 20] },
          { "id": "b", "role": "push button", "name": "B", "rectangle": [20, 0, 20, 20], "simple": true },
          { "id": "c", "role": "push button", "name": "C", "rectangle": [40, 0, 20, 20], "window": "inner" } ] },
        { "id": "box", "role": "grouping", "name": "box", "rectangle": [0, 20, 400, 20], "children": [
          { "id": "only", "role": "push button", "name": "Only", "rectangle": [0, 20, 20, 20] } ] } ] } },
      "children": [ { "id": "inner", "class": "Inner" } ] } ] })"};
    std::vector<SiblingElement> siblings;
};

TEST_F(Siblings, IndexCountsAllChildrenBeforeTheElement) {
    EXPECT_EQ(Index("a", "bar"), 0);
    EXPECT_EQ(Names(), L"BC");
    EXPECT_EQ(Index("b", "bar"), 1);
    EXPECT_EQ(Names(), L"AC");
    EXPECT_EQ(Index("c", "bar"), 2);
    EXPECT_EQ(Names(), L"AB");
}

TEST_F(Siblings, OfAnOnlyChildAreNoneAndTheIndexIsZeroWhateverTheElementIs) {
    EXPECT_EQ(Index("a", "box"), 0);
    EXPECT_TRUE(siblings.empty());
    EXPECT_FALSE(log.Contains("CompareAAObjects"));
    EXPECT_EQ(GetIndexInSiblings(desktop.Window("main"), nullptr, CComVariant(), nullptr, 0, 1000, siblings), 0);
}

TEST_F(Siblings, OfAStrangerAreAllChildren) {
    EXPECT_EQ(Index("only", "bar"), -1);
    EXPECT_EQ(Names(), L"ABC");
}

TEST_F(Siblings, ThatAreNoElementsCountButDoNotComeOut) {
    Simulated::Fault odd;
    odd.call = "QueryInterface";
    odd.iid = "IAccessible";
    odd.result = E_NOINTERFACE;
    desktop.AddFault("a", odd);
    EXPECT_EQ(Index("c", "bar"), 2);
    EXPECT_EQ(Names(), L"B");
}

TEST_F(Siblings, ComeWithTheirWindows) {
    Index("a", "bar");
    ASSERT_EQ(siblings.size(), 2u);
    EXPECT_EQ(siblings[0].window, desktop.Window("main"));
    EXPECT_EQ(siblings[1].window, desktop.Window("inner"));
    for (const DWORD flags : {0x100u, 0x800u, 0x900u}) {
        Index("a", "bar", flags);
        EXPECT_EQ(siblings[1].window, desktop.Window("main")) << flags;
    }
    Index("a", "bar", ~0x900u);
    EXPECT_EQ(siblings[1].window, desktop.Window("inner"));
}

TEST_F(Siblings, WithoutTimeAreNone) {
    EXPECT_EQ(Index("b", "bar", 0, 0), -1);
    EXPECT_TRUE(siblings.empty());
    EXPECT_TRUE(log.Contains("GetIndexInSiblings: the 0 ms timeout has expired while getting siblings, not critical")) << log.Text();
}

TEST_F(Siblings, FoundBeforeTheBudgetEndsStandAsDoesTheIndex) {
    Simulated::Fault slow;
    slow.call = "WindowFromAccessibleObject";
    slow.stall = 600;
    desktop.AddFault("c", slow);
    desktop.AddFault("bar", slow);
    // The second sibling takes the time away; the third child is never reached.
    EXPECT_EQ(Index("a", "bar", 0, 500), 0);
    EXPECT_EQ(Names(), L"B");
    EXPECT_TRUE(log.Contains("W [GetIndexInSiblings] GetIndexInSiblings: the 500 ms timeout has expired")) << log.Text();
}

}  // namespace
}  // namespace Zorvex::AAUtil
