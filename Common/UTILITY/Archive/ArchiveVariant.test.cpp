#include <gtest/gtest.h>

#include <random>
#include <utility>

#include "Common/include/Archive.h"
#include "Common/include/VariantEquals.h"
#include "tests/Support/ArchiveBytes.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::ArchiveOf;
using Testing::ArchiveProblem;
using Testing::ComProblem;
using Testing::PayloadText;
using Testing::Reread;

CComVariant Raw(VARTYPE type, std::uint64_t bits) {
    CComVariant variant;
    variant.llVal = static_cast<LONGLONG>(bits);
    variant.vt = type;
    return variant;
}

CComVariant ArrayOf(VARTYPE elementType, VARTYPE variantType, ULONG count, LONG lowerBound = 0) {
    CComVariant variant;
    SAFEARRAYBOUND bound = {count, lowerBound};
    variant.parray = ::SafeArrayCreate(elementType, 1, &bound);
    variant.vt = variantType;
    return variant;
}

CComVariant ReadBack(const CComVariant& variant) {
    Archive written;
    written.write(variant);
    Archive archive = Reread(written);
    CComVariant back(L"old");
    archive.read(back);
    EXPECT_EQ(archive.remaining(), 0u);
    return back;
}

CComVariant ReadFrom(std::initializer_list<int> payload) {
    CComVariant variant(L"old");
    ArchiveOf(payload).read(variant);
    return variant;
}

ULONG CountOf(const VARIANT& variant) {
    LONG upper = -2;
    ::SafeArrayGetUBound(variant.parray, 1, &upper);
    return static_cast<ULONG>(upper + 1);
}

// `depth` arrays, each the only element of the one around it; the innermost is empty.
RequestBuffer NestedArrays(int depth) {
    Archive archive(-4);
    for (int i = 0; i < depth; ++i) {
        archive.writeTag(ArchiveTag::Variant);
        const VARTYPE type = VT_ARRAY | VT_VARIANT;
        archive.writeBytes(&type, sizeof type);
        archive.write(i + 1 < depth ? 1 : 0);
    }
    return archive.TakeBuffer();
}

TEST(ArchiveVariant, EveryPlainTypeRoundTripsWithItsLowBytes) {
    const struct { VARTYPE type; const char* bytes; std::uint64_t mask; } cases[] = {
        {VT_EMPTY, "08 00 00", 0}, {VT_NULL, "08 01 00", 0},
        {VT_I2, "08 02 00 88 77", 0xFFFF}, {VT_BOOL, "08 0b 00 88 77", 0xFFFF}, {VT_UI2, "08 12 00 88 77", 0xFFFF},
        {VT_I4, "08 03 00 88 77 66 55", 0xFFFFFFFF}, {VT_R4, "08 04 00 88 77 66 55", 0xFFFFFFFF},
        {VT_ERROR, "08 0a 00 88 77 66 55", 0xFFFFFFFF}, {VT_UI4, "08 13 00 88 77 66 55", 0xFFFFFFFF},
        {VT_INT, "08 16 00 88 77 66 55", 0xFFFFFFFF}, {VT_UINT, "08 17 00 88 77 66 55", 0xFFFFFFFF},
        {VT_R8, "08 05 00 88 77 66 55 44 33 22 11", ~0ull}, {VT_CY, "08 06 00 88 77 66 55 44 33 22 11", ~0ull},
        {VT_DATE, "08 07 00 88 77 66 55 44 33 22 11", ~0ull}, {VT_I8, "08 14 00 88 77 66 55 44 33 22 11", ~0ull},
        {VT_UI8, "08 15 00 88 77 66 55 44 33 22 11", ~0ull},
        {VT_I1, "08 10 00 88", 0xFF}, {VT_UI1, "08 11 00 88", 0xFF},
    };
    for (const auto& test : cases) {
        const CComVariant variant = Raw(test.type, 0x1122334455667788);
        Archive written;
        written.write(variant);
        EXPECT_EQ(PayloadText(written), test.bytes) << test.type;
        const CComVariant back = ReadBack(variant);
        EXPECT_EQ(back.vt, test.type);
        if (test.mask) {
            EXPECT_EQ(static_cast<std::uint64_t>(back.llVal), 0x1122334455667788 & test.mask) << test.type;
        }
    }
}

