#include <gtest/gtest.h>

#include <random>

#include "Platform/Simulated/System.h"
#include "Platform/Windows.h"

namespace {

using Simulated::Allocation;
using Simulated::OutstandingBlocks;

// Counts its references; it is never destroyed by them.
struct CountedObject : IUnknown {
    int references = 1;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
};

VARIANT Of(VARTYPE type, LONGLONG bits = 0) {
    VARIANT variant{};
    variant.vt = type;
    variant.llVal = bits;
    return variant;
}
VARIANT Real(double value) {
    VARIANT variant = Of(VT_R8);
    variant.dblVal = value;
    return variant;
}
VARIANT Text(const wchar_t* text) {
    VARIANT variant = Of(VT_BSTR);
    variant.bstrVal = SysAllocString(text);
    return variant;
}

// The result of a conversion, as the text of its 64 bits, or the code as a negative number.
std::string Converted(VARIANT source, VARTYPE type, USHORT flags = 0) {
    VARIANT out{};
    const HRESULT result = VariantChangeType(&out, &source, flags, type);
    std::string text;
    if (FAILED(result)) {
        text = result == DISP_E_OVERFLOW ? "overflow" : result == DISP_E_TYPEMISMATCH ? "mismatch" : "failed";
    } else if (type == VT_BSTR) {
        for (UINT i = 0; i < SysStringLen(out.bstrVal); ++i) text += static_cast<char>(out.bstrVal[i]);
    } else if (type == VT_R8) {
        text = std::to_string(out.dblVal);
    } else {
        text = std::to_string(type == VT_BOOL ? out.boolVal : type == VT_UI1 ? out.bVal : type == VT_I2 ? out.iVal : out.lVal);
    }
    VariantClear(&out);
    VariantClear(&source);
    return text;
}

TEST(SimulatedString, KeepsEmbeddedNulAndCountsCodeUnits) {
    const int before = OutstandingBlocks(Allocation::String);
    BSTR text = SysAllocStringLen(L"a\0b", 3);
    EXPECT_EQ(SysStringLen(text), 3u);
    EXPECT_EQ(text[2], L'b');
    EXPECT_EQ(text[3], 0);
    // The length in bytes of the Windows kind stands right before the text.
    EXPECT_EQ(reinterpret_cast<std::uint32_t*>(text)[-1], 6u);
    EXPECT_EQ(OutstandingBlocks(Allocation::String), before + 1);
    SysFreeString(text);
    SysFreeString(nullptr);
    EXPECT_EQ(OutstandingBlocks(Allocation::String), before);
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysAllocStringLen(nullptr, 0x7FFFFFFF), nullptr);
}

TEST(SimulatedString, NthAllocationFailsWhenTold) {
    Simulated::FailAllocation(Allocation::String, 2);
    BSTR first = SysAllocString(L"a"), second = SysAllocString(L"b"), third = SysAllocString(L"c");
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(third, nullptr);
    SysFreeString(first);
    SysFreeString(third);
}

TEST(SimulatedVariant, CopyIsDeepAndClearFrees) {
    const int strings = OutstandingBlocks(Allocation::String);
    VARIANT source = Text(L"abc"), copy{};
    ASSERT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_NE(copy.bstrVal, source.bstrVal);
    EXPECT_EQ(VarCmp(&copy, &source, LOCALE_USER_DEFAULT, 0), VARCMP_EQ);
    EXPECT_EQ(VariantCopy(&copy, &copy), S_OK);
    VariantClear(&source);
    EXPECT_EQ(source.vt, VT_EMPTY);
    VariantClear(&copy);
    EXPECT_EQ(OutstandingBlocks(Allocation::String), strings);
}

TEST(SimulatedVariant, ObjectIsReferencedByItsCopies) {
    CountedObject object;
    VARIANT source = Of(VT_UNKNOWN), copy{};
    source.punkVal = &object;
    ASSERT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_EQ(object.references, 2);
    VariantClear(&copy);
    EXPECT_EQ(object.references, 1);
    source.vt = VT_EMPTY;
}

