#include "Controller/CommandLine/SelectorJson.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/SelectorText.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex::Controller {

namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void Fail(const std::string& path, const std::string& text) {
    throw CommandFailure(ExitCode::WrongArguments, path + ": " + text);
}

// Whole numbers up to 2^63, which is where wider ones would become negative.
bool IsInteger(const Json& json) {
    return json.is_number_integer() && !(json.is_number_unsigned() && json.get<std::uint64_t>() > static_cast<std::uint64_t>(INT64_MAX));
}

// One object whose keys must all be asked for.
class Object {
public:
    Object(const Json& json, std::string path) : m_json(json), m_path(std::move(path)) {
        if (!json.is_object()) Fail(m_path, "an object is expected");
    }

    std::string Path(const std::string& name) const { return m_path + "." + name; }
    const Json* Find(const std::string& name) {
        m_known.push_back(name);
        const auto found = m_json.find(name);
        return found == m_json.end() ? nullptr : &*found;
    }
    void Read(const char* name, bool& value) {
        if (const Json* json = Find(name)) {
            if (!json->is_boolean()) Fail(Path(name), "true or false is expected");
            value = json->get<bool>();
        }
    }
    void Read(const char* name, double& value) {
        if (const Json* json = Find(name)) {
            if (!json->is_number()) Fail(Path(name), "a number is expected");
            value = json->get<double>();
        }
    }
    template <class Number>
        requires(std::is_integral_v<Number> || std::is_enum_v<Number>)
    void Read(const char* name, Number& value) {
        if (const Json* json = Find(name)) {
            static_assert(sizeof(Number) == 4);
            constexpr std::int64_t least = std::is_same_v<Number, std::int32_t> ? INT32_MIN : 0;
            constexpr std::int64_t most = std::is_same_v<Number, std::int32_t> ? INT32_MAX : UINT32_MAX;
            if (!IsInteger(*json) || json->get<std::int64_t>() < least || json->get<std::int64_t>() > most)
                Fail(Path(name), "a whole number of 32 bits is expected");
            value = static_cast<Number>(json->get<std::int64_t>());
        }
    }
    void ExpectNoMore() const {
        for (const auto& item : m_json.items())
            if (std::find(m_known.begin(), m_known.end(), item.key()) == m_known.end()) {
                std::string names;
                for (const std::string& name : m_known) names += (names.empty() ? "" : ", ") + name;
                Fail(Path(item.key()), "there is no such field; there are " + names);
            }
    }

private:
    const Json& m_json;
    std::string m_path;
    std::vector<std::string> m_known;
};

Selector ParsedSelector(const Json& json, const std::string& path) {
    const std::wstring text = WideText(json.get<std::string>());
    Selector selector;
    SelectorTextError error;
    if (!ParseSelector(text, selector, error)) Fail(path, "\n" + NarrowText(error.Show(text)));
    return selector;
}

void ReadSettings(Object& object, IAttrValue& value) {
    std::uint32_t matching = value.GetMatchingType();
    if (const Json* json = object.Find("matching")) {
        const std::string text = json->is_string() ? json->get<std::string>() : "";
        if (text == "normal") matching = MatchingTypeNormal;
        else if (text == "regex") matching = MatchingTypeRegex;
        else if (text == "fuzzy") matching = MatchingTypeFuzzy;
        else if (json->is_number_unsigned() && json->get<std::uint64_t>() <= UINT32_MAX) matching = json->get<std::uint32_t>();
        else Fail(object.Path("matching"), "normal, regex, fuzzy or a number is expected");
    }
    double level = value.GetFuzzyLevel();
    bool caseSensitive = value.GetCaseSensitive(), enabled = value.GetEnabled();
    object.Read("level", level);
    object.Read("caseSensitive", caseSensitive);
    object.Read("enabled", enabled);
    object.ExpectNoMore();
    value.SetMatchingType(matching);
    value.SetFuzzyLevel(level);
    value.SetCaseSensitive(caseSensitive);
    value.SetEnabled(enabled);
}

std::shared_ptr<IAttrValue> ReadValue(const Json& json, const std::string& path) {
    if (json.is_number_integer() && !IsInteger(json)) Fail(path, "the number is too large");
    if (IsInteger(json)) return std::make_shared<NumberValue>(json.get<std::int64_t>());
    if (json.is_object()) {
        Object object(json, path);
        const Json* value = object.Find("value");
        if (value && IsInteger(*value)) {
            auto number = std::make_shared<NumberValue>(value->get<std::int64_t>());
            ReadSettings(object, *number);
            return number;
        }
    }
    return ReadStringValue(&json, path);
}

