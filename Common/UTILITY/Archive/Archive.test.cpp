#include "Common/include/Archive.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <random>
#include <stdexcept>

#include "tests/Support/ArchiveBytes.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::ArchiveOf;
using Testing::ArchiveProblem;
using Testing::BufferOf;
using Testing::PayloadText;
using Testing::Reread;

std::uint32_t HeaderOf(const Archive& archive) {
    std::uint32_t header = 0;
    std::memcpy(&header, archive.buffer().data(), sizeof header);
    return header;
}

TEST(Archive, AnEmptyOneIsTheFourBytesOfItsOwnLength) {
    Archive archive;
    EXPECT_EQ(archive.buffer(), (RequestBuffer{4, 0, 0, 0}));
    EXPECT_EQ(archive.buffer().capacity(), 68u);
}

TEST(Archive, PayloadHintReservesItselfAndTheHeader) {
    EXPECT_EQ(Archive(100).buffer().capacity(), 104u);
    EXPECT_EQ(Archive(-4).buffer(), (RequestBuffer{4, 0, 0, 0}));
    EXPECT_EQ(Archive(-4).buffer().capacity(), 4u);
    for (const std::int32_t hint : {-5, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_THROW({ Archive archive(hint); }, std::length_error);
    }
}

TEST(Archive, ReadingStartsBehindTheHeader) {
    const Archive archive(BufferOf({}));
    EXPECT_EQ(archive.readPosition(), 4u);
    EXPECT_EQ(archive.remaining(), 0u);
}

TEST(Archive, BuffersThatDontHoldTheirSizeAreRefused) {
    for (const RequestBuffer& buffer : {RequestBuffer{}, RequestBuffer{3, 0, 0}, RequestBuffer{5, 0, 0, 0}, RequestBuffer{4, 0, 0, 0, 1},
                                        RequestBuffer{5, 0, 0, 0x80, 1}}) {
        EXPECT_EQ(ArchiveProblem([&] { Archive archive(buffer); }), "Invalid vBuffer in ctor");
    }
}

TEST(Archive, ReaderKeepsAPrivateCopy) {
    RequestBuffer buffer = BufferOf({1, 7, 0, 0, 0});
    Archive archive(buffer);
    buffer[5] = 99;
    std::int32_t number = 0;
    archive.read(number);
    EXPECT_EQ(number, 7);
}

TEST(Archive, HeaderEqualsTheSizeAfterEachSingleWrite) {
    Archive archive;
    const auto expectRight = [&] { EXPECT_EQ(HeaderOf(archive), archive.buffer().size()); };
    expectRight();
    archive.write(1), expectRight();
    archive.write(std::int64_t{1}), expectRight();
    archive.write(true), expectRight();
    archive.write(1.5), expectRight();
    archive.write(std::uint8_t{3}), expectRight();
    archive.write(L"abc"), expectRight();
    archive.write(CComVariant(L"abc")), expectRight();
    archive.writeTag(ArchiveTag::Vector), expectRight();
    archive.writeCount(3), expectRight();
    archive.writeBytes("x", 1), expectRight();
    archive.writeBytes("x", 0), expectRight();
}

TEST(Archive, BytesOfEveryItemAreAsDocumented) {
    EXPECT_EQ(PayloadText(Archive().write(0x01020304)), "01 04 03 02 01");
    EXPECT_EQ(PayloadText(Archive().write(0xFFFFFFFFu)), "01 ff ff ff ff");
    EXPECT_EQ(PayloadText(Archive().write(std::int64_t{0x0102030405060708})), "06 08 07 06 05 04 03 02 01");
    EXPECT_EQ(PayloadText(Archive().write(true).write(false)), "01 00");
    EXPECT_EQ(PayloadText(Archive().write(std::uint8_t{0xAB})), "ab");
    EXPECT_EQ(PayloadText(Archive().write(1.0)), "00 00 00 00 00 00 f0 3f");
    EXPECT_EQ(PayloadText(Archive().write(L"aé")), "02 02 00 00 00 61 00 e9 00");
    EXPECT_EQ(PayloadText(Archive().write(std::wstring_view(L"a\0b", 3))), "02 03 00 00 00 61 00 00 00 62 00");
    EXPECT_EQ(PayloadText(Archive().write(CComBSTR())), "02 00 00 00 00");
    EXPECT_EQ(PayloadText(Archive().write(POINT{1, -1})), "01 01 00 00 00 01 ff ff ff ff");
    EXPECT_EQ(PayloadText(Archive().writeTag(ArchiveTag::Map).writeCount(2)), "04 02 00 00 00");
}

TEST(Archive, FalseIsTheByteZeroAndAnyOtherByteIsTrue) {
    EXPECT_EQ(PayloadText(Archive().write(false)), "00");
    for (int byte = 0; byte < 256; ++byte) {
        bool value = byte == 0;
        ArchiveOf({byte}).read(value);
        EXPECT_EQ(value, byte != 0);
    }
}

TEST(Archive, SurrogatePairsAreTwoUnits) {
    const CString text = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    Archive archive;
    archive.write(text);
    EXPECT_EQ(PayloadText(archive), "02 02 00 00 00 3d d8 00 de");
    CString back;
    Reread(archive).read(back);
    EXPECT_EQ(back, text);
}

TEST(Archive, StringWithNegativeCountReadsAsEmptyAndConsumesOnlyTagAndCount) {
    Archive archive = ArchiveOf({2, 0xFB, 0xFF, 0xFF, 0xFF, 0x61, 0x00});
    CString text = L"old";
    archive.read(text);
    EXPECT_EQ(text, L"");
    EXPECT_EQ(archive.remaining(), 2u);
}

TEST(Archive, StringCountBeyondTheEndFails) {
    Archive archive = ArchiveOf({2, 3, 0, 0, 0, 1, 2, 3, 4, 5});
    CString text;
    EXPECT_EQ(ArchiveProblem([&] { archive.read(text); }), "Invalid m_readPos in Archive::read");
    CComBSTR wide;
    Archive huge = ArchiveOf({2, 0xFF, 0xFF, 0xFF, 0x7F, 1, 2});
    EXPECT_EQ(ArchiveProblem([&] { huge.read(wide); }), "Invalid m_readPos in Archive::read");
}

TEST(Archive, TextBehindAnEmbeddedNulIsLostOnReadingButItsBytesAreConsumed) {
    Archive written;
    written.write(std::wstring_view(L"ab\0cd", 5)).write(7);
    Archive archive = Reread(written);
    CString text;
    std::int32_t next = 0;
    archive.read(text).read(next);
    EXPECT_EQ(text, L"ab");
    EXPECT_EQ(next, 7);

    CComBSTR wide;
    Reread(written).read(wide);
    EXPECT_EQ(wide.ToString(), L"ab");
}

TEST(Archive, TextViewSeesEveryUnitWhereItLies) {
    Archive archive = ArchiveOf({2, 3, 0, 0, 0, 0x61, 0, 0, 0, 0x62, 0xD8});
    ArchiveText text;
    archive.read(text);
    ASSERT_EQ(text.size(), 3u);
    EXPECT_EQ(text[2], static_cast<wchar_t>(0xD862));
    EXPECT_EQ(text.TerminatedLength(), 1u);
    EXPECT_EQ(text.Bytes(), archive.buffer().data() + 9);
    EXPECT_EQ(text.ToString(), L"a");
}

TEST(Archive, EmptyBstrComesBackNotNull) {
    CComBSTR text;
    ArchiveOf({2, 0, 0, 0, 0}).read(text);
    EXPECT_NE(text.m_str, nullptr);
    EXPECT_EQ(text.Length(), 0u);
}

TEST(Archive, NumbersOf32BitsSignExtendInto64) {
    Archive written;
    written.write(-1).write(0x80000000u);
    Archive archive = Reread(written);
    std::int64_t first = 0, second = 0;
    archive.readExtended(first).readExtended(second);
    EXPECT_EQ(first, -1);
    EXPECT_EQ(second, std::numeric_limits<std::int32_t>::min());
}

TEST(Archive, WindowHandlesKeepTheirLowHalfAndComeBackSignExtended) {
    Archive written;
    written.write(reinterpret_cast<HWND>(static_cast<INT_PTR>(std::int32_t(0x80010002))));
    EXPECT_EQ(PayloadText(written), "01 02 00 01 80");
    HWND window = nullptr;
    Reread(written).read(window);
    EXPECT_EQ(reinterpret_cast<INT_PTR>(window), static_cast<INT_PTR>(std::int32_t(0x80010002)));
    if constexpr (sizeof(window) == 8) {
        Archive wide;
        wide.write(reinterpret_cast<HWND>(static_cast<INT_PTR>(0x1234567890LL)));
        EXPECT_EQ(PayloadText(wide), "01 90 78 56 34");
    }
}

TEST(Archive, ReadersOfOneWidthRefuseTheOther) {
    Testing::LogCapture log;
    std::int32_t narrow = 0;
    std::int64_t wide = 0;
    EXPECT_EQ(ArchiveProblem([&] { ArchiveOf({6, 1, 0, 0, 0, 0, 0, 0, 0}).read(narrow); }), "Invalid type, number expected.");
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
    EXPECT_EQ(ArchiveProblem([&] { ArchiveOf({1, 1, 0, 0, 0}).read(wide); }), "Invalid type, number 64bit expected.");
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0], "E [read] 64-bit number expected actual type=1");
}

