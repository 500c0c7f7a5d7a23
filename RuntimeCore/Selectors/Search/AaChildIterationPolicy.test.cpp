#include "RuntimeCore/Selectors/Search/AaChildIterationPolicy.h"

#include <gtest/gtest.h>

#include "RuntimeCore/Selectors/Unified/SearchResultSequence.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Search {
namespace {

using Testing::FakeAccessible;
using Testing::FakeObjects;
using Testing::LogCapture;

constexpr const char* kListingFailed = "AaChildIterationPolicy: AAObjectWrapper::GetChildren failed";

AaSearchResult ResultOf(FakeAccessible& object) { return AaSearchResult(CComPtr<IAccessible>(&object), CComVariant(CHILDID_SELF), nullptr); }

TEST(AaChildIterationPolicy, EveryChildBecomesAResultWithANewId) {
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    FakeAccessible& object = objects.Add();
    parent.AddChild(object);
    parent.AddSimpleChild(2);
    const AaSearchResult root = ResultOf(parent);
    AaChildIterationPolicy children{AaContainer(root)};
    SetSearchResultSequence(500);
    ASSERT_TRUE(children.HasNext());
    const AaSearchResult first = children.Next();
    EXPECT_EQ(first.id, 500);
    EXPECT_EQ(first.accessible.p, &object);
    EXPECT_TRUE(first.IsSelf());
    ASSERT_TRUE(children.HasNext());
    const AaSearchResult second = children.Next();
    EXPECT_EQ(second.id, 501);
    EXPECT_EQ(second.accessible.p, &parent);
    EXPECT_FALSE(second.IsSelf());
    EXPECT_EQ(second.child.lVal, 2);
    EXPECT_FALSE(children.HasNext());
}

TEST(AaChildIterationPolicy, EntriesThatAreNoElementsArePassedOver) {
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    FakeAccessible& foreign = objects.Add();
    foreign.isAccessible = false;
    parent.AddOddChild(CComVariant(L"text"));
    parent.AddChild(foreign);
    parent.AddSimpleChild(3);
    const AaSearchResult root = ResultOf(parent);
    AaChildIterationPolicy children{AaContainer(root)};
    ASSERT_TRUE(children.HasNext());
    EXPECT_EQ(children.Next().child.lVal, 3);
    EXPECT_FALSE(children.HasNext());
}

TEST(AaChildIterationPolicy, AListWhoseLastEntriesHaveNoAccessibleHasNoNext) {
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    FakeAccessible& foreign = objects.Add();
    foreign.isAccessible = false;
    parent.AddSimpleChild(1);
    parent.AddChild(foreign);
    parent.AddOddChild(CComVariant());
    const AaSearchResult root = ResultOf(parent);
    AaChildIterationPolicy children{AaContainer(root)};
    ASSERT_TRUE(children.HasNext());
    children.Next();
    EXPECT_FALSE(children.HasNext());
    EXPECT_FALSE(children.HasNext());
}

TEST(AaChildIterationPolicy, ChildrenThatCannotBeReadAreLoggedAndThereAreNone) {
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    parent.countResult = E_FAIL;
    LogCapture log;
    const AaSearchResult root = ResultOf(parent);
    AaChildIterationPolicy children{AaContainer(root)};
    EXPECT_FALSE(children.HasNext());
    EXPECT_EQ(log.Count(kListingFailed), 1u) << log.Text();
}

TEST(AaChildIterationPolicy, AnElementWithoutAnAccessibleHasNoChildrenEither) {
    LogCapture log;
    const AaSearchResult root;
    AaChildIterationPolicy children{AaContainer(root)};
    EXPECT_FALSE(children.HasNext());
    ASSERT_EQ(log.Lines().size(), 1u) << log.Text();
    EXPECT_EQ(log.Count(kListingFailed), 1u);
    EXPECT_EQ(log.Lines()[0].substr(0, 1), "E");
}

TEST(AaChildIterationPolicy, IsNeverBlockedAndItsDefaultResultIsEmpty) {
    const AaSearchResult root;
    AaChildIterationPolicy children{AaContainer(root)};
    EXPECT_FALSE(children.IsBlocked());
    const AaSearchResult empty = children.DefaultResult();
    EXPECT_FALSE(empty.IsValid());
    EXPECT_TRUE(empty.IsSelf());
    EXPECT_EQ(empty.child.vt, VT_I4);
    EXPECT_EQ(empty.ownerWindow, nullptr);
}

TEST(AaChildIterationPolicy, LetsGoOfEveryReference) {
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    for (int i = 0; i < 5; ++i) parent.AddChild(objects.Add());
    {
        const AaSearchResult root = ResultOf(parent);
        AaChildIterationPolicy children{AaContainer(root)};
        children.HasNext();
        const AaSearchResult taken = children.Next();
    }
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

}  // namespace
}  // namespace Zorvex::Search
