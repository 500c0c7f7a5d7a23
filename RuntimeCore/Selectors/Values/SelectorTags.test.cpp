#include "RuntimeCore/Selectors/Values/SelectorTags.h"

#include <gtest/gtest.h>

#include <random>

#include "RuntimeCore/Selectors/Values/AttributeNames.h"
#include "RuntimeCore/Selectors/Values/VariantValue.h"
#include "tests/Support/ArchiveBytes.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::ArchiveOf;
using Testing::ArchiveProblem;
using Testing::PayloadText;
using Testing::Reread;

std::shared_ptr<IAttrValue> Text(const wchar_t* text) { return std::make_shared<StringValue>(CString(text)); }
std::shared_ptr<IAttrValue> Number(std::int64_t number) { return std::make_shared<NumberValue>(number); }

std::vector<std::shared_ptr<ISelectorTag>> AllTags() {
    return {std::make_shared<WndTag>(), std::make_shared<AaTag>(), std::make_shared<JavaTag>(), std::make_shared<HtmlTag>(),
            std::make_shared<WebCtrlTag>(), std::make_shared<UiAutoTag>(), std::make_shared<SLTag>(), std::make_shared<NavigationTag>(),
            std::make_shared<SAPTag>(), std::make_shared<RdpTag>(), std::make_shared<RdpAppTag>(), std::make_shared<QtTag>(),
            std::make_shared<WpfTag>()};
}

// Sets every attribute of the table.
void FillTag(ISelectorTag& tag, std::mt19937& random) {
    for (const auto& [name, accessor] : tag.GetAttributeFactories()) {
        auto value = accessor->CreateValue();
        value->SetEnabled(random() % 2);
        value->SetCaseSensitive(random() % 2);
        value->SetMatchingType(random() % 5);
        value->SetFuzzyLevel(static_cast<double>(random() % 100) / 100);
        tag.SetAttribute(name, value);
    }
    tag.SetTagFlagA(random() % 2);
    tag.SetLimitsEveryLevel(random() % 2);
    tag.SetTagFlagB(random() % 2);
    tag.SetTagFlagC(random() % 2);
}

std::shared_ptr<ISelectorTag> RoundTrip(const std::shared_ptr<ISelectorTag>& tag) {
    Archive written;
    writeDynamic(written, tag);
    Archive archive = Reread(written);
    std::shared_ptr<ISelectorTag> back;
    readShared(archive, back);
    EXPECT_EQ(archive.remaining(), 0u);
    return back;
}

TEST(SelectorTags, IdsAndKindsAreThoseOfTheWire) {
    const std::uint32_t ids[] = {20001, 20010, 20003, 20002, 2009, 20008, 20007, 20004, 20006, 20005, 20011, 20012, 20013};
    const auto tags = AllTags();
    for (std::size_t i = 0; i < tags.size(); ++i) {
        EXPECT_EQ(tags[i]->GetSerializationId(), ids[i]);
        EXPECT_EQ(static_cast<std::size_t>(tags[i]->GetTagKind()), i);
    }
}

TEST(SelectorTags, TablesHaveTheirSizes) {
    const std::size_t names[] = {22, 10, 14, 12, 2, 21, 4, 3, 12, 12, 0, 8, 33};
    const auto tags = AllTags();
    for (std::size_t i = 0; i < tags.size(); ++i) EXPECT_EQ(tags[i]->GetAttributeFactories().size(), names[i]) << i;
}

TEST(SelectorTags, AaTagEnumeratesInCodeUnitOrder) {
    const AaTag tag;
    std::vector<CString> names;
    for (const auto& [name, accessor] : tag.GetAttributeFactories()) names.push_back(name);
    EXPECT_EQ(names, (std::vector<CString>{L"aastate", L"automationid", L"helpText", L"idx", L"labeledby", L"name", L"role", L"rowName",
                                           L"text", L"virtualname"}));
}

