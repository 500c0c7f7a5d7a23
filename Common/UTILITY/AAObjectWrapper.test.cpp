#include "Common/UTILITY/AAObjectWrapper.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

#include "Common/include/AAElement.h"
#include "Common/include/ComException.h"
#include "Common/include/FormatText.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeCalls;
using Testing::FakeObjects;
using Testing::LogCapture;

using Elements = std::vector<AAObjectWrapper>;
using Variants = std::vector<CComVariant>;

constexpr const char* ObtainedNone = "AAObjectWrapper::GetVariantChildren: AccessibleChildren obtained 0 children while the child count is 3";

FakeAccessible& ParentOfSimple(FakeObjects& objects, int count) {
    FakeAccessible& parent = objects.Add();
    for (LONG id = 1; id <= count; ++id) parent.AddSimpleChild(id);
    return parent;
}

TEST(AAElement, IsValidWithAllThreeParts) {
    FakeObjects objects;
    AAElement element;
    EXPECT_FALSE(element.IsValid());
    element.spAcc = &objects.Add();
    EXPECT_FALSE(element.IsValid());
    element.hWnd = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x100));
    EXPECT_TRUE(element.IsValid());
    element.child = CComVariant(5);
    EXPECT_TRUE(element.IsValid());
    element.child.Clear();
    EXPECT_FALSE(element.IsValid());
}

TEST(AAObjectWrapper, IsValidWithAContainerAndANumber) {
    FakeObjects objects;
    CComPtr<IAccessible> container(&objects.Add());
    EXPECT_FALSE(AAObjectWrapper().IsValid());
    EXPECT_FALSE(AAObjectWrapper(nullptr, CComVariant(0)).IsValid());
    EXPECT_FALSE(AAObjectWrapper(container, CComVariant()).IsValid());
    EXPECT_FALSE(AAObjectWrapper(container, CComVariant(L"0")).IsValid());
    EXPECT_TRUE(AAObjectWrapper(container, CComVariant(0)).IsValid());
    EXPECT_TRUE(AAObjectWrapper(container, CComVariant(7)).IsValid());
}

TEST(AAObjectWrapper, CopiesOwnAReferenceOfTheirOwn) {
    FakeObjects objects;
    FakeAccessible& object = objects.Add();
    {
        AAObjectWrapper element(CComPtr<IAccessible>(&object), CComVariant(0));
        AAObjectWrapper copy = element;
        EXPECT_EQ(objects.OutstandingReferences(), 2);
        copy = AAObjectWrapper();
        EXPECT_EQ(objects.OutstandingReferences(), 1);
        AAObjectWrapper moved = std::move(element);
        EXPECT_EQ(objects.OutstandingReferences(), 1);
    }
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST(AAObjectWrapper, ACopyThatCantBeMadeThrowsAndLeavesNoReference) {
    FakeObjects objects;
    AAObjectWrapper element(CComPtr<IAccessible>(&objects.Add()), CComVariant(0));
    element.childId.vt = 0x7F;
    try {
        const AAObjectWrapper copy = element;
        FAIL() << "no exception";
    } catch (const ComException& exception) {
        EXPECT_EQ(exception.Error(), DISP_E_BADVARTYPE);
    }
    EXPECT_EQ(objects.OutstandingReferences(), 1);
}

TEST(AAObjectWrapper, ChildrenBecomeElementsInOrder) {
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    FakeAccessible& child = objects.Add();
    parent.AddSimpleChild(1);
    parent.AddChild(child);
    parent.AddSimpleChild(3);
    {
        Elements children;
        ASSERT_TRUE(AAObjectWrapper::GetChildren(&parent, children));
        ASSERT_EQ(children.size(), 3u);
        EXPECT_EQ(children[0].container.p, &parent);
        EXPECT_EQ(children[0].childId.lVal, 1);
        EXPECT_EQ(children[1].container.p, &child);
        EXPECT_EQ(children[1].childId.vt, VT_I4);
        EXPECT_EQ(children[1].childId.lVal, 0);
        EXPECT_EQ(children[2].childId.lVal, 3);
        // One for each element: nothing else is held.
        EXPECT_EQ(objects.OutstandingReferences(), 3);
    }
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST(AAObjectWrapper, FewerChildrenThanTheCountAreASuccess) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 2);
    parent.hasCount = true;
    parent.count = 3;
    LogCapture log;
    Elements children;
    EXPECT_TRUE(AAObjectWrapper::GetChildren(&parent, children));
    EXPECT_EQ(children.size(), 2u);
    Variants raw;
    EXPECT_EQ(AAObjectWrapper::GetVariantChildren(parent, raw), S_OK);
    EXPECT_EQ(raw.size(), 2u);
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST(AAObjectWrapper, MoreChildrenThanTheCountAreCutToIt) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 5);
    parent.hasCount = parent.hasObtained = true;
    parent.count = 3;
    parent.obtained = 5;
    Elements children;
    EXPECT_TRUE(AAObjectWrapper::GetChildren(&parent, children));
    EXPECT_EQ(children.size(), 3u);
    Variants raw;
    EXPECT_EQ(AAObjectWrapper::GetVariantChildren(parent, raw), S_OK);
    EXPECT_EQ(raw.size(), 3u);
}

