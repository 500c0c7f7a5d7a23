#include "Platform/Simulated/ElementEnumerator.h"

#include <algorithm>

#include "Platform/Simulated/AccessibleElement.h"

namespace Simulated {

ElementEnumerator::ElementEnumerator(std::shared_ptr<Desktop> desktop, ElementPtr container, std::vector<ElementPtr> items, std::size_t next)
    : m_desktop(std::move(desktop)), m_container(std::move(container)), m_items(std::move(items)), m_next(next) {
    m_desktop->CountReference(m_container.get(), 1);
}

HRESULT ElementEnumerator::QueryInterface(REFIID riid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualGUID(riid, IidOf<IUnknown>()) && !IsEqualGUID(riid, IidOf<IEnumVARIANT>())) return E_NOINTERFACE;
    *object = static_cast<IEnumVARIANT*>(this);
    AddRef();
    return S_OK;
}

ULONG ElementEnumerator::AddRef() {
    m_desktop->CountReference(m_container.get(), 1);
    return ++m_references;
}

ULONG ElementEnumerator::Release() {
    m_desktop->CountReference(m_container.get(), -1);
    const ULONG count = --m_references;
    if (count == 0) delete this;
    return count;
}

HRESULT ElementEnumerator::Next(ULONG count, VARIANT* items, ULONG* fetched) {
    if (fetched) *fetched = 0;
    if (!items) return E_POINTER;
    const std::lock_guard guard(m_desktop->Lock());
    const std::optional<Fault> fault = m_desktop->Count(m_container.get(), nullptr, Call::EnumNext);
    for (ULONG i = 0; i < count; ++i) ::VariantInit(&items[i]);
    if (fault) {
        if (fault->raise) throw ServerFailure();
        if (fault->result) return *fault->result;
    }
    ULONG given = 0;
    for (; given < count && m_next < m_items.size(); ++given, ++m_next) {
        const ElementPtr& item = m_items[m_next];
        if (fault && fault->type) PutWrongType(&items[given], *fault->type);
        else if (fault && fault->null) PutObject(&items[given], nullptr);
        else if (item->simple) PutNumber(&items[given], static_cast<LONG>(m_desktop->PlaceOf(*m_container, *item) + 1));
        else PutObject(&items[given], m_desktop->ObjectOf(item));
    }
    if (fetched) *fetched = given;
    return given == count ? S_OK : S_FALSE;
}

HRESULT ElementEnumerator::Skip(ULONG count) {
    const std::size_t rest = m_items.size() - m_next;
    m_next += std::min<std::size_t>(count, rest);
    return count <= rest ? S_OK : S_FALSE;
}

HRESULT ElementEnumerator::Reset() {
    m_next = 0;
    return S_OK;
}

HRESULT ElementEnumerator::Clone(IEnumVARIANT** copy) {
    if (!copy) return E_POINTER;
    *copy = new ElementEnumerator(m_desktop, m_container, m_items, m_next);
    return S_OK;
}

}  // namespace Simulated
