// Selectors and their values inside the JSON of a request: as text, or as objects that also hold what has no text form.
#pragma once

#include <memory>
#include <string>

#include "RuntimeCore/Selectors/Unified/SelectorEntry.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex::Controller {

// `json` points to a nlohmann::ordered_json; its header is too heavy for this one. `path` is what messages name. Both
// throw CommandFailure.
//
// A selector is a text; or {"selector": text, "tags": [...], "options": {...}, "inheritedScore": {...},
// "pendingAttributeCount": n}, where tags are texts of one tag, or
// {"kind": "ctrl", "attributes": {name: value}, "flagA", "limitsEveryLevel", "flagB", "flagC", "mode"}.
void ReadSelectorEntry(const void* json, Search::SelectorEntry& entry, const std::string& path);

// A value is a text or {"value": text, "matching": "normal"|"regex"|"fuzzy"|number, "level": 0.8, "caseSensitive": true,
// "enabled": true}. Null gives null.
std::shared_ptr<StringValue> ReadStringValue(const void* json, const std::string& path);

}  // namespace Zorvex::Controller
