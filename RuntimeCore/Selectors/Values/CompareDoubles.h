// Comparison of scores and levels, which are sums and quotients and so differ in their last bits.
#pragma once

#include <algorithm>
#include <cmath>

namespace Zorvex {

// The distance between 1.0 and the next double.
inline constexpr double kScoreEpsilon = 2.220446049250313e-16;

// The test is relative: two numbers near 0 are as easily told apart as two large ones. Not-a-number equals nothing.
inline bool AlmostEqual(double a, double b, double epsilon = kScoreEpsilon) {
    return std::max(std::fabs(a), std::fabs(b)) * epsilon >= std::fabs(a - b);
}

inline bool DefinitelyGreater(double a, double b) { return a > b && !AlmostEqual(a, b); }

inline bool GreaterOrAlmostEqual(double a, double b) { return a > b || AlmostEqual(a, b); }

}  // namespace Zorvex
