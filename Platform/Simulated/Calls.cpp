#include "Platform/Simulated/Calls.h"

#include <array>
#include <stdexcept>
#include <string>

namespace Simulated {
namespace {

constexpr std::array<std::string_view, static_cast<std::size_t>(Call::Count)> Names = {
    "",
    "QueryInterface", "QueryService",
    "get_accParent", "get_accChildCount", "get_accChild", "get_accName", "get_accValue", "get_accDescription",
    "get_accRole", "get_accState", "get_accHelp", "get_accHelpTopic", "get_accKeyboardShortcut", "get_accFocus",
    "get_accSelection", "get_accDefaultAction", "accSelect", "accLocation", "accNavigate", "accHitTest",
    "accDoDefaultAction", "put_accName", "put_accValue",
    "role", "scrollTo", "scrollToPoint", "get_states", "get_uniqueID", "get_windowHandle", "get_indexInParent",
    "get_attributes", "otherOfIAccessible2",
    "get_nCharacters", "get_text", "get_characterExtents", "get_offsetAtPoint", "get_caretOffset",
    "otherOfIAccessibleText",
    "GetObjectForChild", "GetIAccessiblePair", "GetRuntimeId", "ConvertReturnedElement",
    "get_ProviderOptions", "GetPatternProvider", "GetPropertyValue", "get_HostRawElementProvider",
    "GetIdentityString",
    "Next",
    "AccessibleChildren", "WindowFromAccessibleObject", "AccessibleObjectFromWindow", "AccessibleObjectFromEvent",
    "IsWindow", "GetWindowRect", "GetClassName", "RealGetWindowClass", "GetWindowText", "GetWindowThreadProcessId",
    "EnumChildWindows", "SendMessage", "SetFocus"};
static_assert(Names.back() == "SetFocus", "every call has its name");

}  // namespace

std::string_view NameOf(Call call) { return Names[static_cast<std::size_t>(call)]; }

bool CallFromName(std::string_view name, Call& call) {
    for (std::size_t i = 1; i < Names.size(); ++i) {
        if (Names[i] != name) continue;
        call = static_cast<Call>(i);
        return true;
    }
    return false;
}

CallName::CallName(const char* name) {
    if (!CallFromName(name, call)) throw std::invalid_argument(std::string("no call is named ") + name);
}

unsigned CallCounts::Add(Call call) {
    ++m_total;
    for (Entry& entry : m_entries)
        if (entry.call == call) return ++entry.count;
    m_entries.push_back({call, 1});
    return 1;
}

unsigned CallCounts::Of(Call call) const {
    if (call == Call::Any) return m_total;
    for (const Entry& entry : m_entries)
        if (entry.call == call) return entry.count;
    return 0;
}

}  // namespace Simulated
