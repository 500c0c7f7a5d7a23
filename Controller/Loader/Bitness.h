// The word size of a process, and what follows from it for loading.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Controller/Loader/LoadProblem.h"

namespace Zorvex::Loader {

enum class Bitness { Unknown, Bits32, Bits64 };

// "32-bit", "64-bit", or "unknown".
const char* ToText(Bitness bitness);

// The word size of this program itself.
constexpr Bitness OwnBitness() { return sizeof(void*) == 8 ? Bitness::Bits64 : Bitness::Bits32; }

// File names of the libraries for targets of a word size; that of the host and that of the server.
const wchar_t* HostLibraryName(Bitness bitness);
const wchar_t* ServerLibraryName(Bitness bitness);

// From the machine numbers that IsWow64Process2 answers: `processMachine` is 0 for a process that isn't emulated.
// Foreign 64-bit machines (an ARM64 process that isn't emulated) are Unknown: none of the libraries fits them.
Bitness BitnessFromMachines(std::uint16_t processMachine, std::uint16_t nativeMachine);

// From IsWow64Process, where the newer call isn't there.
Bitness BitnessFromWow64(bool emulated, bool systemIs64Bit);

// Nothing if a controller of `own` can enter a target of `target`; else which library and controller to use. An
// unknown target may be tried: the system refuses what can't be.
std::optional<LoadFailure> CheckBitness(Bitness own, Bitness target);

}  // namespace Zorvex::Loader
