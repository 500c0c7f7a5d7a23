// The one door to the platform. Everything above this folder includes only this header and writes plain
// Win32 and COM; the build decides which floor answers: the system's SDK, or the simulated desktop.
#pragma once

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// The order matters: the automation headers need windows.h first.
#include <ole2.h>
#include <oleauto.h>
#include <servprov.h>
#include <oleacc.h>
#include <uiautomationcore.h>
#include <commctrl.h>
#include <evntprov.h>
#include <knownfolders.h>
#include <msxml.h>
#include <shlobj.h>
#else
#include "Platform/Simulated/Sdk/Accessibility.h"
#include "Platform/Simulated/Sdk/AccessibleConstants.h"
#include "Platform/Simulated/Sdk/Automation.h"
#include "Platform/Simulated/Sdk/CommonControls.h"
#include "Platform/Simulated/Sdk/Com.h"
#include "Platform/Simulated/Sdk/System.h"
#include "Platform/Simulated/Sdk/Threads.h"
#include "Platform/Simulated/Sdk/Types.h"
#include "Platform/Simulated/Sdk/User.h"
#include "Platform/Simulated/Sdk/Xml.h"
#endif

#include "Platform/HtmlInterfaces.h"
#include "Platform/IAccessible2.h"
#include "Platform/InterfaceIds.h"
