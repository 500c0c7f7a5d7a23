// Root of the classes that travel with a serialisation id, so that the reader can build the right one.
#pragma once

#include <cstdint>

namespace Zorvex {

class Archive;

class DynamicType {
public:
    virtual std::uint32_t GetSerializationId() const = 0;
    virtual ~DynamicType() = default;
    // The object's own fields, without the id.
    virtual void WriteToArchive(Archive& archive) const = 0;
    // Throws ArchiveException on malformed bytes; the object may then be partly filled.
    virtual void ReadFromArchive(Archive& archive) = 0;
};

}  // namespace Zorvex
