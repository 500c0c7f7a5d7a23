#include "Common/include/JsonSerializer/UnpackJson.h"

namespace Zorvex {

bool UnpackJson::Deserialize(const Value* value) const {
    if (!value || !value->IsDictionary()) return false;
    for (const Entry& entry : m_entries)
        if (!entry.serializer->Deserialize(value->Find(entry.key), entry.target)) return false;
    return true;
}

bool UnpackAnyJson::Deserialize(const Value* value) const {
    if (!value) return false;
    for (const Alternative& alternative : m_alternatives)
        if (alternative.serializer->Deserialize(value, alternative.target)) return true;
    return false;
}

}  // namespace Zorvex
