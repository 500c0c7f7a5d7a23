// The calls that the simulated desktop counts, and that a fault can meet, under the names of the published
// functions.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace Simulated {

enum class Call : std::uint8_t {
    Any,  // in a fault: every call
    QueryInterface, QueryService,
    AccParent, AccChildCount, AccChild, AccName, AccValue, AccDescription, AccRole, AccState, AccHelp, AccHelpTopic,
    AccKeyboardShortcut, AccFocus, AccSelection, AccDefaultAction, AccSelect, AccLocation, AccNavigate, AccHitTest,
    AccDoDefaultAction, PutAccName, PutAccValue,
    Ia2Role, Ia2ScrollTo, Ia2ScrollToPoint, Ia2States, Ia2UniqueId, Ia2WindowHandle, Ia2IndexInParent, Ia2Attributes,
    Ia2Other,
    TextCharacters, TextText, TextCharacterExtents, TextOffsetAtPoint, TextCaretOffset, TextOther,
    ObjectForChild, AccessiblePair, RuntimeId, ConvertReturnedElement,
    ProviderOptions, PatternProvider, PropertyValue, HostProvider,
    IdentityString,
    EnumNext,
    // Of windows.
    AccessibleChildren, WindowFromAccessibleObject, AccessibleObjectFromWindow, AccessibleObjectFromEvent, IsWindow,
    WindowRectangle, WindowClass, RealWindowClass, WindowText, WindowThreadProcessId, EnumChildWindows, WindowMessage,
    SetFocus,
    Count
};

// "get_accName", "SendMessage", ...; "" for Any.
std::string_view NameOf(Call call);
// False when there is no call of that name.
bool CallFromName(std::string_view name, Call& call);

// A call given by its name, so that a plan in C++ reads like one in a file. An unknown name throws
// std::invalid_argument: a plan that can never come true must not pass in silence.
struct CallName {
    CallName() = default;
    CallName(Call value) : call(value) {}
    CallName(const char* name);

    Call call = Call::Any;
};

// How often each call was made. Most elements see few kinds of calls, so a short list beats a table.
class CallCounts {
public:
    // Counts one call and answers its number, from 1.
    unsigned Add(Call call);
    unsigned Of(Call call) const;  // Any: all of them

private:
    struct Entry { Call call; unsigned count; };
    std::vector<Entry> m_entries;
    unsigned m_total = 0;
};

}  // namespace Simulated
