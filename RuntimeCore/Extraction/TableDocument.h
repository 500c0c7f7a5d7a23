// The XML document that a table is written into: a root "extract", in it a "row" for each row, in that a "column" for
// each cell.
#pragma once

#include <cstddef>
#include <string_view>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// The text of a document without rows, made once.
const CComBSTR& GetEmptyExtractXml();

// Makes such a document and gives its root element. Logs what failed; both stay null then.
HRESULT CreateEmptyExtractResult(CComPtr<IXMLDOMDocument>& outXmlDoc, CComPtr<IXMLDOMElement>& outXmlDocRoot);

// Fills a document row by row. Every failure is logged, and nothing can be added after it.
class TableDocument {
public:
    HRESULT Create();
    // Starts a row. It only becomes part of the document with EndRow; a row that isn't ended goes.
    HRESULT BeginRow();
    // A cell of the row: begun before its text is read, and part of the row with EndColumn. What XML can't hold is
    // replaced in text and name. E_FAIL too when the document has become larger than any table is: a target that names
    // its cells at will must not take all memory.
    HRESULT BeginColumn();
    HRESULT PutText(std::wstring_view text);
    HRESULT EndColumn(std::wstring_view name);
    HRESULT EndRow();
    // The text of the document, never empty on success.
    HRESULT GetXml(CComBSTR& out_resultData);

private:
    // Counts what is added. False, with a line in the log, when it is too much.
    bool HasRoom(std::size_t units);

    CComPtr<IXMLDOMDocument> m_xmlDoc;
    CComPtr<IXMLDOMElement> m_spRoot;
    CComPtr<IXMLDOMElement> m_spRow;
    CComPtr<IXMLDOMElement> m_spCol;
    std::size_t m_units = 0;
};

}  // namespace Zorvex
