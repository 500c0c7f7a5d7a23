#include "RuntimeCore/TextCapture/SafeName.h"

#include "Common/UTILITY/NProcess.h"
#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "Platform/FaultGuard.h"

namespace Zorvex {

namespace {

constexpr DWORD VistaMajorVersion = 6;

// One read of a server that may fault. A fault counts as E_UNEXPECTED, which `faulted` tells from an answer.
struct GuardedRead {
    HRESULT result = E_UNEXPECTED;
    bool faulted = false;
};

template <class Read>
GuardedRead ReadGuarded(Read&& read) {
    GuardedRead outcome;
    HRESULT result = E_UNEXPECTED;
    outcome.faulted = !SurvivesCall([&] { result = read(); });
    if (outcome.faulted) LogError("Access violation");
    else outcome.result = result;
    return outcome;
}

// The same for a read that answers a variant. What a faulting server leaves in it is not to be trusted, not even to be
// cleared.
template <class Read>
GuardedRead ReadGuarded(CComVariant& answer, Read&& read) {
    VARIANT* const place = &answer;
    const GuardedRead outcome = ReadGuarded([&] { return read(place); });
    if (outcome.faulted) place->vt = VT_EMPTY;
    return outcome;
}

std::optional<DWORD> GetOsMajorVersionOnce() {
    static const std::optional<DWORD> version = [] {
        const std::optional<DWORD> read = GetOsMajorVersion();
        if (read && *read >= VistaMajorVersion) LogVerbose("Windows Vista or later");
        return read;
    }();
    return version;
}

}  // namespace

HRESULT GetSafeAccName(const CaptureContext& context, IAccessible* acc, const VARIANT& child, CComBSTR& outName) {
    outName.Empty();
    if (!acc || child.vt != VT_I4) return E_INVALIDARG;
    if (FilterOutIE8XPCrashes(context, acc, child)) return E_FAIL;
    BSTR name = nullptr;
    const GuardedRead read = ReadGuarded([&] { return acc->get_accName(child, &name); });
    // What a server leaves behind when it faults is no string to be trusted, not even to be freed.
    if (read.faulted) return E_FAIL;
    outName.Attach(name);
    if (FAILED(read.result)) outName.Empty();
    return read.result;
}

std::optional<DWORD> GetOsMajorVersion() {
    RTL_OSVERSIONINFOW version;
    if (!NProcess::GetOsVersion(version)) return std::nullopt;
    return static_cast<DWORD>(version.dwMajorVersion);
}

bool FilterOutIE8XPCrashes(const CaptureContext& context, IAccessible* acc, const VARIANT& child) {
    return FilterOutIE8XPCrashes(context, acc, child, GetOsMajorVersionOnce);
}

bool FilterOutIE8XPCrashes(const CaptureContext& context, IAccessible* acc, const VARIANT& child,
                           std::optional<DWORD> (*osMajorVersion)()) {
    if (!acc) {
        LogError("pAcc is NULL, filter it out");
        return true;
    }
    if (!context.m_bIsIETopFrame) {
        LogVerbose("Not in IE");
        return false;
    }
    const std::optional<DWORD> version = osMajorVersion();
    if (!version) {
        LogError("Cannot get OS version");
        return false;
    }
    if (*version >= VistaMajorVersion) {
        LogVerbose("Vista or later");
        return false;
    }
    if (child.vt != VT_I4) {
        LogVerbose("Invalid vIndex, don't filter out the object");
        return false;
    }
    CComVariant answer;
    GuardedRead read = ReadGuarded(answer, [&](VARIANT* place) { return acc->get_accRole(child, place); });
    if (read.faulted) return true;
    if (FAILED(read.result) || answer.vt != VT_I4) {
        LogVerbose("Cannot get the role");
        return false;
    }
    if (answer.lVal != ROLE_SYSTEM_PUSHBUTTON) {
        LogVerbose("Not a push button; don't ignore it");
        return false;
    }
    read = ReadGuarded(answer, [&](VARIANT* place) { return acc->get_accState(child, place); });
    if (read.faulted) return true;
    if (FAILED(read.result) || answer.vt != VT_I4) {
        LogVerbose("Cannot get the state");
        return false;
    }
    if (!(answer.lVal & STATE_SYSTEM_INVISIBLE)) {
        LogVerbose("State not invisible");
        return false;
    }
    HWND hWnd = nullptr;
    read = ReadGuarded([&] { return ::WindowFromAccessibleObject(acc, &hWnd); });
    if (read.faulted) return true;
    if (FAILED(read.result) || !hWnd) {
        LogVerbose("Cannot get hWnd");
        return false;
    }
    if (NWindows::GetRealWindowClass(hWnd) != L"ToolbarWindow32") {
        LogVerbose("Parent window is not a toolbar");
        return false;
    }
    return true;
}

}  // namespace Zorvex
