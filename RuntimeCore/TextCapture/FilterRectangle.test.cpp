#include "RuntimeCore/TextCapture/FilterRectangle.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeCalls;
using Testing::FakeObjects;
using Testing::LogCapture;

const CComVariant Self(CHILDID_SELF);

class FilterRectangleTest : public ::testing::Test {
protected:
    RectangleRelation Relate(LONG left, LONG top, LONG width, LONG height, const RECT& filter) {
        element.left = left;
        element.top = top;
        element.width = width;
        element.height = height;
        return RectanglesIntersect(&element, Self, &filter);
    }

    FakeObjects objects;
    FakeAccessible& element = objects.Add();
    const RECT filter{100, 100, 200, 200};
};

TEST_F(FilterRectangleTest, NoElementIsApartAndNoFilterMeetsWithoutReadingTheLocation) {
    EXPECT_EQ(RectanglesIntersect(nullptr, Self, &filter), RectangleRelation::Apart);
    EXPECT_EQ(RectanglesIntersect(nullptr, Self, nullptr), RectangleRelation::Apart);
    EXPECT_EQ(RectanglesIntersect(&element, Self, nullptr), RectangleRelation::Meets);
    EXPECT_EQ(element.locationCalls, 0);
}

TEST_F(FilterRectangleTest, UnreadableEmptyAndNegativePlacesAreApart) {
    EXPECT_EQ(Relate(100, 100, 50, 50, filter), RectangleRelation::Meets);
    EXPECT_EQ(Relate(-1, 100, 150, 50, filter), RectangleRelation::Apart) << "a negative left edge, though it reaches in";
    EXPECT_EQ(Relate(100, -1, 50, 150, filter), RectangleRelation::Apart);
    EXPECT_EQ(Relate(100, 100, 0, 50, filter), RectangleRelation::Apart);
    EXPECT_EQ(Relate(100, 100, 50, 0, filter), RectangleRelation::Apart);
    EXPECT_EQ(Relate(100, 100, -50, 50, filter), RectangleRelation::Apart);
    for (const HRESULT result : {E_FAIL, S_FALSE}) {
        element.locationResult = result;
        EXPECT_EQ(Relate(100, 100, 50, 50, filter), RectangleRelation::Apart) << result;
    }
}

TEST_F(FilterRectangleTest, ElementThatHoldsTheFilterEncloses) {
    EXPECT_EQ(Relate(99, 99, 102, 102, filter), RectangleRelation::Encloses);
    EXPECT_EQ(Relate(99, 99, 101, 101, filter), RectangleRelation::Encloses) << "the right and bottom edges may coincide";
    EXPECT_EQ(Relate(100, 99, 101, 102, filter), RectangleRelation::Meets) << "the left edge may not";
    EXPECT_EQ(Relate(99, 99, 102, 50, filter), RectangleRelation::Meets);
}

TEST_F(FilterRectangleTest, EdgesThatTouchMeetOnTheLeftAndAreApartOnTheRight) {
    EXPECT_EQ(Relate(50, 120, 50, 10, filter), RectangleRelation::Meets) << "its right edge is the filter's left one";
    EXPECT_EQ(Relate(49, 120, 50, 10, filter), RectangleRelation::Apart);
    EXPECT_EQ(Relate(200, 120, 50, 10, filter), RectangleRelation::Apart) << "its left edge is the filter's right one";
    EXPECT_EQ(Relate(199, 120, 50, 10, filter), RectangleRelation::Meets);
    EXPECT_EQ(Relate(120, 50, 10, 50, filter), RectangleRelation::Meets);
    EXPECT_EQ(Relate(120, 200, 10, 50, filter), RectangleRelation::Apart);
}

// The slow reference: the table of eight signs, difference by difference.
RectangleRelation BySigns(const RECT& at, const RECT& ref) {
    const std::int64_t differences[] = {at.left - ref.left, at.left - ref.right,  at.right - ref.left,  at.right - ref.right,
                                        at.top - ref.top,   at.top - ref.bottom, at.bottom - ref.top, at.bottom - ref.bottom};
    int flags = 0;
    for (int bit = 0; bit < 8; ++bit)
        if (differences[bit] < 0) flags |= 1 << bit;
    if ((flags & 0x0F) == 0 || (flags & 0x0F) == 15 || (flags & 0xF0) == 0 || (flags & 0xF0) == 0xF0) return RectangleRelation::Apart;
    return flags == 0x33 ? RectangleRelation::Encloses : RectangleRelation::Meets;
}

