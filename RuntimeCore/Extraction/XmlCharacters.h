// What XML can hold. A document with anything else in it could be written, and nobody could read it again.
#pragma once

#include <string_view>

#include "Common/include/CString.h"

namespace Zorvex {

// The text with a replacement character (U+FFFD) in the place of each unit that XML has no way to write: control
// characters but tab, line feed and carriage return, halves of surrogate pairs, U+FFFE and U+FFFF.
CString TextForXml(std::wstring_view text);

}  // namespace Zorvex
