#include "RuntimeCore/Selectors/Generation/SelectorIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <queue>
#include <random>
#include <string>
#include <vector>

#include "Common/include/CComVariant.h"
#include "Platform/Simulated/System.h"
#include "RuntimeCore/AAUtilitiesFind.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

using namespace Zorvex::Generation;

// Level by level the elements named "Save" are save1, save2 and save3.
constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Frame", "objects": {"window": {"id": "root", "role": "window", "name": "Save", "children": [
    {"id": "group", "role": "grouping", "name": "Group", "children": [
      {"id": "save2", "role": "push button", "name": "Save", "rectangle": [0, 0, 9, 9], "children": [
        {"id": "below", "role": "text", "name": "Below", "rectangle": [0, 0, 9, 9]}]},
      {"id": "open", "role": "push button", "name": "Open", "rectangle": [0, 9, 9, 9]}]},
    {"id": "save1", "role": "push button", "name": "Save", "rectangle": [9, 0, 9, 9]},
    {"id": "bar", "role": "tool bar", "name": "Bar", "children": [
      {"id": "save3", "role": "link", "name": "Save", "simple": true},
      {"id": "named", "role": "push button", "name": "Line\nbreak", "uia": {"automationId": "theButton", "labeledBy": "Label"}},
      {"id": "emptyId", "role": "push button", "name": "Empty", "uia": {"automationId": "", "labeledBy": ""}}]},
    {"id": "menu", "role": "menu item", "name": "File", "children": [
      {"id": "enabled", "role": "menu item", "name": "Enabled", "children": [{"id": "new", "role": "menu item", "name": "New"}]},
      {"id": "disabled", "role": "menu item", "name": "Disabled", "state": ["unavailable"], "children": [
        {"id": "hidden", "role": "menu item", "name": "New"}]},
      {"id": "disabledGroup", "role": "grouping", "name": "Gray", "state": ["unavailable"], "children": [
        {"id": "gray", "role": "push button", "name": "Gray one"}]}]}]}}},
  {"id": "list", "class": "SysListView32", "listView": {
     "columns": [{"text": "Name", "width": 100}, {"text": "Size", "width": 50}], "items": [["a", "1"], ["", "2"], ["", ""]]},
   "objects": {"client": {"id": "client", "role": "list", "children": [
      {"id": "row1", "role": "list item", "name": "a", "simple": true},
      {"id": "row2", "role": "list item", "name": "", "simple": true},
      {"id": "row3", "role": "list item", "name": "", "simple": true}]}}}]})";

enum Unique { First, CheckUnique };

class SelectorIndexTest : public testing::Test {
protected:
    struct Answer {
        bool found;
        LONG index;
        bool operator==(const Answer&) const = default;
        friend std::ostream& operator<<(std::ostream& stream, const Answer& answer) { return stream << answer.found << " " << answer.index; }
    };
    Answer Index(const char* element, const IdentifyingAttributes& wanted, Unique unique = CheckUnique, const char* root = "root",
                 int timeoutMs = 1000) {
        Answer answer{false, 77};
        answer.found = GetAAIndex(desktop.Element(root), desktop.Element(element), desktop.Child(element), unique == CheckUnique, timeoutMs,
                                  wanted, answer.index);
        return answer;
    }
    // The index without a time limit.
    Answer Place(const char* element, const IdentifyingAttributes& wanted, const char* root = "root", const char* window = "main") {
        Answer answer{false, 77};
        answer.found = GetSelectorIndexWithAttributes(desktop.Window(window), root ? desktop.Element(root) : CComPtr<IAccessible>(),
                                                      desktop.Element(element), desktop.Child(element), wanted, answer.index);
        return answer;
    }
    bool Matches(const char* element, const IdentifyingAttributes& wanted) {
        return MatchesAttributes(wanted, desktop.Element(element), desktop.Child(element));
    }
    void ExpectLine(const std::string& line) {
        for (const std::string& found : log.Lines())
            if (found.starts_with(line.substr(0, 2)) && found.ends_with("] " + line.substr(2))) return;
        ADD_FAILURE() << "no line \"" << line << "\" in\n" << log.Text();
    }
    void TearDown() override { EXPECT_EQ(desktop.OutstandingReferences(), 0); }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
};

const IdentifyingAttributes kSave{.name = L"Save"};

// ---- Whether an element has the attributes

TEST_F(SelectorIndexTest, NothingWantedFitsEveryElementWithoutARead) {
    EXPECT_TRUE(Matches("named", {}));
    EXPECT_EQ(desktop.TotalCalls(), 0);
}