TEST_F(FilterRectangleTest, RandomRectanglesRelateAsTheirSignsSay) {
    LogCapture log;
    std::mt19937 random(7);
    std::uniform_int_distribution<LONG> edge(0, 12), size(1, 12);
    for (int round = 0; round < 3000; ++round) {
        const LONG left = edge(random), top = edge(random), width = size(random), height = size(random);
        const RECT ref{edge(random), edge(random), edge(random), edge(random)};
        EXPECT_EQ(Relate(left, top, width, height, ref), BySigns({left, top, left + width, top + height}, ref));
    }
}

TEST_F(FilterRectangleTest, RectanglesAndSignsAreLogged) {
    LogCapture log;
    Relate(99, 99, 102, 102, filter);
    EXPECT_TRUE(log.Contains("V [RectanglesIntersect] RectanglesIntersect: this=(99 99 201 201) ref=(100 100 200 200)")) << log.Text();
    EXPECT_TRUE(log.Contains("V [RectanglesIntersect] RectanglesIntersect: SignFlagsX=0x3"));
    EXPECT_TRUE(log.Contains("V [RectanglesIntersect] RectanglesIntersect: SignFlagsY=0x33"));
    log.Clear();
    Relate(300, 99, 10, 10, filter);
    EXPECT_TRUE(log.Contains("SignFlagsX=0x0"));
    EXPECT_FALSE(log.Contains("SignFlagsY"));
}

TEST_F(FilterRectangleTest, PlaceAtTheEdgeOfTheNumbersIsSurvived) {
    EXPECT_EQ(Relate(0x7FFFFFFF, 100, 0x7FFFFFFF, 50, filter), RectangleRelation::Meets) << "the right edge wraps around to -2";
    EXPECT_EQ(Relate(150, 150, 0x7FFFFFFF, 1, filter), RectangleRelation::Meets);
}

class ChildWithRectangleTest : public ::testing::Test {
protected:
    FakeAccessible& Add(FakeAccessible& parent, LONG left, LONG width) {
        FakeAccessible& child = objects.Add();
        child.left = child.top = left;
        child.width = child.height = width;
        parent.AddChild(child);
        return child;
    }
    bool Find(const RECT& place) { return GetAAChildWithRectangle(&root, &place, found, child); }

    FakeObjects objects;
    FakeAccessible& root = objects.Add();
    CComPtr<IAccessible> found;
    CComVariant child;
};

TEST_F(ChildWithRectangleTest, FirstOfALevelComesBeforeAllBelow) {
    FakeAccessible& first = Add(root, 0, 50);
    Add(first, 10, 5);
    FakeAccessible& second = Add(root, 10, 5);
    ASSERT_TRUE(Find({10, 10, 15, 15}));
    EXPECT_EQ(found, &second);
    EXPECT_EQ(child.vt, VT_I4);
    EXPECT_EQ(child.lVal, CHILDID_SELF);
    found.Release();
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST_F(ChildWithRectangleTest, AllFourEdgesHaveToFitAndTheRootIsNotOne) {
    root.left = root.top = 10;
    root.width = root.height = 5;
    FakeAccessible& only = Add(root, 20, 5);
    EXPECT_FALSE(Find({10, 10, 15, 15}));
    EXPECT_FALSE(found);
    EXPECT_EQ(child.vt, VT_EMPTY);
    for (const RECT& close : {RECT{19, 20, 25, 25}, RECT{20, 19, 25, 25}, RECT{20, 20, 26, 25}, RECT{20, 20, 25, 26}}) EXPECT_FALSE(Find(close));
    EXPECT_TRUE(Find({20, 20, 25, 25}));
    only.locationResult = S_FALSE;
    EXPECT_FALSE(Find({20, 20, 25, 25}));
}

TEST_F(ChildWithRectangleTest, NothingToSearchInOrForFindsNothing) {
    const RECT place{};
    EXPECT_FALSE(GetAAChildWithRectangle(nullptr, &place, found, child));
    EXPECT_FALSE(GetAAChildWithRectangle(&root, nullptr, found, child));
}

TEST_F(ChildWithRectangleTest, RingEnds) {
    root.AddChild(root);
    root.left = 1;
    EXPECT_FALSE(Find({10, 10, 15, 15}));
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

}  // namespace
}  // namespace Zorvex
