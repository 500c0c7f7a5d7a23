#include "Platform/Simulated/AutomationObject.h"

#include <gtest/gtest.h>

#include "Common/include/CComVariant.h"
#include "Platform/Simulated/DesktopFile.h"
#include "tests/Support/DesktopFixture.h"

namespace Simulated {
namespace {

using Zorvex::Testing::DesktopFixture;

class AutomationObjectTest : public ::testing::Test {
protected:
    CComPtr<IDispatch> Native() {
        CComPtr<IDispatch> object;
        result = AccessibleObjectFromWindow(desktop.Window("w"), static_cast<DWORD>(OBJID_NATIVEOM), IidOf<IDispatch>(),
                                            reinterpret_cast<void**>(&object));
        return object;
    }
    CComVariant Get(IDispatch* object, std::wstring name, std::vector<LONG> indexes = {}, WORD flags = DISPATCH_PROPERTYGET) {
        CComVariant value;
        LPOLESTR names[] = {name.data()};
        DISPID id = 0;
        result = object->GetIDsOfNames(GUID{}, names, 1, LOCALE_USER_DEFAULT, &id);
        if (FAILED(result)) return value;
        std::vector<CComVariant> arguments;
        for (auto index = indexes.rbegin(); index != indexes.rend(); ++index) arguments.push_back(CComVariant(*index));
        DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        result = object->Invoke(id, GUID{}, LOCALE_USER_DEFAULT, flags, &parameters, &value, nullptr, nullptr);
        return value;
    }

    DesktopFixture desktop{R"({"windows": [{"id": "w", "class": "C", "nativeObject": {
        "Text": "t", "Count": -2, "Ratio": 1.5, "Shown": true, "None": null, "Inner": {"Text": "inner"},
        "Item": [["a", "b"], ["c"]], "Bad": {"$result": "0x80020009"}, "Worse": {"$throw": true}}}, {"id": "plain", "class": "C"}]})"};
    HRESULT result = E_FAIL;
};

TEST_F(AutomationObjectTest, PropertiesAnswerWhatTheFileSaysWithoutRegardToCase) {
    const CComPtr<IDispatch> object = Native();
    ASSERT_TRUE(object);
    EXPECT_STREQ(Get(object, L"tEXT").bstrVal, L"t");
    EXPECT_EQ(Get(object, L"Count").lVal, -2);
    EXPECT_EQ(Get(object, L"Ratio").dblVal, 1.5);
    EXPECT_EQ(Get(object, L"Shown").boolVal, VARIANT_TRUE);
    EXPECT_EQ(Get(object, L"None").vt, VT_EMPTY);
    EXPECT_EQ(result, S_OK);
    const CComVariant inner = Get(object, L"Inner");
    ASSERT_EQ(inner.vt, VT_DISPATCH);
    EXPECT_STREQ(Get(inner.pdispVal, L"Text").bstrVal, L"inner");
}

TEST_F(AutomationObjectTest, ListsAreIndexedFromOneInTheOrderOfTheArguments) {
    const CComPtr<IDispatch> object = Native();
    EXPECT_STREQ(Get(object, L"Item", {1, 2}, DISPATCH_METHOD).bstrVal, L"b");
    EXPECT_STREQ(Get(object, L"Item", {2, 1}).bstrVal, L"c");
    for (const std::vector<LONG>& wrong : {std::vector<LONG>{0, 1}, {3, 1}, {2, 2}, {-1, 1}}) {
        Get(object, L"Item", wrong);
        EXPECT_EQ(result, DISP_E_BADINDEX);
    }
    Get(object, L"Item", {1});
    EXPECT_EQ(result, DISP_E_BADPARAMCOUNT);
    Get(object, L"Item", {1, 1, 1});
    EXPECT_EQ(result, DISP_E_BADPARAMCOUNT);
}

TEST_F(AutomationObjectTest, FailuresAnswerTheirResultOrThrow) {
    const CComPtr<IDispatch> object = Native();
    Get(object, L"Unknown");
    EXPECT_EQ(result, DISP_E_UNKNOWNNAME);
    Get(object, L"Bad");
    EXPECT_EQ(result, static_cast<HRESULT>(0x80020009));
    EXPECT_THROW(Get(object, L"Worse"), ServerFailure);
    Get(object, L"Text", {}, 0x4);
    EXPECT_EQ(result, DISP_E_MEMBERNOTFOUND) << "properties can't be written";
}

TEST_F(AutomationObjectTest, ReferencesCountAmongThoseOfTheDesktop) {
    {
        const CComPtr<IDispatch> object = Native();
        EXPECT_EQ(desktop.OutstandingReferences(), 1);
        const CComVariant inner = Get(object, L"Inner");
        EXPECT_EQ(desktop.OutstandingReferences(), 2);
    }
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST_F(AutomationObjectTest, OtherWindowsAndInterfacesHaveNone) {
    CComPtr<IDispatch> object;
    EXPECT_EQ(AccessibleObjectFromWindow(desktop.Window("plain"), static_cast<DWORD>(OBJID_NATIVEOM), IidOf<IDispatch>(),
                                         reinterpret_cast<void**>(&object)),
              E_FAIL);
    EXPECT_FALSE(object);
    CComPtr<IAccessible> accessible;
    EXPECT_EQ(Native().QueryInterface(accessible), E_NOINTERFACE);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST_F(AutomationObjectTest, FaultOfTheWindowMeetsItsObjectModelToo) {
    Fault fault;
    fault.call = Call::AccessibleObjectFromWindow;
    fault.result = E_ACCESSDENIED;
    desktop.AddFault("w", fault);
    EXPECT_FALSE(Native());
    EXPECT_EQ(result, E_ACCESSDENIED);
}

}  // namespace
}  // namespace Simulated