TEST(SelectorTags, FreshTagHasItsDefaults) {
    const AaTag tag;
    EXPECT_FALSE(tag.GetTagFlagA());
    EXPECT_TRUE(tag.GetLimitsEveryLevel());
    EXPECT_FALSE(tag.GetTagFlagB());
    EXPECT_FALSE(tag.GetTagFlagC());
    EXPECT_EQ(tag.GetTagMode(), 2u);
    EXPECT_EQ(tag.GetAttributeCount(), 0u);
}

TEST(SelectorTags, ValueOfAnotherKindIsDroppedInSilence) {
    Testing::LogCapture log;
    AaTag tag;
    tag.SetAttribute(L"idx", Text(L"1"));
    EXPECT_FALSE(tag.IsAttributeSet(L"idx"));
    tag.SetAttribute(L"name", Number(1));
    EXPECT_FALSE(tag.IsAttributeSet(L"name"));
    tag.SetAttribute(L"name", Text(L"old"));
    tag.SetAttributeUnchecked(L"name", Number(1));
    EXPECT_EQ(tag.GetAttribute(L"name")->ToString(), L"old");
    tag.SetAttribute(L"name", std::make_shared<VariantValue>());
    EXPECT_EQ(tag.GetAttribute(L"name")->ToString(), L"old");
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST(SelectorTags, KindOfANameIsItsAccessorsAndUnknownNamesHaveTheirOwn) {
    EXPECT_EQ(AaTag().GetAttributeKind(L"name"), 0u);
    EXPECT_EQ(AaTag().GetAttributeKind(L"idx"), 1u);
    EXPECT_EQ(AaTag().GetAttributeKind(L"nonsense"), 4u);
    EXPECT_EQ(WebCtrlTag().GetAttributeKind(L"nonsense"), 3u);
    EXPECT_EQ(WebCtrlTag().GetAttributeKind(L"tag"), 0u);
    EXPECT_EQ(RdpAppTag().GetAttributeKind(L"name"), 4u);
}

TEST(SelectorTags, NamesAreCaseSensitive) {
    EXPECT_EQ(AaTag().GetAttributeKind(L"Name"), kAttributeKindUnknown);
    EXPECT_EQ(AaTag().GetAttributeKind(L"helptext"), kAttributeKindUnknown);
}

TEST(SelectorTags, UnknownNamesAreIgnored) {
    AaTag tag;
    tag.SetAttribute(L"nonsense", Text(L"x"));
    tag.ClearAttribute(L"nonsense");
    EXPECT_EQ(tag.GetAttribute(L"nonsense"), nullptr);
    EXPECT_EQ(tag.GetAttributeOrDefault(L"nonsense"), nullptr);
    EXPECT_EQ(tag.CreateAttribute(L"nonsense"), nullptr);
    EXPECT_EQ(tag.GetAttributeCount(), 0u);
}

TEST(SelectorTags, OnlyHtmlTagHasGid) {
    WndTag wnd;
    wnd.SetAttribute(L"gid", Number(1));
    EXPECT_EQ(wnd.GetAttribute(L"gid"), nullptr);
    EXPECT_EQ(wnd.GetAttributeKind(L"gid"), 4u);
    HtmlTag html;
    html.SetAttribute(L"gid", Number(1));
    EXPECT_NE(html.GetAttribute(L"gid"), nullptr);
}

TEST(SelectorTags, TheFirstOfTwoPidEntriesWinsAndTheMemberBehindItIsNeverSet) {
    WndTag tag;
    tag.SetAttribute(L"pid", Number(7));
    EXPECT_NE(tag.Member(8), nullptr);
    EXPECT_EQ(tag.Member(9), nullptr);
    tag.SetAttribute(L"appid", Text(L"a"));
    EXPECT_EQ(tag.Member(9), nullptr);
    EXPECT_NE(tag.Member(10), nullptr);
    RdpTag rdp;
    rdp.SetAttribute(L"pid", Number(7));
    EXPECT_NE(rdp.Member(8), nullptr);
    EXPECT_EQ(rdp.Member(9), nullptr);
}

TEST(SelectorTags, PidIsATextOfUiAutoTagAndANumberElsewhere) {
    for (const auto& tag : AllTags()) {
        const std::uint32_t kind = tag->GetAttributeKind(L"pid");
        if (kind > 1) continue;
        EXPECT_EQ(kind, tag->GetTagKind() == TagKind::UiAuto ? 0u : 1u);
    }
}

TEST(SelectorTags, DefinedAttributesLeaveOutTheIndex) {
    EXPECT_EQ(AaTag().GetDefinedAttributeCount(), 9u);
    EXPECT_EQ(NavigationTag().GetDefinedAttributeCount(), 3u);
    EXPECT_EQ(RdpAppTag().GetDefinedAttributeCount(), 0u);
    EXPECT_EQ(WebCtrlTag().GetDefinedAttributeCount(), 1u);
}

TEST(SelectorTags, FuzzyAttributesAreThoseOfTypeThreeAndFour) {
    AaTag tag;
    EXPECT_FALSE(tag.HasFuzzyAttributes());
    for (std::uint32_t type = 0; type < 7; ++type) {
        auto value = Text(L"x");
        value->SetMatchingType(type);
        tag.SetAttribute(L"name", value);
        EXPECT_EQ(tag.HasFuzzyAttributes(), type == 3 || type == 4) << type;
    }
}

TEST(SelectorTags, FactoriesAndCreateAttributeGiveFreshAccessors) {
    AaTag tag;
    const auto accessor = tag.CreateAttribute(L"idx");
    ASSERT_NE(accessor, nullptr);
    EXPECT_NE(accessor, tag.CreateAttribute(L"idx"));
    EXPECT_EQ(accessor->GetKind(), 1u);
    auto value = accessor->CreateValue();
    EXPECT_EQ(value->GetValueKind(), AttributeValueKind::Number);
    accessor->Assign(tag, value);
    EXPECT_TRUE(accessor->IsSet(tag));
    EXPECT_EQ(accessor->GetValue(tag), value);
    accessor->Clear(tag);
    EXPECT_FALSE(tag.IsAttributeSet(L"idx"));
    SLTag stranger;
    accessor->Assign(stranger, value);
    EXPECT_EQ(accessor->GetValue(stranger), nullptr);
}

TEST(SelectorTags, CloneSharesTheValuesAndKeepsEverything) {
    std::mt19937 random(3);
    for (const auto& tag : AllTags()) {
        FillTag(*tag, random);
        tag->SetTagMode(5);
        const auto copy = tag->Clone();
        EXPECT_TRUE(tag->Equals(*copy));
        EXPECT_EQ(copy->GetTagMode(), 5u);
        EXPECT_EQ(copy->GetTagFlagA(), tag->GetTagFlagA());
        for (const auto& [name, value] : tag->GetAttributes()) EXPECT_EQ(copy->GetAttribute(name), value);
    }
}

TEST(SelectorTags, CloneAttributesCopiesTheValuesAndAllFlagsButA) {
    AaTag tag;
    tag.SetAttribute(L"name", Text(L"x"));
    tag.SetLimitsEveryLevel(false);
    tag.SetTagFlagB(true);
    tag.SetTagFlagC(true);
    EXPECT_TRUE(tag.Equals(*tag.CloneAttributes()));
    tag.SetTagFlagA(true);
    const auto copy = tag.CloneAttributes();
    EXPECT_FALSE(copy->GetTagFlagA());
    EXPECT_FALSE(copy->GetLimitsEveryLevel());
    EXPECT_TRUE(copy->GetTagFlagB());
    EXPECT_TRUE(copy->GetTagFlagC());
    EXPECT_FALSE(tag.Equals(*copy));
    EXPECT_NE(copy->GetAttribute(L"name"), tag.GetAttribute(L"name"));
    EXPECT_EQ(copy->GetAttribute(L"name")->ToString(), L"x");
}

TEST(SelectorTags, EqualityLooksAtClassFlagsAndValuesButNotAtTheMode) {
    AaTag a, b;
    EXPECT_TRUE(a.Equals(a));
    EXPECT_TRUE(a.Equals(b));
    b.SetTagMode(9);
    EXPECT_TRUE(a.Equals(b));
    b.SetTagFlagC(true);
    EXPECT_FALSE(a.Equals(b));
    b.SetTagFlagC(false);
    b.SetAttribute(L"name", Text(L"x"));
    EXPECT_FALSE(a.Equals(b));
    EXPECT_FALSE(b.Equals(a));
    a.SetAttribute(L"name", Text(L"x"));
    EXPECT_TRUE(a.Equals(b));
    EXPECT_FALSE(AaTag().Equals(SLTag()));
}

TEST(SelectorTags, WireFormIsTheMapOfSetAttributesAndFourFlags) {
    auto tag = std::make_shared<AaTag>();
    Archive flags;
    tag->SetTagFlagB(true);
    tag->WriteToArchive(flags);
    EXPECT_EQ(PayloadText(flags), "04 00 00 00 00 01 00 01 00");  // limits every level, A, B, C
    Archive archive;
    tag->SetAttribute(L"idx", Number(3));
    writeDynamic(archive, std::shared_ptr<ISelectorTag>(tag));
    EXPECT_EQ(PayloadText(archive),
              "09 01 01 2a 4e 00 00 "
              "04 01 00 00 00 02 03 00 00 00 69 00 64 00 78 00 "
              "09 01 01 13 27 00 00 01 01 01 01 00 00 00 00 00 00 00 00 00 f0 3f 06 03 00 00 00 00 00 00 00 "
              "01 00 01 00");
}

TEST(SelectorTags, EveryTagButRdpAppRoundTripsWithAllItsAttributes) {
    std::mt19937 random(5);
    for (int round = 0; round < 10; ++round)
        for (const auto& tag : AllTags()) {
            FillTag(*tag, random);
            if (tag->GetTagKind() == TagKind::RdpApp) continue;
            const auto back = RoundTrip(tag);
            ASSERT_NE(back, nullptr);
            EXPECT_TRUE(tag->Equals(*back)) << tag->GetSerializationId();
            EXPECT_EQ(back->GetTagMode(), 2u);
        }
}

TEST(SelectorTags, RdpAppTagTakesOnlyItsFlagsThroughTheArchive) {
    RdpAppTag tag;
    tag.SetAttribute(L"name", Text(L"x"));
    tag.SetTagFlagA(true);
    Archive archive;
    tag.WriteToArchive(archive);
    EXPECT_EQ(PayloadText(archive), "04 00 00 00 00 01 01 00 00");
    RdpAppTag back;
    Archive reader = Reread(archive);
    back.ReadFromArchive(reader);
    EXPECT_TRUE(tag.Equals(back));
}

TEST(SelectorTags, IdsThatNoReaderKnowsAreLoggedAndThrown) {
    for (const int id : {20011, 20009, 0, 10002}) {
        Testing::LogCapture log;
        Archive archive = ArchiveOf({9, 1, 1, id & 0xFF, id >> 8, 0, 0});
        std::shared_ptr<ISelectorTag> tag;
        EXPECT_EQ(ArchiveProblem([&] { readShared(archive, tag); }), "readDynamic ISelectorTag: Serialization ID not identified");
        EXPECT_EQ(log.Lines(), std::vector<std::string>{"E [readDynamic] Serialization ID = " + std::to_string(id) +
                                                        ", not identified. Failed to read selector tag value from archive."});
    }
    for (const int id : {10001, 20010}) {
        Testing::LogCapture log;
        Archive archive = ArchiveOf({9, 1, 1, id & 0xFF, id >> 8, 0, 0});
        std::shared_ptr<IAttrValue> value;
        EXPECT_EQ(ArchiveProblem([&] { readShared(archive, value); }), "readDynamic IAttrValue: Serialization ID not identified");
        EXPECT_EQ(log.Lines(), std::vector<std::string>{"E [readDynamic] Serialization ID = " + std::to_string(id) +
                                                        ", not identified. Failed to read dynamic attribute value from archive."});
    }
}

TEST(SelectorTags, IdOneIsAMismatchBeforeAnyObjectIsBuilt) {
    Archive first = ArchiveOf({9, 1, 1, 1, 0, 0, 0}), second = ArchiveOf({9, 1, 1, 1, 0, 0, 0});
    std::shared_ptr<ISelectorTag> tag = std::make_shared<AaTag>();
    std::shared_ptr<IAttrValue> value;
    EXPECT_EQ(ArchiveProblem([&] { readShared(first, tag); }), "Invalid type, dynamic type mismatch for shared_ptr!");
    EXPECT_EQ(ArchiveProblem([&] { readShared(second, value); }), "Invalid type, dynamic type mismatch for shared_ptr!");
    EXPECT_EQ(tag, nullptr);
}

TEST(SelectorTags, TwoThousandAndNineIsTheWebControl) {
    Archive archive = ArchiveOf({9, 1, 1, 0xD9, 0x07, 0, 0, 4, 0, 0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 0});
    std::shared_ptr<ISelectorTag> tag;
    readShared(archive, tag);
    ASSERT_NE(tag, nullptr);
    EXPECT_EQ(tag->GetTagKind(), TagKind::WebCtrl);
}

TEST(SelectorTags, ValuesKeepAllTheirSettings) {
    const auto value = std::make_shared<StringValue>(L"x*", MatchingTypeFuzzy, 0.25, false, false);
    AaTag tag;
    tag.SetAttribute(L"name", value);
    const auto back = RoundTrip(tag.Clone());
    const auto name = std::dynamic_pointer_cast<StringValue>(back->GetAttribute(L"name"));
    ASSERT_NE(name, nullptr);
    EXPECT_FALSE(name->GetEnabled());
    EXPECT_FALSE(name->GetCaseSensitive());
    EXPECT_EQ(name->GetMatchingType(), 3u);
    EXPECT_EQ(name->GetFuzzyLevel(), 0.25);
    EXPECT_EQ(name->GetValue(), L"x*");
}

TEST(SelectorTags, NamesOnTheWireThatATagDoesntKnowAreIgnored) {
    WebCtrlTag source;
    source.SetAttribute(L"nonsense", Text(L"x"));
    Archive archive;
    writeField(archive, source.GetDynamicAttributes());
    archive.write(true).write(true).write(true).write(true);
    AaTag tag;
    Archive reader = Reread(archive);
    tag.ReadFromArchive(reader);
    EXPECT_EQ(tag.GetAttributeCount(), 0u);
    EXPECT_TRUE(tag.GetTagFlagC());
}

TEST(WebCtrlTag, TakesNamesOfAnySortWithValuesOfAnyKind) {
    WebCtrlTag tag;
    tag.SetAttribute(L"tag", Text(L"DIV"));
    tag.SetAttribute(L"zeta", Number(1));
    tag.SetAttribute(L"alpha", Text(L"x"));
    tag.SetAttribute(L"Beta", std::make_shared<VariantValue>());
    tag.SetAttribute(L"idx", Text(L"x"));  // of the table, so the kind counts
    EXPECT_EQ(tag.GetAttributeCount(), 4u);
    EXPECT_EQ(tag.GetDynamicAttributeCount(), 3u);
    std::vector<CString> names;
    for (const auto& [name, value] : tag.GetDynamicAttributes()) names.push_back(name);
    EXPECT_EQ(names, (std::vector<CString>{L"Beta", L"alpha", L"zeta"}));
    EXPECT_EQ(tag.GetAttribute(L"zeta")->ToString(), L"1");
    tag.ClearAttribute(L"zeta");
    EXPECT_FALSE(tag.IsAttributeSet(L"zeta"));
    tag.SetAttribute(L"alpha", nullptr);
    EXPECT_EQ(tag.GetDynamicAttributeCount(), 1u);
}

TEST(WebCtrlTag, CreateAttributeBindsToTheName) {
    WebCtrlTag tag;
    const auto accessor = tag.CreateAttribute(L"class");
    ASSERT_NE(accessor, nullptr);
    EXPECT_EQ(accessor->GetKind(), 3u);
    accessor->AssignChecked(tag, Number(5));
    EXPECT_EQ(tag.GetAttribute(L"class")->ToString(), L"5");
    EXPECT_EQ(accessor->Clone()->GetValue(tag), tag.GetAttribute(L"class"));
    accessor->Clear(tag);
    EXPECT_FALSE(accessor->IsSet(tag));
}

TEST(WebCtrlTag, WritesItsOwnNamesBehindTheFlagsAndReadsBoth) {
    auto tag = std::make_shared<WebCtrlTag>();
    tag->SetAttribute(L"tag", Text(L"A"));
    tag->SetAttribute(L"href", Text(L"x"));
    tag->SetTagFlagA(true);
    Archive archive;
    tag->WriteToArchive(archive);
    const std::string bytes = PayloadText(archive);
    EXPECT_EQ(bytes.rfind("04 01 00 00 00 02 03 00 00 00 74 00 61 00 67 00 ", 0), 0u) << bytes;
    EXPECT_NE(bytes.find("01 01 00 00 04 01 00 00 00 02 04 00 00 00 68 00 72 00 65 00 66 00 "), std::string::npos) << bytes;
    EXPECT_TRUE(tag->Equals(*RoundTrip(tag)));
}

TEST(WebCtrlTag, EqualityAndCopiesCoverItsOwnNames) {
    WebCtrlTag a, b;
    a.SetAttribute(L"x", Text(L"1"));
    EXPECT_FALSE(a.Equals(b));
    b.SetAttribute(L"x", Text(L"1"));
    EXPECT_TRUE(a.Equals(b));
    b.SetAttribute(L"x", Text(L"2"));
    EXPECT_FALSE(a.Equals(b));
    EXPECT_TRUE(a.Equals(*a.Clone()));
    const auto copy = a.CloneAttributes();
    EXPECT_TRUE(a.Equals(*copy));
    EXPECT_NE(copy->GetAttribute(L"x"), a.GetAttribute(L"x"));
    auto fuzzy = Text(L"x");
    fuzzy->SetMatchingType(4);
    a.SetAttribute(L"y", fuzzy);
    EXPECT_TRUE(a.HasFuzzyAttributes());
}

TEST(AttributeNames, HoldTheirTextInBothForms) {
    EXPECT_EQ(AttributeNames::HelpText.Text(), L"helpText");
    EXPECT_STREQ(AttributeNames::HelpText.Bstr(), L"helpText");
    EXPECT_EQ(::SysStringLen(AttributeNames::HelpText.Bstr()), 8u);
    EXPECT_STREQ(AttributeNames::kRowIndex, L"__zorvex_row_index");
    EXPECT_STREQ(AttributeNames::kColumnIndex, L"__zorvex_col_index");
    EXPECT_STREQ(AttributeNames::kCssFilter, L"__zorvex_css_filter");
}

TEST(TagNames, StandInTheOrderOfTheKinds) {
    static_assert(std::size(kTagNames) == 13);
    EXPECT_STREQ(kTagNames[static_cast<int>(TagKind::Aa)].tag, L"ctrl");
    EXPECT_STREQ(kTagNames[static_cast<int>(TagKind::Aa)].technology, L"aa");
    EXPECT_STREQ(kTagNames[static_cast<int>(TagKind::SL)].tag, L"silverlight");
    EXPECT_STREQ(kTagNames[static_cast<int>(TagKind::Navigation)].technology, L"");
    EXPECT_STREQ(kTopPrefix, L"top:");
}

}  // namespace
}  // namespace Zorvex
