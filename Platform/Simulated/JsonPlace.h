// A place in a desktop file while it is read, and the checked reads of one value. Only for the reader's sources,
// as the JSON library is slow to compile.
#pragma once

#include <initializer_list>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Platform/Simulated/DesktopFile.h"

namespace Simulated {

using Json = nlohmann::json;

// Knows how it was reached; the text of the way is only made when something is wrong. Lives on the stack, inside
// the places it was reached from.
class JsonPlace {
public:
    explicit JsonPlace(const Json& root) : m_value(root) {}
    JsonPlace(const JsonPlace& parent, std::string_view key, const Json& value) : m_parent(&parent), m_key(key), m_value(value) {}
    JsonPlace(const JsonPlace& parent, std::size_t index, const Json& value) : m_parent(&parent), m_index(index), m_value(value) {}
    JsonPlace(const JsonPlace&) = delete;
    JsonPlace& operator=(const JsonPlace&) = delete;

    const Json& Value() const { return m_value; }
    std::string Way() const;
    [[noreturn]] void Fail(const std::string& problem) const;

    // Fails unless this is an object with no other keys than these.
    void ExpectKeys(std::initializer_list<std::string_view> known) const;
    // Runs `read(place)` if the object has the key.
    template <class Read>
    bool IfKey(std::string_view key, const Read& read) const {
        const auto found = m_value.find(key);
        if (found == m_value.end()) return false;
        read(JsonPlace(*this, found.key(), *found));
        return true;
    }
    template <class Read>
    void ForEach(const Read& read) const {
        if (!m_value.is_array()) Fail("a list is expected");
        for (std::size_t i = 0; i < m_value.size(); ++i) read(JsonPlace(*this, i, m_value[i]));
    }
    // As ForEach; fails unless the list has exactly that length.
    void ExpectLength(std::size_t length) const;

    std::int64_t Integer(std::int64_t low, std::int64_t high) const;
    LONG Long() const { return static_cast<LONG>(Integer(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max())); }
    // 32 bits, however they are written: signed, unsigned, or as "0x80004005".
    std::uint32_t Bits() const;
    bool Flag() const;
    std::string Bytes() const;  // the text as UTF-8
    std::wstring Text() const;  // the text as UTF-16 code units

private:
    const JsonPlace* m_parent = nullptr;
    std::string_view m_key;
    std::size_t m_index = 0;
    const Json& m_value;
};

// Between the file's UTF-8 and the platform's UTF-16.
std::wstring Widen(std::string_view text);
std::string Narrow(std::wstring_view text);
// "0x80004005".
std::string HexText(std::uint32_t bits);

// Parts of a file, read each in its own source.
ElementPtr ReadElement(const JsonPlace& place);
Fault ReadFault(const JsonPlace& place);
AutomationPtr ReadAutomation(const JsonPlace& place);
std::vector<Action> ReadActions(const JsonPlace& place);
Rectangle ReadRectangle(const JsonPlace& place);
LONG ReadStates(const JsonPlace& place);

// Their counterparts. Keys keep the order in which they are documented.
using OrderedJson = nlohmann::ordered_json;
OrderedJson WriteElement(const Element& element);
OrderedJson WriteAutomation(const AutomationData& object);
OrderedJson WriteFault(const Fault& fault);
OrderedJson WriteScheduledActions(const std::vector<Action>& actions);
OrderedJson WriteRectangle(const Rectangle& rectangle);

// The published name of an object id as the file has it: "window", "client", ...
std::string_view ObjectName(LONG objectId);
bool ObjectFromName(std::string_view name, LONG& objectId);

struct NamedNumber {
    std::string_view name;
    LONG number;
};
// Names of variant types ("VT_I4") and of automation's properties ("automationId").
std::optional<LONG> NumberOf(std::span<const NamedNumber> table, std::string_view name);
std::string_view NameIn(std::span<const NamedNumber> table, LONG number);
inline constexpr NamedNumber VariantTypes[] = {
    {"VT_EMPTY", VT_EMPTY}, {"VT_NULL", VT_NULL}, {"VT_I2", VT_I2}, {"VT_I4", VT_I4}, {"VT_R4", VT_R4}, {"VT_R8", VT_R8},
    {"VT_CY", VT_CY}, {"VT_DATE", VT_DATE}, {"VT_BSTR", VT_BSTR}, {"VT_DISPATCH", VT_DISPATCH}, {"VT_ERROR", VT_ERROR},
    {"VT_BOOL", VT_BOOL}, {"VT_UNKNOWN", VT_UNKNOWN}, {"VT_I1", VT_I1}, {"VT_UI1", VT_UI1}, {"VT_UI2", VT_UI2},
    {"VT_UI4", VT_UI4}, {"VT_I8", VT_I8}, {"VT_UI8", VT_UI8}, {"VT_INT", VT_INT}, {"VT_UINT", VT_UINT}};
inline constexpr NamedNumber Properties[] = {
    {"runtimeId", 30000}, {"controlType", 30003}, {"localizedControlType", 30004}, {"name", 30005}, {"automationId", 30011},
    {"className", 30012}, {"helpText", 30013}, {"labeledBy", 30018}, {"itemStatus", 30026}, {"frameworkId", 30024}};

}  // namespace Simulated
