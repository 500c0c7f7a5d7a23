// A scripted object model: what an application offers to automation, as a desktop file tells it.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Platform/Windows.h"

namespace Simulated {

class Desktop;
struct AutomationData;
using AutomationPtr = std::shared_ptr<const AutomationData>;

// The read answers this result.
struct AutomationFailure {
    HRESULT result = E_FAIL;
    bool raise = false;  // an exception leaves the call instead: ServerFailure
};

// A property. A list is one with indexes, which count from 1; lists in a list make it two indexes.
struct AutomationValue {
    std::variant<std::monostate, bool, LONG, double, std::wstring, AutomationPtr, std::vector<AutomationValue>, AutomationFailure> value;
};

struct AutomationData {
    std::vector<std::pair<std::wstring, AutomationValue>> properties;
};

// References count among those of the desktop. Each read of an object makes a new one.
class AutomationObject final : public IDispatch {
public:
    // Born with one reference.
    AutomationObject(std::shared_ptr<Desktop> desktop, AutomationPtr data);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    // Names without regard to the case of ASCII letters.
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argumentError) override;

private:
    ~AutomationObject() = default;

    const std::shared_ptr<Desktop> m_desktop;
    const AutomationPtr m_data;
    std::atomic<ULONG> m_references{1};
};

}  // namespace Simulated
