// The window classes that the system knows by name, spelt in one place.
#pragma once

#include <string_view>

namespace Zorvex::WindowClassNames {

// Browsers.
inline constexpr std::wstring_view ChromeWidgetPrefix = L"Chrome_WidgetWin_";
inline constexpr std::wstring_view ChromeRenderWidget = L"Chrome_RenderWidgetHostHWND";
inline constexpr std::wstring_view IntermediateSoftwareWindow = L"Intermediate Software Window";
inline constexpr std::wstring_view IntermediateD3DWindow = L"Intermediate D3D Window";
inline constexpr std::wstring_view MozillaWindow = L"MozillaWindowClass";
inline constexpr std::wstring_view MozillaCompositor = L"MozillaCompositorWindowClass";
inline constexpr std::wstring_view CefBrowser = L"CefBrowserWindow";
inline constexpr std::wstring_view IEServer = L"Internet Explorer_Server";

// Controls and frames.
inline constexpr std::wstring_view ListBox = L"ListBox";
inline constexpr std::wstring_view WindowsFormsListBoxPattern = L"WindowsForms*.LISTBOX*";
inline constexpr std::wstring_view WpfPrefix = L"HwndWrapper[";
inline constexpr std::wstring_view AppWindow = L"Windows.UI.Core.AppWindow";
inline constexpr std::wstring_view CoreWindow = L"Windows.UI.Core.CoreWindow";
inline constexpr std::wstring_view ApplicationFrame = L"ApplicationFrameWindow";
inline constexpr std::wstring_view Menu = L"#32768";
inline constexpr std::wstring_view Desktop = L"#32769";
inline constexpr std::wstring_view Dialog = L"#32770";

// Adobe Reader.
inline constexpr std::wstring_view AdobeView = L"AVL_AVView";
inline constexpr std::wstring_view AdobePageView = L"AVPageView";
inline constexpr std::wstring_view AdobeFrame = L"AcrobatSDIWindow";

// Clients of remote sessions. No rule of this program reads them.
inline constexpr std::wstring_view RemoteSessionClasses[] = {
    L"TscShellContainerClass", L"RAIL_WINDOW",  L"UIMainClass",
    L"UIContainerClass",       L"OPContainerClass", L"IHWindowClass",
    L"OPWindowClass",          L"Transparent Windows Client", L"TWI Common Owner Window",
    L"VMwareUnityHostWndClass", L"MKSEmbedded",
};

}  // namespace Zorvex::WindowClassNames
