// A selector policy: what a client wants of the selectors of each kind of tag, as a JSON text that travels with a
// request.
//
//   { "version": 1,
//     "tag_rules": { "ctrl": [ { "condition": ["name", "isEmpty"], "actions": ["exclude_from_hierarchy"] } ] } }
#pragma once

#include <memory>
#include <utility>

#include "Common/include/CString.h"

namespace Zorvex::Generation {

class SelectorTagPolicy;

// The numbers appear in log messages.
enum class SelectorPolicyParseResult : int {
    Success = 0,
    SyntaxError = 1,   // no JSON
    InvalidPolicy = 2  // JSON, but no policy of a known version
};

// The root of the policies of all versions. Filled once, then only read.
class SelectorPolicy {
public:
    virtual ~SelectorPolicy() = default;
    // Fills the policy; an empty text is the policy without tags. Each level of a failure logs its line.
    virtual SelectorPolicyParseResult ParseString(const CString& text) = 0;
    virtual int GetVersion() const = 0;
    // The text that was parsed, as it was given; empty while none was.
    virtual CString ToString() const = 0;
    // The policy of a tag, whose name is compared exactly; one without rules where the tag has none. Borrowed.
    virtual const SelectorTagPolicy& GetTagPolicy(const CString& tagName) const = 0;
    // As GetTagPolicy, but a tag without a policy gets an empty one of its own. Never null.
    virtual std::shared_ptr<SelectorTagPolicy> GetOrAddTagPolicy(const CString& tagName) = 0;

    // Tries the known versions, the newest first. The policy is null unless the result is Success; otherwise the
    // result is that of the oldest version.
    static std::pair<SelectorPolicyParseResult, std::shared_ptr<SelectorPolicy>> FromString(const CString& text);
};

}  // namespace Zorvex::Generation