TEST(Archive, WrongTagsNameWhatWasExpected) {
    CString text;
    CComVariant variant;
    EXPECT_EQ(ArchiveProblem([&] { ArchiveOf({1, 0, 0, 0, 0}).read(text); }), "Invalid type, string expected.");
    EXPECT_EQ(ArchiveProblem([&] { ArchiveOf({1, 0, 0, 0, 0}).read(variant); }), "Invalid type, VARIANT expected!");
}

TEST(Archive, EveryReadPastTheEndSaysSo) {
    const auto problem = [](std::initializer_list<int> bytes, auto value) {
        return ArchiveProblem([&] { ArchiveOf(bytes).read(value); });
    };
    const std::string expected = "readBytes: out-of-bounds access";
    EXPECT_EQ(problem({}, std::int32_t{}), expected);
    EXPECT_EQ(problem({1, 2, 3, 4}, std::int32_t{}), expected);
    EXPECT_EQ(problem({6, 1, 2, 3, 4, 5, 6, 7}, std::int64_t{}), expected);
    EXPECT_EQ(problem({}, false), expected);
    EXPECT_EQ(problem({1, 2, 3, 4, 5, 6, 7}, 0.0), expected);
    EXPECT_EQ(problem({}, CString()), expected);
    EXPECT_EQ(problem({2, 1, 0}, CString()), expected);
    EXPECT_EQ(problem({8, 3}, CComVariant()), expected);
    EXPECT_EQ(problem({8, 3, 0, 1, 2, 3}, CComVariant()), expected);
    EXPECT_EQ(problem({1, 0, 0, 0, 0}, POINT{}), expected);
}

