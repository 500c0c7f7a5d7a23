#include "InProc/Vantrel/ElementAttributeRequests.h"

#include <gtest/gtest.h>

#include "InProc/Vantrel/AAContainerCache.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [{"id": "main", "class": "Main", "rectangle": [0, 0, 100, 100],
    "objects": {"window": {"id": "root", "role": "window", "rectangle": [0, 0, 100, 100], "children": [
      {"id": "ok", "role": "push button", "name": "OK", "rectangle": [0, 0, 50, 50]},
      {"id": "no", "role": "push button", "name": "No", "rectangle": [50, 0, 50, 50]}]}}}]})";

class ElementAttributeRequestsTest : public testing::Test {
protected:
    AAObjectIdentifier Identify(const char* id) {
        return AAContainerCache::Instance().RegisterObject({kClientPid, desktop.Window("main")},
                                                           AAElement{desktop.Window("main"), desktop.Element(id), desktop.Child(id)});
    }
    AAObjectIdentifier Unknown() {
        AAObjectIdentifier identifier = Identify("ok");
        identifier.containerId += 1000;
        return identifier;
    }
    template <class Request>
    AttributeResponse Ask(const AAObjectIdentifier& element, const wchar_t* name) {
        Request request;
        request.element = element;
        request.attributeName = name;
        return Call(request);
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
    CacheCleaner cleaner;
};

TEST_F(ElementAttributeRequestsTest, AttributeAndPropertyAreAnsweredUnderTheirOwnNames) {
    const auto name = Ask<GetElemAttrRequest>(Identify("ok"), L"name");
    EXPECT_EQ(name.result, S_OK);
    ASSERT_EQ(name.value.vt, VT_BSTR);
    EXPECT_STREQ(name.value.bstrVal, L"OK");
    const auto property = Ask<GetNativeAttributeRequest>(Identify("ok"), L"accName");
    EXPECT_EQ(property.result, S_OK);
    ASSERT_EQ(property.value.vt, VT_BSTR);
    EXPECT_STREQ(property.value.bstrVal, L"OK");
}

TEST_F(ElementAttributeRequestsTest, NameOfTheOtherRequestIsAnInvalidArgumentWithAnEmptyVariant) {
    const auto attribute = Ask<GetElemAttrRequest>(Identify("ok"), L"accName");
    EXPECT_EQ(attribute.result, E_INVALIDARG);
    EXPECT_EQ(attribute.value.vt, VT_EMPTY);
    const auto property = Ask<GetNativeAttributeRequest>(Identify("ok"), L"name");
    EXPECT_EQ(property.result, E_INVALIDARG);
    EXPECT_EQ(property.value.vt, VT_EMPTY);
}

TEST_F(ElementAttributeRequestsTest, UnknownElementIsAnInvalidArgument) {
    EXPECT_EQ(Ask<GetElemAttrRequest>(Unknown(), L"name").result, E_INVALIDARG);
    EXPECT_EQ(Ask<GetNativeAttributeRequest>(Unknown(), L"accName").result, E_INVALIDARG);
    EXPECT_EQ(log.Count("Invalid AA object"), 2u);
}

TEST_F(ElementAttributeRequestsTest, EachElementHasItsValueAndAFailedOneAnEmptyVariantInItsPlace) {
    GetAttrForElementsRequest request;
    request.elements = {Identify("no"), Unknown(), Identify("ok")};
    request.attributeName = L"name";
    const auto values = Call(request).values;
    ASSERT_EQ(values.size(), 3u);
    ASSERT_EQ(values[0].vt, VT_BSTR);
    EXPECT_STREQ(values[0].bstrVal, L"No");
    EXPECT_EQ(values[1].vt, VT_EMPTY);
    ASSERT_EQ(values[2].vt, VT_BSTR);
    EXPECT_STREQ(values[2].bstrVal, L"OK");
}

TEST_F(ElementAttributeRequestsTest, NoElementsHaveNoValues) {
    GetAttrForElementsRequest request;
    request.attributeName = L"name";
    const auto response = TryCall(request);
    ASSERT_TRUE(response.has_value());
    EXPECT_TRUE(response->values.empty());
}

}  // namespace
}  // namespace Zorvex::Testing