TEST_F(SelectorIndexTest, NameIsAPatternForTheCleanedNameWithoutRegardToCase) {
    EXPECT_TRUE(Matches("named", {.name = L"Line break"}));
    EXPECT_TRUE(Matches("named", {.name = L"lINE*"}));
    EXPECT_TRUE(Matches("named", {.name = L"????*break"}));
    EXPECT_FALSE(Matches("named", {.name = L"Line"}));
    EXPECT_FALSE(Matches("row2", {.name = L"?"}));
    EXPECT_TRUE(Matches("row2", {.name = L"*"})) << "no name is an empty one";
}

TEST_F(SelectorIndexTest, RoleIsComparedAsItStands) {
    EXPECT_TRUE(Matches("named", {.role = L"push button"}));
    EXPECT_FALSE(Matches("named", {.role = L"Push button"}));
    EXPECT_FALSE(Matches("named", {.role = L"push*"}));
}

TEST_F(SelectorIndexTest, AutomationIdAndLabelArePatternsThatNeedAValue) {
    EXPECT_TRUE(Matches("named", {.automationId = L"thebutton"}));
    EXPECT_TRUE(Matches("named", {.automationId = L"*Button", .labeledBy = L"L?bel"}));
    EXPECT_FALSE(Matches("named", {.automationId = L"button"}));
    EXPECT_FALSE(Matches("named", {.labeledBy = L"Labels"}));
    EXPECT_TRUE(Matches("emptyId", {.automationId = L"*", .labeledBy = L"*"})) << "an empty value is one";
    EXPECT_FALSE(Matches("open", {.automationId = L"*"}));
    EXPECT_FALSE(Matches("open", {.labeledBy = L"*"}));
}

TEST_F(SelectorIndexTest, VirtualNameIsAPatternForTheTextsOfARow) {
    EXPECT_TRUE(Matches("row1", {.virtualName = L"A 1"}));
    EXPECT_TRUE(Matches("row2", {.virtualName = L"2"}));
    EXPECT_FALSE(Matches("row2", {.virtualName = L"1"}));
    EXPECT_TRUE(Matches("row3", {.virtualName = L"*"})) << "an empty row has a text";
    EXPECT_FALSE(Matches("open", {.virtualName = L"*"}));
}

TEST_F(SelectorIndexTest, ComparisonStopsAtTheFirstDifference) {
    EXPECT_FALSE(Matches("named", {.name = L"Other", .automationId = L"theButton"}));
    EXPECT_FALSE(Matches("named", {.role = L"Other", .automationId = L"theButton"}));
    EXPECT_EQ(desktop.Calls("named", "GetPropertyValue"), 0);
    EXPECT_FALSE(Matches("named", {.automationId = L"other", .labeledBy = L"Label"}));
    EXPECT_EQ(desktop.Calls("named", "GetPropertyValue"), 1);
    EXPECT_FALSE(Matches("named", {.labeledBy = L"other", .virtualName = L"x"}));
    EXPECT_FALSE(log.Contains("GetListViewItemVirtualName")) << log.Text();
}

// ---- The index with a time limit

TEST_F(SelectorIndexTest, OnlyElementWithItsAttributesHasIndexZero) {
    EXPECT_EQ(Index("open", {.name = L"Open"}), (Answer{true, 0}));
    ExpectLine("V GetAAIndex: setting unique index");
    EXPECT_EQ(Index("open", {.name = L"Open"}, First), (Answer{true, 0}));
}

TEST_F(SelectorIndexTest, SecondOfThreeHasIndexTwo) {
    EXPECT_EQ(Index("save2", kSave), (Answer{true, 2}));
    EXPECT_EQ(Index("save2", kSave, First), (Answer{true, 2}));
    EXPECT_EQ(Index("save3", kSave), (Answer{true, 3}));
    EXPECT_FALSE(log.Contains("unique"));
}

TEST_F(SelectorIndexTest, FirstOfThreeHasIndexOneOnlyWhenUniquenessIsChecked) {
    EXPECT_EQ(Index("save1", kSave, CheckUnique), (Answer{true, 1}));
    EXPECT_EQ(Index("save1", kSave, First), (Answer{true, 0}));
}

TEST_F(SelectorIndexTest, WalkStopsAtTheTargetOrAtTheNextMatch) {
    Index("save1", kSave, First);
    EXPECT_EQ(desktop.Calls("bar", "get_accName"), 0);
    Index("save1", kSave, CheckUnique);
    EXPECT_EQ(desktop.Calls("bar", "get_accName"), 1);
    // After the second match nothing more is looked at, nor after the target when there was a match before it.
    EXPECT_EQ(desktop.Calls("save3", "get_accName"), 0);
    Index("save2", kSave, CheckUnique);
    EXPECT_EQ(desktop.Calls("open", "get_accName"), 0);
}

