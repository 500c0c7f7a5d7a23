// Identifiers as one token that a person can copy from one command to the next:
//
//   window:container:child:dom:client:original     0x10102:3:0:0:1:0x10102
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "RuntimeCore/Requests/AAObjectIdentifier.h"

namespace Zorvex::Controller {

std::string IdentifierText(const AAObjectIdentifier& identifier);
// Nothing if the text isn't six numbers with colons between them, each decimal or with 0x.
std::optional<AAObjectIdentifier> ReadIdentifier(std::wstring_view text);
// A window's handle: a number, as `windows` lists it, with 0x in front or decimal.
std::optional<HWND> ReadHandle(std::wstring_view text);
// From the 32 bits that travel; natively the way a desktop's handles are made, on Windows the way the system extends them.
HWND HandleOf(std::uint32_t number);

}  // namespace Zorvex::Controller
