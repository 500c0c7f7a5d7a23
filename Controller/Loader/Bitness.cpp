#include "Controller/Loader/Bitness.h"

namespace Zorvex::Loader {

namespace {

constexpr std::uint16_t MachineUnknown = 0;
constexpr std::uint16_t MachineI386 = 0x014C;
constexpr std::uint16_t MachineAmd64 = 0x8664;

}  // namespace

const char* ToText(Bitness bitness) {
    switch (bitness) {
        case Bitness::Bits32: return "32-bit";
        case Bitness::Bits64: return "64-bit";
        case Bitness::Unknown: break;
    }
    return "unknown";
}

const wchar_t* HostLibraryName(Bitness bitness) {
    return bitness == Bitness::Bits32 ? L"vantrel_host.dll" : L"vantrel_host_x64.dll";
}

const wchar_t* ServerLibraryName(Bitness bitness) {
    return bitness == Bitness::Bits32 ? L"vantrel.dll" : L"vantrel_x64.dll";
}

Bitness BitnessFromMachines(std::uint16_t processMachine, std::uint16_t nativeMachine) {
    const std::uint16_t machine = processMachine == MachineUnknown ? nativeMachine : processMachine;
    switch (machine) {
        case MachineI386: return Bitness::Bits32;
        case MachineAmd64: return Bitness::Bits64;
        default: return Bitness::Unknown;
    }
}

Bitness BitnessFromWow64(bool emulated, bool systemIs64Bit) {
    return emulated || !systemIs64Bit ? Bitness::Bits32 : Bitness::Bits64;
}

std::optional<LoadFailure> CheckBitness(Bitness own, Bitness target) {
    if (target == Bitness::Unknown || own == Bitness::Unknown || own == target) return std::nullopt;
    const bool targetIs32 = target == Bitness::Bits32;
    std::string detail = std::string("the target is a ") + ToText(target) + " process and this controller is " +
                         ToText(own) + "; use the " + ToText(target) + " vantrel-ctl.exe, which loads " +
                         (targetIs32 ? "vantrel_host.dll and vantrel.dll" : "vantrel_host_x64.dll and vantrel_x64.dll");
    return LoadFailure{LoadProblem::WrongBitness, std::move(detail)};
}

}  // namespace Zorvex::Loader
