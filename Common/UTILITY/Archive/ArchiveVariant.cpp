// Variants in an archive.
#include "Common/include/Archive.h"
#include "Common/include/Log.h"

namespace Zorvex {

namespace {

// What a variant's payload looks like.
enum class Payload { None, Text, Raw1, Raw2, Raw4, Raw8, NumberArray, TextArray, VariantArray, Unsupported };

Payload PayloadOf(VARTYPE type) {
    switch (type) {
        case VT_EMPTY:
        case VT_NULL: return Payload::None;
        case VT_BSTR: return Payload::Text;
        case VT_I1:
        case VT_UI1: return Payload::Raw1;
        case VT_I2:
        case VT_BOOL:
        case VT_UI2: return Payload::Raw2;
        case VT_I4:
        case VT_R4:
        case VT_ERROR:
        case VT_UI4:
        case VT_INT:
        case VT_UINT: return Payload::Raw4;
        case VT_R8:
        case VT_CY:
        case VT_DATE:
        case VT_I8:
        case VT_UI8: return Payload::Raw8;
        case VT_ARRAY | VT_I4:
        case VT_ARRAY | VT_UI4:
        case VT_ARRAY | VT_INT:
        case VT_ARRAY | VT_UINT: return Payload::NumberArray;
        case VT_ARRAY | VT_BSTR: return Payload::TextArray;
        case VT_ARRAY | VT_VARIANT: return Payload::VariantArray;
        default: return Payload::Unsupported;
    }
}

std::size_t RawSize(Payload payload) {
    switch (payload) {
        case Payload::Raw1: return 1;
        case Payload::Raw2: return 2;
        case Payload::Raw4: return 4;
        case Payload::Raw8: return 8;
        default: return 0;
    }
}

// The element type of an array as its owner declared it.
VARTYPE ElementType(SAFEARRAY* array) {
    if (!array) throw ComException(E_INVALIDARG);
    VARTYPE type = VT_EMPTY;
    ThrowIfFailed(::SafeArrayGetVartype(array, &type));
    constexpr USHORT kDispatchById = FADF_HAVEIID | FADF_DISPATCH;
    if (type == VT_UNKNOWN && (array->fFeatures & kDispatchById) == kDispatchById) return VT_DISPATCH;
    return type;
}

class LockedArray {
public:
    explicit LockedArray(SAFEARRAY* array) : m_array(array) { ThrowIfFailed(::SafeArrayLock(array)); }
    LockedArray(const LockedArray&) = delete;
    LockedArray& operator=(const LockedArray&) = delete;
    ~LockedArray() { ::SafeArrayUnlock(m_array); }

private:
    SAFEARRAY* m_array;
};

}  // namespace

void Archive::throwVariantType(const char* function, const char* format, VARTYPE type) {
    const std::string text = FormatText(format, static_cast<int>(type));
    if (ShouldLog(Severity::Error)) {
        LogFormatted(SourceLocation{__FILE__, function, __LINE__, Severity::Error}, std::string_view(text), {});
    }
    throw ArchiveException(text);
}

// The bytes behind the tag.
void Archive::readVariant(VARIANT& variant, int depth) {
    VARTYPE type = VT_EMPTY;
    readBytes(&type, sizeof type);
    ::VariantClear(&variant);
    const Payload payload = PayloadOf(type);
    switch (payload) {
        case Payload::None: variant.vt = type; return;
        case Payload::Text: {
            CComBSTR text;
            read(text);
            variant.bstrVal = text.Detach();
            variant.vt = VT_BSTR;
            return;
        }
        case Payload::Raw1:
        case Payload::Raw2:
        case Payload::Raw4:
        case Payload::Raw8:
            // Changing an empty variant's type gives a zero of the type; the platform refuses some of these types,
            // so the zero is made here.
            variant.llVal = 0;
            variant.vt = type;
            readBytes(&variant.llVal, RawSize(payload));
            return;
        case Payload::VariantArray:
            if (depth >= kMaximumVariantNesting) break;
            [[fallthrough]];
        case Payload::NumberArray:
        case Payload::TextArray: readSafeArray(variant, type, depth); return;
        case Payload::Unsupported: break;
    }
    throwVariantType("read", "read: could not read variant type: %d", type);
}

void Archive::readSafeArray(VARIANT& variant, VARTYPE type, int depth) {
    std::uint32_t count = 0;
    read(count);
    VARTYPE elementType = VT_VARIANT;
    switch (type & ~VT_ARRAY) {
        // On purpose: the machine-word types come out as their 32-bit siblings.
        case VT_I4:
        case VT_INT: elementType = VT_I4; break;
        case VT_UI4:
        case VT_UINT: elementType = VT_UI4; break;
        case VT_BSTR: elementType = VT_BSTR; break;
        default: break;
    }
    // The shortest variant is its tag and its type; numbers and texts have a tag and four bytes at least.
    const std::size_t shortest = elementType == VT_VARIANT ? 3 : 5;
    if (count > remaining() / shortest) throwOutOfBounds();

    SAFEARRAYBOUND bound = {count, 0};
    SAFEARRAY* array = ::SafeArrayCreate(elementType, 1, &bound);
    if (!array) {
        variant.vt = VT_ERROR;
        variant.scode = E_INVALIDARG;
        throw ComException(E_INVALIDARG);
    }
    // The variant owns the array from here on and so frees it, whole or half filled. Filling a working array and
    // copying it at the end would copy every element once a level.
    variant.parray = array;
    variant.vt = static_cast<VARTYPE>(VT_ARRAY | elementType);

    const LockedArray locked(array);
    for (std::uint32_t i = 0; i < count; ++i) {
        if (elementType == VT_VARIANT) {
            expectTag(ArchiveTag::Variant, "Invalid type, VARIANT expected!");
            readVariant(static_cast<VARIANT*>(array->pvData)[i], depth + 1);
        } else if (elementType == VT_BSTR) {
            CComBSTR text;
            read(text);
            static_cast<BSTR*>(array->pvData)[i] = text.Detach();
        } else {
            readNumber(static_cast<LONG*>(array->pvData) + i);
        }
    }
}

void Archive::writeVariant(const VARIANT& variant, int depth) {
    const Payload payload = PayloadOf(variant.vt);
    if (payload == Payload::Unsupported || (payload == Payload::VariantArray && depth >= kMaximumVariantNesting))
        throwVariantType("write", "write: could not write variant type: %d", variant.vt);
    writeTag(ArchiveTag::Variant);
    writeBytes(&variant.vt, sizeof variant.vt);
    switch (payload) {
        case Payload::Text:
            write(variant.bstrVal ? std::wstring_view(variant.bstrVal, ::SysStringLen(variant.bstrVal))
                                  : std::wstring_view());
            return;
        case Payload::NumberArray:
        case Payload::TextArray:
        case Payload::VariantArray: writeSafeArray(variant, depth); return;
        default: writeBytes(&variant.llVal, RawSize(payload)); return;
    }
}

void Archive::writeSafeArray(const VARIANT& variant, int depth) {
    SAFEARRAY* array = variant.parray;
    const VARTYPE elementType = ElementType(array);
    const Payload payload = PayloadOf(variant.vt);
    // On purpose: of the four number arrays only one whose own elements are VT_I4 passes.
    const VARTYPE expected = payload == Payload::NumberArray ? VT_I4 : payload == Payload::TextArray ? VT_BSTR : VT_VARIANT;
    if (elementType != expected) throw ComException(E_INVALIDARG);

    // Locked in place: a copy of an array that a foreign object nested would follow its depth down the stack.
    const LockedArray locked(array);
    const UINT dimensions = ::SafeArrayGetDim(array);
    if (dimensions > 1) {
        LogError("writeSafeArray: cannot write multi-dimensional array: %d", dimensions);
        throw ArchiveException("Cannot write multi-dimensional array");
    }
    LONG lower = 0;
    LONG upper = 0;
    ThrowIfFailed(::SafeArrayGetLBound(array, 1, &lower));
    ThrowIfFailed(::SafeArrayGetUBound(array, 1, &upper));
    const std::int64_t count = static_cast<std::int64_t>(upper) - lower + 1;
    writeTruncated(count);
    for (std::int64_t i = 0; i < count; ++i) {
        // Elements are taken by index from 0, on purpose: an array that starts elsewhere can't be written.
        if (i < lower || i > upper) throw ComException(E_INVALIDARG);
        if (!array->pvData) throw ComException(E_FAIL);
        const auto place = static_cast<std::size_t>(i - lower);
        if (elementType == VT_VARIANT) {
            writeVariant(static_cast<const VARIANT*>(array->pvData)[place], depth + 1);
        } else if (elementType == VT_BSTR) {
            BSTR text = static_cast<const BSTR*>(array->pvData)[place];
            write(text ? std::wstring_view(text, ::SysStringLen(text)) : std::wstring_view());
        } else {
            write(static_cast<const LONG*>(array->pvData)[place]);
        }
    }
}

}  // namespace Zorvex
