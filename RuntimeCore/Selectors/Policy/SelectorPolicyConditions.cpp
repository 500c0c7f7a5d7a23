#include "RuntimeCore/Selectors/Policy/SelectorPolicyConditions.h"

#include <algorithm>
#include <string>

#include "Common/include/JsonSerializer/JsonSerializer.h"
#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Policy/PolicyRegexBudget.h"

namespace Zorvex::Generation {

namespace {

using Texts = std::vector<std::wstring>;

bool ReadTexts(const Value& value, Texts& texts) { return JsonSerializer<Texts>().Deserialize(&value, texts); }

}  // namespace

bool SelectorPolicyAttributeEmptyCondition::ParseJson(const Value& value) {
    constexpr std::size_t count = 2;
    Texts texts;
    if (!ReadTexts(value, texts)) {
        LogVerbose("SelectorPolicyAttributeEmptyCondition::ParseJson: JSON condition rule has an invalid type '%d', expected '%d'",
                   value.GetType(), Value::Type::List);
        return false;
    }
    if (texts.size() != count) {
        if (ShouldLog(Severity::Verbose))
            LogStream(Severity::Verbose) << "SelectorPolicyAttributeEmptyCondition::ParseJson: JSON array has " << texts.size()
                                         << " elements, expected " << count;
        return false;
    }
    if (texts[0].empty()) {
        LogError("SelectorPolicyAttributeEmptyCondition::ParseJson: the target attribute name is empty");
        return false;
    }
    if (texts[1] == L"isEmpty") {
        m_isEmpty = true;
    } else if (texts[1] == L"isNotEmpty") {
        m_isEmpty = false;
    } else {
        LogVerbose("SelectorPolicyAttributeEmptyCondition::ParseJson: JSON condition rule is invalid: '%ls'", texts[1]);
        return false;
    }
    m_attributeName = std::move(texts[0]);
    return true;
}

bool SelectorPolicyAttributeEmptyCondition::Evaluate(const ContextData& contextData, SelectorPolicyContext& node) const {
    return node.GetAttr(m_attributeName, contextData).empty() == m_isEmpty;
}

bool SelectorPolicyHierarchyLevelCondition::ParseJson(const Value& value) {
    const std::string* text = value.AsString();
    if (!text) {
        LogVerbose("SelectorPolicyHierarchyLevelCondition::ParseJson: JSON condition rule has an invalid type '%d', expected '%d'",
                   value.GetType(), Value::Type::String);
        return false;
    }
    if (*text == "isTopLevelNode") {
        m_requiredLevel = LevelTopLevel;
    } else if (*text == "isLeafNode") {
        m_requiredLevel = LevelLeaf;
    } else {
        LogVerbose("SelectorPolicyHierarchyLevelCondition::ParseJson: JSON condition rule is invalid: '%hs'", *text);
        return false;
    }
    return true;
}

bool SelectorPolicyHierarchyLevelCondition::Evaluate(const ContextData&, SelectorPolicyContext& node) const {
    return (node.GetHierarchyLevel() & m_requiredLevel) == m_requiredLevel;
}

bool SelectorPolicyRegexMatcher::ParseJson(const Value& value) {
    constexpr std::size_t count = 3;
    constexpr wchar_t matchesRegex[] = L"matches_regex";
    Texts texts;
    if (!ReadTexts(value, texts)) {
        LogVerbose("SelectorPolicyRegexMatcher::ParseJson: JSON condition rule has an invalid type '%d', expected '%d'", value.GetType(),
                   Value::Type::List);
        return false;
    }
    if (texts.size() != count) {
        if (ShouldLog(Severity::Verbose))
            LogStream(Severity::Verbose) << "SelectorPolicyRegexMatcher::ParseJson: JSON array has " << texts.size() << " elements, expected "
                                         << count;
        return false;
    }
    if (texts[1] != matchesRegex) {
        LogVerbose("SelectorPolicyRegexMatcher::ParseJson: JSON invalid operator '%ls', expected '%ls'", texts[1], matchesRegex);
        return false;
    }
    if (texts[0].empty()) {
        LogError("SelectorPolicyRegexMatcher::ParseJson: the target attribute name is empty");
        return false;
    }
    try {
        m_regex = Regex::Compile(texts[2], true, PolicyRegexBudget::Current());
    } catch (const RegexError& error) {
        LogError("SelectorPolicyRegexMatcher::ParseJson Cannot compile regex pattern \"%ls\", error_code=%d, error_msg=\"%hs\"", texts[2],
                 error.code, error.message);
        return false;
    }
    m_attributeName = std::move(texts[0]);
    return true;
}

bool SelectorPolicyRegexMatcher::Evaluate(const ContextData& contextData, SelectorPolicyContext& node) const {
    const CString& value = node.GetAttr(m_attributeName, contextData);
    try {
        return m_regex.MatchesWhole(value.c_str());  // up to the first NUL, on purpose
    } catch (const RegexError& error) {
        LogError("SelectorPolicyRegexMatcher::Evaluate: cannot match the value of '%ls', error_code=%d, error_msg=\"%hs\"",
                 m_attributeName, error.code, error.message);
        return false;
    }
}

namespace {

// Conjunctions nest as deeply as JSON may, and they are read on whatever stack the target has. So what the reader writes to
// the log is kept out of the frame that nests, and carries its name all the same.
constexpr char c_matchAllReader[] = "ParseJson";
constexpr char c_andOperator[] = "and";

[[gnu::noinline]] void LogNoList(const Value& value) {
    if (!ShouldLog(Severity::Verbose)) return;
    LogStream(__builtin_FILE(), c_matchAllReader, __builtin_LINE(), Severity::Verbose)
        << "SelectorPolicyMatchAllCondition::ParseJson: JSON condition rule has an invalid type " << value.TypeNumber() << ", expected "
        << static_cast<int>(Value::Type::List);
}

[[gnu::noinline]] void LogTooFew(std::size_t count, std::size_t fewest) {
    if (!ShouldLog(Severity::Verbose)) return;
    LogStream(__builtin_FILE(), c_matchAllReader, __builtin_LINE(), Severity::Verbose)
        << "SelectorPolicyMatchAllCondition::ParseJson: JSON array has " << count << " elements, expected at least " << fewest;
}

[[gnu::noinline]] void LogBadCondition(std::size_t position) {
    LogError(LocatedFormat<char>("SelectorPolicyMatchAllCondition::ParseJson: JSON invalid condition at position %d", __builtin_FILE(),
                                 c_matchAllReader),
             position);
}

[[gnu::noinline]] void LogBadOperator(const Value& found) {
    const std::string* text = found.AsString();
    LogError(LocatedFormat<char>("SelectorPolicyMatchAllCondition::ParseJson: JSON invalid operator '%hs' of type '%d', expected '%hs'",
                                 __builtin_FILE(), c_matchAllReader),
             text ? *text : std::string(), found.GetType(), c_andOperator);
}

}  // namespace

bool SelectorPolicyMatchAllCondition::ParseJson(const Value& value) {
    constexpr std::size_t fewest = 3;
    const Value::ListData* list = value.AsList();
    if (!list) {
        LogNoList(value);
        return false;
    }
    if (list->size() < fewest) {
        LogTooFew(list->size(), fewest);
        return false;
    }
    // An operator with no condition behind it is accepted, on purpose.
    for (std::size_t i = 0; i < list->size(); i += 2) {
        auto condition = FromJson((*list)[i]);
        if (!condition) {
            LogBadCondition(i);
            return false;
        }
        m_conditions.push_back(std::move(condition));
        if (i + 1 == list->size()) break;
        const Value& found = (*list)[i + 1];
        const std::string* text = found.AsString();
        if (!text || *text != c_andOperator) {
            LogBadOperator(found);
            return false;
        }
    }
    return true;
}

bool SelectorPolicyMatchAllCondition::Evaluate(const ContextData& contextData, SelectorPolicyContext& node) const {
    return std::all_of(m_conditions.begin(), m_conditions.end(),
                       [&](const auto& condition) { return condition->Evaluate(contextData, node); });
}

}  // namespace Zorvex::Generation
