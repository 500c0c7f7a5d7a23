// The triggers of Chromium's and Firefox's windows.
#include <algorithm>
#include <iterator>

#include "Common/UTILITY/NProcess.h"
#include "Common/UTILITY/NWindows.h"
#include "Common/UTILITY/ProcessNames.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "RuntimeCore/Enablement/AATrigger.h"
#include "RuntimeCore/Enablement/WindowAccessible.h"
#include "RuntimeCore/IA2ToolsTrigger.h"

namespace Zorvex::N_AATrigger {

namespace {

// An application that is no browser and shows web content, or a web view inside another window.
bool IsEmbedded(HWND widget, const CString& process) {
    constexpr std::wstring_view browsers[] = {ProcessNames::Chrome, ProcessNames::Edge, ProcessNames::Brave, ProcessNames::Vivaldi};
    if (!widget) return false;
    if (!NWindows::IsTopLevelWindow(widget)) return true;
    return std::find(std::begin(browsers), std::end(browsers), std::wstring_view(process)) == std::end(browsers);
}

bool IsChromium(HWND hWnd, HWND widget) {
    // In lower case.
    const CString process = NProcess::GetWindowProcessName(hWnd);
    return IsEmbedded(widget, process) || (NWindows::IsChromiumWindow(hWnd) && process == ProcessNames::Chrome) ||
           process == ProcessNames::Edge;
}

}  // namespace

bool ChromiumTrigger(HWND hWnd, TriggeredWindows& memo) {
    const HWND widget = NWindows::IsChromiumWidget(hWnd);
    if (!IsChromium(hWnd, widget)) return false;
    if (!widget) {
        LogWarning("N_AATrigger::ChromiumTrigger Detected a Chromium internal window hWnd=0x%p, but cannot get Widget (Main) Window", hWnd);
        return true;
    }
    if (!AddIfNotTriggered(widget, memo)) {
        LogVerbose("N_AATrigger::ChromiumTrigger Accessibility was already triggered for this window. Skip hWndMain=0x%p", widget);
        return true;
    }
    const HRESULT result = IA2Tools::TriggerAccChromium(widget);
    LogVerbose("N_AATrigger::ChromiumTrigger executed trigger, hWnd=0x%p hWndMain=0x%p success=%d", hWnd, widget, SUCCEEDED(result) ? 1 : 0);
    return true;
}

bool FirefoxTrigger(HWND hWnd, TriggeredWindows& memo) {
    if (!NWindows::IsFirefoxWindow(hWnd)) return false;
    const HWND topLevel = NWindows::GetTopLevelWindow(hWnd);
    if (!topLevel || !NWindows::IsMozillaWindow(topLevel)) {
        LogWarning("N_AATrigger::FirefoxTrigger Detected a Firefox window hWnd=0x%p, but cannot get TopLevel Firefox Window", hWnd);
        return true;
    }
    if (!AddIfNotTriggered(topLevel, memo)) {
        LogVerbose("N_AATrigger::FirefoxTrigger Accessibility was already triggered for this window. Skip hWndMain=0x%p", topLevel);
        return true;
    }
    CComPtr<IAccessible> object;
    if (SUCCEEDED(GetWindowAccessible(topLevel, object))) {
        CComBSTR name;
        const HRESULT result = object->get_accName(CComVariant(CHILDID_SELF), &name);
        LogVerbose("N_AATrigger::FirefoxTrigger IAccessible::get_accName() hResult=0x%x", result);
    }
    return true;
}

}  // namespace Zorvex::N_AATrigger