TEST(AAObjectWrapper, NoChildrenInSpiteOfACountIsALoggedFailure) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 3);
    parent.hasObtained = true;
    LogCapture log;
    Elements children(1);
    EXPECT_FALSE(AAObjectWrapper::GetChildren(&parent, children));
    EXPECT_TRUE(children.empty());
    EXPECT_EQ(log.Lines().size(), 1u) << log.Text();
    EXPECT_EQ(log.Count(ObtainedNone), 1u);
    EXPECT_EQ(log.Lines().at(0).substr(0, 1), "E");
    Variants raw(1);
    EXPECT_EQ(AAObjectWrapper::GetVariantChildren(parent, raw), E_FAIL);
    EXPECT_TRUE(raw.empty());
    EXPECT_EQ(log.Count(ObtainedNone), 2u);
}

TEST(AAObjectWrapper, ANegativeNumberObtainedIsAFailure) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 3);
    parent.hasObtained = true;
    parent.obtained = -5;
    LogCapture log;
    Elements children;
    EXPECT_FALSE(AAObjectWrapper::GetChildren(&parent, children));
    EXPECT_TRUE(log.Contains("AccessibleChildren obtained -5 children while the child count is 3"));
}

TEST(AAObjectWrapper, AMillionChildrenAreGarbageWithoutAMessage) {
    for (LONG count : {1000000, 0x7FFFFFFF, -1, static_cast<int>(0x80000000)}) {
        FakeObjects objects;
        FakeAccessible& parent = objects.Add();
        parent.hasCount = true;
        parent.count = count;
        LogCapture log;
        Elements children(2);
        EXPECT_FALSE(AAObjectWrapper::GetChildren(&parent, children));
        EXPECT_TRUE(children.empty());
        Variants raw(2);
        EXPECT_EQ(AAObjectWrapper::GetVariantChildren(parent, raw), E_FAIL);
        EXPECT_TRUE(raw.empty());
        EXPECT_EQ(parent.childrenCalls, 0);
        EXPECT_TRUE(log.Lines().empty()) << log.Text();
    }
}

TEST(AAObjectWrapper, OneLessThanAMillionChildrenAreRead) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 4);
    parent.hasCount = true;
    parent.count = 999999;
    Elements children;
    EXPECT_TRUE(AAObjectWrapper::GetChildren(&parent, children));
    EXPECT_EQ(parent.childrenCalls, 1);
    EXPECT_EQ(children.size(), 4u);
}

TEST(AAObjectWrapper, AFailingCountIsLoggedAndPassedOn) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 2);
    parent.countResult = E_ACCESSDENIED;
    LogCapture log;
    Variants raw(1);
    EXPECT_EQ(AAObjectWrapper::GetVariantChildren(parent, raw), E_ACCESSDENIED);
    EXPECT_TRUE(raw.empty());
    Elements children(1);
    EXPECT_FALSE(AAObjectWrapper::GetChildren(&parent, children));
    EXPECT_TRUE(children.empty());
    EXPECT_EQ(log.Count("AAObjectWrapper::GetVariantChildren: parentAcc->get_accChildCount failed with hr=0x80070005"), 2u);
}

TEST(AAObjectWrapper, APositiveResultOfTheCountIsLoggedAndMeansNoChildren) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 2);
    parent.countResult = S_FALSE;
    LogCapture log;
    Variants raw;
    EXPECT_EQ(AAObjectWrapper::GetVariantChildren(parent, raw), S_FALSE);
    EXPECT_TRUE(raw.empty());
    Elements children;
    EXPECT_TRUE(AAObjectWrapper::GetChildren(&parent, children));
    EXPECT_TRUE(children.empty());
    EXPECT_EQ(log.Count("AAObjectWrapper::GetVariantChildren: parentAcc->get_accChildCount failed with hr=0x1"), 2u);
    EXPECT_EQ(parent.childrenCalls, 0);
}

