// The processes that the system knows by their file name. Where case doesn't count, the comparison says so.
#pragma once

#include <string_view>

namespace Zorvex::ProcessNames {

inline constexpr std::wstring_view Chrome = L"chrome.exe";
inline constexpr std::wstring_view Brave = L"brave.exe";
inline constexpr std::wstring_view Edge = L"msedge.exe";
inline constexpr std::wstring_view Vivaldi = L"vivaldi.exe";
inline constexpr std::wstring_view Firefox = L"firefox.exe";
inline constexpr std::wstring_view InternetExplorer = L"iexplore.exe";
inline constexpr std::wstring_view Thunderbird = L"thunderbird.exe";
inline constexpr std::wstring_view ApplicationFrameHost = L"ApplicationFrameHost.exe";
inline constexpr std::wstring_view CustomBrowser = L"custom_browser";
inline constexpr std::wstring_view MobileDeviceInteraction = L"zorvex.mobileautomation.deviceinteraction.exe";
inline constexpr std::wstring_view ChromeNativeMessaging = L"ChromeNativeMessaging.exe";
inline constexpr std::wstring_view ChromeDriver = L"chromedriver.exe";
inline constexpr std::wstring_view EdgeDriver = L"msedgedriver.exe";

// Clients of remote sessions. No rule of this program reads them.
inline constexpr std::wstring_view RemoteSessionProcesses[] = {
    L"mstsc.exe", L"msrdc.exe", L"CDViewer.exe", L"wfica32.exe", L"vmware-view.exe", L"vmware-remotemks.exe",
};

}  // namespace Zorvex::ProcessNames
