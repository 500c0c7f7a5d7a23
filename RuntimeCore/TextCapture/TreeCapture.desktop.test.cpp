#include "RuntimeCore/TextCapture/TreeCapture.h"

#include <gtest/gtest.h>

#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeAccessible.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::FakeAccessible;

constexpr char TreeDesktop[] = R"({"windows": [{"id": "w", "class": "SysTreeView32", "objects": {"client": {"id": "tree", "role": "outline", "children": [
    {"id": "first", "role": "outline item", "name": "first", "value": "1", "simple": true},
    {"id": "start", "role": "outline item", "name": "start", "value": "1", "simple": true},
    {"id": "below", "role": "outline item", "name": "below", "value": "2", "simple": true},
    {"id": "deeper", "role": "outline item", "name": "deeper", "value": "3", "simple": true},
    {"id": "next", "role": "outline item", "name": "next", "value": "1", "simple": true},
    {"id": "last", "role": "outline item", "name": "last", "value": "2", "simple": true},
    {"id": "bare", "role": "outline item", "name": "bare", "simple": true},
    {"id": "object", "role": "outline item", "name": "object", "value": "5"},
    {"id": "button", "role": "push button", "name": "button"}]}}}]})";

class TreeCaptureTest : public ::testing::Test {
protected:
    std::wstring Text(const char* id) {
        CString text = L"replaced";
        result = CaptureTreeElementText(context, desktop.Window("w"), desktop.Element(id), desktop.Child(id), text);
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        return text;
    }
    void Fail(const char* id, Simulated::Call call) {
        Simulated::Fault fault;
        fault.call = call;
        fault.result = E_ACCESSDENIED;
        desktop.AddFault(id, fault);
    }

    DesktopFixture desktop{TreeDesktop};
    CaptureContext context;
    HRESULT result = E_UNEXPECTED;
};

TEST_F(TreeCaptureTest, ItemGivesItsLineAndThoseOfTheItemsUnderItIndentedFromItself) {
    EXPECT_EQ(Text("start"), L"start\r\n\tbelow\r\n\t\tdeeper");
    EXPECT_EQ(result, S_OK);
}

TEST_F(TreeCaptureTest, ItemWithNothingUnderItGivesItsNameAlone) {
    EXPECT_EQ(Text("first"), L"first");
    EXPECT_EQ(Text("last"), L"last") << "the next item has no level";
    EXPECT_EQ(Text("object"), L"object") << "the next one is an object of its own";
}

TEST_F(TreeCaptureTest, ItemWithoutNameOrLevelFails) {
    EXPECT_EQ(Text("bare"), L"");
    EXPECT_EQ(result, E_FAIL);
    Fail("first", Simulated::Call::AccName);
    EXPECT_EQ(Text("first"), L"");
    EXPECT_EQ(result, E_FAIL);
    Fail("start", Simulated::Call::AccValue);
    EXPECT_EQ(Text("start"), L"");
    EXPECT_EQ(result, E_FAIL);
}

TEST_F(TreeCaptureTest, NamelessItemUnderTheStartIsPassedOver) {
    Fail("below", Simulated::Call::AccName);
    EXPECT_EQ(Text("start"), L"start\r\n\t\tdeeper");
}

TEST_F(TreeCaptureTest, UnreadableLevelAndUnreachableItemEndTheLines) {
    Fail("deeper", Simulated::Call::AccValue);
    EXPECT_EQ(Text("start"), L"start\r\n\tbelow");
    Fail("tree", Simulated::Call::AccNavigate);
    EXPECT_EQ(Text("start"), L"start");
    EXPECT_EQ(result, S_OK);
}

TEST_F(TreeCaptureTest, OutlineGivesAllItemsOfItsWindowWithTheirIndentation) {
    context.m_bNoIndent = true;
    EXPECT_EQ(Text("tree"), L"\tfirst\r\n\tstart\r\n\t\tbelow\r\n\t\t\tdeeper\r\n\tnext\r\n\t\tlast\r\nbare\r\n\t\t\t\t\tobject\r\n");
    EXPECT_FALSE(context.m_bNoIndent);
    EXPECT_EQ(result, S_OK);
}

TEST_F(TreeCaptureTest, OtherRolesGiveNothingAndUnreadableOnesTheirResult) {
    EXPECT_EQ(Text("button"), L"");
    EXPECT_EQ(result, S_FALSE);
    Fail("button", Simulated::Call::AccRole);
    EXPECT_EQ(Text("button"), L"");
    EXPECT_EQ(result, E_ACCESSDENIED);
}

TEST_F(TreeCaptureTest, InvalidArgumentsEmptyTheText) {
    CString text = L"replaced";
    EXPECT_EQ(CaptureTreeElementText(context, nullptr, nullptr, CComVariant(1), text), E_INVALIDARG);
    EXPECT_EQ(text, L"");
    EXPECT_EQ(CaptureTreeElementText(context, nullptr, desktop.Element("tree"), CComVariant(), text), E_INVALIDARG);
}

TEST_F(TreeCaptureTest, WindowWithoutAnObjectGivesNothing) {
    Fail("w", Simulated::Call::AccessibleObjectFromWindow);
    EXPECT_EQ(Text("tree"), L"");
    EXPECT_EQ(result, S_FALSE);
}

// Each next item is the item itself, one level deeper than the start, or as deep as it gets.
class EndlessItems : public FakeAccessible {
public:
    explicit EndlessItems(const wchar_t* deepValue) : FakeAccessible(ROLE_SYSTEM_OUTLINEITEM, L"item"), m_deepValue(deepValue) {}
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* out) override {
        *out = SysAllocString(child.lVal == 1 ? L"0" : m_deepValue);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE accNavigate(LONG, VARIANT, VARIANT* end) override {
        end->vt = VT_I4;
        end->lVal = 2;
        return S_OK;
    }

private:
    const wchar_t* m_deepValue;
};

TEST(TreeCaptureOfARing, EndsAtTheMostItems) {
    EndlessItems items(L"1");
    CaptureContext context;
    CString text;
    EXPECT_EQ(CaptureTreeElementText(context, nullptr, &items, CComVariant(1), text), S_OK);
    EXPECT_EQ(text.size(), 4 + 1'000'000u * 7);
}

TEST(TreeCaptureOfARing, LevelThatNoTreeHasEndsAtTheLongestText) {
    EndlessItems items(L"2147483648");
    CaptureContext context;
    CString text;
    EXPECT_EQ(CaptureTreeElementText(context, nullptr, &items, CComVariant(1), text), S_FALSE);
    EXPECT_GT(text.size(), LongestCapturedText - 2000);
    EXPECT_LE(text.size(), LongestCapturedText);
}

}  // namespace
}  // namespace Zorvex
