#include "Common/UTILITY/NCOM.h"

#include "Common/include/CComVariant.h"

namespace Zorvex::N_COM {

namespace {

// Mixed and indeterminate are one bit, which stands here twice on purpose: a mixed element reports that text twice.
// The highest bit has no text and no entry.
constexpr LONG Masks[] = {
    STATE_SYSTEM_UNAVAILABLE, STATE_SYSTEM_SELECTED, STATE_SYSTEM_FOCUSED, STATE_SYSTEM_PRESSED,
    STATE_SYSTEM_CHECKED, STATE_SYSTEM_MIXED, STATE_SYSTEM_INDETERMINATE, STATE_SYSTEM_READONLY,
    STATE_SYSTEM_HOTTRACKED, STATE_SYSTEM_DEFAULT, STATE_SYSTEM_EXPANDED, STATE_SYSTEM_COLLAPSED,
    STATE_SYSTEM_BUSY, STATE_SYSTEM_FLOATING, STATE_SYSTEM_MARQUEED, STATE_SYSTEM_ANIMATED,
    STATE_SYSTEM_INVISIBLE, STATE_SYSTEM_OFFSCREEN, STATE_SYSTEM_SIZEABLE, STATE_SYSTEM_MOVEABLE,
    STATE_SYSTEM_SELFVOICING, STATE_SYSTEM_FOCUSABLE, STATE_SYSTEM_SELECTABLE, STATE_SYSTEM_LINKED,
    STATE_SYSTEM_TRAVERSED, STATE_SYSTEM_MULTISELECTABLE, STATE_SYSTEM_EXTSELECTABLE, STATE_SYSTEM_ALERT_LOW,
    STATE_SYSTEM_ALERT_MEDIUM, STATE_SYSTEM_ALERT_HIGH, STATE_SYSTEM_PROTECTED, STATE_SYSTEM_HASPOPUP};
static_assert(std::size(Masks) == 32);

constexpr UINT StateTextCapacity = 63;  // units, the closing NUL included

}  // namespace

std::span<const LONG> AAStateMasks() { return Masks; }

HRESULT GetAAStateAsText(IAccessible* acc, const VARIANT& child, CString& text) {
    text.clear();
    if (!acc || child.vt != VT_I4) return E_INVALIDARG;
    CComVariant state;
    if (const HRESULT result = acc->get_accState(child, &state); FAILED(result)) return result;
    if (state.vt != VT_I4) return E_FAIL;
    for (const LONG mask : Masks) {
        if (!(state.lVal & mask)) continue;
        wchar_t buffer[StateTextCapacity] = {};
        ::GetStateTextW(static_cast<DWORD>(mask), buffer, StateTextCapacity);
        if (!text.empty()) text += L", ";
        text += buffer;
    }
    return S_OK;
}

}  // namespace Zorvex::N_COM
