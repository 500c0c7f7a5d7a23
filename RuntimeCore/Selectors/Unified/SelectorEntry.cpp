#include "RuntimeCore/Selectors/Unified/SelectorEntry.h"

#include "Common/include/ArchiveExtension.h"
#include "RuntimeCore/Selectors/Values/ISelectorTag.h"
#include "RuntimeCore/Selectors/Values/ReadDynamic.h"

namespace Zorvex::Search {

void SelectorEntry::WriteToArchive(Archive& archive) const {
    writeVector(archive, tags);
    options.WriteToArchive(archive);
    inheritedScore.WriteToArchive(archive);
    archive.write(pendingAttributeCount);
}

void SelectorEntry::ReadFromArchive(Archive& archive) {
    readVector(archive, tags);
    options.ReadFromArchive(archive);
    inheritedScore.ReadFromArchive(archive);
    archive.read(pendingAttributeCount);
}

}  // namespace Zorvex::Search
