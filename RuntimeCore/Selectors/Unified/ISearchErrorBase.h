// Why a selector's search gave no result.
#pragma once

#include <memory>

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {
class Archive;
}

namespace Zorvex::Search {

// An error as the client shows it.
struct ErrorInfo {
    HRESULT code = S_OK;
    CString parameters;  // a JSON array of strings; empty when it couldn't be built
};

class ISearchErrorBase {
public:
    virtual ~ISearchErrorBase() = default;
    // Names the class on the wire.
    virtual std::int32_t GetErrorId() const = 0;
    // The error's own fields, without its id.
    virtual void WriteToArchive(Archive& archive) const = 0;
    virtual ErrorInfo ToErrorInfo() const = 0;
    virtual bool GetFlagB() const = 0;
    virtual bool Equals(const ISearchErrorBase& other) const = 0;
};

// One byte whether there is an error, then its id and its fields. Null is an ordinary value: no error.
void WriteSearchError(Archive& archive, const ISearchErrorBase* error);
// Throws ArchiveException for an id that no class has.
std::unique_ptr<ISearchErrorBase> ReadSearchError(Archive& archive);

}  // namespace Zorvex::Search
