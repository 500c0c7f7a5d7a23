// A desktop file from anywhere: reading fails or gives a desktop, and that one can be written, read again, and
// walked a little, faults and all.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Platform/Simulated/AccessibleElement.h"
#include "Platform/Simulated/DesktopFile.h"

using namespace Simulated;

namespace {

void Touch(IAccessible* object, int depth) {
    VARIANT self;
    VariantInit(&self);
    PutNumber(&self, CHILDID_SELF);
    VARIANT answer;
    VariantInit(&answer);
    BSTR text = nullptr;
    LONG count = 0;
    object->get_accName(self, &text);
    SysFreeString(text);
    object->get_accRole(self, &answer);
    VariantClear(&answer);
    object->get_accSelection(&answer);
    VariantClear(&answer);
    object->get_accFocus(&answer);
    VariantClear(&answer);
    object->accHitTest(1, 1, &answer);
    VariantClear(&answer);
    object->accDoDefaultAction(self);
    object->get_accChildCount(&count);
    for (LONG i = 1; i <= count && i <= 4 && depth < 4; ++i) {
        VARIANT child = self;
        child.lVal = i;
        IDispatch* found = nullptr;
        object->get_accChild(child, &found);
        if (!found) continue;
        try {
            Touch(static_cast<IAccessible*>(found), depth + 1);
        } catch (const ServerFailure&) {
        }
        found->Release();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::shared_ptr<Desktop> desktop;
    try {
        desktop = ReadDesktop(text);
    } catch (const DesktopFileError&) {
        return 0;
    }
    const std::string once = WriteDesktop(ReadDesktopModel(text));
    if (WriteDesktop(ReadDesktopModel(once)) != once) std::abort();
    for (const WindowPtr& window : desktop->AllWindows()) {
        if (window->destroyed) continue;
        AccessibleElement* const root = desktop->ObjectOf(desktop->RootOf(*window, OBJID_WINDOW));
        try {
            Touch(root, 0);
        } catch (const ServerFailure&) {
        }
        root->Release();
    }
    if (desktop->OutstandingReferences() != 0) std::abort();
    return 0;
}
