#include "RuntimeCore/AccChildReaders.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeObjects;
using Testing::LogCapture;

const CComVariant Self(CHILDID_SELF);

TEST(AccChildReaders, AllChildrenWithoutARoleEvenInvalidOnes) {
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    parent.AddSimpleChild(1);
    parent.AddOddChild(CComVariant(L"odd"));
    const std::vector<AAObjectWrapper> children = GetAccChildren(&parent);
    ASSERT_EQ(children.size(), 2u);
    EXPECT_TRUE(children[0].IsValid());
    EXPECT_FALSE(children[1].IsValid());
    EXPECT_EQ(parent.roleCalls, 0);
}

TEST(AccChildReaders, OnlyChildrenWithTheRole) {
    LogCapture log;
    FakeObjects objects;
    FakeAccessible& parent = objects.Add(ROLE_SYSTEM_LIST);
    FakeAccessible& cell = objects.Add(ROLE_SYSTEM_CELL);
    FakeAccessible& header = objects.Add(ROLE_SYSTEM_ROWHEADER);
    FakeAccessible& broken = objects.Add(ROLE_SYSTEM_CELL);
    broken.roleResult = E_FAIL;
    parent.AddChild(header);
    parent.AddChild(cell);
    parent.AddOddChild(CComVariant());
    parent.AddChild(broken);
    {
        const std::vector<AAObjectWrapper> children = GetAccChildren(&parent, ROLE_SYSTEM_CELL);
        ASSERT_EQ(children.size(), 1u);
        EXPECT_EQ(children[0].container.p, &cell);
    }
    EXPECT_EQ(log.Count("GetAccRole: Cannot get role 80004005"), 1u) << log.Text();
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST(AccChildReaders, NoContainerHasNoChildren) {
    LogCapture log;
    EXPECT_TRUE(GetAccChildren(nullptr, ROLE_SYSTEM_CELL).empty());
    EXPECT_TRUE(log.Lines().empty());
}

TEST(AccChildReaders, UnreadableChildrenAreLogged) {
    LogCapture log;
    FakeObjects objects;
    FakeAccessible& parent = objects.Add();
    parent.countResult = E_FAIL;
    EXPECT_TRUE(GetAccChildren(&parent).empty());
    EXPECT_EQ(log.Count("GetAccChildrenWithRole: AAObjectWrapper::GetChildren failed"), 1u);
    EXPECT_EQ(log.Lines().back().substr(0, 1), "E");
}

TEST(AccChildReaders, TheRoleIsANumberOrZero) {
    LogCapture log;
    FakeObjects objects;
    FakeAccessible& object = objects.Add(ROLE_SYSTEM_CELL);
    EXPECT_EQ(GetAccRole(&object, Self), ROLE_SYSTEM_CELL);
    EXPECT_TRUE(log.Lines().empty());
    object.role = CComVariant(L"cell");
    EXPECT_EQ(GetAccRole(&object, Self), 0);
    EXPECT_TRUE(log.Contains("GetAccRole: Cannot get role 0"));
    object.role = CComVariant(ROLE_SYSTEM_CELL);
    object.roleResult = E_ACCESSDENIED;
    EXPECT_EQ(GetAccRole(&object, Self), 0);
    EXPECT_TRUE(log.Contains("GetAccRole: Cannot get role 80070005"));
    EXPECT_EQ(GetAccRole(nullptr, Self), 0);
    EXPECT_EQ(log.Lines().size(), 3u);
}

TEST(AccChildReaders, TheParentOfASimpleElementIsItsContainer) {
    FakeObjects objects;
    FakeAccessible& object = objects.Add();
    EXPECT_EQ(GetAccParent(&object, CComVariant(2)).p, &object);
    EXPECT_EQ(object.calls, 0);
}

TEST(AccChildReaders, TheParentOfAFullObjectIsAsked) {
    FakeObjects objects;
    FakeAccessible& object = objects.Add();
    FakeAccessible& parent = objects.Add();
    EXPECT_EQ(GetAccParent(&object, Self).p, nullptr);
    object.parent = &parent;
    EXPECT_EQ(GetAccParent(&object, Self).p, &parent);
    parent.isAccessible = false;
    EXPECT_EQ(GetAccParent(&object, Self).p, nullptr);
    object.parentResult = E_FAIL;
    EXPECT_EQ(GetAccParent(&object, Self).p, nullptr);
    EXPECT_EQ(GetAccParent(nullptr, Self).p, nullptr);
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST(AccChildReaders, TheRectangleIsAnArrayOfFourNumbers) {
    FakeObjects objects;
    FakeAccessible& object = objects.Add();
    object.left = 10;
    object.top = -20;
    object.width = 30;
    object.height = 40;
    const CComVariant rectangle = GetAccRectangleAsVariant(&object, Self);
    ASSERT_EQ(rectangle.vt, VT_ARRAY | VT_I4);
    LONG upper = 0;
    ASSERT_EQ(::SafeArrayGetUBound(rectangle.parray, 1, &upper), S_OK);
    ASSERT_EQ(upper, 3);
    const LONG expected[] = {10, -20, 40, 20};
    for (LONG index = 0; index < 4; ++index) {
        LONG side = 0;
        ::SafeArrayGetElement(rectangle.parray, &index, &side);
        EXPECT_EQ(side, expected[index]) << index;
    }
}

TEST(AccChildReaders, ARectangleThatCantBeReadIsLoggedAndEmpty) {
    LogCapture log;
    FakeObjects objects;
    FakeAccessible& object = objects.Add();
    object.locationResult = E_NOTIMPL;
    EXPECT_EQ(GetAccRectangleAsVariant(&object, Self).vt, VT_EMPTY);
    EXPECT_EQ(log.Count("accLocation() failed with hResult=0x80004001"), 1u);
    EXPECT_EQ(GetAccRectangleAsVariant(nullptr, Self).vt, VT_EMPTY);
}

}  // namespace
}  // namespace Zorvex
