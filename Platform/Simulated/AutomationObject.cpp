#include "Platform/Simulated/AutomationObject.h"

#include <algorithm>
#include <string_view>

#include "Platform/Simulated/AccessibleElement.h"
#include "Platform/Simulated/Desktop.h"

namespace Simulated {
namespace {

wchar_t LowerLetter(wchar_t letter) { return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter + (L'a' - L'A')) : letter; }

bool SameName(std::wstring_view left, std::wstring_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](wchar_t a, wchar_t b) { return LowerLetter(a) == LowerLetter(b); });
}

}  // namespace

AutomationObject::AutomationObject(std::shared_ptr<Desktop> desktop, AutomationPtr data) : m_desktop(std::move(desktop)), m_data(std::move(data)) {
    m_desktop->CountReference(nullptr, 1);
}

HRESULT AutomationObject::QueryInterface(REFIID riid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualGUID(riid, IidOf<IUnknown>()) && !IsEqualGUID(riid, IidOf<IDispatch>())) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
}

ULONG AutomationObject::AddRef() {
    m_desktop->CountReference(nullptr, 1);
    return ++m_references;
}

ULONG AutomationObject::Release() {
    m_desktop->CountReference(nullptr, -1);
    const ULONG count = --m_references;
    if (count == 0) delete this;
    return count;
}

HRESULT AutomationObject::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT AutomationObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info) *info = nullptr;
    return DISP_E_BADINDEX;
}

HRESULT AutomationObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (!names || !ids || count == 0) return E_INVALIDARG;
    std::fill_n(ids, count, -1);
    // Names of arguments may follow; there are none here.
    for (std::size_t i = 0; i < m_data->properties.size(); ++i)
        if (SameName(m_data->properties[i].first, names[0])) ids[0] = static_cast<DISPID>(i + 1);
    return ids[0] == -1 || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT AutomationObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*, UINT*) {
    if (result) ::VariantInit(result);
    if (id < 1 || static_cast<std::size_t>(id) > m_data->properties.size() || !(flags & (DISPATCH_PROPERTYGET | DISPATCH_METHOD)))
        return DISP_E_MEMBERNOTFOUND;
    const AutomationValue* value = &m_data->properties[static_cast<std::size_t>(id) - 1].second;
    // The last argument stands first.
    for (UINT left = arguments ? arguments->cArgs : 0; left > 0; --left) {
        const auto* const list = std::get_if<std::vector<AutomationValue>>(&value->value);
        const VARIANT& index = arguments->rgvarg[left - 1];
        if (!list) return DISP_E_BADPARAMCOUNT;
        if (index.vt != VT_I4) return DISP_E_TYPEMISMATCH;
        if (index.lVal < 1 || static_cast<std::size_t>(index.lVal) > list->size()) return DISP_E_BADINDEX;
        value = &(*list)[static_cast<std::size_t>(index.lVal) - 1];
    }
    if (std::holds_alternative<std::vector<AutomationValue>>(value->value)) return DISP_E_BADPARAMCOUNT;
    if (const auto* const failure = std::get_if<AutomationFailure>(&value->value)) {
        if (failure->raise) throw ServerFailure();
        return failure->result;
    }
    if (!result) return S_OK;
    if (const bool* const flag = std::get_if<bool>(&value->value)) {
        result->vt = VT_BOOL;
        result->boolVal = *flag ? VARIANT_TRUE : VARIANT_FALSE;
    } else if (const LONG* const number = std::get_if<LONG>(&value->value)) {
        PutNumber(result, *number);
    } else if (const double* const fraction = std::get_if<double>(&value->value)) {
        result->vt = VT_R8;
        result->dblVal = *fraction;
    } else if (const std::wstring* const text = std::get_if<std::wstring>(&value->value)) {
        PutText(result, *text);
    } else if (const AutomationPtr* const object = std::get_if<AutomationPtr>(&value->value)) {
        PutObject(result, new AutomationObject(m_desktop, *object));
    }
    return S_OK;
}

}  // namespace Simulated
