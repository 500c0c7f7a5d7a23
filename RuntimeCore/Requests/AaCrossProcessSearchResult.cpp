#include "RuntimeCore/Requests/AaCrossProcessSearchResult.h"

#include "Common/include/ArchiveExtension.h"

namespace Zorvex::Search {

void AaCrossProcessSearchResult::WriteToArchive(Archive& archive) const {
    SearchResultBase::WriteToArchive(archive);
    writeField(archive, identifier);
    writeField(archive, rectangle);
}

void AaCrossProcessSearchResult::ReadFromArchive(Archive& archive) {
    SearchResultBase::ReadFromArchive(archive);
    readField(archive, identifier);
    readField(archive, rectangle);
}

bool AaCrossProcessSearchResult::IsValid() const { return ::IsWindow(identifier.hWnd) && identifier.containerId != 0; }

}  // namespace Zorvex::Search