TEST(ArchiveVariant, TextIsAStringItemOfItsOwn) {
    Archive written;
    written.write(CComVariant(L"a"));
    EXPECT_EQ(PayloadText(written), "08 08 00 02 01 00 00 00 61 00");
    const CComVariant back = ReadBack(CComVariant(L"a"));
    ASSERT_EQ(back.vt, VT_BSTR);
    EXPECT_STREQ(back.bstrVal, L"a");
}

TEST(ArchiveVariant, NullTextArrivesAsAnEmptyOne) {
    const CComVariant back = ReadBack(Raw(VT_BSTR, 0));
    ASSERT_EQ(back.vt, VT_BSTR);
    ASSERT_NE(back.bstrVal, nullptr);
    EXPECT_EQ(::SysStringLen(back.bstrVal), 0u);
}

TEST(ArchiveVariant, TypesThatDontTravelFailOnWritingWithALogLine) {
    Testing::LogCapture log;
    EXPECT_EQ(ArchiveProblem([] { Archive().write(Raw(VT_UNKNOWN, 0)); }), "write: could not write variant type: 13");
    EXPECT_EQ(ArchiveProblem([] { Archive().write(Raw(VT_DISPATCH, 0)); }), "write: could not write variant type: 9");
    ASSERT_EQ(log.Lines().size(), 2u);
    EXPECT_EQ(log.Lines()[0], "E [write] write: could not write variant type: 13");
}

TEST(ArchiveVariant, TypesThatDontTravelFailOnReadingWithALogLine) {
    Testing::LogCapture log;
    EXPECT_EQ(ArchiveProblem([] { ReadFrom({8, 9, 0, 1, 2, 3, 4}); }), "read: could not read variant type: 9");
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0], "E [read] read: could not read variant type: 9");
}

TEST(ArchiveVariant, AllOtherTypeNumbersAreRefused) {
    int readable = 0;
    for (int type = 0; type <= 0xFFFF; ++type) {
        const std::string problem = ArchiveProblem([&] { ReadFrom({8, type & 0xFF, type >> 8, 1, 2, 3, 4, 5, 6, 7, 8}); });
        if (problem.rfind("read: could not read variant type: ", 0) != 0) ++readable;
        else ASSERT_EQ(problem, "read: could not read variant type: " + std::to_string(type));
    }
    EXPECT_EQ(readable, 25);
}

TEST(ArchiveVariant, ArrayOfNumbersHasATaggedCountAndTaggedElements) {
    CComVariant variant = ArrayOf(VT_I4, VT_ARRAY | VT_I4, 2);
    static_cast<LONG*>(variant.parray->pvData)[0] = 5;
    static_cast<LONG*>(variant.parray->pvData)[1] = -1;
    Archive written;
    written.write(variant);
    EXPECT_EQ(PayloadText(written), "08 03 20 01 02 00 00 00 01 05 00 00 00 01 ff ff ff ff");
    const CComVariant back = ReadBack(variant);
    ASSERT_EQ(back.vt, VT_ARRAY | VT_I4);
    ASSERT_EQ(CountOf(back), 2u);
    EXPECT_EQ(static_cast<LONG*>(back.parray->pvData)[1], -1);
}

TEST(ArchiveVariant, EmptyArraysStayArrays) {
    for (const VARTYPE element : {VT_I4, VT_BSTR, VT_VARIANT}) {
        const auto type = static_cast<VARTYPE>(VT_ARRAY | element);
        const CComVariant back = ReadBack(ArrayOf(element, type, 0));
        ASSERT_EQ(back.vt, type);
        ASSERT_NE(back.parray, nullptr);
        EXPECT_EQ(CountOf(back), 0u);
    }
}

TEST(ArchiveVariant, ArraysOfTextsAndOfVariantsRoundTrip) {
    CComVariant inner = ArrayOf(VT_BSTR, VT_ARRAY | VT_BSTR, 2);
    static_cast<BSTR*>(inner.parray->pvData)[0] = ::SysAllocString(L"one");
    CComVariant outer = ArrayOf(VT_VARIANT, VT_ARRAY | VT_VARIANT, 2);
    auto* elements = static_cast<VARIANT*>(outer.parray->pvData);
    CComVariant(inner).DetachTo(elements[0]);
    CComVariant(L"two").DetachTo(elements[1]);

    const CComVariant back = ReadBack(outer);
    ASSERT_EQ(back.vt, VT_ARRAY | VT_VARIANT);
    const auto* read = static_cast<const VARIANT*>(back.parray->pvData);
    ASSERT_EQ(read[0].vt, VT_ARRAY | VT_BSTR);
    const auto* texts = static_cast<const BSTR*>(read[0].parray->pvData);
    EXPECT_STREQ(texts[0], L"one");
    ASSERT_NE(texts[1], nullptr);
    EXPECT_STREQ(texts[1], L"");
    EXPECT_STREQ(read[1].bstrVal, L"two");
    EXPECT_EQ(back.parray->cLocks, 0u);
    EXPECT_EQ(outer.parray->cLocks, 0u);
}

