#include <gtest/gtest.h>

#include "RuntimeCore/IA2Tools.h"
#include "RuntimeCore/IA2ToolsTrigger.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::IA2Tools {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

class ChromiumTrigger : public ::testing::Test {
protected:
    HRESULT Trigger() { return TriggerAccChromium(desktop.Window("widget")); }
    void Refuse(const char* element, const char* call, HRESULT result = E_ACCESSDENIED) {
        Simulated::Fault fault;
        fault.call = call;
        fault.result = result;
        desktop.AddFault(element, fault);
    }
    void TearDown() override { EXPECT_EQ(desktop.OutstandingReferences(), 0); }

    LogCapture log;
    DesktopFixture desktop{R"({ "format": "vantrel-desktop/1", "windows": [
      { "id": "widget", "class": "Chrome_WidgetWin_1", "objects": { "client": { "id": "client", "role": "client", "ia2": {}, "children": [
        { "id": "first", "role": "pane", "ia2": {}, "children": [
          { "id": "content", "role": "grouping", "ia2": {}, "children": [
            { "id": "document", "role": "document", "ia2": {} } ] } ] } ] } } },
      { "id": "other", "class": "Frame" } ] })"};
};

TEST_F(ChromiumTrigger, AsksClientContentAndDocument) {
    EXPECT_EQ(Trigger(), S_OK);
    for (const char* asked : {"client", "content", "document"}) EXPECT_EQ(desktop.Calls(asked, "get_states"), 1) << asked;
    EXPECT_EQ(desktop.Calls("first", "get_states"), 0);
    EXPECT_EQ(log.Count("TriggerAccChromiumContainer: End state="), 3u) << log.Text();
    EXPECT_TRUE(log.Contains("IA2Tools::TriggerAccChromium Start hWnd=0x"));
    EXPECT_TRUE(log.Contains("IA2Tools::TriggerAccChromium End hWnd=0x"));
}

TEST_F(ChromiumTrigger, OfAWindowOfAnotherClassIsAnInvalidArgumentWithoutALine) {
    log.Clear();
    EXPECT_EQ(TriggerAccChromium(desktop.Window("other")), E_INVALIDARG);
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
    EXPECT_EQ(desktop.TotalCalls(), 0);
}

TEST_F(ChromiumTrigger, SucceedsWithoutADocument) {
    desktop.RemoveElement("document");
    EXPECT_EQ(Trigger(), S_OK);
    EXPECT_TRUE(log.Contains("IA2Tools::TriggerAccChromium End hWnd=0x"));
}

TEST_F(ChromiumTrigger, EndsWithoutAClientObject) {
    Simulated::Fault fault;
    fault.call = "AccessibleObjectFromWindow";
    fault.result = E_ACCESSDENIED;
    desktop.AddFault("widget", fault);
    EXPECT_EQ(Trigger(), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("IA2Tools::TriggerAccChromium Cannot get IAccessible of Widget Client area, hWnd=0x")) << log.Text();
    EXPECT_TRUE(log.Contains("hResult=0x80070005")) << log.Text();
    desktop.ClearFaults();
    fault.result.reset();
    fault.null = true;
    desktop.AddFault("widget", fault);
    EXPECT_EQ(Trigger(), E_FAIL);
}

TEST_F(ChromiumTrigger, EndsWithARefusingClient) {
    Refuse("client", "get_accState");
    EXPECT_EQ(Trigger(), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("IA2Tools::TriggerAccChromiumContainer(spAccClient) | HRESULT 80070005 | ")) << log.Text();
    EXPECT_EQ(desktop.Calls("content", "get_states"), 0);
}

TEST_F(ChromiumTrigger, EndsWhereAFirstChildIsMissing) {
    desktop.RemoveElement("content");
    EXPECT_EQ(Trigger(), E_FAIL);
    EXPECT_TRUE(log.Contains("E [TriggerAccChromium] IA2Tools::TriggerAccChromium Cannot get level-1 child of Chromium Widget, hResult=0x80004005, variantType=0x0")) << log.Text();
    desktop.RemoveElement("first");
    EXPECT_EQ(Trigger(), E_FAIL);
    EXPECT_TRUE(log.Contains("IA2Tools::TriggerAccChromium Cannot get level-0 child of Chromium Widget")) << log.Text();
}

TEST_F(ChromiumTrigger, EndsWhereAFirstChildIsNoAccessibleObject) {
    Simulated::Fault fault;
    fault.call = "QueryInterface";
    fault.iid = "IAccessible";
    fault.result = E_NOINTERFACE;
    desktop.AddFault("content", fault);
    EXPECT_EQ(Trigger(), E_FAIL);
    EXPECT_TRUE(log.Contains("E [TriggerAccChromium] IA2Tools::TriggerAccChromium Cannot get IAccessible of Chromium Widget content")) << log.Text();
}

TEST_F(ChromiumTrigger, GoesOnToTheDocumentPastARefusingContent) {
    Refuse("content", "get_states");
    EXPECT_EQ(Trigger(), S_OK);
    EXPECT_TRUE(log.Contains("IA2Tools::TriggerAccChromiumContainer(spAccContent) | HRESULT 80070005 | ")) << log.Text();
    EXPECT_EQ(desktop.Calls("document", "get_states"), 1);
}

TEST_F(ChromiumTrigger, EndsWithARefusingDocument) {
    Refuse("document", "get_states");
    EXPECT_EQ(Trigger(), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("IA2Tools::TriggerAccChromiumContainer(documentElement.GetContainer()) | HRESULT 80070005 | ")) << log.Text();
    EXPECT_FALSE(log.Contains("IA2Tools::TriggerAccChromium End"));
}

TEST_F(ChromiumTrigger, ChildListHoldsTheObjectsAmongTheChildren) {
    DesktopFixture list(R"({ "format": "vantrel-desktop/1", "windows": [ { "id": "main", "class": "Frame", "objects": { "client": { "id": "list", "role": "list",
      "children": [ { "id": "a", "role": "list item" }, { "id": "b", "role": "list item", "simple": true }, { "id": "c", "role": "list item" } ] } } } ] })");
    log.Clear();
    {
        std::list<CComPtr<IAccessible>> children;
        EXPECT_EQ(GetAccChildList(list.Element("list"), children), S_OK);
        ASSERT_EQ(children.size(), 2u);
        EXPECT_EQ(children.front().p, list.Element("a").p);
        EXPECT_EQ(children.back().p, list.Element("c").p);
        EXPECT_TRUE(log.Contains("IA2Tools::GetAccChildList ::AccessibleChildren succeeded, child count=3")) << log.Text();
        EXPECT_TRUE(log.Contains("IA2Tools::GetAccChildList succeeded, container count=2")) << log.Text();
        children.clear();
        log.Clear();
        EXPECT_EQ(GetAccChildList(list.Element("a"), children), S_OK);
        EXPECT_TRUE(log.Lines().empty()) << log.Text();
        Simulated::Fault fault;
        fault.call = "get_accChildCount";
        fault.result = E_ACCESSDENIED;
        list.AddFault("list", fault);
        EXPECT_EQ(GetAccChildList(list.Element("list"), children), E_ACCESSDENIED);
        EXPECT_TRUE(log.Contains("AAObjectWrapper::GetVariantChildren(*pAccElem, accChildren) | HRESULT 80070005 | "
                                 "IA2Tools::GetAccChildList: AAObjectWrapper::GetVariantChildren() failed")) << log.Text();
    }
    EXPECT_EQ(list.OutstandingReferences(), 0);
}

}  // namespace
}  // namespace Zorvex::IA2Tools
