// Either a value or the reason why there is none.
#pragma once

#include <utility>
#include <variant>

#include "Controller/Loader/LoadProblem.h"

namespace Zorvex::Loader {

template <class Value>
class LoadResult {
public:
    LoadResult(Value value) : m_state(std::in_place_index<0>, std::move(value)) {}
    LoadResult(LoadFailure failure) : m_state(std::in_place_index<1>, std::move(failure)) {}

    explicit operator bool() const noexcept { return m_state.index() == 0; }
    // Throw std::bad_variant_access when there is no value.
    Value& operator*() { return std::get<0>(m_state); }
    const Value& operator*() const { return std::get<0>(m_state); }
    Value* operator->() { return &std::get<0>(m_state); }
    const Value* operator->() const { return &std::get<0>(m_state); }
    // Throws std::bad_variant_access when there is a value.
    const LoadFailure& Error() const { return std::get<1>(m_state); }

private:
    std::variant<Value, LoadFailure> m_state;
};

}  // namespace Zorvex::Loader
