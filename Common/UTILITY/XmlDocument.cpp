#include "Common/UTILITY/XmlDocument.h"

#include <utility>

namespace Zorvex::N_COM {

HRESULT CreateXMLDocument(CComPtr<IXMLDOMDocument>& outXmlDoc) {
    outXmlDoc.Release();
    CLSID classId{};
    if (const HRESULT result = ::CLSIDFromProgID(L"Msxml2.DOMDocument.3.0", &classId); FAILED(result)) return result;
    CComPtr<IXMLDOMDocument> document;
    const HRESULT created = ::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IidOf<IXMLDOMDocument>(), reinterpret_cast<void**>(&document));
    if (FAILED(created)) return created;
    if (!document) return E_FAIL;
    if (const HRESULT result = document->put_resolveExternals(VARIANT_FALSE); FAILED(result)) return result;
    if (const HRESULT result = document->put_validateOnParse(VARIANT_FALSE); FAILED(result)) return result;
    outXmlDoc = std::move(document);
    return S_OK;
}

}  // namespace Zorvex::N_COM
