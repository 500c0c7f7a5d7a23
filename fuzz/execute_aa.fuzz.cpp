// The whole server: any request, on a desktop in which any call may go wrong.
//
// Byte 0 says what goes wrong, byte 1 in which call, byte 2 is the request's number; the rest are its fields.
// execute_aa_seeds.cpp writes the seeds.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

#include "Common/include/ArchiveException.h"
#include "Common/include/ComException.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "InProc/Vantrel/ExecuteAa.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/DesktopFixture.h"

namespace {

using Zorvex::Testing::DesktopFixture;

// Handles and ids are fixed, so that seeds can name them: window 0x10010, client 7, containers from 1.
constexpr char kDesktop[] = R"({"windows": [{"id": "main", "handle": 65552, "class": "Chrome_WidgetWin_1", "title": "Main",
  "rectangle": [0, 0, 100, 100], "objects": {"window": {
    "id": "root", "role": "window", "name": "Main", "rectangle": [0, 0, 100, 100], "focus": "edit", "children": [
      {"id": "list", "role": "list", "name": "List", "rectangle": [0, 0, 50, 50], "selection": ["one"], "children": [
        {"id": "one", "role": "list item", "name": "One", "simple": true, "rectangle": [0, 0, 50, 10]},
        {"id": "two", "role": "list item", "name": "Two", "simple": true, "rectangle": [0, 10, 50, 10]}]},
      {"id": "edit", "role": "editable text", "name": "Edit", "value": "Text", "focus": "self", "rectangle": [0, 50, 50, 20],
       "ia2": {"attributes": "tag:input;", "text": "Text", "uniqueId": 5}, "uia": {"automationId": "edit", "runtimeId": [1, 2]}},
      {"id": "row", "role": "row", "children": [{"id": "cell", "role": "cell", "name": "Cell"}]}]}}},
  {"id": "view", "handle": 65568, "class": "SysListView32",
   "listView": {"columns": [{"text": "A", "width": 10}, {"text": "B", "width": 0}], "items": [["1", "2"]]},
   "objects": {"window": {"id": "viewList", "role": "list", "children": [{"id": "item", "role": "list item", "simple": true}]}}}]})";

DesktopFixture& Desktop() {
    static DesktopFixture& desktop = [&]() -> DesktopFixture& {
        static DesktopFixture fixture{std::string_view(kDesktop)};
        for (const char* id : {"root", "list", "edit", "row", "cell"})
            Zorvex::AAContainerCache::Instance().RegisterContainerObject(7, fixture.Element(id));
        return fixture;
    }();
    return desktop;
}

// Letting go of client 7 would leave every later input without elements, since ids aren't given twice. The request
// then means client 8, who has one container anew each time.
void SpareTheClient(Zorvex::RequestBuffer& request, std::uint32_t number) {
    constexpr std::size_t place = 4 + 5 + 1;  // behind length, number and the tag
    constexpr std::uint32_t unregister = 37, spared = 7, other = 8;
    std::uint32_t client = 0;
    if (number != unregister || request.size() < place + sizeof client) return;
    std::memcpy(&client, request.data() + place, sizeof client);
    if (client != spared) return;
    std::memcpy(request.data() + place, &other, sizeof other);
    Zorvex::AAContainerCache::Instance().RegisterContainerObject(other, Desktop().Element("viewList"));
}

// Whatever went wrong, the only references left are those of the registered containers.
void CheckReferences(DesktopFixture& desktop) {
    const auto held = static_cast<std::size_t>(desktop.OutstandingReferences());
    const std::size_t registered = Zorvex::AAContainerCache::Instance().ContainerCount();
    if (held == registered) return;
    std::fprintf(stderr, "%zu references for %zu containers\n", held, registered);
    std::abort();
}

Simulated::Fault FaultOf(std::uint8_t kind, std::uint8_t at) {
    Simulated::Fault fault;
    fault.at = at + 1u;
    fault.times = 1 + (kind >> 4);
    switch (kind & 7) {
        case 0: fault.result = E_FAIL; break;
        case 1: fault.null = true; break;
        case 2: fault.type = VT_I2; break;
        case 3: fault.raise = true; break;
        case 4: fault.count = 0x7FFFFFFF; break;
        case 5: fault.count = -1; break;
        case 6: fault.result = S_FALSE; break;
        default:
            fault.count = 999999;
            fault.times = 1;  // it is believed, and costs its memory each time
            break;
    }
    return fault;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    DesktopFixture& desktop = Desktop();
    desktop.ClearFaults();
    Simulated::SetClockTick(1);
    Simulated::ClearDebugOutput();

    Zorvex::RequestBuffer request;
    const auto total = static_cast<std::uint32_t>(4 + 5 + size - 3);
    request.append(&total, 4);
    request.push_back(1);
    const std::uint32_t number = data[2];
    request.append(&number, 4);
    request.append(data + 3, size - 3);
    SpareTheClient(request, number);
    if (data[0] != 0xFF) desktop.AddFault(FaultOf(data[0], data[1]));
    try {
        Zorvex::RequestBuffer response;
        ExecuteAa(&request, &response);
    } catch (const Zorvex::ArchiveException&) {
    } catch (const Zorvex::ComException&) {
    } catch (const Simulated::ServerFailure&) {
    } catch (const std::bad_alloc&) {
    }
    desktop.ClearFaults();
    CheckReferences(desktop);
    return 0;
}
