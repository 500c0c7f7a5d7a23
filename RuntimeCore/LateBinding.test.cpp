#include "RuntimeCore/LateBinding.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/Support/FakeDocument.h"

namespace Zorvex {
namespace {

using Testing::FakeHtmlObject;

TEST(LateBinding, AMemberThatIsMissingNullOrOfAnotherTypeIsAFailure) {
    FakeHtmlObject object;
    object.values[L"number"] = CComVariant(7);
    object.values[L"text"] = CComVariant(L"eight");
    object.objects[L"nothing"] = [] { return nullptr; };
    LONG number = 1;
    CString text = L"x";
    CComPtr<IDispatch> other;
    EXPECT_EQ(LateBinding::GetNumber(object.Dispatch(), L"number", number), S_OK);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(LateBinding::GetNumber(object.Dispatch(), L"text", number), E_FAIL);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(LateBinding::GetNumber(object.Dispatch(), L"absent", number), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(LateBinding::GetText(object.Dispatch(), L"text", text), S_OK);
    EXPECT_EQ(text, L"eight");
    EXPECT_EQ(LateBinding::GetText(object.Dispatch(), L"number", text), E_FAIL);
    EXPECT_EQ(text, L"");
    EXPECT_EQ(LateBinding::GetDispatch(object.Dispatch(), L"nothing", other), E_FAIL);
    EXPECT_EQ(LateBinding::GetDispatch(nullptr, L"nothing", other), E_POINTER);
}

TEST(LateBinding, ArgumentsArriveInTheOrderOfTheCall) {
    FakeHtmlObject object;
    object.methods[L"join"] = [](const FakeHtmlObject::Arguments& arguments, VARIANT* result) {
        CComVariant joined(arguments.at(0).lVal * 100 + arguments.at(1).lVal * 10 + arguments.at(2).lVal);
        joined.DetachTo(*result);
        return S_OK;
    };
    LONG number = 0;
    EXPECT_EQ(LateBinding::CallForNumber(object.Dispatch(), L"join", {CComVariant(1), CComVariant(2), CComVariant(3)},
                                         number),
              S_OK);
    EXPECT_EQ(number, 123);
    const CComVariant one(1);
    CComVariant ignored;
    CComPtr<IDispatch> item;
    EXPECT_EQ(LateBinding::Call(object.Dispatch(), L"join", {one, one, one, one, one}, ignored), E_INVALIDARG);
    EXPECT_EQ(LateBinding::GetItem(object.Dispatch(), {one, one, one, one, one}, item), E_INVALIDARG);
    object.values[L"size"] = CComVariant(1);
    EXPECT_EQ(LateBinding::Put(object.Dispatch(), L"size", CComVariant(2)), S_OK);
    EXPECT_EQ(object.values[L"size"].lVal, 2);
}

// Gives itself for any item, and keeps how it was asked.
class Collection final : public IDispatch {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = this;
        return ++references, S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID locale, DISPID* ids) override {
        asked = names[0];
        locales.push_back(locale);
        *ids = 7;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD how, DISPPARAMS* given, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        EXPECT_EQ(id, 7);
        locales.push_back(locale);
        flags = how;
        for (UINT i = given->cArgs; i > 0; --i) indexes.push_back(given->rgvarg[i - 1].lVal);
        result->vt = type;
        if (type == VT_UNKNOWN)
            result->punkVal = this;
        else if (type == VT_DISPATCH)
            result->pdispVal = this;
        else
            return S_OK;
        return ++references, S_OK;
    }

    VARTYPE type = VT_DISPATCH;
    std::wstring asked;
    WORD flags = 0;
    std::vector<LONG> indexes;
    std::vector<LCID> locales;
    int references = 0;
};

TEST(LateBinding, AnItemIsAskedForAsAMethodAndAsAPropertyAtOnce) {
    Collection collection;
    CComPtr<IDispatch> item;
    for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN}) {
        collection.type = type;
        collection.indexes.clear();
        EXPECT_EQ(LateBinding::GetItem(&collection, {CComVariant(3), CComVariant(5)}, item), S_OK);
        EXPECT_EQ(item.p, &collection);
        EXPECT_EQ(collection.asked, L"Item");
        EXPECT_EQ(collection.flags, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
        EXPECT_EQ(collection.indexes, (std::vector<LONG>{3, 5}));
    }
    for (const LCID locale : collection.locales) EXPECT_EQ(locale, LCID{LOCALE_USER_DEFAULT});
    collection.type = VT_EMPTY;
    EXPECT_EQ(LateBinding::GetItem(&collection, {CComVariant(1)}, item), E_FAIL);
    EXPECT_FALSE(item);
    EXPECT_EQ(LateBinding::GetItem(nullptr, {CComVariant(1)}, item), E_POINTER);
    EXPECT_EQ(collection.references, 0);
}

TEST(LateBinding, APropertyIsNoMethodAndAMethodNoProperty) {
    Collection collection;
    CComPtr<IDispatch> other;
    EXPECT_EQ(LateBinding::GetDispatch(&collection, L"name", other), S_OK);
    EXPECT_EQ(collection.flags, DISPATCH_PROPERTYGET);
    EXPECT_EQ(LateBinding::CallForDispatch(&collection, L"name", {}, other), S_OK);
    EXPECT_EQ(collection.flags, DISPATCH_METHOD);
    EXPECT_TRUE(collection.indexes.empty());
}

TEST(LateBinding, NothingIsNoNumber) {
    Collection collection;
    collection.type = VT_EMPTY;
    LONG number = 1;
    EXPECT_EQ(LateBinding::GetNumber(&collection, L"Count", number), E_FAIL);
    EXPECT_EQ(number, 0);
}

}  // namespace
}  // namespace Zorvex
