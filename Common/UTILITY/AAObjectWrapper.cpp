#include "Common/UTILITY/AAObjectWrapper.h"

#include <algorithm>
#include <queue>

#include "Common/include/ComException.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"

namespace Zorvex {

namespace {

// From here on a child count is taken for garbage, and so is a negative one.
constexpr LONG CorruptChildCount = 1000000;

// The platform fills an array of VARIANT; ours is the same memory.
static_assert(sizeof(CComVariant) == sizeof(VARIANT));

}  // namespace

AAObjectWrapper AAObjectWrapper::FromChild(IAccessible* parent, CComVariant raw) {
    if (raw.vt == VT_I4) return AAObjectWrapper(CComPtr<IAccessible>(parent), std::move(raw));
    if (raw.vt == VT_DISPATCH && raw.pdispVal) {
        CComPtr<IAccessible> container;
        const HRESULT result = raw.pdispVal->QueryInterface(IidOf<IAccessible>(), reinterpret_cast<void**>(&container));
        if (SUCCEEDED(result) && container.p) return AAObjectWrapper(std::move(container), CComVariant(CHILDID_SELF));
    }
    return AAObjectWrapper();
}

HRESULT AAObjectWrapper::GetVariantChildren(IAccessible& parent, std::vector<CComVariant>& out) {
    out.clear();
    LONG count = 0;
    const HRESULT countResult = parent.get_accChildCount(&count);
    if (countResult != S_OK) {
        LogError("AAObjectWrapper::GetVariantChildren: parentAcc->get_accChildCount failed with hr=0x%X", countResult);
        return countResult;
    }
    if (count < 0 || count >= CorruptChildCount) return E_FAIL;
    if (count == 0) return S_OK;

    out.resize(static_cast<std::size_t>(count));
    LONG obtained = 0;
    const HRESULT result = ::AccessibleChildren(&parent, 0, count, out.data(), &obtained);
    if (FAILED(result)) {
        LogError("AAObjectWrapper::GetVariantChildren: AccessibleChildren failed with hr=0x%X", result);
        out.clear();
        return result;
    }
    if (obtained <= 0) {
        LogError("AAObjectWrapper::GetVariantChildren: AccessibleChildren obtained %d children while the child count is %d",
                 obtained, count);
        out.clear();
        return E_FAIL;
    }
    out.resize(static_cast<std::size_t>(std::min(obtained, count)));
    return S_OK;
}

bool AAObjectWrapper::GetChildren(IAccessible* parent, std::vector<AAObjectWrapper>& out) {
    out.clear();
    if (!parent) return false;
    std::vector<CComVariant> raw;
    // A positive result of the count leaves no raw children, and is no failure here: on purpose unlike the raw form.
    if (FAILED(GetVariantChildren(*parent, raw))) return false;
    out.reserve(raw.size());
    for (CComVariant& child : raw) out.push_back(FromChild(parent, std::move(child)));
    return true;
}

bool AAObjectWrapper::GetChildren(std::vector<AAObjectWrapper>& out) const {
    if (!IsFullObject()) {
        out.clear();
        return false;
    }
    // `out` may be the list that holds this very element.
    const CComPtr<IAccessible> parent = container;
    return GetChildren(parent.p, out);
}

HRESULT AAObjectWrapper::GetChildAtIndex(IAccessible* parent, int index, VARIANT* out) {
    if (!out) return E_INVALIDARG;
    ::VariantClear(out);
    if (!parent) return E_INVALIDARG;
    LONG obtained = 0;
    const HRESULT result = ::AccessibleChildren(parent, index, 1, out, &obtained);
    if (SUCCEEDED(result) && obtained >= 1) return S_OK;
    LogError("AAObjectWrapper:: cannot get level-%d child , hResult=0x%x, variantType=0x%x", index, result, out->vt);
    ::VariantClear(out);
    return FailureOrEFail(result);
}

bool AAObjectWrapper::WalkDescendantsBfs(IAccessible* root, const std::function<AATreeVisitResult(const AAObjectWrapper&)>& visitor) {
    if (!visitor) {
        LogError("AAObjectWrapper::WalkDescendantsBfs: invalid args");
        return false;
    }
    std::queue<CComPtr<IAccessible>> containers;
    containers.push(CComPtr<IAccessible>(root));
    std::vector<AAObjectWrapper> children;
    while (!containers.empty()) {
        const CComPtr<IAccessible> container = std::move(containers.front());
        containers.pop();
        if (!container.p) throw ComException(E_FAIL);
        if (!GetChildren(container.p, children)) continue;
        for (AAObjectWrapper& child : children) {
            if (!child.IsValid()) continue;
            if (visitor(child) == AATreeVisitResult::Stop) return true;
            if (child.IsFullObject()) containers.push(std::move(child.container));
        }
        // The list's own references go before the next level is read; its memory stays for it.
        children.clear();
    }
    return true;
}

std::string ElementDebugText(const IAccessible* object, const VARIANT& child) {
    if (!object) return "<null object>";
    const void* address = object;
    if (child.vt != VT_I4 || child.lVal == CHILDID_SELF) return FormatText("0x%p", address);
    return FormatText("<0x%p childId=%d>", address, child.lVal);
}

}  // namespace Zorvex
