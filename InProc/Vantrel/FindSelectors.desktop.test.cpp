#include "InProc/Vantrel/FindSelectors.h"

#include <gtest/gtest.h>

#include <limits>

#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/Selectors/Unified/ElementNotFoundError.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Main", "rectangle": [0, 0, 400, 300], "objects": {"window": {
    "id": "root", "role": "window", "rectangle": [0, 0, 400, 300], "children": [
      {"id": "panel", "role": "pane", "name": "Panel", "rectangle": [0, 0, 200, 100], "children": [
        {"id": "ok", "role": "push button", "name": "OK", "rectangle": [10, 10, 50, 30]},
        {"id": "cancel", "role": "push button", "name": "Cancel", "rectangle": [70, 10, 50, 30]}]},
      {"id": "other", "role": "push button", "name": "Other", "window": "popup", "rectangle": [0, 200, 10, 10]}]}}},
  {"id": "popup", "class": "Popup"}]})";

std::shared_ptr<ISelectorTag> Tag(const wchar_t* role, const wchar_t* name = nullptr) {
    auto tag = std::make_shared<AaTag>();
    if (role) tag->SetAttribute(L"role", std::make_shared<StringValue>(role));
    if (name) tag->SetAttribute(L"name", std::make_shared<StringValue>(name));
    return tag;
}

Search::SelectorEntry Entry(std::vector<std::shared_ptr<ISelectorTag>> tags) {
    Search::SelectorEntry entry;
    entry.tags = std::move(tags);
    return entry;
}

