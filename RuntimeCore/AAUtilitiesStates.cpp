#include "RuntimeCore/AAUtilitiesStates.h"

#include "Common/include/CComVariant.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "RuntimeCore/AAUtilitiesLocation.h"

namespace Zorvex::AAUtil {

namespace {

// More than a live queue holds. A window that never validates itself would otherwise keep the pump busy for ever.
constexpr int MaximumMessagesPerPump = 10'000;

void PumpMessages() {
    MSG message{};
    for (int count = 0; count < MaximumMessagesPerPump && ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++count) {
        // The request to quit is taken off the queue and not passed on: the wait goes on.
        if (message.message == WM_QUIT) return;
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
}

// Tells when an element has stopped moving.
class SteadyLocation {
public:
    // Takes the location of one round; true once it has been the same for LocationSteadyTime.
    bool Observe(const RECT& location) {
        const bool same = m_steadyTime != 0 && ::EqualRect(&location, &m_kept);
        if (same && m_steadyTime >= LocationSteadyTime) return true;
        if (!same) {
            m_kept = location;
            m_steadyTime = 0;
        }
        m_steadyTime += StatePollInterval;
        return false;
    }
    const RECT& Kept() const { return m_kept; }
    DWORD SteadyTime() const { return m_steadyTime; }

private:
    RECT m_kept{};
    DWORD m_steadyTime = 0;
};

}  // namespace

HRESULT HasAAState(IAccessible* pAA, const VARIANT& varChild, LONG lStateOn, LONG lStateOff, bool& out_bResult) {
    out_bResult = false;
    if (!pAA) return ParameterConditionNotMet("pAA", "IAccessible pointer is invalid");
    CComVariant varState;
    const HRESULT hResult = pAA->get_accState(varChild, &varState);
    if (FAILED(hResult) || varState.vt != VT_I4) {
        LogWarning("AAUtilities::HasState() IAccessible::get_accState() failed or state type is not VT_I4, hResult=x0x%x varState.vt=%d",
                   hResult, varState.vt);
        return FailureOrEFail(hResult);
    }
    out_bResult = (varState.lVal & lStateOn) == lStateOn && (varState.lVal & lStateOff) == 0;
    return S_OK;
}

HRESULT WaitForState(IAccessible* pAA, const VARIANT& varChild, LONG lStateOn, LONG lStateOff, bool& out_bResult) {
    SteadyLocation steady;
    DWORD elapsed = 0;
    for (;;) {
        PumpMessages();
        HRESULT result = HasAAState(pAA, varChild, lStateOn, lStateOff, out_bResult);
        if (FAILED(result)) return CallFailed("HasAAState(pAA, varChild, lStateOn, lStateOff, out_bResult)", result, "");
        if (out_bResult && !(lStateOff & STATE_SYSTEM_OFFSCREEN)) break;
        if (out_bResult) {
            // What scrolls into view has arrived only when it has stopped moving.
            RECT rcLocCrt{};
            result = GetAALocation(pAA, varChild, rcLocCrt);
            if (FAILED(result)) return CallFailed("GetAALocation(pAA, varChild, rcLocCrt)", result, "AA Object GetLocation failed");
            if (steady.Observe(rcLocCrt)) {
                const RECT& kept = steady.Kept();
                LogVerbose("element location is steady for %d ms at lt(%d, %d) br(%d, %d)", steady.SteadyTime(), kept.left, kept.top,
                           kept.right, kept.bottom);
                break;
            }
        }
        ::Sleep(StatePollInterval);
        elapsed += StatePollInterval;
        if (elapsed >= StateTimeout) {
            LogWarning("timeout exceeded %d ms, the object didn't reach the expected state, stateOn=0x%08x, stateOff=0x%08x",
                       StateTimeout, lStateOn, lStateOff);
            return S_FALSE;
        }
    }
    LogVerbose("element reached expected state after %d ms; stateOn=0x%08x stateOff=0x%08x", elapsed, lStateOn, lStateOff);
    return S_OK;
}

std::optional<bool> IsReadOnlyContainer(IAccessible* acc) {
    CComVariant state;
    if (FAILED(acc->get_accState(CComVariant(CHILDID_SELF), &state)) || state.vt != VT_I4) return std::nullopt;
    return (state.lVal & STATE_SYSTEM_READONLY) != 0;
}

bool IsDisabledElement(IAccessible* spAcc, const VARIANT& varChild) {
    if (!spAcc || varChild.vt != VT_I4) {
        LogError("AAUtil::IsDisabledElement: Invalid arguments");
        return false;
    }
    CComVariant state;
    if (FAILED(spAcc->get_accState(varChild, &state))) {
        LogError("IsDisabledElement: spAcc->get_accState failed!");
        return false;
    }
    if (state.vt != VT_I4) {
        LogError("IsDisabledElement: Invalid variant type!");
        return false;
    }
    return (state.lVal & STATE_SYSTEM_UNAVAILABLE) != 0;
}

}  // namespace Zorvex::AAUtil