TEST_F(SelectorIndexTest, TargetCountsWhateverItsAttributesAre) {
    EXPECT_EQ(Index("open", kSave, First), (Answer{true, 3}));
}

TEST_F(SelectorIndexTest, ElementsBelowTheTargetAreNotLookedAt) {
    EXPECT_EQ(Index("save2", {.name = L"Below"}), (Answer{true, 0}));
    EXPECT_EQ(desktop.Calls("below", "get_accName"), 0);
}

TEST_F(SelectorIndexTest, TargetThatIsNotThereIsIndexZeroAmongMatches) {
    EXPECT_EQ(Index("row1", kSave), (Answer{true, 0}));
    EXPECT_FALSE(log.Contains("E [GetAAIndex]"));
}

TEST_F(SelectorIndexTest, RootIsNoElementBelowItself) {
    EXPECT_EQ(Index("root", {.role = L"window"}), (Answer{false, -1}));
}

TEST_F(SelectorIndexTest, WithoutAnyMatchThereIsNoIndex) {
    EXPECT_EQ(Index("row1", {.name = L"Nobody"}), (Answer{false, -1}));
    ExpectLine("E GetAAIndex: no elements with matching attributes were found");
    log.Clear();
    LONG index = 77;
    EXPECT_FALSE(GetAAIndex(nullptr, desktop.Element("open"), CComVariant(0), true, 1000, {.name = L"Open"}, index));
    EXPECT_EQ(index, -1);
    ExpectLine("E GetAAIndex: no elements with matching attributes were found");
}

TEST_F(SelectorIndexTest, MenuItemThatIsUnavailableIsNotOpened) {
    EXPECT_EQ(Index("new", {.name = L"New"}), (Answer{true, 0}));
    EXPECT_EQ(Index("disabled", {.name = L"Disabled"}), (Answer{true, 0}));
    EXPECT_EQ(desktop.Calls("disabled", "get_accChildCount"), 0);
    EXPECT_EQ(Index("gray", {.name = L"Gray one"}), (Answer{true, 0})) << "other unavailable elements are";
    EXPECT_EQ(Index("new", {.name = L"New"}, CheckUnique, "menu"), (Answer{true, 0}));
    EXPECT_EQ(Index("hidden", {.name = L"New"}, CheckUnique, "disabled"), (Answer{false, -1})) << "not even as the root";
    EXPECT_EQ(Place("hidden", {.name = L"New"}, "disabled"), (Answer{false, 0}));
}

TEST_F(SelectorIndexTest, WithoutTimeThereIsNoIndex) {
    EXPECT_FALSE(Index("open", {.name = L"Open"}, CheckUnique, "root", 0).found);
    ExpectLine("E GetAAIndex: timeout");
    EXPECT_EQ(desktop.TotalCalls(), 0);
    EXPECT_FALSE(Index("open", {.name = L"Open"}, CheckUnique, "root", -5).found);
}

TEST_F(SelectorIndexTest, TimeIsLookedAtForEachChild) {
    Simulated::Fault slow{.call = "get_accName"};
    slow.stall = 60;
    desktop.AddFault("group", slow);
    EXPECT_FALSE(Index("open", {.name = L"Open"}, CheckUnique, "root", 50).found);
    ExpectLine("E GetAAIndex: the 50 ms timeout has expired");
    EXPECT_EQ(desktop.Calls("save1", "get_accName"), 0);
    EXPECT_EQ(log.Count("E [GetAAIndex]"), 1u);
    EXPECT_EQ(Index("open", {.name = L"Open"}, CheckUnique, "root", 500), (Answer{true, 0}));
}

TEST_F(SelectorIndexTest, TimeIsLookedAtForEachContainer) {
    Simulated::Fault slow{.call = "get_accName"};
    slow.stall = 60;
    desktop.AddFault("menu", slow);
    EXPECT_FALSE(Index("open", {.name = L"Open"}, CheckUnique, "root", 50).found);
    ExpectLine("E GetAAIndex: timeout");
    EXPECT_EQ(desktop.Calls("group", "get_accChildCount"), 0);
}

// ---- The index without one