TEST(AAObjectWrapper, NoChildrenAreASuccess) {
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    Variants raw;
    EXPECT_EQ(AAObjectWrapper::GetVariantChildren(parent, raw), S_OK);
    Elements children;
    EXPECT_TRUE(AAObjectWrapper::GetChildren(&parent, children));
    EXPECT_EQ(parent.childrenCalls, 0);
}

TEST(AAObjectWrapper, AFailingListIsLoggedAndPassedOn) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 2);
    parent.childrenResult = E_UNEXPECTED;
    LogCapture log;
    Variants raw;
    EXPECT_EQ(AAObjectWrapper::GetVariantChildren(parent, raw), E_UNEXPECTED);
    EXPECT_TRUE(raw.empty());
    Elements children;
    EXPECT_FALSE(AAObjectWrapper::GetChildren(&parent, children));
    EXPECT_TRUE(children.empty());
    EXPECT_EQ(log.Count("AAObjectWrapper::GetVariantChildren: AccessibleChildren failed with hr=0x8000FFFF"), 2u);
}

TEST(AAObjectWrapper, AChildOfAnotherTypeStaysAsAnInvalidElementAndNoWalkVisitsIt) {
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    FakeAccessible& stranger = objects.Add();
    stranger.isAccessible = false;
    FakeAccessible& empty = objects.Add();
    empty.nullInterfaces = {IidOf<IAccessible>()};
    parent.AddOddChild(CComVariant(L"text"));
    parent.AddOddChild(CComVariant());
    parent.AddOddChild(CComVariant(static_cast<IDispatch*>(nullptr)));
    parent.AddChild(stranger);
    parent.AddChild(empty);
    parent.AddSimpleChild(6);
    Elements children;
    ASSERT_TRUE(AAObjectWrapper::GetChildren(&parent, children));
    ASSERT_EQ(children.size(), 6u);
    for (std::size_t at = 0; at < 5; ++at) {
        EXPECT_FALSE(children[at].IsValid());
        EXPECT_EQ(children[at].container.p, nullptr);
        EXPECT_EQ(children[at].childId.vt, VT_EMPTY);
    }
    EXPECT_TRUE(children[5].IsValid());
    int visits = 0;
    EXPECT_TRUE(AAObjectWrapper::WalkDescendantsBfs(&parent, [&](const AAObjectWrapper& element) {
        ++visits;
        EXPECT_EQ(element.childId.lVal, 6);
        return AATreeVisitResult::Continue;
    }));
    EXPECT_EQ(visits, 1);
    children.clear();
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST(AAObjectWrapper, OnlyAFullObjectHasChildren) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 2);
    const CComPtr<IAccessible> container(&parent);
    Elements children(1);
    EXPECT_FALSE(AAObjectWrapper(container, CComVariant(1)).GetChildren(children));
    EXPECT_TRUE(children.empty());
    children.resize(1);
    EXPECT_FALSE(AAObjectWrapper(container, CComVariant()).GetChildren(children));
    EXPECT_TRUE(children.empty());
    children.resize(1);
    EXPECT_FALSE(AAObjectWrapper().GetChildren(children));
    EXPECT_TRUE(children.empty());
    EXPECT_EQ(parent.calls, 0);
    EXPECT_TRUE(AAObjectWrapper(container, CComVariant(0)).GetChildren(children));
    EXPECT_EQ(children.size(), 2u);
    EXPECT_FALSE(AAObjectWrapper::GetChildren(nullptr, children));
    EXPECT_TRUE(children.empty());
}

TEST(AAObjectWrapper, AnElementMayBeReplacedByItsOwnChildren) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 2);
    Elements elements{AAObjectWrapper(CComPtr<IAccessible>(&parent), CComVariant(0))};
    EXPECT_TRUE(elements[0].GetChildren(elements));
    EXPECT_EQ(elements.size(), 2u);
}

TEST(AAObjectWrapper, ChildAtIndexIsTheRawChild) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 3);
    CComVariant child(L"before");
    EXPECT_EQ(AAObjectWrapper::GetChildAtIndex(&parent, 1, &child), S_OK);
    EXPECT_EQ(child.vt, VT_I4);
    EXPECT_EQ(child.lVal, 2);
}

