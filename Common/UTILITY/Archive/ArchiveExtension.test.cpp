#include "Common/include/ArchiveExtension.h"

#include <gtest/gtest.h>

#include "tests/Support/ArchiveBytes.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::ArchiveOf;
using Testing::ArchiveProblem;
using Testing::PayloadText;
using Testing::Reread;

enum class Color : std::uint32_t { Red = 1, Blue = 2 };

struct Pair {
    std::int32_t number = 0;
    CString text;
    Color color = Color::Red;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("number", self.number);
        visit("text", self.text);
        visit("color", self.color);
    }
};

class Animal : public DynamicType {
public:
    std::uint32_t GetSerializationId() const override { return 77; }
    void WriteToArchive(Archive& archive) const override { archive.write(legs); }
    void ReadFromArchive(Archive& archive) override { archive.read(legs); }
    std::int32_t legs = 4;
};

TEST(ArchiveExtension, VectorHasARawCountAndItsElements) {
    Archive archive;
    writeField(archive, std::vector<std::int32_t>{5, 6});
    EXPECT_EQ(PayloadText(archive), "03 02 00 00 00 01 05 00 00 00 01 06 00 00 00");
    std::vector<std::int32_t> back = {9};
    Archive reader = Reread(archive);
    readField(reader, back);
    EXPECT_EQ(back, (std::vector<std::int32_t>{5, 6}));
}

TEST(ArchiveExtension, CountsBelowOneMeanNoElements) {
    for (const int last : {0x00, 0xFF}) {
        Archive vectorReader = ArchiveOf({3, last, last, last, last});
        std::vector<CString> texts = {L"old"};
        readField(vectorReader, texts);
        EXPECT_TRUE(texts.empty());
        Archive mapReader = ArchiveOf({4, last, last, last, last});
        std::map<CString, CString> map = {{L"old", L"old"}};
        readField(mapReader, map);
        EXPECT_TRUE(map.empty());
    }
}

TEST(ArchiveExtension, WrongTagsNameWhatWasExpected) {
    std::vector<CString> texts;
    std::map<CString, CString> map;
    std::shared_ptr<Animal> animal;
    const auto problem = [](std::initializer_list<int> payload, auto& target) {
        return ArchiveProblem([&] {
            Archive archive = ArchiveOf(payload);
            readField(archive, target);
        });
    };
    EXPECT_EQ(problem({4, 0, 0, 0, 0}, texts), "Invalid type, vector expected!");
    EXPECT_EQ(problem({3, 0, 0, 0, 0}, map), "Invalid type, map expected!");
    EXPECT_EQ(problem({8, 0}, animal), "Invalid type, shared_ptr expected!");
    EXPECT_EQ(problem({3, 0, 0}, texts), "readBytes: out-of-bounds access");
}

TEST(ArchiveExtension, HostileCountsReserveNoMoreThanASmallMultipleOfWhatLiesThere) {
    Archive archive = ArchiveOf({3, 0xFF, 0xFF, 0xFF, 0x7F, 2, 0, 0, 0, 0});
    std::vector<Pair> pairs;
    EXPECT_EQ(ArchiveProblem([&] { readField(archive, pairs); }), "Invalid type, number expected.");
    EXPECT_LE(pairs.capacity(), 2u);

    Archive bytes = ArchiveOf({3, 0xFF, 0xFF, 0xFF, 0x7F, 1, 1, 1});
    std::vector<bool> bools;
    EXPECT_EQ(ArchiveProblem([&] { readField(bytes, bools); }), "readBytes: out-of-bounds access");
    EXPECT_LE(bools.capacity(), 64u);
}

