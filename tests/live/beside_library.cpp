// A library for the place beside the server: it counts, in the target's environment, how often it was started and
// stopped.
#include "Platform/Windows.h"

namespace {

void Count(const wchar_t* name) {
    wchar_t value[2] = L"0";
    GetEnvironmentVariableW(name, value, 2);
    ++value[0];
    SetEnvironmentVariableW(name, value);
}

}  // namespace

extern "C" __declspec(dllexport) void StartBeside() { Count(L"VANTREL_BESIDE_STARTED"); }
extern "C" __declspec(dllexport) void StopBeside() { Count(L"VANTREL_BESIDE_STOPPED"); }
