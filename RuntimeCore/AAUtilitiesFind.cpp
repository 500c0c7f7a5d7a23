#include "RuntimeCore/AAUtilitiesFind.h"

#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "Common/include/TreeWalker/TreeWalker.h"

namespace Zorvex::AAUtil {

AANode FindElementWithRole(HWND hWnd, LONG elementRole, LONG maxDepthToSearch) {
    LogVerbose("[FindElementWithRole] hWnd: %p, elementRole: %d, maxDepthToSearch: %d", hWnd, elementRole, maxDepthToSearch);
    CComPtr<IAccessible> root;
    const HRESULT hRes = ObjectFromWindow(hWnd, OBJID_WINDOW, root);
    if (FAILED(hRes) || !root) {
        LogError("[FindElementWithRole] Accessible from window failed, hRes=0x%X", hRes);
        return {};
    }
    LONG iteratedNodes = 0;
    LONG foundDepth = -1;
    const auto visit = [&](const AANode& node, unsigned depth) {
        // The walk is ended by a node that isn't kept.
        if (++iteratedNodes > MaximumSearchedElements) return AATreeWalker::Next::Stop;
        CComVariant role;
        if (FAILED(node.container->get_accRole(node.childId, &role)) || role.vt != VT_I4 || role.lVal != elementRole)
            return AATreeWalker::Next::Continue;
        foundDepth = static_cast<LONG>(depth);
        return AATreeWalker::Next::Stop;
    };
    AATreeWalker walker(AANode{root, CComVariant(CHILDID_SELF)});
    AANode found = walker.FindFirst(visit, static_cast<unsigned>(maxDepthToSearch), AATreeWalker::TraversalType::BreadthFirst);
    if (foundDepth < 0) {
        LogVerbose("[FindElementWithRole] Element not found; iteratedNodes: %d", iteratedNodes);
        return {};
    }
    LogVerbose("[FindElementWithRole] Found element at depth: %d, iteratedNodes: %d", foundDepth, iteratedNodes);
    return found;
}

}  // namespace Zorvex::AAUtil