TEST(ArchiveExtension, MapIsWrittenInKeyOrderAndTheFirstOfTwoKeysStays) {
    Archive archive;
    writeField(archive, std::map<CString, std::int32_t>{{L"b", 2}, {L"B", 1}});
    EXPECT_EQ(PayloadText(archive), "04 02 00 00 00 02 01 00 00 00 42 00 01 01 00 00 00 02 01 00 00 00 62 00 01 02 00 00 00");
    Archive twice = ArchiveOf({4, 2, 0, 0, 0, 2, 1, 0, 0, 0, 0x41, 0, 1, 1, 0, 0, 0, 2, 1, 0, 0, 0, 0x41, 0, 1, 2, 0, 0, 0});
    std::map<CString, std::int32_t> back;
    readField(twice, back);
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(back[L"A"], 1);
}

TEST(ArchiveExtension, MapOfBstrKeysIsInTheOrderOfTheLocale) {
    Archive archive;
    writeField(archive, std::map<CString, std::int32_t>{{L"Z", 1}, {L"a", 2}, {L"m", 3}});
    std::map<CComBSTR, std::int32_t, BstrLess> back;
    Archive reader = Reread(archive);
    readField(reader, back);
    ASSERT_EQ(back.size(), 3u);
    for (auto key = back.begin(), next = std::next(key); next != back.end(); ++key, ++next)
        EXPECT_EQ(::VarBstrCmp(key->first, next->first, LOCALE_USER_DEFAULT, 0), VARCMP_LT);
}

TEST(ArchiveExtension, RecordsAreTheirFieldsInOrder) {
    Archive archive;
    writeField(archive, Pair{1, L"x", Color::Blue});
    EXPECT_EQ(PayloadText(archive), "01 01 00 00 00 02 01 00 00 00 78 00 01 02 00 00 00");
    Pair back;
    Archive reader = Reread(archive);
    readField(reader, back);
    EXPECT_EQ(back.number, 1);
    EXPECT_EQ(back.text, L"x");
    EXPECT_EQ(back.color, Color::Blue);
}

TEST(ArchiveExtension, RectanglesAreFourNumbers) {
    Archive archive;
    writeField(archive, RECT{1, 2, 3, 4});
    EXPECT_EQ(PayloadText(archive), "01 01 00 00 00 01 02 00 00 00 01 03 00 00 00 01 04 00 00 00");
}

TEST(ArchiveExtension, EmptyPointerIsTwoBytes) {
    Archive archive;
    writeField(archive, std::shared_ptr<Animal>());
    EXPECT_EQ(PayloadText(archive), "09 00");
    auto animal = std::make_shared<Animal>();
    Archive reader = Reread(archive);
    readField(reader, animal);
    EXPECT_EQ(animal, nullptr);
    EXPECT_EQ(reader.remaining(), 0u);
}

TEST(ArchiveExtension, PointerCarriesItsIdAndAConcreteReaderTakesAnyButOne) {
    Archive archive;
    auto animal = std::make_shared<Animal>();
    animal->legs = 3;
    writeDynamic(archive, animal);
    EXPECT_EQ(PayloadText(archive), "09 01 01 4d 00 00 00 01 03 00 00 00");
    std::shared_ptr<Animal> back;
    Archive other = ArchiveOf({9, 5, 1, 99, 0, 0, 0, 1, 8, 0, 0, 0});
    readShared(other, back);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->legs, 8);
    Archive one = ArchiveOf({9, 1, 1, 1, 0, 0, 0, 1, 8, 0, 0, 0});
    EXPECT_EQ(ArchiveProblem([&] { readShared(one, back); }), "Invalid type, dynamic type mismatch for shared_ptr!");
    EXPECT_EQ(back, nullptr);
}

TEST(ArchiveExtension, ANullObjectBehindAPresentByteIsLoggedAndThrown) {
    Testing::LogCapture log;
    Archive archive;
    EXPECT_EQ(ArchiveProblem([&] { writeDynamicObject(archive, nullptr); }), "writeDynamic: input is null");
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0].front(), 'E');
    EXPECT_TRUE(log.Contains("writeDynamic: input is null"));
}

}  // namespace
}  // namespace Zorvex
