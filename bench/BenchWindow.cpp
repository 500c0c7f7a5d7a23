#include "bench/BenchWindow.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/ObjectFromWindow.h"

namespace Zorvex::Bench {

BenchWindow::BenchWindow(std::wstring className, std::vector<std::pair<LONG, Simulated::ElementPtr>> objects) {
    auto window = std::make_shared<Simulated::Window>();
    window->id = "main";
    window->className = std::move(className);
    const LONG rootId = objects.front().first;
    for (auto& [id, object] : objects) window->objects[id] = std::move(object);
    Simulated::DesktopModel model;
    model.windows.push_back(window);
    m_desktop = Simulated::Desktop::Build(std::move(model));
    m_installed = std::make_unique<Simulated::InstalledDesktop>(m_desktop);
    m_window = m_desktop->WindowById("main")->hwnd;
    if (FAILED(ObjectFromWindow(m_window, rootId, m_root)) || !m_root) std::abort();
}

Simulated::ElementPtr NewElement(LONG role, std::wstring name) {
    auto element = std::make_shared<Simulated::Element>();
    element->role = role;
    if (!name.empty()) element->name = std::move(name);
    return element;
}

Simulated::ElementPtr AddElement(Simulated::Element& parent, LONG role, std::wstring name) {
    auto element = NewElement(role);
    element->name = std::move(name);
    parent.Add(element);
    return element;
}

std::size_t BareWalk(IAccessible* root) {
    std::size_t elements = 0;
    AAObjectWrapper::WalkDescendantsBfs(root, [&](const AAObjectWrapper& element) {
        CComVariant role;
        CComBSTR name;
        element.container->get_accRole(element.childId, &role);
        element.container->get_accName(element.childId, &name);
        benchmark::DoNotOptimize(name.m_str);
        ++elements;
        return AATreeVisitResult::Continue;
    });
    return elements;
}

}  // namespace Zorvex::Bench
