#include "RuntimeCore/Selectors/Policy/SelectorPolicyActions.h"

#include <string>
#include <utility>

#include "Common/include/JsonSerializer/JsonSerializer.h"
#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Policy/PolicyRegexBudget.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex::Generation {

namespace {

using Texts = std::vector<std::wstring>;

bool ReadTexts(const Value& value, Texts& texts) { return JsonSerializer<Texts>().Deserialize(&value, texts); }

}  // namespace

bool SelectorPolicyHierarchyPresenceSetter::ParseJson(const Value& value) {
    // The lines say "condition", though this is an action, on purpose.
    const std::string* text = value.AsString();
    if (!text) {
        LogVerbose("SelectorPolicyHierarchyPresenceSetter::ParseJson: JSON condition rule has an invalid type '%d', expected '%d'",
                   value.GetType(), Value::Type::String);
        return false;
    }
    if (*text == "include_in_hierarchy") {
        m_presence = HierarchyPresence::Included;
    } else if (*text == "exclude_from_hierarchy") {
        m_presence = HierarchyPresence::Excluded;
    } else {
        LogVerbose("SelectorPolicyHierarchyPresenceSetter::ParseJson: JSON condition rule is invalid: '%hs'", *text);
        return false;
    }
    return true;
}

void SelectorPolicyHierarchyPresenceSetter::Perform(const ContextData&, SelectorPolicyContext& node) const {
    const bool mustStay = (node.GetHierarchyLevel() & (LevelTopLevel | LevelLeaf)) != 0;
    node.SetHierarchyPresence(mustStay ? HierarchyPresence::Included : m_presence);
}

bool SelectorPolicyIncludeOrExcludeAttributeAction::ParseJson(const Value& value) {
    constexpr std::size_t count = 2;
    Texts texts;
    if (!ReadTexts(value, texts)) {
        if (ShouldLog(Severity::Verbose))
            LogStream(Severity::Verbose) << "JSON content has an invalid type: " << value.TypeNumber()
                                         << ", expected: " << static_cast<int>(Value::Type::List);
        return false;
    }
    if (texts.size() != count) {
        if (ShouldLog(Severity::Verbose)) LogStream(Severity::Verbose) << "JSON arg count is " << texts.size() << ", expected: " << count;
        return false;
    }
    if (texts[0] == L"include_attribute") {
        m_isInclude = true;
    } else if (texts[0] == L"exclude_attribute") {
        m_isInclude = false;
    } else {
        return false;
    }
    if (texts[1].empty()) {
        LogError("The target attribute name is empty");
        return false;
    }
    m_attributeName = std::move(texts[1]);
    return true;
}

void SelectorPolicyIncludeOrExcludeAttributeAction::Perform(const ContextData& contextData, SelectorPolicyContext& node) const {
    if (!m_isInclude) {
        node.ExcludeAttr(m_attributeName);
        return;
    }
    const CString& value = node.GetAttr(m_attributeName, contextData);
    if (!value.empty()) node.SetAttr(m_attributeName, std::make_shared<StringValue>(value));
}

bool SelectorPolicyAttributeValueSetter::ParseJson(const Value& value) {
    constexpr std::size_t count = 3;
    Texts texts;
    if (!ReadTexts(value, texts)) {
        LogVerbose("SelectorPolicyAttributeValueSetter::ParseJson: JSON content has an invalid type '%d', expected '%d'", value.GetType(),
                   Value::Type::List);
        return false;
    }
    if (texts.size() != count) {
        if (ShouldLog(Severity::Verbose))
            LogStream(Severity::Verbose) << "SelectorPolicyAttributeValueSetter::ParseJson: JSON arg count is " << texts.size() << ", expected "
                                         << count;
        return false;
    }
    if (texts[0] != L"set_attribute") return false;
    if (texts[1].empty()) {
        LogError("SelectorPolicyAttributeValueSetter::ParseJson: the target attribute name is empty");
        return false;
    }
    m_attributeName = std::move(texts[1]);
    m_value = std::move(texts[2]);
    return true;
}

void SelectorPolicyAttributeValueSetter::Perform(const ContextData&, SelectorPolicyContext& node) const {
    node.SetAttr(m_attributeName, std::make_shared<StringValue>(m_value));
}

bool SelectorPolicyRegexSetter::ParseJson(const Value& value) {
    constexpr std::size_t count = 4;
    Texts texts;
    if (!ReadTexts(value, texts)) {
        LogVerbose("SelectorPolicyRegexSetter: JSON content has an invalid type '%d', expected '%d'", value.GetType(), Value::Type::List);
        return false;
    }
    if (texts.size() != count) {
        if (ShouldLog(Severity::Verbose))
            LogStream(Severity::Verbose) << "SelectorPolicyRegexSetter: JSON arg count is " << texts.size() << ", expected " << count;
        return false;
    }
    if (texts[0] != L"set_attribute_regex") return false;
    if (texts[1].empty()) {
        LogError("SelectorPolicyRegexSetter::ParseJson: the target attribute name is empty");
        return false;
    }
    try {
        m_replacer = RegexReplacer::Compile(texts[2], true, PolicyRegexBudget::Current());
    } catch (const RegexError& error) {
        LogError("SelectorPolicyRegexSetter::ParseJson Cannot compile regex pattern \"%ls\", error_code=%d, error_msg=\"%hs\"", texts[2],
                 error.code, error.message);
        return false;
    }
    m_attributeName = std::move(texts[1]);
    m_replacement = std::move(texts[3]);
    return true;
}

void SelectorPolicyRegexSetter::Perform(const ContextData& contextData, SelectorPolicyContext& node) const {
    const CString& value = node.GetAttr(m_attributeName, contextData);
    try {
        CString result = m_replacer.Replace(value, m_replacement);
        if (!result.empty()) node.SetAttr(m_attributeName, std::make_shared<StringValue>(std::move(result)));
    } catch (const RegexError& error) {
        LogError("SelectorPolicyRegexSetter::Perform: cannot replace in the value of '%ls', error_code=%d, error_msg=\"%hs\"",
                 m_attributeName, error.code, error.message);
    }
}

}  // namespace Zorvex::Generation
