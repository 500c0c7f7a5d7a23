// Several elements at once, as a selection gives them.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "Platform/Simulated/Desktop.h"
#include "Platform/Windows.h"

namespace Simulated {

class AccessibleElement;

// Its references count among those of its container.
class ElementEnumerator final : public IEnumVARIANT {
public:
    // Born with one reference. Simple elements come out as child ids of the container.
    ElementEnumerator(std::shared_ptr<Desktop> desktop, ElementPtr container, std::vector<ElementPtr> items, std::size_t next = 0);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override;

private:
    ~ElementEnumerator() = default;

    const std::shared_ptr<Desktop> m_desktop;
    const ElementPtr m_container;
    const std::vector<ElementPtr> m_items;
    std::size_t m_next;
    std::atomic<ULONG> m_references{1};
};

}  // namespace Simulated
