#include "RuntimeCore/Selectors/Search/AaSearchResult.h"

#include <utility>

#include "Common/include/Log.h"
#include "RuntimeCore/AAUtilitiesLocation.h"

namespace Zorvex::Search {

AaSearchResult::AaSearchResult(CComPtr<IAccessible> elementAccessible, CComVariant elementChild, OwnerWindow window, double sample)
    : SearchResultBase(sample), accessible(std::move(elementAccessible)), child(std::move(elementChild)), ownerWindow(window) {}

void AaSearchResult::UpdateLocation(bool withRectangle) {
    ownerWindow.Renew(accessible.p);
    if (!withRectangle) return;
    if (accessible && IsSelf()) {
        CComVariant state;
        const HRESULT result = accessible->get_accState(CComVariant(CHILDID_SELF), &state);
        if (FAILED(result) || state.vt != VT_I4 || (state.lVal & STATE_SYSTEM_OFFSCREEN) != 0) {
            LogError("AaSearchResult::UpdateLocation: Offscreen");
            return;
        }
    }
    RECT location{};
    if (SUCCEEDED(AAUtil::GetAALocation(accessible.p, child, location))) rectangle = location;
}

bool AaSearchResult::IsVisible() const {
    if (accessible) {
        CComVariant state;
        const HRESULT result = accessible->get_accState(child, &state);
        if (SUCCEEDED(result) && state.vt == VT_I4 && (state.lVal & (STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN)) != 0) {
            LogVerbose("AaSearchResult is invisible or offscreen");
            return false;
        }
    }
    RECT location{};
    const HRESULT result = AAUtil::GetAALocation(accessible.p, child, location);
    if (FAILED(result) || !::IsRectEmpty(&location)) return true;
    LogVerbose("AaSearchResult is not visible, hres=%x", result);
    return false;
}

}  // namespace Zorvex::Search