TEST_F(SelectorIndexTest, PlaceCountsTheTargetAndEveryMatchBeforeIt) {
    EXPECT_EQ(Place("open", {.name = L"Open"}), (Answer{true, 1})) << "also where it is unique";
    EXPECT_EQ(Place("save1", kSave), (Answer{true, 1}));
    EXPECT_EQ(Place("save2", kSave), (Answer{true, 2}));
    EXPECT_EQ(Place("open", kSave), (Answer{true, 3}));
    EXPECT_EQ(Place("save3", kSave), (Answer{true, 3}));
    EXPECT_EQ(Place("save3", {.name = L"Save", .role = L"link"}), (Answer{true, 1}));
    ExpectLine("V GetSelectorIndexWithAttributes: Enter");
    ExpectLine("V GetSelectorIndexWithAttributes: Index=3 return 1");
}

TEST_F(SelectorIndexTest, PlaceOfAnElementThatIsNotThereIsNone) {
    EXPECT_EQ(Place("row1", kSave), (Answer{false, 3}));
    ExpectLine("V GetSelectorIndexWithAttributes: Index=3 return 0");
}

TEST_F(SelectorIndexTest, PlaceWithoutARootIsBelowTheWindow) {
    EXPECT_EQ(Place("save2", kSave, nullptr), (Answer{true, 2}));
    EXPECT_EQ(Place("row1", {.role = L"list item"}, nullptr, "list"), (Answer{true, 1}));
    for (const bool null : {false, true}) {
        log.Clear();
        desktop.ClearFaults();
        Simulated::Fault fault{.call = "AccessibleObjectFromWindow"};
        fault.null = null;
        if (!null) fault.result = E_FAIL;
        desktop.AddFault("main", fault);
        EXPECT_EQ(Place("save2", kSave, nullptr), (Answer{false, -1}));
        ExpectLine("E GetSelectorIndexWithAttributes: AccessibleObjectFromWindow failed, return FALSE");
        EXPECT_EQ(Place("save2", kSave), (Answer{true, 2}));
    }
}

TEST_F(SelectorIndexTest, PlaceOfInvalidArgumentsIsNone) {
    LONG index = 77;
    const CComPtr<IAccessible> root = desktop.Element("root"), save = desktop.Element("save1");
    EXPECT_FALSE(GetSelectorIndexWithAttributes(nullptr, root, save, CComVariant(0), kSave, index));
    EXPECT_EQ(index, -1);
    EXPECT_FALSE(GetSelectorIndexWithAttributes(desktop.Window("main"), root, nullptr, CComVariant(0), kSave, index));
    EXPECT_FALSE(GetSelectorIndexWithAttributes(desktop.Window("main"), root, save, CComVariant(L"0"), kSave, index));
    EXPECT_EQ(log.Count("E [GetSelectorIndexWithAttributes] GetSelectorIndexWithAttributes: Invalid input param, return FALSE"), 3u);
    EXPECT_EQ(log.Count("GetSelectorIndexWithAttributes: Enter"), 3u);
}

// ---- Hostile servers

TEST_F(SelectorIndexTest, ChildrenThatAreNoElementsAreSkipped) {
    Simulated::Fault odd{.call = "QueryInterface"};
    odd.iid = "IAccessible";
    odd.null = true;
    desktop.AddFault("save1", odd);
    EXPECT_EQ(Index("save2", kSave), (Answer{true, 1}));
    EXPECT_EQ(Place("save2", kSave), (Answer{true, 1}));
}

TEST_F(SelectorIndexTest, ContainerWithAnImpossibleCountIsPassedOver) {
    for (const LONG count : {-1, 1'000'000, 0x7FFFFFFF}) {
        desktop.ClearFaults();
        Simulated::Fault fault{.call = "get_accChildCount"};
        fault.count = count;
        desktop.AddFault("group", fault);
        EXPECT_EQ(Place("save3", kSave), (Answer{true, 2})) << count;
        EXPECT_EQ(Index("save3", kSave), (Answer{true, 2})) << count;
    }
}

TEST(SelectorIndexOnHostileServers, FaultAtAnyCallLeavesNoReference) {
    for (int kind = 0; kind < 3; ++kind)
        for (unsigned nth = 1;; ++nth) {
            DesktopFixture desktop(kDesktop);
            const CComPtr<IAccessible> element = desktop.Element("named");
            const long before = desktop.OutstandingReferences();
            Simulated::Fault fault{.at = nth, .times = 1};
            if (kind == 0) fault.result = E_FAIL;
            if (kind == 1) fault.null = true;
            if (kind == 2) fault.raise = true;
            desktop.AddFault(fault);
            const IdentifyingAttributes wanted{L"*e*", L"push button", L"*", L"*", {}};
            LONG index = 0;
            try {
                GetAAIndex(desktop.Element("root"), element, CComVariant(0), true, 1000, wanted, index);
                GetSelectorIndexWithAttributes(desktop.Window("main"), nullptr, element, CComVariant(0), wanted, index);
            } catch (const Simulated::ServerFailure&) {
                EXPECT_EQ(kind, 2);
            }
            ASSERT_EQ(desktop.OutstandingReferences(), before) << "kind " << kind << " call " << nth;
            if (desktop.TotalCalls() < static_cast<int>(nth)) break;
        }
}

