#include "InProc/Vantrel/EnablementRequests.h"

#include "Common/UTILITY/NWindows.h"
#include "RuntimeCore/AAUtilitiesLocation.h"
#include "RuntimeCore/Enablement/AABrowserDialog.h"
#include "RuntimeCore/Enablement/AABrowserMarkerTab.h"
#include "RuntimeCore/Enablement/AATrigger.h"
#include "RuntimeCore/IA2ToolsTrigger.h"

namespace Zorvex {

namespace {

constexpr wchar_t MarkerTabRole[] = L"page tab";

AANode FindDialog(HWND window) {
    if (NWindows::IsFirefoxWindow(window)) return FindFirefoxBrowserDialog(window);
    if (NWindows::IsChromiumWindow(window)) return FindChromiumBrowserDialog(window);
    return {};
}

}  // namespace

SuccessResponse Ia2TriggerChromiumImpl(const Ia2TriggerChromiumRequest& request) {
    return {SUCCEEDED(IA2Tools::TriggerAccChromium(request.window))};
}

SuccessResponse TriggerAccessibilityImpl(const TriggerAccessibilityRequest& request) {
    return {N_AATrigger::TriggerAccessibility(request.window, request.scope) != 0};
}

FindBrowserDialogResponse FindBrowserDialogImpl(const FindBrowserDialogRequest& request) {
    FindBrowserDialogResponse response;
    const AANode dialog = FindDialog(request.window);
    if (!dialog.IsValid()) return response;
    response.found = true;
    // A dialog whose place can't be read is there all the same.
    AAUtil::GetAALocation(dialog.container, dialog.childId, response.rectangle);
    return response;
}

ExtractWindowIdFromBrowserMarkerTabResponse ExtractWindowIdFromBrowserMarkerTabImpl(
    const ExtractWindowIdFromBrowserMarkerTabRequest& request) {
    ExtractWindowIdFromBrowserMarkerTabResponse response;
    for (const HWND window : request.windows) {
        // Each walk may be long: a window that is named twice is walked once.
        const auto [entry, isNew] = response.windowIds.try_emplace(window, NoWindowId);
        if (isNew && ::IsWindow(window)) entry->second = FindBrowserMarkerTab(window, MarkerTabRole);
    }
    return response;
}

}  // namespace Zorvex
