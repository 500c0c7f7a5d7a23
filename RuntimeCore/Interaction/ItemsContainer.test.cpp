#include "RuntimeCore/Interaction/ItemsContainer.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeElement;
using Testing::LogCapture;

using ItemsContainerTest = Testing::FakeElementTest;

TEST_F(ItemsContainerTest, RoleThatCannotBeReadIsNoRole) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_LIST;
    EXPECT_TRUE(ItemsContainer(nullptr, element).HasRole(ROLE_SYSTEM_LIST));
    element->roleAnswer = Testing::VariantAnswer::Failure(E_FAIL);
    EXPECT_FALSE(ItemsContainer(nullptr, element).HasRole(ROLE_SYSTEM_LIST));
    element->roleAnswer = CComVariant(L"list");
    EXPECT_FALSE(ItemsContainer(nullptr, element).HasRole(ROLE_SYSTEM_LIST));
    EXPECT_FALSE(ItemsContainer(nullptr, nullptr).HasRole(ROLE_SYSTEM_LIST));
}

TEST_F(ItemsContainerTest, NullContainerHasNoMultipleSelection) {
    LogCapture log;
    EXPECT_FALSE(HasMultipleSelectionSupport(ItemsContainer(nullptr, nullptr)));
    EXPECT_TRUE(log.Contains("HasMultipleSelectionSupport: NULL arg"));
}

TEST_F(ItemsContainerTest, MultipleSelectionIsSaidByTheFirstChildOrTheContainerButNeverByAnEmptyOne) {
    auto list = FakeElement::Make();
    list->stateAnswer = STATE_SYSTEM_MULTISELECTABLE;
    EXPECT_FALSE(HasMultipleSelectionSupport(ItemsContainer(nullptr, list))) << "there is nothing to select";
    list->childCount.number = 1;
    auto item = FakeElement::Make();
    list->children.emplace_back(item->AsDispatch());
    EXPECT_TRUE(HasMultipleSelectionSupport(ItemsContainer(nullptr, list)));
    list->stateAnswer = LONG{0};
    EXPECT_FALSE(HasMultipleSelectionSupport(ItemsContainer(nullptr, list)));
    item->stateAnswer = STATE_SYSTEM_MULTISELECTABLE;
    EXPECT_TRUE(HasMultipleSelectionSupport(ItemsContainer(nullptr, list)));
    item->stateAnswer = Testing::VariantAnswer::Failure(E_FAIL);
    EXPECT_FALSE(HasMultipleSelectionSupport(ItemsContainer(nullptr, list)));
    item->isAccessible = false;
    list->stateAnswer = STATE_SYSTEM_MULTISELECTABLE;
    EXPECT_TRUE(HasMultipleSelectionSupport(ItemsContainer(nullptr, list))) << "the container's own word is enough";
}

TEST_F(ItemsContainerTest, DeadWindowGivesNothingToWorkOn) {
    LogCapture log;
    HWND window = reinterpret_cast<HWND>(4);
    CComPtr<IAccessible> container = FakeElement::Make().p;
    EXPECT_FALSE(GetSelectableAccElementFromWindow(window, container));
    EXPECT_EQ(log.Count("GetSelectableAccElementFromWindow: Invalid input param"), 1u);
}

}  // namespace
}  // namespace Zorvex
