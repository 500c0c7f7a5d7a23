// Joins the texts of a page's elements to lines, by the place of the first character of each.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Lives for one capture. Members are open to tests.
class CTextCollectorHtml {
public:
    // Appends the element's text: behind a blank on the line so far, behind "\r\n" if it begins a new line or
    // `bLineForceNew` asks for one. An element without text gives nothing and leaves a wanted new line to the next.
    // Fails if the text can't be read or there is no room for it.
    HRESULT Append(IAccessible* spAccElem, bool bLineForceNew);

    // Tells whether the element begins a new line, and then takes the line's lower limit from its first character.
    // A place that can't be read is a failure, and changes nothing.
    HRESULT LineUpdate(IAccessible* spAccElem, bool& bLineChanged);

    CString m_strText;
    bool m_bLineForceNew = true;
    LONG m_nLineBootom = 0;  // screen pixels; spelled as in the log
};

}  // namespace Zorvex