// A container that has itself as its last child: each level has 20,000 elements, and there is always a next level.
class RingOfElements {
public:
    RingOfElements() {
        for (LONG id = 1; id < 20'000; ++id) ring.AddSimpleChild(id);
        ring.AddChild(ring);
    }
    ~RingOfElements() { ring.ReturnChildren(); }

    FakeAccessible ring{ROLE_SYSTEM_GROUPING};
};

TEST(SelectorIndexOnHostileServers, TreeWithoutAnEndHasNoIndex) {
    LogCapture log(L"ERROR");
    DesktopFixture desktop(kDesktop);
    RingOfElements tree;
    FakeAccessible target(ROLE_SYSTEM_PUSHBUTTON);
    const CComVariant simple(30'000);
    LONG index = 0;
    EXPECT_FALSE(GetAAIndex(&tree.ring, &target, simple, true, 1'000'000, {}, index));
    EXPECT_EQ(log.Count("GetAAIndex: more than 1000000 elements"), 1u) << log.Text();
    EXPECT_FALSE(GetSelectorIndexWithAttributes(desktop.Window("main"), &tree.ring, &target, simple, {}, index));
    EXPECT_EQ(index, AAUtil::MaximumSearchedElements);
    EXPECT_EQ(target.references, 0);
}

// ---- Against the method as it is told

// A tree of elements with few names, and the places of all of them level by level.
struct RandomTree {
    std::string json;
    std::vector<int> names;  // level by level; the place is the id

    explicit RandomTree(std::mt19937& random) {
        struct Node {
            int name;
            std::vector<int> children;
        };
        const int size = 1 + static_cast<int>(random() % 20);
        std::vector<Node> nodes{{0, {}}};
        for (int id = 1; id <= size; ++id) {
            nodes.push_back({static_cast<int>(random() % 3), {}});
            nodes[random() % static_cast<unsigned>(id)].children.push_back(id);
        }
        std::queue<int> queue({0});
        std::vector<int> place(nodes.size());
        for (; !queue.empty(); queue.pop())
            for (const int child : nodes[static_cast<std::size_t>(queue.front())].children) {
                place[static_cast<std::size_t>(child)] = static_cast<int>(names.size()) + 1;
                names.push_back(nodes[static_cast<std::size_t>(child)].name);
                queue.push(child);
            }
        const std::function<std::string(int)> write = [&](int id) {
            std::string children;
            for (const int child : nodes[static_cast<std::size_t>(id)].children) children += (children.empty() ? "" : ",") + write(child);
            return R"({"id": "e)" + std::to_string(place[static_cast<std::size_t>(id)]) + R"(", "role": "pane", "name": "n)" +
                   std::to_string(nodes[static_cast<std::size_t>(id)].name) + R"(", "rectangle": [)" + std::to_string(id) +
                   R"(, 0, 1, 1], "children": [)" + children + "]}";
        };
        json = R"({"windows": [{"id": "main", "class": "Frame", "objects": {"window": )" + write(0) + "}}]}";
    }
};

TEST(SelectorIndexAgainstTheReference, EveryElementOfRandomTrees) {
    LogCapture log(L"ERROR");
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        const RandomTree tree(random);
        DesktopFixture desktop(tree.json);
        for (std::size_t place = 1; place <= tree.names.size(); ++place) {
            const std::string id = "e" + std::to_string(place);
            const int name = tree.names[place - 1];
            const IdentifyingAttributes wanted{.name = L"n" + std::to_wstring(name)};
            const auto upToTarget = std::count(tree.names.begin(), tree.names.begin() + static_cast<std::ptrdiff_t>(place), name);
            LONG index = -7;
            ASSERT_TRUE(GetSelectorIndexWithAttributes(desktop.Window("main"), nullptr, desktop.Element(id), CComVariant(0), wanted, index));
            ASSERT_EQ(index, upToTarget) << tree.json << id;
            ASSERT_TRUE(GetAAIndex(desktop.Element("e0"), desktop.Element(id), CComVariant(0), false, 1000, wanted, index));
            ASSERT_EQ(index, upToTarget == 1 ? 0 : upToTarget) << tree.json << id;
        }
    }
}

}  // namespace
}  // namespace Zorvex::Testing
