#include "Platform/Simulated/PublishedNames.h"

#include <array>
#include <cstdint>
#include <string>

namespace Simulated {
namespace {

constexpr std::array<std::wstring_view, 65> Roles = {
    L"unknown object", L"title bar", L"menu bar", L"scroll bar", L"grip", L"sound", L"cursor", L"caret", L"alert",
    L"window", L"client", L"popup menu", L"menu item", L"tool tip", L"application", L"document", L"pane", L"chart",
    L"dialog", L"border", L"grouping", L"separator", L"tool bar", L"status bar", L"table", L"column header",
    L"row header", L"column", L"row", L"cell", L"link", L"help balloon", L"character", L"list", L"list item",
    L"outline", L"outline item", L"page tab", L"property page", L"indicator", L"graphic", L"text", L"editable text",
    L"push button", L"check box", L"radio button", L"combo box", L"drop down", L"progress bar", L"dial",
    L"hot key field", L"slider", L"spin box", L"diagram", L"animation", L"equation", L"drop down button",
    L"menu button", L"grid drop down button", L"white space", L"page tab list", L"clock", L"split button",
    L"IP address", L"outline button"};
static_assert(Roles.back() == L"outline button");

constexpr std::array<std::wstring_view, 31> States = {
    L"unavailable", L"selected", L"focused", L"pressed", L"checked", L"mixed", L"read only", L"hot tracked",
    L"default", L"expanded", L"collapsed", L"busy", L"floating", L"marqueed", L"animated", L"invisible",
    L"offscreen", L"sizeable", L"moveable", L"self voicing", L"focusable", L"selectable", L"linked", L"traversed",
    L"multi selectable", L"extended selectable", L"alert low", L"alert medium", L"alert high", L"protected",
    L"has popup"};
static_assert(States.back() == L"has popup");

struct Alias {
    std::string_view name;
    LONG number;
};
// The published constants where they differ from the texts, in the plain form.
constexpr Alias RoleAliases[] = {
    {"menupopup", ROLE_SYSTEM_MENUPOPUP}, {"statictext", ROLE_SYSTEM_STATICTEXT}, {"checkbutton", ROLE_SYSTEM_CHECKBUTTON},
    {"droplist", ROLE_SYSTEM_DROPLIST}, {"spinbutton", ROLE_SYSTEM_SPINBUTTON},
    {"buttondropdown", ROLE_SYSTEM_BUTTONDROPDOWN}, {"buttonmenu", ROLE_SYSTEM_BUTTONMENU},
    {"buttondropdowngrid", ROLE_SYSTEM_BUTTONDROPDOWNGRID}};
constexpr Alias StateAliases[] = {
    {"indeterminate", STATE_SYSTEM_MIXED}, {"multiselectable", STATE_SYSTEM_MULTISELECTABLE},
    {"extselectable", STATE_SYSTEM_EXTSELECTABLE}};

template <class Character>
std::string Plain(std::basic_string_view<Character> name) {
    std::string plain;
    for (const Character unit : name) {
        if (unit == ' ' || unit == '-' || unit == '_') continue;
        plain += static_cast<char>(unit >= 'A' && unit <= 'Z' ? unit - 'A' + 'a' : unit);
    }
    return plain;
}

}  // namespace

std::wstring_view RoleName(LONG role) {
    return role >= 0 && role < static_cast<LONG>(Roles.size()) ? Roles[static_cast<std::size_t>(role)] : std::wstring_view();
}

std::wstring_view StateName(LONG bit) {
    if (bit == 0) return L"normal";
    for (std::size_t i = 0; i < States.size(); ++i)
        if (bit == LONG{1} << i) return States[i];
    return {};
}

bool RoleFromName(std::string_view name, LONG& role) {
    const std::string plain = Plain(name);
    for (std::size_t i = 0; i < Roles.size(); ++i) {
        if (Plain(Roles[i]) != plain) continue;
        role = static_cast<LONG>(i);
        return true;
    }
    for (const Alias& alias : RoleAliases) {
        if (alias.name != plain) continue;
        role = alias.number;
        return true;
    }
    return false;
}

bool StateFromName(std::string_view name, LONG& bit) {
    const std::string plain = Plain(name);
    for (std::size_t i = 0; i < States.size(); ++i) {
        if (Plain(States[i]) != plain) continue;
        bit = LONG{1} << i;
        return true;
    }
    for (const Alias& alias : StateAliases) {
        if (alias.name != plain) continue;
        bit = alias.number;
        return true;
    }
    bit = 0;
    return plain == "normal";
}

}  // namespace Simulated