TEST(SimulatedVariant, UnknownTypesAreRefused) {
    VARIANT bad = Of(99), target{};
    EXPECT_EQ(VariantClear(&bad), DISP_E_BADVARTYPE);
    EXPECT_EQ(VariantCopy(&target, &bad), DISP_E_BADVARTYPE);
    bad.vt = VT_VARIANT;
    EXPECT_EQ(VariantClear(&bad), DISP_E_BADVARTYPE);
}

TEST(SimulatedVariant, CopyWithoutMemoryFailsAndLeavesNothing) {
    VARIANT source = Text(L"abc"), copy{};
    Simulated::FailAllocation(Allocation::String, 1);
    EXPECT_EQ(VariantCopy(&copy, &source), E_OUTOFMEMORY);
    EXPECT_EQ(copy.vt, VT_EMPTY);
    VariantClear(&source);
}

TEST(SimulatedVariant, ConvertsPlainTypes) {
    EXPECT_EQ(Converted(Of(VT_I4, -5), VT_I2), "-5");
    EXPECT_EQ(Converted(Of(VT_I4, 300), VT_UI1), "overflow");
    EXPECT_EQ(Converted(Of(VT_I4, -1), VT_UI1), "overflow");
    EXPECT_EQ(Converted(Real(2.5), VT_I4), "2");
    EXPECT_EQ(Converted(Real(3.5), VT_I4), "4");
    EXPECT_EQ(Converted(Real(1e20), VT_I4), "overflow");
    EXPECT_EQ(Converted(Of(VT_I4, 7), VT_BOOL), "-1");
    EXPECT_EQ(Converted(Of(VT_EMPTY), VT_I4), "0");
    EXPECT_EQ(Converted(Of(VT_EMPTY), VT_BSTR), "");
    EXPECT_EQ(Converted(Of(VT_NULL), VT_I4), "mismatch");
    EXPECT_EQ(Converted(Of(VT_UNKNOWN), VT_BSTR), "mismatch");
    EXPECT_EQ(Converted(Of(VT_I4, 42), VT_BSTR), "42");
    EXPECT_EQ(Converted(Real(0.1), VT_BSTR), "0.1");
    EXPECT_EQ(Converted(Of(VT_BOOL, 0xFFFF), VT_BSTR), "-1");
    EXPECT_EQ(Converted(Of(VT_BOOL, 0xFFFF), VT_BSTR, 2), "True");
    EXPECT_EQ(Converted(Text(L" 12 "), VT_I4), "12");
    EXPECT_EQ(Converted(Text(L"1.5"), VT_R8), "1.500000");
    EXPECT_EQ(Converted(Text(L"x"), VT_I4), "mismatch");
    EXPECT_EQ(Converted(Text(L"99999999999"), VT_I4), "overflow");
    EXPECT_EQ(Converted(Text(L"TRUE"), VT_BOOL), "-1");
    EXPECT_EQ(Converted(Of(VT_UI8, -1), VT_BSTR), "18446744073709551615");
}

TEST(SimulatedVariant, ConversionInPlaceFreesWhatStoodThere) {
    const int strings = OutstandingBlocks(Allocation::String);
    VARIANT value = Text(L"12");
    ASSERT_EQ(VariantChangeType(&value, &value, 0, VT_I4), S_OK);
    EXPECT_EQ(value.lVal, 12);
    EXPECT_EQ(OutstandingBlocks(Allocation::String), strings);
}

HRESULT Compare(VARIANT left, VARIANT right) {
    const HRESULT result = VarCmp(&left, &right, LOCALE_USER_DEFAULT, 0);
    if (left.vt == VT_BSTR) VariantClear(&left);
    if (right.vt == VT_BSTR) VariantClear(&right);
    return result;
}

TEST(SimulatedCompare, NumbersOfDifferentTypesCompareByValue) {
    EXPECT_EQ(Compare(Of(VT_I4, 5), Real(5)), VARCMP_EQ);
    EXPECT_EQ(Compare(Of(VT_I2, 5), Of(VT_I8, 6)), VARCMP_LT);
    EXPECT_EQ(Compare(Of(VT_UINT, 0xFFFFFFFF), Of(VT_I4, -1)), VARCMP_GT);
    EXPECT_EQ(Compare(Of(VT_I4, -1), Of(VT_UI1, 1)), VARCMP_LT);
    EXPECT_EQ(Compare(Of(VT_EMPTY), Of(VT_I4, 0)), VARCMP_EQ);
}

