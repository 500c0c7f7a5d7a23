// A policy as UTF-8 text. Behind its first NUL stand the units of an element's values, each byte one unit. What is
// accepted is applied to nodes of every level, of every tag that it names.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Common/include/JsonSerializer/JsonText.h"
#include "Common/include/UtfConversion.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicy.h"
#include "RuntimeCore/Selectors/Policy/SelectorTagPolicy.h"
#include "tests/Support/FakePolicyNode.h"

using namespace Zorvex;
using namespace Zorvex::Generation;

namespace {

void Apply(const SelectorTagPolicy& policy, std::uint32_t level, bool isIncluded, const CString& value) {
    Testing::FakePolicyNode node(level);
    node.m_isIncludedByDefault = isIncluded;
    for (const wchar_t* name : {L"name", L"role", L"cls", L"a"}) node.m_elementAttributes[name] = value;
    const ContextData contextData;
    policy.Apply(contextData, node);
    for (const auto& [name, reads] : node.m_reads)
        if (reads != 1) std::abort();
    for (const auto& [name, given] : node.GetAttributeValues())
        if (!given || node.GetExcludedAttributes().contains(name)) std::abort();
    if (level != LevelInner && node.GetHierarchyPresence() == HierarchyPresence::Excluded) std::abort();
    if (policy.IsEmpty() && node.GetHierarchyPresence() != HierarchyPresence::Undecided) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(bytes.find('\0'), size);
    CString value;
    for (const char byte : bytes.substr(std::min(end + 1, size))) value += static_cast<wchar_t>(static_cast<std::uint8_t>(byte));
    const CString text = WideText(bytes.substr(0, end));

    const auto [result, policy] = SelectorPolicy::FromString(text);
    if ((result == SelectorPolicyParseResult::Success) != (policy != nullptr)) std::abort();
    if (!policy) return 0;
    if (policy->ToString() != text) std::abort();
    const auto document = text.empty() ? nullptr : ReadJson(NarrowText(text));
    const Value* tags = document ? document->Find("tag_rules") : nullptr;
    if (!tags) return 0;
    for (const auto& [key, rules] : *tags->AsDictionary()) {
        const SelectorTagPolicy& tagPolicy = policy->GetTagPolicy(WideText(key));
        if (tagPolicy.IsEmpty() != rules.AsList()->empty()) std::abort();
        const auto again = ParseJsonFromString(tagPolicy.ToStringWithVersion());
        if (!again || !(*again->Find("tag_rules") == rules)) std::abort();
        for (std::uint32_t level = 0; level < 4; ++level) {
            Apply(tagPolicy, level, true, value);
            Apply(tagPolicy, level, false, value);
        }
    }
    return 0;
}
