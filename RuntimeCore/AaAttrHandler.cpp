#include "RuntimeCore/AaAttrHandler.h"

#include <utility>

#include "RuntimeCore/AttributeRules.h"

namespace Zorvex {

namespace {

using namespace AttributeRules;

constexpr IA2Use IA2UseOf(DWORD useIA2) { return useIA2 ? IA2Use::Read : IA2Use::Ignore; }

// Wraps a rule that asks nothing but the element.
AaAttrHandler::Handler OfElement(HRESULT (*rule)(IAccessible*, const VARIANT&, CString&)) {
    return [rule](HWND, IAccessible& accessible, CComVariant child, DWORD, CComBSTR& text) {
        CString value;
        const HRESULT result = rule(&accessible, child, value);
        text = CComBSTR(value);
        return result;
    };
}

HRESULT HandleAaState(HWND, IAccessible& accessible, CComVariant child, DWORD useIA2, CComBSTR& text) {
    CString value;
    const HRESULT result = ReadAaState(&accessible, child, IA2UseOf(useIA2), StateFailure::Silent, value);
    text = CComBSTR(value);
    return result;
}

HRESULT HandleText(HWND window, IAccessible& accessible, CComVariant child, DWORD useIA2, CComBSTR& text) {
    CString value;
    const HRESULT result = ReadText(window, &accessible, child, IA2UseOf(useIA2), value);
    text = CComBSTR(value);
    return result;
}

HRESULT HandleRowName(HWND window, IAccessible& accessible, CComVariant child, DWORD, CComBSTR& text) {
    CString value;
    const HRESULT result = ReadRowName(window, &accessible, child, value);
    text = CComBSTR(value);
    return result;
}

}  // namespace

bool AaAttrHandler::NameOrder::operator()(const CString& left, const CString& right) const {
    return ::VarBstrCmp(CComBSTR(left), CComBSTR(right), LOCALE_USER_DEFAULT, 0) == VARCMP_LT;
}

const AaAttrHandler& AaAttrHandler::Instance() {
    static const AaAttrHandler instance;
    return instance;
}

AaAttrHandler::AaAttrHandler() {
    Insert(L"automationid", OfElement(ReadAutomationId));
    Insert(L"labeledby", OfElement(ReadLabeledBy));
    Insert(L"name", OfElement(ReadName));
    Insert(L"role", OfElement(ReadRole));
    Insert(L"aastate", HandleAaState);
    Insert(L"virtualname", OfElement(ReadVirtualName));
    Insert(L"text", HandleText);
    Insert(L"helpText", OfElement(ReadHelpText));
    Insert(L"rowName", HandleRowName);
}

void AaAttrHandler::Insert(const wchar_t* name, Handler handler) { m_handlers.emplace(name, std::move(handler)); }

const AaAttrHandler::Handler* AaAttrHandler::Find(const CString& name) const {
    const auto found = m_handlers.find(name);
    return found == m_handlers.end() ? nullptr : &found->second;
}

}  // namespace Zorvex
