#include "Common/include/ArchiveExtension.h"

#include "Common/include/Log.h"

namespace Zorvex {

void writeDynamicObject(Archive& archive, const DynamicType* object) {
    if (!object) {
        LogError("writeDynamic: input is null");
        throw ArchiveException("writeDynamic: input is null");
    }
    archive.write(object->GetSerializationId());
    object->WriteToArchive(archive);
}

bool readDynamicHeader(Archive& archive, std::uint32_t& id) {
    bool present = false;
    archive.read(present);
    if (!present) return false;
    archive.read(id);
    // The id that a class without one would have.
    if (id == 1) throw ArchiveException("Invalid type, dynamic type mismatch for shared_ptr!");
    return true;
}

}  // namespace Zorvex
