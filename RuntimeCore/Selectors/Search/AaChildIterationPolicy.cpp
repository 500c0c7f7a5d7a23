#include "RuntimeCore/Selectors/Search/AaChildIterationPolicy.h"

#include <utility>

#include "Common/include/Log.h"

namespace Zorvex::Search {

AaChildIterationPolicy::AaChildIterationPolicy(const AaContainer& parent) : m_ownerWindow(parent.ownerWindow) {
    if (!parent.accessible || !AAObjectWrapper::GetChildren(parent.accessible.p, m_children))
        LogError("AaChildIterationPolicy: AAObjectWrapper::GetChildren failed");
    m_ownerWindow.Renew(parent.accessible.p);
}

bool AaChildIterationPolicy::HasNext() {
    while (m_position < m_children.size() && !m_children[m_position].IsValid()) ++m_position;
    return m_position < m_children.size();
}

AaSearchResult AaChildIterationPolicy::Next() {
    AAObjectWrapper& child = m_children[m_position++];
    return AaSearchResult(std::move(child.container), std::move(child.childId), m_ownerWindow);
}

}  // namespace Zorvex::Search