TEST(ArchiveVariant, MachineWordArraysComeOutAs32BitArrays) {
    EXPECT_EQ(ReadFrom({8, 0x16, 0x20, 1, 0, 0, 0, 0}).vt, VT_ARRAY | VT_I4);   // VT_INT
    EXPECT_EQ(ReadFrom({8, 0x17, 0x20, 1, 0, 0, 0, 0}).vt, VT_ARRAY | VT_UI4);  // VT_UINT
    EXPECT_EQ(ReadFrom({8, 0x13, 0x20, 1, 0, 0, 0, 0}).vt, VT_ARRAY | VT_UI4);
    EXPECT_EQ(ReadFrom({8, 0x03, 0x20, 1, 0, 0, 0, 0}).vt, VT_ARRAY | VT_I4);
}

TEST(ArchiveVariant, OnlyArraysWhoseOwnElementsAreVtI4CanBeWrittenAsNumbers) {
    for (const VARTYPE element : {VT_UI4, VT_INT, VT_UINT})
        EXPECT_EQ(ComProblem([&] { Archive().write(ArrayOf(element, static_cast<VARTYPE>(VT_ARRAY | element), 1)); }), E_INVALIDARG);
    CComVariant disguised = ArrayOf(VT_I4, VT_ARRAY | VT_UINT, 1);
    Archive written;
    written.write(disguised);
    EXPECT_EQ(PayloadText(written), "08 17 20 01 01 00 00 00 01 00 00 00 00");
    disguised.vt = VT_ARRAY | VT_I4;
}

TEST(ArchiveVariant, ArraysThatDontFitTheirTypeFailWithInvalidArgument) {
    EXPECT_EQ(ComProblem([] { Archive().write(Raw(VT_ARRAY | VT_I4, 0)); }), E_INVALIDARG);
    CComVariant mismatch = ArrayOf(VT_BSTR, VT_ARRAY | VT_VARIANT, 1);
    EXPECT_EQ(ComProblem([&] { Archive().write(mismatch); }), E_INVALIDARG);
    mismatch.vt = VT_ARRAY | VT_BSTR;
}

TEST(ArchiveVariant, ArraysWhoseElementsAreMissingFail) {
    for (const VARTYPE element : {VT_I4, VT_BSTR, VT_VARIANT}) {
        CComVariant variant = ArrayOf(element, static_cast<VARTYPE>(VT_ARRAY | element), 1);
        void* const elements = std::exchange(variant.parray->pvData, nullptr);
        EXPECT_EQ(ComProblem([&] { Archive().write(variant); }), E_FAIL) << element;
        EXPECT_EQ(variant.parray->cLocks, 0u);
        variant.parray->pvData = elements;
    }
}

TEST(ArchiveVariant, ArraysThatDontStartAtZeroCantBeWritten) {
    EXPECT_EQ(ComProblem([] { Archive().write(ArrayOf(VT_I4, VT_ARRAY | VT_I4, 1, 1)); }), E_INVALIDARG);
    EXPECT_EQ(ComProblem([] { Archive().write(ArrayOf(VT_I4, VT_ARRAY | VT_I4, 3, -1)); }), E_INVALIDARG);
    EXPECT_EQ(ComProblem([] { Archive().write(ArrayOf(VT_I4, VT_ARRAY | VT_I4, 0, 1)); }), S_OK);
}

