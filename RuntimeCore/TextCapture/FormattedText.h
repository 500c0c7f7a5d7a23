// The line of text that one element gives.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"
#include "Common/UTILITY/WindowKinds.h"

namespace Zorvex {

// Appends the line of one element, if it gives one, ended by "\r\n" and indented by tabs where its role has levels, and
// its place to the context where that is asked for. `role` is the element's. `parseContext` is null for an element that
// was not reached by a walk. S_OK also where the element gives no line by the rules of its role; the code of the read
// where its text can't be had.
HRESULT AppendFormatedText(CaptureContext& context, IAccessible* acc, const VARIANT& child, LONG role, CString& outText, enAAType type,
                           const CaptureParseContext* parseContext);

}  // namespace Zorvex
