#include "Platform/Simulated/InstalledDesktop.h"

#include <mutex>

#include "Platform/Simulated/Desktop.h"
#include "Platform/Simulated/System.h"

namespace Simulated {
namespace {

std::mutex g_lock;
std::shared_ptr<Desktop> g_current;

void Replace(const std::shared_ptr<Desktop>& desktop) {
    const std::lock_guard guard(g_lock);
    g_current = desktop;
}

void EnterSystem(const Desktop& desktop) {
    const DesktopModel& model = desktop.Model();
    for (const ProcessData& process : model.processes) {
        Process entry;
        entry.id = process.id;
        entry.path = process.path;
        entry.session = process.session ? process.session : model.system.session;
        entry.accessDenied = process.accessDenied;
        SetProcess(entry);
    }
    if (model.processes.empty()) {
        Process entry;
        entry.id = model.CurrentProcess();
        entry.path = L"C:\\Windows\\simulated.exe";
        entry.session = model.system.session;
        SetProcess(entry);
    }
    SetCurrentProcessId(model.CurrentProcess());
    SetOsVersion(model.system.osVersion[0], model.system.osVersion[1], model.system.osVersion[2]);
    for (const auto& [name, value] : model.system.environment) SetUserEnvironment(name, value);
}

}  // namespace

std::shared_ptr<Desktop> CurrentDesktop() {
    const std::lock_guard guard(g_lock);
    return g_current;
}

InstalledDesktop::InstalledDesktop(std::shared_ptr<Desktop> desktop) : m_desktop(std::move(desktop)), m_before(CurrentDesktop()) {
    Replace(m_desktop);
    EnterSystem(*m_desktop);
}

InstalledDesktop::~InstalledDesktop() {
    Replace(m_before);
    for (const auto& [name, value] : m_desktop->Model().system.environment) RemoveUserEnvironment(name);
    for (const ProcessData& process : m_desktop->Model().processes) RemoveProcess(process.id);
    if (m_before) {
        EnterSystem(*m_before);
        return;
    }
    Process initial;
    initial.id = 1000;
    initial.path = L"C:\\Windows\\simulated.exe";
    SetProcess(initial);
    SetCurrentProcessId(1000);
    SetOsVersion(10, 0, 19045);
}

}  // namespace Simulated
