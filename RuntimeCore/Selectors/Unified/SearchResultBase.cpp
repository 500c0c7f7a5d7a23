#include "RuntimeCore/Selectors/Unified/SearchResultBase.h"

#include "Common/include/Archive.h"
#include "RuntimeCore/Selectors/Unified/SearchResultSequence.h"

namespace Zorvex::Search {

SearchResultBase::SearchResultBase(double sample) : id(TakeSearchResultId()) {
    stats.Add(sample);
    score = stats.mean;
}

void SearchResultBase::WriteToArchive(Archive& archive) const {
    stats.WriteToArchive(archive);
    archive.write(id).write(parentId).write(score);
}

void SearchResultBase::ReadFromArchive(Archive& archive) {
    stats.ReadFromArchive(archive);
    archive.read(id).read(parentId).read(score);
}

void SearchResultBase::UpdateLocation(bool) {}
bool SearchResultBase::IsSelf() const { return true; }
bool SearchResultBase::IsVisible() const { return true; }
bool SearchResultBase::IsValid() const { return true; }

}  // namespace Zorvex::Search
