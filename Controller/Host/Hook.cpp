// The door by which the host comes into a process and onto the thread of a window: a hook on the messages sent to
// that thread. One message is the host's own; its parameters name the section of the request.
#include "Controller/Host/HostLifetime.h"
#include "Controller/Host/HostProtocol.h"
#include "Controller/Host/LoadedServer.h"
#include "Controller/Host/RequestRunner.h"

namespace {

UINT RequestMessage() {
    // The number is the same for the whole session; a race stores it twice.
    static volatile UINT message = 0;
    if (message == 0) message = RegisterWindowMessageW(Zorvex::Host::MessageName);
    return message;
}

}  // namespace

extern "C" LRESULT CALLBACK VantrelHostHook(int code, WPARAM wParam, LPARAM lParam) {
    using namespace Zorvex::Host;
    if (code != HC_ACTION || !lParam) return CallNextHookEx(nullptr, code, wParam, lParam);
    const CWPSTRUCT sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (sent.message != RequestMessage() || !HoldHost()) return CallNextHookEx(nullptr, code, wParam, lParam);

    wchar_t name[NameRoom];
    SectionName(sent.wParam, sent.lParam, name);
    const bool stayed = ServerStays();
    ServeExchange(name);
    const bool stays = ServerStays();
    const LRESULT result = CallNextHookEx(nullptr, code, wParam, lParam);
    // A server that stays keeps the host as well, which remembers it: one reference more, or one less.
    const unsigned references = 1 + (stayed ? 1 : 0) - (stays ? 1 : 0);
    if (references > 0) ReleaseHostLater(sent.hwnd, references);
    return result;
}
