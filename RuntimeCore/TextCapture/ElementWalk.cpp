#include "RuntimeCore/TextCapture/ElementWalk.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/Log.h"
#include "RuntimeCore/TextCapture/ElementReads.h"
#include "RuntimeCore/TextCapture/FilterRectangle.h"
#include "RuntimeCore/TextCapture/FormattedText.h"
#include "RuntimeCore/TextCapture/ListViewHeader.h"
#include "RuntimeCore/TextCapture/SafeName.h"

namespace Zorvex {

namespace {

// A walk that comes below this level ends. No program nests so deep; a ring does.
constexpr std::size_t DeepestLevel = 100'000;

// One object whose children are being visited. A stack of these stands in for the recursion, since the depth of the
// target's tree is no limit to rely on.
struct Level {
    std::vector<AAObjectWrapper> children;
    std::size_t next = 0;
    CaptureParseContext context;
};

class ElementWalk {
public:
    ElementWalk(CaptureContext& context, const RECT* prcFilter, CString& outText, std::span<const LONG> roles, enAAType type)
        : m_context(context), m_filter(prcFilter), m_text(outText), m_roles(roles), m_type(type) {}

    bool Run(IAccessible* root, CaptureParseContext parseContext) {
        if (!Enter(CComPtr<IAccessible>(root), std::move(parseContext))) return false;
        while (!m_levels.empty() && !m_ended) {
            Level& level = m_levels.back();
            if (level.next < level.children.size()) {
                Visit(level, level.next++);
                // A line that didn't fit ends the text.
                if (m_context.IsFull()) m_ended = true;
            } else {
                m_heldText -= HeldText(level.context);
                m_levels.pop_back();
                LogVerbose("ParseAccObjectAndGetText end");
            }
        }
        return !m_ended;
    }

private:
    // Starts on the children of an object. False if it is null or has no readable children.
    bool Enter(const CComPtr<IAccessible>& object, CaptureParseContext context) {
        LogVerbose("ParseAccObjectAndGetText start");
        if (!object.p) {
            LogError("ParseAccObjectAndGetText: !pObject");
            return false;
        }
        const CComVariant self(CHILDID_SELF);
        const LONG role = ReadAccRole(*object, self).role;
        if (role == ROLE_SYSTEM_MENUITEM && (ReadAccState(*object, self).value_or(0) & STATE_SYSTEM_UNAVAILABLE)) {
            LogVerbose("ParseAccObjectAndGetText: Ignore children for unavailable menu item.");
            return true;
        }
        CComBSTR name;
        GetSafeAccName(m_context, object, self, name);
        LogVerbose("bstrCrntParentName='%ls'", name.View());
        CComBSTR value;
        if (FAILED(object->get_accValue(self, &value))) value.Empty();
        SetParentTexts(context, role, name, value);
        context.parentRole = role;
        if (context.bIsWpf && (role == ROLE_SYSTEM_LIST || role == ROLE_SYSTEM_LISTITEM)) context.bInWpfRows = true;
        if (role == ROLE_SYSTEM_LIST) EnterList(*object, context);
        LogVerbose("ParseAccObjectAndGetText: bstrCrntParentValue='%ls'", value.View());

        Level level{{}, 0, std::move(context)};
        if (!AAObjectWrapper::GetChildren(object, level.children)) {
            LogError("ParseAccObjectAndGetText: !bRes");
            return false;
        }
        LogVerbose("ParseAccObjectAndGetText: nChildCount=%zu", level.children.size());
        if (!KeepsToLimits(level)) return true;
        m_levels.push_back(std::move(level));
        return true;
    }

    // The texts that children are compared with: those of an object that has given its own line.
    void SetParentTexts(CaptureParseContext& context, LONG role, const CComBSTR& name, const CComBSTR& value) const {
        const bool givesText = IsRole(role) && !(context.bInWpfRows && role == ROLE_SYSTEM_PUSHBUTTON);
        context.bstrCrntParentName = givesText ? name.ToString() : CString();
        context.bstrCrntParentValue = givesText ? value.ToString() : CString();
    }

    void EnterList(IAccessible& object, CaptureParseContext& context) {
        HWND hWnd = nullptr;
        if (FAILED(::WindowFromAccessibleObject(&object, &hWnd)) || !hWnd) return;
        if (context.listViewInfo && context.listViewInfo->hWnd == hWnd) return;
        if (!ShowsListViewColumns(hWnd) || NWindows::GetRealWindowClass(hWnd).find(L"SysListView32") == CString::npos) return;
        context.listViewInfo = GetSysListViewColumnInfo(hWnd);
        AppendListViewHeader(m_context, context.listViewInfo.get(), m_text);
    }

    // The elements and texts that the walk holds have an end, whatever the tree has.
    bool KeepsToLimits(const Level& level) {
        m_elements += level.children.size();
        m_heldText += HeldText(level.context);
        if (m_elements <= MostCapturedElements && m_heldText <= LongestCapturedText) return true;
        LogError("ParseAccObjectAndGetText: the walk ends after %zu elements", m_elements - level.children.size());
        m_ended = true;
        return false;
    }

    static std::size_t HeldText(const CaptureParseContext& context) {
        return context.bstrCrntParentName.size() + context.bstrCrntParentValue.size();
    }

