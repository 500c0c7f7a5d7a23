#include "Platform/Simulated/Fault.h"

#include <algorithm>
#include <limits>

namespace Simulated {

RECT Rectangle::ToRect() const {
    const auto clamp = [](std::int64_t edge) {
        return static_cast<LONG>(std::clamp<std::int64_t>(edge, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max()));
    };
    return {left, top, clamp(std::int64_t{left} + width), clamp(std::int64_t{top} + height)};
}

bool Fault::Meets(unsigned number) const {
    if (number < at) return false;
    const unsigned step = std::max(every, 1u);
    if ((number - at) % step != 0) return false;
    return times == 0 || (number - at) / step < times;
}

}  // namespace Simulated
