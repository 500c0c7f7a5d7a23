// A bounded list of search results, best score first.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "RuntimeCore/Selectors/Values/CompareDoubles.h"

namespace Zorvex::Search {

// Results are ranked by the mean of their whole chain; a tie goes to what is there already. They lie in blocks, so
// that a search which keeps 100,000 fuzzy candidates doesn't move half of them for each new one.
template <class Result>
class RankedResults {
public:
    struct InsertAnswer {
        bool inserted = false;
        std::optional<std::int64_t> pushedOut;  // the id of the result that had to make room
    };

    explicit RankedResults(std::uint32_t limit) : m_limit(limit) {}

    std::uint32_t Limit() const { return m_limit; }
    std::size_t Size() const { return m_size; }
    bool IsEmpty() const { return m_size == 0; }
    bool IsAtLimit() const { return m_size >= m_limit; }
    // Full, and nothing can displace what is there. A list that may hold nothing is saturated from the start.
    bool IsSaturated() const { return IsAtLimit() && (IsEmpty() || GreaterOrAlmostEqual(WorstMean(), 1.0)); }

    // Inserts a result of that mean if it is better than what is there or there is room. `make` is called for the
    // result only then.
    template <class Make>
    InsertAnswer Insert(double mean, Make&& make) {
        if (IsSaturated()) return {};
        if (IsEmpty()) {
            Append(make());
            return {true, std::nullopt};
        }
        if (GreaterOrAlmostEqual(WorstMean(), mean)) return AppendWithinLimit(std::forward<Make>(make));
        const auto block = std::find_if(m_blocks.begin(), m_blocks.end(),
                                        [&](const Block& candidate) { return DefinitelyGreater(mean, candidate.lowestMean); });
        // Only a mean that is not a number comes here: it is better than nothing and worse than nothing.
        if (block == m_blocks.end()) return AppendWithinLimit(std::forward<Make>(make));
        const auto place = std::find_if(block->results.begin(), block->results.end(),
                                        [&](const Result& worse) { return DefinitelyGreater(mean, worse.stats.mean); });
        InsertInto(block, place, make());
        if (m_size <= m_limit) return {true, std::nullopt};
        return {true, RemoveWorst()};
    }

    template <class Visit>
    void ForEach(Visit&& visit) {
        for (Block& block : m_blocks)
            for (Result& result : block.results) visit(result);
    }

    // Moves the results out, best first; the list is empty afterwards.
    std::vector<Result> Take() {
        std::vector<Result> all;
        if (m_blocks.size() == 1) all = std::move(m_blocks.front().results);
        else {
            all.reserve(m_size);
            for (Block& block : m_blocks)
                all.insert(all.end(), std::make_move_iterator(block.results.begin()), std::make_move_iterator(block.results.end()));
        }
        m_blocks.clear();
        m_size = 0;
        return all;
    }

private:
    static constexpr std::size_t kBlockCapacity = 64;

    // Never empty. A result lies before the first one that it is definitely better than; the lowest mean tells
    // whether a block holds such a one. Infinite means are left out: nothing is definitely better than them.
    struct Block {
        std::vector<Result> results;
        double lowestMean = std::numeric_limits<double>::infinity();

        void Note(double mean) {
            if (std::isfinite(mean)) lowestMean = std::min(lowestMean, mean);
        }
        void Recount() {
            lowestMean = std::numeric_limits<double>::infinity();
            for (const Result& result : results) Note(result.stats.mean);
        }
    };
    using BlockPlace = typename std::vector<Block>::iterator;
    using ResultPlace = typename std::vector<Result>::iterator;

    double WorstMean() const { return m_blocks.back().results.back().stats.mean; }

    template <class Make>
    InsertAnswer AppendWithinLimit(Make&& make) {
        if (IsAtLimit()) return {};
        Append(make());
        return {true, std::nullopt};
    }

    void Append(Result&& result) {
        if (m_blocks.empty() || m_blocks.back().results.size() >= kBlockCapacity) m_blocks.emplace_back();
        Block& block = m_blocks.back();
        block.Note(result.stats.mean);
        block.results.push_back(std::move(result));
        ++m_size;
    }

    void InsertInto(BlockPlace block, ResultPlace place, Result&& result) {
        block->Note(result.stats.mean);
        block->results.insert(place, std::move(result));
        ++m_size;
        if (block->results.size() <= kBlockCapacity) return;
        const auto middle = block->results.begin() + static_cast<std::ptrdiff_t>(block->results.size() / 2);
        Block lower;
        lower.results.assign(std::make_move_iterator(middle), std::make_move_iterator(block->results.end()));
        lower.Recount();
        block->results.erase(middle, block->results.end());
        block->Recount();
        m_blocks.insert(block + 1, std::move(lower));
    }

    std::int64_t RemoveWorst() {
        Block& block = m_blocks.back();
        const std::int64_t id = block.results.back().id;
        block.results.pop_back();
        --m_size;
        if (block.results.empty()) m_blocks.pop_back();
        else block.Recount();
        return id;
    }

    std::uint32_t m_limit;
    std::size_t m_size = 0;
    std::vector<Block> m_blocks;
};

}  // namespace Zorvex::Search
