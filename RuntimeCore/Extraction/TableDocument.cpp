#include "RuntimeCore/Extraction/TableDocument.h"

#include "Common/UTILITY/XmlDocument.h"
#include "Common/include/CComVariant.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "RuntimeCore/Extraction/XmlCharacters.h"

namespace Zorvex {

namespace {

constexpr const char* Extraction = "Vantrel::ExtractTableImpl";
constexpr const char* Creation = "Vantrel::CreateEmptyExtractResult";

// UTF-16 units of all names and texts of one document, with those of the tags around each of them.
constexpr std::size_t LargestDocument = std::size_t(1) << 26;
constexpr std::size_t ColumnTags = 32;

}  // namespace

const CComBSTR& GetEmptyExtractXml() {
    static const CComBSTR xml(L"<extract></extract>");
    return xml;
}

HRESULT CreateEmptyExtractResult(CComPtr<IXMLDOMDocument>& outXmlDoc, CComPtr<IXMLDOMElement>& outXmlDocRoot) {
    outXmlDoc.Release();
    outXmlDocRoot.Release();
    CComPtr<IXMLDOMDocument> xmlDoc;
    HRESULT result = N_COM::CreateXMLDocument(xmlDoc);
    if (FAILED(result)) return CallFailed("N_COM::CreateXMLDocument(outXmlDoc)", result, "%s: Failed to create the base XML document", Creation);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    result = xmlDoc->loadXML(GetEmptyExtractXml(), &loaded);
    if (FAILED(result) || !loaded) {
        CallFailed("outXmlDoc->loadXML(GetEmptyExtractXml(), &vbRet)", result, "%s: Cannot load XML document", Creation);
        return FailureOrEFail(result);
    }
    CComPtr<IXMLDOMElement> root;
    result = xmlDoc->get_documentElement(&root);
    if (FAILED(result) || !root) {
        CallFailed("outXmlDoc->get_documentElement(&outXmlDocRoot)", result, "%s: Cannot get root XML element", Creation);
        return FailureOrEFail(result);
    }
    outXmlDoc = std::move(xmlDoc);
    outXmlDocRoot = std::move(root);
    return S_OK;
}

HRESULT TableDocument::Create() {
    const HRESULT result = CreateEmptyExtractResult(m_xmlDoc, m_spRoot);
    if (FAILED(result))
        return CallFailed("CreateEmptyExtractResult(xmlDoc, spRoot)", result, "%s: Could not create the extract xml result", Extraction);
    return S_OK;
}

HRESULT TableDocument::BeginRow() {
    const HRESULT result = m_xmlDoc->createElement(CComBSTR(L"row"), &m_spRow);
    if (FAILED(result))
        return CallFailed("xmlDoc->createElement(CComBSTR(\"row\"), &spRow)", result, "%s: Cannot create xml row", Extraction);
    if (!m_spRow) return ExpectationNotMet("spRow", "%s: Cannot create xml row - result is null", Extraction);
    return S_OK;
}

HRESULT TableDocument::BeginColumn() {
    const HRESULT result = m_xmlDoc->createElement(CComBSTR(L"column"), &m_spCol);
    if (FAILED(result))
        return CallFailed("xmlDoc->createElement(CComBSTR(\"column\"), &spCol)", result, "%s: Cannot create xml column", Extraction);
    if (!m_spCol) return ExpectationNotMet("spCol", "%s: Cannot create xml column - result is null", Extraction);
    return S_OK;
}

HRESULT TableDocument::PutText(std::wstring_view text) {
    if (!HasRoom(text.size())) return E_FAIL;
    const HRESULT result = m_spCol->put_text(CComBSTR(TextForXml(text)));
    if (FAILED(result)) return CallFailed("spCol->put_text(bstrColTxt)", result, "%s: Cannot set column text", Extraction);
    return S_OK;
}

HRESULT TableDocument::EndColumn(std::wstring_view name) {
    if (!HasRoom(name.size() + ColumnTags)) return E_FAIL;
    HRESULT result = m_spCol->setAttribute(CComBSTR(L"name"), CComVariant(TextForXml(name)));
    if (FAILED(result))
        return CallFailed("spCol->setAttribute(CComBSTR(\"name\"), CComVariant(bstrColName))", result, "%s: Cannot set column name", Extraction);
    result = m_spRow->appendChild(m_spCol, nullptr);
    if (FAILED(result)) return CallFailed("spRow->appendChild(spCol, nullptr)", result, "%s: Cannot add XML column", Extraction);
    m_spCol.Release();
    return S_OK;
}

HRESULT TableDocument::EndRow() {
    const HRESULT result = m_spRoot->appendChild(m_spRow, nullptr);
    if (FAILED(result)) return CallFailed("spRoot->appendChild(spRow, nullptr)", result, "%s: Cannot add xml row", Extraction);
    m_spRow.Release();
    return S_OK;
}

HRESULT TableDocument::GetXml(CComBSTR& out_resultData) {
    const HRESULT result = m_xmlDoc->get_xml(&out_resultData);
    if (FAILED(result)) return CallFailed("xmlDoc->get_xml(&out_resultData)", result, "%s: Cannot get xml text", Extraction);
    if (out_resultData.IsEmpty()) return ExpectationNotMet("out_resultData.Length()", "%s: Cannot get xml text - empty", Extraction);
    return S_OK;
}

bool TableDocument::HasRoom(std::size_t units) {
    m_units += units;
    if (m_units <= LargestDocument) return true;
    LogError("%s: The table is too large", Extraction);
    return false;
}

}  // namespace Zorvex