TEST(AAObjectWrapper, AChildThatIsNotThereIsLogged) {
    FakeObjects objects;
    FakeAccessible& parent = ParentOfSimple(objects, 3);
    LogCapture log;
    CComVariant child(L"before");
    EXPECT_EQ(AAObjectWrapper::GetChildAtIndex(&parent, 7, &child), E_FAIL);
    EXPECT_EQ(child.vt, VT_EMPTY);
    EXPECT_TRUE(log.Contains("AAObjectWrapper:: cannot get level-7 child , hResult=0x1, variantType=0x0")) << log.Text();
    EXPECT_EQ(log.Lines().at(0).substr(0, 1), "E");
    parent.childrenResult = E_ACCESSDENIED;
    EXPECT_EQ(AAObjectWrapper::GetChildAtIndex(&parent, 0, &child), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("cannot get level-0 child , hResult=0x80070005")) << log.Text();
    EXPECT_EQ(AAObjectWrapper::GetChildAtIndex(nullptr, 0, &child), E_INVALIDARG);
    EXPECT_EQ(AAObjectWrapper::GetChildAtIndex(&parent, 0, nullptr), E_INVALIDARG);
}

TEST(AAObjectWrapper, WalkWithoutAVisitorIsLogged) {
    FakeObjects objects;
    LogCapture log;
    EXPECT_FALSE(AAObjectWrapper::WalkDescendantsBfs(&objects.Add(), nullptr));
    EXPECT_EQ(log.Count("AAObjectWrapper::WalkDescendantsBfs: invalid args"), 1u);
}

TEST(AAObjectWrapper, WalkFromNothingThrows) {
    try {
        AAObjectWrapper::WalkDescendantsBfs(nullptr, [](const AAObjectWrapper&) { return AATreeVisitResult::Continue; });
        FAIL() << "no exception";
    } catch (const ComException& exception) {
        EXPECT_EQ(exception.Error(), E_FAIL);
    }
}

TEST(AAObjectWrapper, WalkNeverVisitsTheRootAndNeverEntersASimpleElement) {
    FakeObjects objects;
    FakeAccessible& root = objects.Add();
    FakeAccessible& child = objects.Add();
    root.AddSimpleChild(1);
    root.AddChild(child);
    child.AddSimpleChild(1);
    std::vector<std::pair<IAccessible*, LONG>> seen;
    EXPECT_TRUE(AAObjectWrapper::WalkDescendantsBfs(&root, [&](const AAObjectWrapper& element) {
        seen.emplace_back(element.container.p, element.childId.lVal);
        return AATreeVisitResult::Continue;
    }));
    EXPECT_EQ(seen, (std::vector<std::pair<IAccessible*, LONG>>{{&root, 1}, {&child, 0}, {&child, 1}}));
    EXPECT_EQ(root.countCalls, 1);
    EXPECT_EQ(child.countCalls, 1);
}

