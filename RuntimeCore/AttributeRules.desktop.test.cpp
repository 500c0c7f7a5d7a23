// All attributes of all kinds of element, with every single call going wrong in every way.
#include <gtest/gtest.h>

#include "RuntimeCore/AaAttrHandler.h"
#include "RuntimeCore/ElementAttributes.h"
#include "RuntimeCore/NativeAttributes.h"
#include "tests/Support/DesktopFixture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;

constexpr char Elements[] = R"({ "format": "vantrel-desktop/1", "windows": [ { "id": "main", "class": "Frame", "objects": { "client": {
  "id": "client", "role": "client", "name": "client", "children": [
    { "id": "ok", "role": "push button", "name": "OK", "help": "Press it", "rectangle": [10, 10, 80, 20],
      "ia2": { "role": 43, "states": 262145, "uniqueId": 7, "attributes": "tag:BUTTON;", "text": "OK" }, "uia": { "automationId": "okButton", "labeledBy": "Name" } },
    { "id": "total", "role": "editable text", "value": "Total", "state": ["read only"] },
    { "id": "box", "role": "check box", "name": "Remember me", "value": "x", "state": ["checked"] },
    { "id": "list", "role": "list", "name": "Cities", "selection": ["rome"], "children": [
      { "id": "turin", "role": "list item", "name": "Turin" }, { "id": "rome", "role": "list item", "name": "Rome", "simple": true } ] },
    { "id": "row", "role": "row", "children": [ { "id": "cell", "role": "cell", "name": "One" } ] } ] } } },
  { "id": "listView", "class": "SysListView32", "listView": { "columns": [ { "text": "Name" }, { "text": "Size" } ], "items": [ ["a", "1"], ["b", "2"] ] },
    "objects": { "client": { "id": "view", "role": "list", "children": [
      { "id": "item1", "role": "list item", "name": "a", "simple": true }, { "id": "item2", "role": "list item", "name": "b", "simple": true } ] } } } ] })";

constexpr const char* Ids[] = {"client", "ok", "total", "box", "list", "rome", "row", "cell", "item2"};

CString TextOf(DesktopFixture& desktop, const char* id, const wchar_t* name, bool useIA2 = false) {
    CComVariant value;
    EXPECT_EQ(GetElementAttribute(desktop.Window("main"), desktop.Element(id), desktop.Child(id), useIA2, name, value), S_OK);
    return value.vt == VT_BSTR ? value.bstrVal : L"(none)";
}

TEST(AttributesOfTheDesktop, FollowTheRules) {
    DesktopFixture desktop(Elements);
    EXPECT_EQ(TextOf(desktop, "ok", L"automationid"), L"okButton");
    EXPECT_EQ(TextOf(desktop, "ok", L"labeledby"), L"Name");
    EXPECT_EQ(TextOf(desktop, "ok", L"helpText"), L"Press it");
    EXPECT_EQ(TextOf(desktop, "ok", L"aastate", true), L"active, chekable");
    EXPECT_EQ(TextOf(desktop, "total", L"name"), L"Total");
    EXPECT_EQ(TextOf(desktop, "total", L"role"), L"text");
    EXPECT_EQ(TextOf(desktop, "box", L"text"), L"checked");
    EXPECT_EQ(TextOf(desktop, "list", L"text"), L"Rome");
    EXPECT_EQ(TextOf(desktop, "item2", L"virtualname"), L"b 2");
    EXPECT_EQ(TextOf(desktop, "ok", L"virtualname"), L"");
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(AttributesOfTheDesktop, VirtualAndRowNameOfOtherElementsAreEmptyAndNoFailure) {
    DesktopFixture desktop(Elements);
    for (const wchar_t* name : {L"virtualname", L"rowName"}) {
        CComBSTR text(L"left over");
        const auto& handler = *AaAttrHandler::Instance().Find(name);
        EXPECT_EQ(handler(desktop.Window("main"), *desktop.Element("ok"), desktop.Child("ok"), 0, text), 1);
        EXPECT_TRUE(text.IsEmpty());
    }
}

TEST(AttributesOfTheDesktop, AutomationIdOfAnElementWithoutAProviderFails) {
    DesktopFixture desktop(Elements);
    CComVariant value;
    EXPECT_LT(GetElementAttribute(nullptr, desktop.Element("box"), desktop.Child("box"), false, L"automationid", value), 0);
    EXPECT_EQ(value.vt, VT_EMPTY);
}

// Reads everything there is. An exception of the server passes through, as it does through any caller.
void ReadAll(DesktopFixture& desktop, const char* id) {
    const CComPtr<IAccessible> element = desktop.Element(id);
    for (const bool useIA2 : {false, true}) {
        for (const CString& name : ElementAttributeNames()) {
            CComVariant value;
            const HRESULT result = GetElementAttribute(desktop.Window("main"), element, desktop.Child(id), useIA2, name, value);
            EXPECT_TRUE(SUCCEEDED(result) || value.vt == VT_EMPTY);
        }
    }
    for (const wchar_t* name : NativeAttributeNames()) {
        CComVariant value;
        const HRESULT result = GetNativeAttribute(element, desktop.Child(id), name, value);
        EXPECT_TRUE(SUCCEEDED(result) || value.vt == VT_EMPTY);
    }
}

TEST(AttributesOfTheDesktop, SurviveEveryCallGoingWrongInEveryWay) {
    std::vector<Simulated::Fault> ways(6);
    ways[0].result = E_FAIL;
    ways[1].null = true;
    ways[2].raise = true;
    ways[3].type = VT_R8;
    ways[4].result = S_FALSE;
    ways[5].count = 0x7FFFFFFF;
    for (const char* id : Ids) {
        DesktopFixture clean(Elements);
        ReadAll(clean, id);
        const int calls = clean.TotalCalls();
        EXPECT_EQ(clean.OutstandingReferences(), 0) << id;
        for (Simulated::Fault way : ways) {
            for (int call = 1; call <= calls; ++call) {
                DesktopFixture desktop(Elements);
                way.at = static_cast<unsigned>(call);
                way.times = 1;
                desktop.AddFault(way);
                try {
                    ReadAll(desktop, id);
                } catch (const Simulated::ServerFailure&) {
                    EXPECT_TRUE(way.raise);
                }
                ASSERT_EQ(desktop.OutstandingReferences(), 0) << id << " call " << call;
            }
        }
    }
}

}  // namespace
}  // namespace Zorvex
