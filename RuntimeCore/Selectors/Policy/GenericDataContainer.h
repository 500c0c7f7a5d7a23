// A value of any type behind one interface: whoever knows the type gets it out again.
#pragma once

#include <typeinfo>
#include <utility>

namespace Zorvex {

class GenericDataContainer {
public:
    virtual ~GenericDataContainer() = default;
    // The payload, which the container owns.
    virtual void* Get() = 0;
    virtual const std::type_info& GetTypeId() const = 0;
};

template <class T>
class GenericDataContainerImpl final : public GenericDataContainer {
public:
    explicit GenericDataContainerImpl(T data) : m_data(std::move(data)) {}

    void* Get() override { return &m_data; }
    const std::type_info& GetTypeId() const override { return typeid(T); }

private:
    T m_data;
};

}  // namespace Zorvex