TEST(ArchiveVariant, ArraysOfTwoDimensionsAreRefusedWithALogLine) {
    Testing::LogCapture log;
    CComVariant variant;
    SAFEARRAYBOUND bounds[2] = {{1, 0}, {1, 0}};
    variant.parray = ::SafeArrayCreate(VT_I4, 2, bounds);
    variant.vt = VT_ARRAY | VT_I4;
    EXPECT_EQ(ArchiveProblem([&] { Archive().write(variant); }), "Cannot write multi-dimensional array");
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0], "E [writeSafeArray] writeSafeArray: cannot write multi-dimensional array: 2");
    EXPECT_EQ(variant.parray->cLocks, 0u);
}

TEST(ArchiveVariant, CountsThatCantFitInWhatRemainsAreReadsPastTheEnd) {
    const std::string expected = "readBytes: out-of-bounds access";
    EXPECT_EQ(ArchiveProblem([] { ReadFrom({8, 0x03, 0x20, 1, 0xFF, 0xFF, 0xFF, 0x7F, 1, 0, 0, 0, 0}); }), expected);
    EXPECT_EQ(ArchiveProblem([] { ReadFrom({8, 0x03, 0x20, 1, 0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 0}); }), expected);
    EXPECT_EQ(ArchiveProblem([] { ReadFrom({8, 0x08, 0x20, 1, 2, 0, 0, 0, 2, 0, 0, 0, 0}); }), expected);
    EXPECT_EQ(ArchiveProblem([] { ReadFrom({8, 0x0C, 0x20, 1, 2, 0, 0, 0, 8, 0, 0, 8, 0}); }), expected);
}

TEST(ArchiveVariant, BrokenElementsLeaveAVariantThatCanBeCleared) {
    CComVariant variant;
    EXPECT_EQ(ArchiveProblem([&] { ArchiveOf({8, 0x0C, 0x20, 1, 2, 0, 0, 0, 8, 3, 0, 1, 2, 3, 4, 7, 0, 0}).read(variant); }),
              "Invalid type, VARIANT expected!");
    ASSERT_EQ(variant.vt, VT_ARRAY | VT_VARIANT);
    EXPECT_EQ(variant.parray->cLocks, 0u);
    EXPECT_EQ(variant.Clear(), S_OK);
}

TEST(ArchiveVariant, NestingUpToTheBoundRoundTrips) {
    for (const int depth : {1, 2, 16, 100, Archive::kMaximumVariantNesting}) {
        const RequestBuffer bytes = NestedArrays(depth);
        Archive archive(bytes);
        CComVariant variant;
        archive.read(variant);
        EXPECT_EQ(archive.remaining(), 0u) << depth;
        Archive again;
        again.write(variant);
        EXPECT_EQ(PayloadText(again), PayloadText(bytes)) << depth;
    }
}

TEST(ArchiveVariant, DeeperNestingIsRefusedInBothDirections) {
    CComVariant variant;
    Archive(NestedArrays(Archive::kMaximumVariantNesting)).read(variant);
    CComVariant deeper = ArrayOf(VT_VARIANT, VT_ARRAY | VT_VARIANT, 1);
    variant.DetachTo(*static_cast<VARIANT*>(deeper.parray->pvData));
    EXPECT_EQ(ArchiveProblem([&] { Archive().write(deeper); }), "write: could not write variant type: 8204");
    EXPECT_EQ(ArchiveProblem([] {
                  CComVariant target;
                  Archive(NestedArrays(Archive::kMaximumVariantNesting + 1)).read(target);
              }),
              "read: could not read variant type: 8204");
}

TEST(ArchiveVariant, RandomBytesNeverDoMoreThanThrow) {
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        Archive archive(-4);
        archive.writeTag(ArchiveTag::Variant);
        const VARTYPE types[] = {VT_ARRAY | VT_VARIANT, VT_ARRAY | VT_BSTR, VT_ARRAY | VT_I4, VT_BSTR, VT_I4, VT_NULL};
        for (int i = 0; i < 12; ++i) {
            switch (random() % 4) {
                case 0: archive.writeBytes(&types[random() % 6], 2); break;
                case 1: archive.write(static_cast<std::int32_t>(random() % 3)); break;
                case 2: archive.writeTag(ArchiveTag::Variant); break;
                default: archive.write(static_cast<std::uint8_t>(random() % 10)); break;
            }
        }
        Archive reader(archive.buffer());
        CComVariant variant;
        try {
            reader.read(variant);
            Archive again;
            again.write(variant);
        } catch (const ArchiveException&) {
        } catch (const ComException&) {
        }
    }
}

}  // namespace
}  // namespace Zorvex
