// Late binding: objects that are asked for their properties by name.
#pragma once

#include <initializer_list>
#include <optional>

#include "Common/include/CComPtr.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::Automation {

// The object model behind a window. Null if it offers none.
CComPtr<IDispatch> GetNativeObject(HWND hWnd);

// All reads are made in the user's language. A failed one, one of the wrong type and one of a null object give null,
// nothing or false.
CComPtr<IDispatch> ReadObject(IDispatch* object, const wchar_t* name);
std::optional<LONG> ReadNumber(IDispatch* object, const wchar_t* name);
bool ReadText(IDispatch* object, const wchar_t* name, CString& out_text);

// One object of a collection, by its indexes in the order of the documentation; two at most.
CComPtr<IDispatch> ReadItem(IDispatch* object, std::initializer_list<LONG> indexes);

}  // namespace Zorvex::Automation
