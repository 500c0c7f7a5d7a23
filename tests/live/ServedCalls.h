// What a served desktop can be asked about the calls that its objects met.
#pragma once

#include <string>

#include "Platform/Windows.h"

namespace Zorvex::Testing {

// Registered by this name; the word parameter is a global atom with the text "ELEMENT CALL", as "ok get_accName", or
// "WINDOW hooks": how often the window's object was asked for by event hooks inside the process.
inline constexpr wchar_t ServedCallsMessage[] = L"Vantrel served calls";

// -1 when there is no such element or call.
inline int ServedCalls(HWND window, const std::string& question) {
    const ATOM atom = ::GlobalAddAtomW(std::wstring(question.begin(), question.end()).c_str());
    const LRESULT count = ::SendMessageW(window, ::RegisterWindowMessageW(ServedCallsMessage), atom, 0);
    ::GlobalDeleteAtom(atom);
    return static_cast<int>(count);
}

}  // namespace Zorvex::Testing
