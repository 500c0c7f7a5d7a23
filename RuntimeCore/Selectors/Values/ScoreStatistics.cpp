#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"

#include <algorithm>

#include "Common/include/Archive.h"

namespace Zorvex {

void ScoreStatistics::Add(double score) {
    ++count;
    max = std::max(max, score);
    min = std::min(min, score);
    sum += score;
    mean = sum / count;
}

void ScoreStatistics::Merge(const ScoreStatistics& other) {
    if (other.count != 0) {
        count += other.count;
        max = std::max(max, other.mean);
        min = std::min(min, other.mean);
        sum += other.count * other.mean;
        // Counts come from the wire too, and two of them may add up to 0 in 32 bits; the mean then stays.
        if (count != 0) mean = sum / count;
    }
    max = std::max(max, other.max);
    min = std::min(min, other.min);
}

void ScoreStatistics::WriteToArchive(Archive& archive) const {
    archive.write(max).write(min).write(mean).write(sum).write(count);
}

void ScoreStatistics::ReadFromArchive(Archive& archive) {
    archive.read(max).read(min).read(mean).read(sum).read(count);
}

}  // namespace Zorvex
