// Builds tags and attribute values from their serialisation ids.
#pragma once

#include <cstdint>
#include <memory>

#include "Common/include/ArchiveExtension.h"

namespace Zorvex {

class IAttrValue;
class ISelectorTag;

// Build the class of `id` and read its fields. An id that no reader knows is logged and thrown as ArchiveException;
// RdpAppTag's is one of them, on purpose: such a tag can be sent but not received.
void readDynamic(Archive& archive, std::uint32_t id, std::shared_ptr<ISelectorTag>& pointer);
void readDynamic(Archive& archive, std::uint32_t id, std::shared_ptr<IAttrValue>& pointer);

}  // namespace Zorvex
