// XML documents by the system's own XML library.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex::N_COM {

// Makes an empty document that reads nothing from elsewhere: no validation, no external resources. Null on failure,
// never null on success. COM must be initialised on the thread.
HRESULT CreateXMLDocument(CComPtr<IXMLDOMDocument>& outXmlDoc);

}  // namespace Zorvex::N_COM
