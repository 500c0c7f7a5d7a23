#include "RuntimeCore/Selectors/Unified/AncestorChain.h"

#include <gtest/gtest.h>

#include <vector>

#include "RuntimeCore/Selectors/Unified/AcceptedParents.h"

namespace Zorvex::Search {
namespace {

std::vector<std::int64_t> Ids(const AncestorChain& chain) {
    std::vector<std::int64_t> ids;
    chain.ForEachFromNearest([&](std::int64_t id) {
        ids.push_back(id);
        return true;
    });
    return ids;
}

ScoreStatistics Scored(double mean) {
    ScoreStatistics stats;
    stats.Add(mean);
    return stats;
}

TEST(AncestorChain, IsWalkedFromTheNearestToTheFarthest) {
    const AncestorChain chain = AncestorChain().Extended(1).Extended(2).Extended(3);
    EXPECT_EQ(Ids(chain), (std::vector<std::int64_t>{3, 2, 1}));
    EXPECT_EQ(chain.NearestId(), 3);
    EXPECT_TRUE(AncestorChain().IsEmpty());
}

TEST(AncestorChain, SiblingsShareWhatTheyHaveInCommon) {
    const AncestorChain parent = AncestorChain().Extended(1);
    AncestorChain first = parent.Extended(2);
    const AncestorChain second = parent.Extended(3);
    first = second;
    EXPECT_EQ(Ids(first), (std::vector<std::int64_t>{3, 1}));
    EXPECT_EQ(Ids(parent), (std::vector<std::int64_t>{1}));
}

TEST(AncestorChain, AVeryDeepTreeIsReleasedWithoutRecursion) {
    AncestorChain chain;
    for (std::int64_t id = 0; id < 2'000'000; ++id) chain = chain.Extended(id);
    EXPECT_FALSE(chain.IsEmpty());
}

TEST(AcceptedParents, WithAnyDepthAGapInTheLineDoesNotMatter) {
    AcceptedParents parents;
    parents.Add(1, Scored(0.5));
    const AncestorChain chain = AncestorChain().Extended(1).Extended(2);
    EXPECT_TRUE(parents.HasParentAmong(chain, true));
    EXPECT_FALSE(parents.HasParentAmong(chain, false));
    EXPECT_FALSE(parents.HasParentAmong(AncestorChain(), true));
}

TEST(AcceptedParents, TheAnswerForOneParentIsNotGivenForAnother) {
    AcceptedParents parents;
    parents.Add(1, Scored(0.5));
    const AncestorChain below = AncestorChain().Extended(1).Extended(3);
    const AncestorChain beside = AncestorChain().Extended(2).Extended(4);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(parents.HasParentAmong(below, true));
        EXPECT_TRUE(parents.HasParentAmong(below, true));
        EXPECT_FALSE(parents.HasParentAmong(beside, true));
    }
}

TEST(AcceptedParents, OnATieTheNearestAncestorWins) {
    AcceptedParents parents;
    parents.Add(1, Scored(0.5));
    parents.Add(2, Scored(0.5));
    const AncestorChain chain = AncestorChain().Extended(1).Extended(2);
    EXPECT_EQ(parents.BestAmong(chain, true)->id, 2);
}

TEST(AcceptedParents, ABetterAncestorWinsHoweverFarItIs) {
    AcceptedParents parents;
    parents.Add(1, Scored(0.6));
    parents.Add(2, Scored(0.5));
    EXPECT_EQ(parents.BestAmong(AncestorChain().Extended(1).Extended(2), true)->id, 1);
}

TEST(AcceptedParents, AParentThatWasPushedOutIsStillAPlaceToLookBelowButHasNoScore) {
    AcceptedParents parents;
    parents.Add(1, Scored(0.5));
    parents.Forget(1);
    const AncestorChain chain = AncestorChain().Extended(1);
    EXPECT_TRUE(parents.HasParentAmong(chain, true));
    EXPECT_EQ(parents.BestAmong(chain, true), nullptr);
}

TEST(AcceptedParents, IdsMayComeInAnyOrder) {
    AcceptedParents parents;
    for (const std::int64_t id : {5, 1, 9, 3, -2}) parents.Add(id, Scored(1.0));
    for (const std::int64_t id : {5, 1, 9, 3, -2}) EXPECT_TRUE(parents.HasParentAmong(AncestorChain().Extended(id), false)) << id;
    EXPECT_FALSE(parents.HasParentAmong(AncestorChain().Extended(4), false));
}

}  // namespace
}  // namespace Zorvex::Search