TEST(AAObjectWrapper, WalkStopsAtOnceAndAnswersTrue) {
    FakeObjects objects;
    FakeAccessible& root = ParentOfSimple(objects, 5);
    int visits = 0;
    EXPECT_TRUE(AAObjectWrapper::WalkDescendantsBfs(&root, [&](const AAObjectWrapper&) {
        return ++visits == 2 ? AATreeVisitResult::Stop : AATreeVisitResult::Continue;
    }));
    EXPECT_EQ(visits, 2);
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST(AAObjectWrapper, WalkLooksOnlyAtStop) {
    FakeObjects objects;
    FakeAccessible& root = ParentOfSimple(objects, 3);
    int visits = 0;
    AAObjectWrapper::WalkDescendantsBfs(&root, [&](const AAObjectWrapper&) {
        ++visits;
        return static_cast<AATreeVisitResult>(2);
    });
    EXPECT_EQ(visits, 3);
}

TEST(AAObjectWrapper, WalkPassesOverANodeThatCantBeRead) {
    FakeObjects objects;
    FakeAccessible& root = objects.Add();
    FakeAccessible& broken = objects.Add();
    FakeAccessible& good = objects.Add();
    root.AddChild(broken);
    root.AddChild(good);
    broken.hasCount = true;
    broken.count = -1;
    good.AddSimpleChild(1);
    LogCapture log;
    int visits = 0;
    EXPECT_TRUE(AAObjectWrapper::WalkDescendantsBfs(&root, [&](const AAObjectWrapper&) {
        ++visits;
        return AATreeVisitResult::Continue;
    }));
    EXPECT_EQ(visits, 3);
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST(AAObjectWrapper, ACycleEndsWithTheVisitor) {
    FakeObjects objects;
    FakeAccessible& root = objects.Add();
    FakeAccessible& child = objects.Add();
    root.AddChild(child);
    child.AddChild(root);
    int visits = 0;
    EXPECT_TRUE(AAObjectWrapper::WalkDescendantsBfs(&root, [&](const AAObjectWrapper&) {
        return ++visits == 1000 ? AATreeVisitResult::Stop : AATreeVisitResult::Continue;
    }));
    EXPECT_EQ(visits, 1000);
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

// Random trees of full, simple and odd children.
class RandomTree {
public:
    explicit RandomTree(unsigned seed) : m_random(seed), root(objects.Add()) { Grow(root, 0); }

    FakeObjects objects;

    // Level by level, as the rules read.
    std::vector<std::pair<IAccessible*, LONG>> Reference() {
        std::vector<std::pair<IAccessible*, LONG>> visits;
        std::vector<FakeAccessible*> queue{&root};
        for (std::size_t at = 0; at < queue.size(); ++at)
            for (const auto& [object, id] : m_children[queue[at]]) {
                visits.emplace_back(object, id);
                if (id == 0) queue.push_back(object);
            }
        return visits;
    }

private:
    void Grow(FakeAccessible& parent, int depth) {
        const int count = depth > 4 ? 0 : static_cast<int>(m_random() % 4);
        for (LONG position = 1; position <= count; ++position) {
            switch (m_random() % 4) {
                case 0:
                    parent.AddSimpleChild(position);
                    m_children[&parent].emplace_back(&parent, position);
                    break;
                case 1: parent.AddOddChild(CComVariant(L"odd")); break;
                default: {
                    FakeAccessible& child = objects.Add();
                    parent.AddChild(child);
                    m_children[&parent].emplace_back(&child, 0);
                    Grow(child, depth + 1);
                }
            }
        }
    }

    std::mt19937 m_random;
    std::map<FakeAccessible*, std::vector<std::pair<FakeAccessible*, LONG>>> m_children;

public:
    FakeAccessible& root;
};

// The first seed that grows a tree worth spoiling.
unsigned SeedOfALargeTree() {
    for (unsigned seed = 0;; ++seed)
        if (RandomTree(seed).Reference().size() >= 25) return seed;
}

TEST(AAObjectWrapper, WalkMeetsTheReferenceOnRandomTrees) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        RandomTree tree(seed);
        std::vector<std::pair<IAccessible*, LONG>> seen;
        AAObjectWrapper::WalkDescendantsBfs(&tree.root, [&](const AAObjectWrapper& element) {
            seen.emplace_back(element.container.p, element.childId.lVal);
            return AATreeVisitResult::Continue;
        });
        ASSERT_EQ(seen, tree.Reference()) << "seed " << seed;
        ASSERT_EQ(tree.objects.OutstandingReferences(), 0) << "seed " << seed;
    }
}

TEST(AAObjectWrapper, AFaultAtAnyCallLeavesNoReference) {
    const unsigned seed = SeedOfALargeTree();
    for (FakeCalls::Spoil spoil : {FakeCalls::Spoil::Fail, FakeCalls::Spoil::NullWithSuccess})
        for (int nth = 1; nth < 60; ++nth) {
            RandomTree tree(seed);
            FakeCalls::Instance().Reset(spoil, nth);
            EXPECT_TRUE(AAObjectWrapper::WalkDescendantsBfs(&tree.root, [](const AAObjectWrapper&) { return AATreeVisitResult::Continue; }));
            ASSERT_EQ(tree.objects.OutstandingReferences(), 0) << "call " << nth;
        }
}

TEST(AAObjectWrapper, AThrowingVisitorLeavesNoReference) {
    RandomTree tree(SeedOfALargeTree());
    int visits = 0;
    EXPECT_THROW(AAObjectWrapper::WalkDescendantsBfs(&tree.root, [&](const AAObjectWrapper&) -> AATreeVisitResult {
        if (++visits == 3) throw 42;
        return AATreeVisitResult::Continue;
    }), int);
    EXPECT_EQ(tree.objects.OutstandingReferences(), 0);
}

TEST(ElementDebugText, SaysObjectAndChild) {
    FakeObjects objects;
    const IAccessible* object = &objects.Add();
    const std::string address = FormatText("0x%p", static_cast<const void*>(object));
    EXPECT_EQ(ElementDebugText(nullptr, CComVariant(3)), "<null object>");
    EXPECT_EQ(ElementDebugText(object, CComVariant(0)), address);
    EXPECT_EQ(ElementDebugText(object, CComVariant(3)), "<" + address + " childId=3>");
    EXPECT_EQ(ElementDebugText(object, CComVariant(L"3")), address);
}

}  // namespace
}  // namespace Zorvex
