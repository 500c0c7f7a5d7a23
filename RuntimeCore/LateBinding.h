// Late binding: members of an object that are known by name, with the result of each call.
//
//   CComPtr<IDispatch> body;
//   if (FAILED(LateBinding::GetDispatch(document, L"body", body))) ...
#pragma once

#include <initializer_list>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::LateBinding {

// A null object is E_POINTER everywhere, a name that the object doesn't know DISP_E_UNKNOWNNAME. Outputs are empty on
// failure.
HRESULT Get(IDispatch* object, const wchar_t* name, CComVariant& out_value);
HRESULT Put(IDispatch* object, const wchar_t* name, const CComVariant& value);
// At most four arguments, in the order of the documentation. `out_result` may be empty after success.
HRESULT Call(IDispatch* object, const wchar_t* name, std::initializer_list<CComVariant> arguments, CComVariant& out_result);

// A property, or the result of a call, of one type. Another type and a null object are E_FAIL.
HRESULT GetNumber(IDispatch* object, const wchar_t* name, LONG& out_number);
// A null text is empty.
HRESULT GetText(IDispatch* object, const wchar_t* name, CString& out_text);
HRESULT GetDispatch(IDispatch* object, const wchar_t* name, CComPtr<IDispatch>& out_object);
HRESULT CallForDispatch(IDispatch* object, const wchar_t* name, std::initializer_list<CComVariant> arguments, CComPtr<IDispatch>& out_object);
// One object of a collection, by its indexes: in some collections the item is a method, in others a property.
HRESULT GetItem(IDispatch* collection, std::initializer_list<CComVariant> indexes, CComPtr<IDispatch>& out_object);
HRESULT CallForNumber(IDispatch* object, const wchar_t* name, std::initializer_list<CComVariant> arguments, LONG& out_number);

}  // namespace Zorvex::LateBinding