TEST(Archive, AFailedReadHasConsumedTheTag) {
    Archive archive = ArchiveOf({6, 1, 2, 3});
    std::int32_t number = 0;
    EXPECT_THROW(archive.read(number), ArchiveException);
    EXPECT_EQ(archive.readPosition(), 5u);
    Archive shortOne = ArchiveOf({1, 1, 2, 3});
    EXPECT_THROW(shortOne.read(number), ArchiveException);
    EXPECT_EQ(shortOne.readPosition(), 5u);
}

TEST(Archive, RunsOfNumbersAreReadAndFailLikeSingleOnes) {
    Archive written;
    written.writeNumbers({1u, 0xFFFFFFFFu, 3u});
    EXPECT_EQ(PayloadText(written), "01 01 00 00 00 01 ff ff ff ff 01 03 00 00 00");
    std::uint32_t numbers[3] = {};
    Reread(written).readNumbers(numbers);
    EXPECT_EQ(numbers[1], 0xFFFFFFFFu);

    Archive wrongTag = ArchiveOf({1, 1, 0, 0, 0, 2, 1, 0, 0, 0, 1, 1, 0, 0, 0});
    EXPECT_EQ(ArchiveProblem([&] { wrongTag.readNumbers(numbers); }), "Invalid type, number expected.");
    EXPECT_EQ(wrongTag.readPosition(), 10u);
    Archive shortOne = ArchiveOf({1, 1, 0, 0, 0, 1, 1, 0, 0, 0, 1, 1});
    EXPECT_EQ(ArchiveProblem([&] { shortOne.readNumbers(numbers); }), "readBytes: out-of-bounds access");
    EXPECT_EQ(shortOne.readPosition(), 15u);
}