class FindSelectorsTest : public testing::Test {
protected:
    FindSelectorsResponse Find(std::vector<Search::SelectorEntry> entries, std::uint32_t timeout = 5000) {
        FindSelectorsRequest request;
        request.root = root;
        request.selectors = std::move(entries);
        request.timeoutMilliseconds = timeout;
        request.sequence = sequence;
        return Call(request);
    }
    CString NameOf(const AAObjectIdentifier& identifier) {
        GetElemAttrRequest request;
        request.element = identifier;
        request.attributeName = L"name";
        const auto response = Call(request);
        return response.value.vt == VT_BSTR ? CString(response.value.bstrVal) : CString(L"?");
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
    CacheCleaner cleaner;
    AAObjectIdentifier root = [&] {
        GetObjectIdFromWindowRequest request;
        request.clientPid = kClientPid;
        request.window = desktop.Window("main");
        return Call(request).element;
    }();
    std::int64_t sequence = 0;
};

TEST_F(FindSelectorsTest, FoundElementComesBackAsAnIdentifierWithItsRectangle) {
    const auto response = Find({Entry({Tag(L"pane"), Tag(L"push button", L"Can*")})});
    ASSERT_TRUE(response.success);
    ASSERT_EQ(response.results.size(), 1u);
    ASSERT_EQ(response.results[0].results.size(), 1u);
    const auto& found = response.results[0].results[0];
    EXPECT_EQ(NameOf(found.identifier), L"Cancel");
    EXPECT_EQ(found.rectangle.left, 70);
    EXPECT_EQ(found.rectangle.bottom, 40);
    EXPECT_EQ(found.identifier.clientPid, kClientPid);
    EXPECT_EQ(found.identifier.originalWnd, root.originalWnd);
    EXPECT_EQ(found.score, 1.0);
    EXPECT_EQ(response.results[0].error, nullptr);
    EXPECT_TRUE(log.Contains("FindSelectorsImpl: start"));
}

TEST_F(FindSelectorsTest, IdsGoOnAboveTheClientsSequenceAndTheAnswerIsAboveAllOfThem) {
    sequence = 100;
    auto entry = Entry({Tag(L"push button")});
    entry.options.keepIntermediateAlways = true;
    const auto response = Find({std::move(entry)});
    ASSERT_FALSE(response.results[0].results.empty());
    for (const auto& found : response.results[0].results) {
        EXPECT_GT(found.id, 100);
        EXPECT_LT(found.id, response.sequence);
    }
}

TEST_F(FindSelectorsTest, LargestSequenceDoesNotOverflow) {
    sequence = std::numeric_limits<std::int64_t>::max();
    EXPECT_TRUE(Find({Entry({Tag(L"push button")})}).success);
}

TEST_F(FindSelectorsTest, EntryWithoutTagsHasAnEmptyUnboundedResultAndNoError) {
    const auto response = Find({Entry({})});
    ASSERT_EQ(response.results.size(), 1u);
    EXPECT_EQ(response.results[0].limit, 50'000'000u);
    EXPECT_TRUE(response.results[0].results.empty());
    EXPECT_EQ(response.results[0].error, nullptr);
    EXPECT_TRUE(response.results[0].intermediate.empty());
}

TEST_F(FindSelectorsTest, TagThatCanBeSentButNotReceivedLeavesTheRequestWithoutAResponse) {
    FindSelectorsRequest request;
    request.root = root;
    request.selectors = {Entry({std::make_shared<RdpAppTag>()})};
    EXPECT_FALSE(TryCall(request).has_value());
    EXPECT_TRUE(log.Contains("Serialization ID = 20011, not identified. Failed to read selector tag value from archive."));
    EXPECT_TRUE(log.Contains("Failed to dispatch request: readDynamic ISelectorTag: Serialization ID not identified"));
}

TEST_F(FindSelectorsTest, DeadWindowFailsTheRequest) {
    desktop.DestroyWindow("main");
    const auto response = Find({Entry({Tag(L"push button")})});
    EXPECT_FALSE(response.success);
    EXPECT_TRUE(response.results.empty());
    EXPECT_TRUE(log.Contains("Invalid input param"));
}

TEST_F(FindSelectorsTest, ContainerThatTheCacheDoesNotKnowFailsTheRequest) {
    root.containerId += 100000;
    EXPECT_FALSE(Find({Entry({Tag(L"push button")})}).success);
    EXPECT_TRUE(log.Contains("FindSelectorsImpl_: AccessibleObjectFromWindow failed"));
}

TEST_F(FindSelectorsTest, WindowIdentifierSearchesFromTheWindow) {
    root.containerId = 0;
    EXPECT_EQ(Find({Entry({Tag(L"push button", L"OK")})}).results[0].results.size(), 1u);
}

TEST_F(FindSelectorsTest, TwoEntriesAreAnsweredInTheirOrderByOneWalk) {
    Find({Entry({Tag(nullptr, L"Nobody")})});
    const int callsOfOneWalk = desktop.Calls("panel", "get_accChildCount");
    const auto response = Find({Entry({Tag(nullptr, L"Nobody")}), Entry({Tag(nullptr, L"OK")})});
    ASSERT_EQ(response.results.size(), 2u);
    EXPECT_TRUE(response.results[0].results.empty());
    ASSERT_NE(response.results[0].error, nullptr);
    EXPECT_EQ(response.results[0].error->GetErrorId(), 0);
    EXPECT_EQ(response.results[1].results.size(), 1u);
    EXPECT_EQ(response.results[1].error, nullptr);
    EXPECT_EQ(desktop.Calls("panel", "get_accChildCount"), 2 * callsOfOneWalk);
}

TEST_F(FindSelectorsTest, FoundElementWhoseWindowHasGoneIsDroppedWithoutAnError) {
    // The search renews the owner window at its end; the window dies as soon as that is done.
    desktop.AddFault("other", {.call = "accLocation", .actions = {{.kind = Simulated::Action::Kind::DestroyWindow, .target = "popup"}}});
    const auto response = Find({Entry({Tag(nullptr, L"Other")})});
    ASSERT_TRUE(response.success);
    EXPECT_TRUE(response.results[0].results.empty());
    EXPECT_EQ(response.results[0].error, nullptr);
}

TEST_F(FindSelectorsTest, NothingIsFoundInNoTime) {
    const auto response = Find({Entry({Tag(nullptr, L"OK")})}, 0);
    ASSERT_TRUE(response.success);
    EXPECT_NE(response.results[0].error, nullptr);
}

TEST_F(FindSelectorsTest, FoundElementCanBeTheRootOfTheNextSearch) {
    const auto first = Find({Entry({Tag(nullptr, L"Panel")})});
    root = first.results[0].results[0].identifier;
    sequence = first.sequence;
    const auto second = Find({Entry({Tag(L"push button")})});
    EXPECT_EQ(second.results[0].results.size(), 2u);
    EXPECT_GT(second.results[0].results[0].id, first.results[0].results[0].id);
}

TEST_F(FindSelectorsTest, IntermediateResultsComeWithTheirLimitOnWish) {
    auto entry = Entry({Tag(L"pane"), Tag(L"push button", L"OK")});
    entry.options.keepIntermediateAlways = true;
    const auto response = Find({std::move(entry)});
    ASSERT_EQ(response.results[0].intermediate.size(), 1u);
    ASSERT_EQ(response.results[0].intermediate[0].results.size(), 1u);
    EXPECT_EQ(NameOf(response.results[0].intermediate[0].results[0].identifier), L"Panel");
    EXPECT_EQ(response.results[0].results[0].parentId, response.results[0].intermediate[0].results[0].id);
}

}  // namespace
}  // namespace Zorvex::Testing
