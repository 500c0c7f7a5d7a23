// A number out of a variant, whatever its type. Private to this folder.
#pragma once

#include "Platform/Simulated/Sdk/Automation.h"

namespace Simulated {

struct Number {
    enum class Kind { None, Signed, Unsigned, Real };

    Kind kind = Kind::None;
    LONGLONG integer = 0;
    ULONGLONG natural = 0;
    double real = 0;

    static Number FromSigned(LONGLONG value) { return {Kind::Signed, value, 0, 0}; }
    static Number FromUnsigned(ULONGLONG value) { return {Kind::Unsigned, 0, value, 0}; }
    static Number FromReal(double value) { return {Kind::Real, 0, 0, value}; }

    double AsReal() const {
        return kind == Kind::Real ? real : kind == Kind::Signed ? static_cast<double>(integer) : static_cast<double>(natural);
    }
};

// Kind::None for what is no number. VT_EMPTY counts as 0, VT_BOOL as 0 or -1.
Number NumberOf(const VARIANT& variant);

}  // namespace Simulated