TEST(Archive, ReadBytesCanLookAhead) {
    Archive archive = ArchiveOf({10, 11});
    std::uint8_t ahead[2] = {};
    archive.readBytes(ahead, 2, false);
    EXPECT_EQ(ahead[1], 11);
    std::uint8_t tag = 0;
    archive.readTag(tag);
    EXPECT_EQ(tag, 10);
    volatile std::size_t endless = std::size_t(-1);
    EXPECT_THROW(archive.readBytes(ahead, endless), ArchiveException);
}

TEST(Archive, TakeBufferLeavesAnEmptyArchiveBehind) {
    Archive archive;
    archive.write(1);
    const RequestBuffer taken = archive.TakeBuffer();
    EXPECT_EQ(taken, (RequestBuffer{9, 0, 0, 0, 1, 1, 0, 0, 0}));
    EXPECT_EQ(archive.buffer(), (RequestBuffer{4, 0, 0, 0}));
    archive.write(2);
    EXPECT_EQ(PayloadText(archive), "01 02 00 00 00");
}

TEST(Archive, ArchivesThatNoReaderWouldAcceptAreNotWritten) {
    Archive archive;
    EXPECT_THROW(archive.write(std::wstring_view(L"", std::size_t(INT32_MAX))), std::bad_alloc);
    EXPECT_THROW(archive.writeCount(std::size_t(INT32_MAX) + 1), std::bad_alloc);
    EXPECT_EQ(archive.buffer().size(), 4u);
}

TEST(Archive, RandomItemsComeBackInOrder) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        const unsigned seed = random();
        Archive written(-4);
        std::mt19937 writing(seed), reading(seed);
        const auto text = [](std::mt19937& source) {
            CString result(source() % 20, L'x');
            for (wchar_t& unit : result) unit = static_cast<wchar_t>(1 + source() % 0xFFFF);
            return result;
        };
        for (int i = 0; i < 30; ++i) {
            switch (writing() % 4) {
                case 0: written.write(static_cast<std::int32_t>(writing())); break;
                case 1: written.write(static_cast<std::int64_t>(writing()) << 20); break;
                case 2: written.write(text(writing)); break;
                default: written.write(static_cast<double>(writing())); break;
            }
        }
        Archive archive = Reread(written);
        for (int i = 0; i < 30; ++i) {
            std::int32_t narrow = 0;
            std::int64_t wide = 0;
            double real = 0;
            CString string;
            switch (reading() % 4) {
                case 0: archive.read(narrow); EXPECT_EQ(narrow, static_cast<std::int32_t>(reading())); break;
                case 1: archive.read(wide); EXPECT_EQ(wide, static_cast<std::int64_t>(reading()) << 20); break;
                case 2: archive.read(string); EXPECT_EQ(string, text(reading)); break;
                default: archive.read(real); EXPECT_EQ(real, static_cast<double>(reading())); break;
            }
        }
        EXPECT_EQ(archive.remaining(), 0u);
    }
}

}  // namespace
}  // namespace Zorvex
