// The process-wide table from attribute name to the function that reads it.
#pragma once

#include <functional>
#include <map>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

class AaAttrHandler {
public:
    // Answers 0 with a text, 1 with an empty one, a negative result code on failure. `useIA2` is a bool.
    using Handler = std::function<HRESULT(HWND window, IAccessible& accessible, CComVariant child, DWORD useIA2, CComBSTR& text)>;
    // Names are told apart by VarBstrCmp in the user's locale: case counts.
    struct NameOrder {
        bool operator()(const CString& left, const CString& right) const;
    };
    using HandlerMap = std::map<CString, Handler, NameOrder>;

    static const AaAttrHandler& Instance();

    // The nine handlers, in name order.
    const HandlerMap& Handlers() const { return m_handlers; }
    // Null for a name that has none.
    const Handler* Find(const CString& name) const;

private:
    AaAttrHandler();
    void Insert(const wchar_t* name, Handler handler);

    HandlerMap m_handlers;
};

}  // namespace Zorvex