std::shared_ptr<ISelectorTag> ReadTag(const Json& json, const std::string& path) {
    if (json.is_null()) return nullptr;
    if (json.is_string()) {
        Selector selector = ParsedSelector(json, path);
        if (selector.tags.size() != 1 || selector.scope != Search::SearchScope::Descendants) Fail(path, "one tag is expected");
        return selector.tags.front();
    }
    Object object(json, path);
    const Json* kind = object.Find("kind");
    if (!kind || !kind->is_string()) Fail(path, "\"kind\" is missing, such as \"ctrl\"");
    // The language knows all kinds already.
    Selector plain = ParsedSelector(*kind, object.Path("kind"));
    if (plain.tags.size() != 1) Fail(object.Path("kind"), "one tag is expected");
    const auto tag = plain.tags.front();
    if (const Json* attributes = object.Find("attributes")) {
        if (!attributes->is_object()) Fail(object.Path("attributes"), "an object is expected");
        for (const auto& item : attributes->items()) {
            const std::string place = object.Path("attributes") + "." + item.key();
            const std::wstring name = WideText(item.key());
            tag->SetAttribute(name, ReadValue(item.value(), place));
            if (!tag->IsAttributeSet(name)) Fail(place, "the tag has no such attribute, or it takes another kind of value");
        }
    }
    bool flagA = tag->GetTagFlagA(), limits = tag->GetLimitsEveryLevel(), flagB = tag->GetTagFlagB(), flagC = tag->GetTagFlagC();
    std::uint32_t mode = tag->GetTagMode();
    object.Read("flagA", flagA);
    object.Read("limitsEveryLevel", limits);
    object.Read("flagB", flagB);
    object.Read("flagC", flagC);
    object.Read("mode", mode);
    object.ExpectNoMore();
    tag->SetTagFlagA(flagA);
    tag->SetLimitsEveryLevel(limits);
    tag->SetTagFlagB(flagB);
    tag->SetTagFlagC(flagC);
    tag->SetTagMode(mode);
    return tag;
}

void ReadOptions(const Json& json, Search::SearchParameters& options, const std::string& path) {
    Object object(json, path);
    object.Read("scope", options.scope);
    object.Read("resultPolicy", options.resultPolicy);
    object.Read("maxResults", options.maxResults);
    object.Read("acceptHiddenAtFirstLevel", options.acceptHiddenAtFirstLevel);
    object.Read("acceptHidden", options.acceptHidden);
    object.Read("optionC", options.optionC);
    object.Read("optionD", options.optionD);
    object.Read("optionE", options.optionE);
    object.Read("optionF", options.optionF);
    object.Read("optionG", options.optionG);
    object.Read("optionH", options.optionH);
    object.Read("minimumScore", options.minimumScore);
    object.Read("keepIntermediateAlways", options.keepIntermediateAlways);
    object.Read("keepIntermediateOnError", options.keepIntermediateOnError);
    object.Read("refreshLocation", options.refreshLocation);
    object.Read("optionI", options.optionI);
    object.Read("optionJ", options.optionJ);
    object.Read("optionK", options.optionK);
    object.Read("optionL", options.optionL);
    object.Read("optionM", options.optionM);
    object.ExpectNoMore();
}

}  // namespace

std::shared_ptr<StringValue> ReadStringValue(const void* untyped, const std::string& path) {
    const Json& json = *static_cast<const Json*>(untyped);
    if (json.is_null()) return nullptr;
    if (json.is_string()) return std::make_shared<StringValue>(CString(WideText(json.get<std::string>())));
    if (!json.is_object()) Fail(path, "a text or an object with \"value\" is expected");
    Object object(json, path);
    const Json* text = object.Find("value");
    if (!text || !text->is_string()) Fail(object.Path("value"), "a text is expected");
    auto value = std::make_shared<StringValue>(CString(WideText(text->get<std::string>())));
    ReadSettings(object, *value);
    return value;
}

void ReadSelectorEntry(const void* untyped, Search::SelectorEntry& entry, const std::string& path) {
    const Json& json = *static_cast<const Json*>(untyped);
    if (json.is_string()) {
        Selector selector = ParsedSelector(json, path);
        entry.tags = std::move(selector.tags);
        entry.options.scope = selector.scope;
        return;
    }
    if (!json.is_object()) Fail(path, "a selector's text or an object is expected");
    Object object(json, path);
    if (const Json* text = object.Find("selector")) {
        if (!text->is_string()) Fail(object.Path("selector"), "a text is expected");
        Selector selector = ParsedSelector(*text, object.Path("selector"));
        entry.tags = std::move(selector.tags);
        entry.options.scope = selector.scope;
    }
    if (const Json* tags = object.Find("tags")) {
        if (!tags->is_array()) Fail(object.Path("tags"), "a list is expected");
        for (std::size_t i = 0; i < tags->size(); ++i)
            entry.tags.push_back(ReadTag((*tags)[i], object.Path("tags") + "[" + std::to_string(i) + "]"));
    }
    if (const Json* options = object.Find("options")) ReadOptions(*options, entry.options, object.Path("options"));
    if (const Json* score = object.Find("inheritedScore")) {
        Object stats(*score, object.Path("inheritedScore"));
        stats.Read("mean", entry.inheritedScore.mean);
        stats.Read("count", entry.inheritedScore.count);
        stats.Read("max", entry.inheritedScore.max);
        stats.Read("min", entry.inheritedScore.min);
        stats.Read("sum", entry.inheritedScore.sum);
        stats.ExpectNoMore();
    }
    object.Read("pendingAttributeCount", entry.pendingAttributeCount);
    object.ExpectNoMore();
}

}  // namespace Zorvex::Controller
