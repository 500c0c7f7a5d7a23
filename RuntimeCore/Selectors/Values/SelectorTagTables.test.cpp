// The tables by name, kind and member, and what tags owe to values that equal nothing.
#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex {
namespace {

// `members` names each member in order, an N behind those that are numbers, a hyphen for one without a name.
template <class Tag>
void ExpectTable(const wchar_t* members) {
    std::wistringstream words(members);
    std::wstring word;
    std::size_t position = 0, named = 0;
    for (; words >> word; ++position) {
        const bool isNumber = word.back() == L'N';
        if (isNumber) word.pop_back();
        if (word == L"-") continue;
        ++named;
        Tag tag;
        EXPECT_EQ(tag.GetAttributeKind(word), isNumber ? 1u : 0u) << position;
        const auto accessor = tag.CreateAttribute(word);
        ASSERT_NE(accessor, nullptr) << position;
        const auto value = accessor->CreateValue();
        EXPECT_EQ(value->GetSerializationId(), isNumber ? 10003u : 10002u) << position;
        tag.SetAttribute(word, value);
        EXPECT_EQ(tag.Member(position), value) << position;
    }
    EXPECT_EQ(Tag().GetAttributeFactories().size(), named);
    EXPECT_THROW(Tag().Member(position), std::out_of_range);
}

TEST(SelectorTagTables, OfWindows) {
    ExpectTable<WndTag>(
        L"app cls title aaname ctrlname ctrlid idxN tidN pidN - appid isremoteappN aastate sapClient sapLanguage sapProgram "
        L"sapScreenN sapSessionN sapSysName sapSysNumberN sapSysSessionId sapTransaction sapUser");
    ExpectTable<RdpTag>(L"app cls title aaname ctrlname ctrlid idxN tidN pidN - appid isremoteappN aastate");
    ExpectTable<RdpAppTag>(L"");
}

TEST(SelectorTagTables, OfAccessibleElements) {
    ExpectTable<AaTag>(L"role name automationid labeledby aastate virtualname text helpText rowName idxN");
    ExpectTable<UiAutoTag>(
        L"accelkey acskey automationid cls roleint helpText legacyAccHelp enabled kbfocus ispwd itemstatus itemtype role name pid "
        L"rtid tableRowN tableColN rowName colName idxN");
    ExpectTable<JavaTag>(
        L"name role virtualname rowName colName cls accessibleClass javastate idxN tableRowN tableColN hasTableAncestorN "
        L"backgroundColor foregroundColor");
}

TEST(SelectorTagTables, OfDocuments) {
    ExpectTable<HtmlTag>(L"url htmlwindowname mobiledata app title idxN pidN tidN gidN excludehwndN bsidN isremoteappN");
    ExpectTable<WebCtrlTag>(L"tag idxN");
    ExpectTable<NavigationTag>(L"upN nextN prevN");
}

TEST(SelectorTagTables, OfToolkits) {
    ExpectTable<SLTag>(L"role name text idxN");
    ExpectTable<SAPTag>(L"id leafid idxN tableRowN tableColN colName colTooltip relpath itemId text tooltip type");
    ExpectTable<QtTag>(L"name role tooltip idxN accessibleName statusTip text rawtext");
    ExpectTable<WpfTag>(
        L"type name uid header automationid content text tooltip dock source labeledby groupname orientation rowName colName "
        L"command ibcommand datastr autoItemType autoItemStatus autoId autoName autoHelpText colN rowN colspanN rowspanN bandN "
        L"bandindexN isexpandedN persistidN isThreeStateN idxN");
}

// Not-a-number as level makes a value unequal to itself.
TEST(SelectorTagTables, ATagEqualsItselfEvenWithAValueThatEqualsNothing) {
    const auto strange =
        std::make_shared<StringValue>(CString(L"x"), MatchingTypeFuzzy, std::numeric_limits<double>::quiet_NaN());
    AaTag plain;
    plain.SetAttribute(L"name", strange);
    EXPECT_TRUE(plain.Equals(plain));
    EXPECT_FALSE(plain.Equals(*plain.Clone()));
    WebCtrlTag dynamic;
    dynamic.SetAttribute(L"href", strange);
    EXPECT_TRUE(dynamic.Equals(dynamic));
    EXPECT_FALSE(dynamic.Equals(*dynamic.Clone()));
}

TEST(SelectorTagTables, BothCopiesKeepTheMode) {
    AaTag tag;
    tag.SetTagMode(7);
    EXPECT_EQ(tag.Clone()->GetTagMode(), 7u);
    EXPECT_EQ(tag.CloneAttributes()->GetTagMode(), 7u);
}

}  // namespace
}  // namespace Zorvex
