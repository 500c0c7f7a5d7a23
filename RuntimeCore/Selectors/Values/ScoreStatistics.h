// Running statistics of match scores, kept by the search for each element and fed by the matchers.
#pragma once

#include <cstdint>
#include <limits>

namespace Zorvex {

class Archive;

struct ScoreStatistics {
    double mean = 0.0;
    std::uint32_t count = 0;
    double max = 0.0;
    // A fresh record holds the largest finite double, so that any score lowers it.
    double min = std::numeric_limits<double>::max();
    double sum = 0.0;

    void Add(double score);

    // Takes in `other` as `other.count` scores of `other.mean`. Its own sum isn't looked at, on purpose: a record
    // whose mean was set by hand still merges by it.
    void Merge(const ScoreStatistics& other);

    // Order on the wire: max, min, mean, sum, then count; not the order of the fields.
    void WriteToArchive(Archive& archive) const;
    void ReadFromArchive(Archive& archive);
};

}  // namespace Zorvex