    void Visit(Level& level, std::size_t index) {
        // Taken out of the list, so that the object goes as soon as it has been walked.
        const AAObjectWrapper child = std::move(level.children[index]);
        if (child.IsFullObject()) VisitObject(child, level.context, index);
        else VisitSimple(child, level.context, index);
    }

    void VisitObject(const AAObjectWrapper& child, const CaptureParseContext& context, std::size_t i) {
        LogVerbose("ParseAccObjectAndGetText: VT_DISPATCH branch, i=%d", static_cast<int>(i));
        const RoleRead read = ReadAccRole(*child.container, child.childId);
        const RectangleRelation ric = RectanglesIntersect(child.container, child.childId, m_filter);
        if (read.result != S_OK || ric == RectangleRelation::Apart) return;
        const LONG role = read.role;
        LogVerbose("ParseAccObjectAndGetText: child OK and rect intersection condition, varRole=%d, ric=%d", role, ric);
        if (IsRole(role) && ric != RectangleRelation::Encloses) {
            LogVerbose("ParseAccObjectAndGetText: IsRole OK");
            if (!m_context.m_bIgnoreHidden) {
                LogVerbose("ParseAccObjectAndGetText: NOT m_bIgnoreHidden call appendFormatedText");
            } else {
                LogVerbose("ParseAccObjectAndGetText: m_bIgnoreHidden");
                if (!IsShown(child)) return;
            }
            Append(child, role, context);
        }
        LogVerbose("ParseAccObjectAndGetText: After IsRole check");
        if (role == ROLE_SYSTEM_TITLEBAR || role == ROLE_SYSTEM_SCROLLBAR || role == ROLE_SYSTEM_TEXT) return;
        LogVerbose("IParseAccObjectAndGetText: sParrentValid(varRole)");
        bool bParseObj = true;
        if (m_context.m_bIgnoreHidden) {
            LogVerbose("ParseAccObjectAndGetText: IsParrentValid(varRole) m_bIgnoreHidden branch");
            bParseObj = IsShown(child);
            LogVerbose("ParseAccObjectAndGetText: bParseObj=%d", bParseObj);
        }
        if (!bParseObj) return;
        if (m_levels.size() >= DeepestLevel) {
            LogError("ParseAccObjectAndGetText: the walk ends below level %zu", DeepestLevel);
            m_ended = true;
            return;
        }
        LogVerbose("ParseAccObjectAndGetText: bParseObj branch, calling ParseAccObjectAndGetText for child i=%d", static_cast<int>(i));
        Enter(child.container, ForChild(context));
    }

    void VisitSimple(const AAObjectWrapper& child, const CaptureParseContext& context, std::size_t i) {
        LogVerbose("ParseAccObjectAndGetText: VT_I4 branch, i=%d", static_cast<int>(i));
        if (!child.IsValid()) return;
        const RoleRead read = ReadAccRole(*child.container, child.childId);
        if (read.result != S_OK || !IsRole(read.role)) return;
        // One that encloses the filter gives its line, unlike an object; on purpose.
        if (RectanglesIntersect(child.container, child.childId, m_filter) == RectangleRelation::Apart) return;
        LogVerbose("ParseAccObjectAndGetText: IsRole and rect OK, i=%d", static_cast<int>(i));
        if (m_context.m_bIgnoreHidden) {
            LogVerbose("ParseAccObjectAndGetText: m_bIgnoreHidden branch");
            if (!IsShown(child)) return;
            LogVerbose("ParseAccObjectAndGetText: state OK, calling AppendFormatedText");
        } else {
            LogVerbose("ParseAccObjectAndGetText: NOT m_bIgnoreHidden calling AppendFormatedText");
        }
        Append(child, read.role, context);
    }

    void Append(const AAObjectWrapper& element, LONG role, const CaptureParseContext& context) {
        // An element that can't be read gives no line, and its siblings go on.
        AppendFormatedText(m_context, element.container, element.childId, role, m_text, m_type, &context);
    }

    // What a level below starts from: all but the texts, which are those of the parent alone.
    static CaptureParseContext ForChild(const CaptureParseContext& context) {
        return {context.bIsWpf, context.bInWpfRows, context.parentRole, {}, {}, context.hWnd, context.listViewInfo};
    }

    // An unreadable state counts as hidden.
    static bool IsShown(const AAObjectWrapper& element) {
        const std::optional<LONG> state = ReadAccState(*element.container, element.childId);
        return state && !(*state & STATE_SYSTEM_INVISIBLE);
    }

    bool IsRole(LONG role) const { return std::find(m_roles.begin(), m_roles.end(), role) != m_roles.end(); }

    CaptureContext& m_context;
    const RECT* m_filter;
    CString& m_text;
    std::span<const LONG> m_roles;
    enAAType m_type;
    std::vector<Level> m_levels;
    std::size_t m_elements = 0;  // listed so far
    std::size_t m_heldText = 0;  // units of the parents' texts in m_levels
    bool m_ended = false;
};

}  // namespace

bool ParseAccObjectAndGetText(CaptureContext& context, IAccessible* acc, const RECT* prcFilter, CString& outText, std::span<const LONG> roles,
                              CaptureParseContext parseContext, enAAType type) {
    return ElementWalk(context, prcFilter, outText, roles, type).Run(acc, std::move(parseContext));
}

}  // namespace Zorvex