TEST(SimulatedCompare, NullIsNeitherEqualNorOrdered) {
    EXPECT_EQ(Compare(Of(VT_NULL), Of(VT_NULL)), VARCMP_NULL);
    EXPECT_EQ(Compare(Of(VT_I4), Of(VT_NULL)), VARCMP_NULL);
}

TEST(SimulatedCompare, TypesThatThePublishedFunctionLeavesOutAreRefused) {
    for (const VARTYPE type : {VT_I1, VT_UI2, VT_UI4, VT_UI8, VT_UNKNOWN, VT_DISPATCH})
        EXPECT_EQ(Compare(Of(type), Of(type)), DISP_E_BADVARTYPE) << type;
    EXPECT_EQ(Compare(Of(VT_ARRAY | VT_I4), Of(VT_ARRAY | VT_I4)), DISP_E_BADVARTYPE);
}

TEST(SimulatedCompare, StringsGoByCodeUnitsAndNullIsEmpty) {
    EXPECT_EQ(Compare(Text(L"a"), Text(L"A")), VARCMP_GT);
    EXPECT_EQ(Compare(Text(L""), Of(VT_BSTR)), VARCMP_EQ);
    EXPECT_EQ(Compare(Text(L"1"), Of(VT_I4, 1)), VARCMP_GT);
    EXPECT_EQ(Compare(Of(VT_EMPTY), Text(L"")), VARCMP_EQ);
    EXPECT_EQ(Compare(Of(VT_ERROR, 5), Of(VT_ERROR, 5)), VARCMP_EQ);
}

TEST(SimulatedArray, VectorHasItsBoundsTypeAndFeatures) {
    SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 2, 3);
    ASSERT_NE(array, nullptr);
    LONG lower = 0, upper = 0;
    VARTYPE type = 0;
    EXPECT_EQ(SafeArrayGetDim(array), 1u);
    EXPECT_EQ(SafeArrayGetLBound(array, 1, &lower), S_OK);
    EXPECT_EQ(SafeArrayGetUBound(array, 1, &upper), S_OK);
    EXPECT_EQ(SafeArrayGetVartype(array, &type), S_OK);
    EXPECT_EQ(lower, 2);
    EXPECT_EQ(upper, 4);
    EXPECT_EQ(type, VT_I4);
    EXPECT_TRUE(array->fFeatures & FADF_HAVEVARTYPE);
    EXPECT_EQ(SafeArrayGetLBound(array, 2, &lower), DISP_E_BADINDEX);
    LONG value = 9, read = 0, index = 4;
    EXPECT_EQ(SafeArrayPutElement(array, &index, &value), S_OK);
    EXPECT_EQ(SafeArrayGetElement(array, &index, &read), S_OK);
    EXPECT_EQ(read, 9);
    index = 5;
    EXPECT_EQ(SafeArrayGetElement(array, &index, &read), DISP_E_BADINDEX);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SimulatedArray, FirstDimensionVariesFastest) {
    SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 10}};
    SAFEARRAY* array = SafeArrayCreate(VT_I4, 2, bounds);
    LONG upper = 0;
    EXPECT_EQ(SafeArrayGetUBound(array, 2, &upper), S_OK);
    EXPECT_EQ(upper, 12);
    EXPECT_EQ(array->rgsabound[0].cElements, 3u);
    for (LONG i = 0; i < 2; ++i)
        for (LONG k = 10; k < 13; ++k) {
            LONG indices[] = {i, k}, value = i * 100 + k;
            ASSERT_EQ(SafeArrayPutElement(array, indices, &value), S_OK);
        }
    LONG* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array, reinterpret_cast<void**>(&data)), S_OK);
    EXPECT_EQ(data[0], 10);
    EXPECT_EQ(data[1], 110);
    EXPECT_EQ(data[2], 11);
    EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
    EXPECT_EQ(SafeArrayUnlock(array), E_UNEXPECTED);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SimulatedArray, ElementsThatOwnAreCopiedDeepAndFreed) {
    const int strings = OutstandingBlocks(Allocation::String), arrays = OutstandingBlocks(Allocation::Array);
    CountedObject object;
    SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, 3);
    VARIANT text = Text(L"x"), unknown = Of(VT_UNKNOWN);
    unknown.punkVal = &object;
    LONG index = 0;
    EXPECT_EQ(SafeArrayPutElement(array, &index, &text), S_OK);
    index = 1;
    EXPECT_EQ(SafeArrayPutElement(array, &index, &unknown), S_OK);
    SAFEARRAY* copy = nullptr;
    ASSERT_EQ(SafeArrayCopy(array, &copy), S_OK);
    EXPECT_EQ(object.references, 3);
    VariantClear(&text);
    SafeArrayDestroy(array);
    VARIANT read{};
    index = 0;
    ASSERT_EQ(SafeArrayGetElement(copy, &index, &read), S_OK);
    EXPECT_EQ(read.vt, VT_BSTR);
    VariantClear(&read);
    SafeArrayDestroy(copy);
    EXPECT_EQ(object.references, 1);

    SAFEARRAY* names = SafeArrayCreateVector(VT_BSTR, 0, 1);
    BSTR name = SysAllocString(L"n");
    index = 0;
    EXPECT_EQ(SafeArrayPutElement(names, &index, name), S_OK);
    EXPECT_EQ(SafeArrayPutElement(names, &index, name), S_OK);
    SysFreeString(name);
    VARIANT holder = Of(VT_ARRAY | VT_BSTR), second{};
    holder.parray = names;
    EXPECT_EQ(VariantCopy(&second, &holder), S_OK);
    VariantClear(&holder);
    VariantClear(&second);
    EXPECT_EQ(OutstandingBlocks(Allocation::String), strings);
    EXPECT_EQ(OutstandingBlocks(Allocation::Array), arrays);
}

