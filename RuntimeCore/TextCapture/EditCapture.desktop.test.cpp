#include "RuntimeCore/TextCapture/EditCapture.h"

#include <gtest/gtest.h>

#include "tests/Support/DesktopFixture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;

TEST(EditCapture, TextOfTheFieldComesOutWithItsLineEnds) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "Edit", "title": "one\r\ntwo"}]})");
    CString text;
    EXPECT_EQ(CaptureTextAA_Edit(desktop.Window("w"), text), S_OK);
    EXPECT_EQ(text, L"one\r\ntwo");
}

TEST(EditCapture, EmptyFieldAndNoWindowGiveNothing) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "Edit"}]})");
    CString text = L"kept";
    EXPECT_EQ(CaptureTextAA_Edit(desktop.Window("w"), text), S_FALSE);
    EXPECT_EQ(CaptureTextAA_Edit(nullptr, text), S_FALSE);
    EXPECT_EQ(text, L"kept");
}

// 13 is WM_GETTEXT, 14 WM_GETTEXTLENGTH.
TEST(EditCapture, NegativeLengthGivesNothing) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "Edit", "title": "text", "messages": {"14": -1}}]})");
    CString text;
    EXPECT_EQ(CaptureTextAA_Edit(desktop.Window("w"), text), S_FALSE);
}

TEST(EditCapture, LengthThatNoTextHasIsCutAndTheTextStands) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "Edit", "title": "text", "messages": {"14": 4611686018427387904}}]})");
    CString text;
    EXPECT_EQ(CaptureTextAA_Edit(desktop.Window("w"), text), S_OK);
    EXPECT_EQ(text, L"text");
}

TEST(EditCapture, FieldThatClaimsToHaveWrittenMoreThanThereWasRoomIsCut) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "Edit", "messages": {"13": 1000, "14": 4}}]})");
    CString text;
    EXPECT_EQ(CaptureTextAA_Edit(desktop.Window("w"), text), S_OK);
    EXPECT_EQ(text.size(), 4u);
}

TEST(EditCapture, FieldThatRefusesItsTextSucceedsAndGivesNone) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "Edit", "messages": {"13": 0, "14": 4}}]})");
    CString text = L"kept";
    EXPECT_EQ(CaptureTextAA_Edit(desktop.Window("w"), text), S_OK);
    EXPECT_EQ(text, L"kept");
}

}  // namespace
}  // namespace Zorvex
