// An accessible object whose server faults when it is asked for the name: by the hardware where that is survived, and
// by an exception elsewhere.
#pragma once

#include "Platform/FaultGuard.h"
#include "tests/Support/FakeAccessible.h"

namespace Zorvex::Testing {

class FaultingAccessible : public FakeAccessible {
public:
    using FakeAccessible::FakeAccessible;

    HRESULT STDMETHODCALLTYPE get_accName(VARIANT, BSTR* out) override {
        // What is left behind looks like a string and is none.
        *out = reinterpret_cast<BSTR>(static_cast<std::uintptr_t>(8));
        if (SurvivesHardwareFaults) {
            volatile int* volatile nowhere = nullptr;
            *nowhere = 1;
        }
        throw FakeCalls::Thrown{};
    }
};

}  // namespace Zorvex::Testing
