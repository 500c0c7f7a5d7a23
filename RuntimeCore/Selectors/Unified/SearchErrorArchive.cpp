// A search error on the wire. Unlike a shared pointer it carries no tag in front of its present byte.
#include "Common/include/Archive.h"
#include "RuntimeCore/Selectors/Unified/ElementNotFoundError.h"
#include "RuntimeCore/Selectors/Unified/ISearchErrorBase.h"

namespace Zorvex::Search {

void WriteSearchError(Archive& archive, const ISearchErrorBase* error) {
    archive.write(error != nullptr);
    if (!error) return;
    archive.write(error->GetErrorId());
    error->WriteToArchive(archive);
}

std::unique_ptr<ISearchErrorBase> ReadSearchError(Archive& archive) {
    bool present = false;
    archive.read(present);
    if (!present) return nullptr;
    std::int32_t errorId = 0;
    archive.read(errorId);
    if (errorId != ElementNotFoundError::kErrorId) throw ArchiveException("Invalid search error id");
    auto error = std::make_unique<ElementNotFoundError>();
    error->ReadFromArchive(archive);
    return error;
}

}  // namespace Zorvex::Search
