#include "RuntimeCore/Requests/AaCrossProcessSearchResult.h"

#include <gtest/gtest.h>

#include "RuntimeCore/Selectors/Unified/ElementNotFoundError.h"
#include "RuntimeCore/Selectors/Unified/SearchResultSequence.h"
#include "tests/Support/ArchiveBytes.h"

namespace Zorvex::Search {
namespace {

using Testing::PayloadText;
using Testing::Reread;

AaCrossProcessSearchResult Found() {
    SearchResultBase base;
    base.id = 5;
    base.parentId = 4;
    base.score = 0.5;
    AAObjectIdentifier identifier;
    identifier.hWnd = reinterpret_cast<HWND>(static_cast<std::intptr_t>(0x10010));
    identifier.containerId = 6;
    identifier.childId = 7;
    identifier.clientPid = 8;
    return AaCrossProcessSearchResult(base, identifier, RECT{1, 2, 3, 4});
}

TEST(AaCrossProcessSearchResult, TakesOverTheIdWithoutUsingOneUp) {
    SetSearchResultSequence(50);
    const AaCrossProcessSearchResult found = Found();
    EXPECT_EQ(found.id, 5);
    EXPECT_EQ(found.parentId, 4);
    EXPECT_EQ(GetSearchResultSequence(), 51);
}

TEST(AaCrossProcessSearchResult, BaseFieldsThenIdentifierThenRectangleTravel) {
    Archive archive;
    Found().WriteToArchive(archive);
    EXPECT_EQ(archive.buffer().size(), 4 + AaCrossProcessSearchResult::kMinimumWireSize);
    EXPECT_EQ(PayloadText(archive),
              "00 00 00 00 00 00 f0 3f 00 00 00 00 00 00 f0 3f 00 00 00 00 00 00 f0 3f 00 00 00 00 00 00 f0 3f 01 01 00 00 00 "
              "06 05 00 00 00 00 00 00 00 06 04 00 00 00 00 00 00 00 00 00 00 00 00 00 e0 3f "
              "01 10 00 01 00 01 06 00 00 00 01 07 00 00 00 01 00 00 00 00 01 08 00 00 00 01 00 00 00 00 "
              "01 01 00 00 00 01 02 00 00 00 01 03 00 00 00 01 04 00 00 00");
    Archive reader = Reread(archive);
    AaCrossProcessSearchResult back;
    back.ReadFromArchive(reader);
    EXPECT_EQ(back.identifier, Found().identifier);
    EXPECT_EQ(back.rectangle.bottom, 4);
    EXPECT_EQ(back.id, 5);
}

TEST(AaCrossProcessSearchResult, IsSelfWhenTheChildIdIsZero) {
    AaCrossProcessSearchResult found = Found();
    EXPECT_FALSE(found.IsSelf());
    found.identifier.childId = 0;
    EXPECT_TRUE(found.IsSelf());
}

TEST(AaCrossProcessSearchResult, IsNotValidWithoutAWindow) { EXPECT_FALSE(Found().IsValid()); }

TEST(SelectorResult, ResultsErrorAndIntermediateSetsTravelInThisOrder) {
    CrossProcessSelectorResult result;
    result.limit = 2;
    result.error = std::make_unique<ElementNotFoundError>();
    result.intermediate.resize(1);
    result.intermediate[0].limit = 3;
    Archive archive;
    result.WriteToArchive(archive);
    EXPECT_EQ(PayloadText(archive),
              "01 02 00 00 00 03 00 00 00 00 01 01 00 00 00 00 02 00 00 00 00 02 00 00 00 00 02 00 00 00 00 00 00 "
              "03 01 00 00 00 01 03 00 00 00 03 00 00 00 00");
    result.results.push_back(Found());
    result.intermediate[0].results.push_back(Found());
    Archive full;
    result.WriteToArchive(full);
    Archive reader = Reread(full);
    CrossProcessSelectorResult back;
    back.ReadFromArchive(reader);
    EXPECT_EQ(reader.remaining(), 0u);
    EXPECT_EQ(back.limit, 2u);
    ASSERT_EQ(back.results.size(), 1u);
    EXPECT_EQ(back.results[0].id, 5);
    ASSERT_NE(back.error, nullptr);
    ASSERT_EQ(back.intermediate.size(), 1u);
    EXPECT_EQ(back.intermediate[0].limit, 3u);
    EXPECT_EQ(back.intermediate[0].results.size(), 1u);
    EXPECT_EQ(back.reserved, -1);
}

TEST(SelectorResult, ANewOneHasNoLimitAndNoError) {
    const CrossProcessSelectorResult result;
    EXPECT_EQ(result.limit, 50'000'000u);
    EXPECT_EQ(result.error, nullptr);
    EXPECT_EQ(result.reserved, -1);
    Archive archive;
    result.WriteToArchive(archive);
    EXPECT_EQ(archive.buffer().size(), 4 + CrossProcessSelectorResult::kMinimumWireSize);
}

}  // namespace
}  // namespace Zorvex::Search
