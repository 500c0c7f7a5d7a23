// Reads the attributes of an accessible element for the search.
#pragma once

#include "RuntimeCore/Selectors/Search/AaSearchResult.h"
#include "RuntimeCore/Selectors/Unified/AttributeAccessPolicy.h"

namespace Zorvex::Search {

class AaAttributeAccessPolicy final : public AttributeAccessPolicy {
public:
    // `element` is borrowed and must outlive the reader. Nothing is read yet.
    explicit AaAttributeAccessPolicy(const AaSearchResult& element) : m_element(element) {}

private:
    // What can't be read is empty. So is an attribute that no accessible element has; that is logged.
    CString GetValueImpl(std::wstring_view name) override;
    // No attribute is a number: logs, and answers -1.
    std::int64_t GetNumberValueImpl(std::wstring_view name) override;

    // The two attributes that are read by way of the window ask for it, once.
    void ResolveOwnerWindow();

    const AaSearchResult& m_element;
    OwnerWindow m_ownerWindow;  // null until needed
    bool m_isBrowserWindow = false;
};

}  // namespace Zorvex::Search
