// What a test may set, and see, of the simulated XML documents. Native builds only. Everything here may be called from
// any thread.
#pragma once

#include <optional>
#include <string>

#include "Platform/Windows.h"

namespace Simulated {

// Meets the `at`-th call of its name from now: "CLSIDFromProgID", "CoCreateInstance", or a function of a document or
// element such as "createElement". Empty: of any name. Later calls work again.
struct XmlFault {
    std::string call = {};
    unsigned at = 1;
    // What the call answers, with empty out values and nothing done. Without it the call is a success that gives nothing:
    // null objects and texts, a document that wasn't loaded.
    std::optional<HRESULT> result = {};
};
void AddXmlFault(XmlFault fault);
void ClearXmlFaults();

// All of these calls, and those of one name, since ClearXmlFaults.
unsigned XmlCalls();
unsigned XmlCalls(const std::string& call);
// References to documents and elements that are held.
long XmlReferences();

// The class behind "Msxml2.DOMDocument.3.0": answers REGDB_E_CLASSNOTREG for any other.
HRESULT CreateXmlDocument(REFCLSID classId, REFIID riid, void** object);
HRESULT XmlClassFromProgId(const wchar_t* programId, CLSID* classId);

}  // namespace Simulated