TEST(SimulatedArray, CopyWithoutMemoryLeavesNothingBehind) {
    const int strings = OutstandingBlocks(Allocation::String), arrays = OutstandingBlocks(Allocation::Array);
    SAFEARRAY* names = SafeArrayCreateVector(VT_BSTR, 0, 2);
    BSTR name = SysAllocString(L"n");
    for (LONG index = 0; index < 2; ++index) SafeArrayPutElement(names, &index, name);
    SysFreeString(name);
    SAFEARRAY* copy = nullptr;
    Simulated::FailAllocation(Allocation::String, 2);
    EXPECT_EQ(SafeArrayCopy(names, &copy), E_OUTOFMEMORY);
    EXPECT_EQ(copy, nullptr);
    Simulated::FailAllocation(Allocation::Array, 1);
    EXPECT_EQ(SafeArrayCopy(names, &copy), E_OUTOFMEMORY);
    SafeArrayDestroy(names);
    EXPECT_EQ(OutstandingBlocks(Allocation::String), strings);
    EXPECT_EQ(OutstandingBlocks(Allocation::Array), arrays);
}

TEST(SimulatedArray, WhatCannotBeMadeIsNull) {
    SAFEARRAYBOUND huge[] = {{0xFFFFFFFF, 0}, {0xFFFFFFFF, 0}, {0xFFFFFFFF, 0}};
    EXPECT_EQ(SafeArrayCreate(VT_VARIANT, 3, huge), nullptr);
    EXPECT_EQ(SafeArrayCreate(VT_I4, 0, huge), nullptr);
    EXPECT_EQ(SafeArrayCreateVector(VT_EMPTY, 0, 1), nullptr);
    EXPECT_EQ(SafeArrayCreateVector(VT_I4, 0, 0xFFFFFFFF), nullptr);
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
    SAFEARRAY* empty = SafeArrayCreateVector(VT_UI8, 1, 0);
    LONG upper = 5;
    EXPECT_EQ(SafeArrayGetUBound(empty, 1, &upper), S_OK);
    EXPECT_EQ(upper, 0);
    SafeArrayDestroy(empty);
}

}  // namespace
