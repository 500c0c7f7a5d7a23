// Requests that wake applications, and those about browser windows.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"
#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

// Success: the widget answered all that it was asked.
SuccessResponse Ia2TriggerChromiumImpl(const Ia2TriggerChromiumRequest& request);

// Success: an application was recognised, whether or not it woke.
SuccessResponse TriggerAccessibilityImpl(const TriggerAccessibilityRequest& request);

// The kind of browser goes by the window's class; a window of another class has no dialog.
FindBrowserDialogResponse FindBrowserDialogImpl(const FindBrowserDialogRequest& request);

ExtractWindowIdFromBrowserMarkerTabResponse ExtractWindowIdFromBrowserMarkerTabImpl(
    const ExtractWindowIdFromBrowserMarkerTabRequest& request);

}  // namespace Zorvex
