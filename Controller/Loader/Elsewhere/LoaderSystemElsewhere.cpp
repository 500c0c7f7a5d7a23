// Where there are no foreign processes to load into: every operation says so.
#include "Controller/Loader/ILoaderSystem.h"

namespace Zorvex::Loader {

namespace {

LoadFailure NotHere() {
    return {LoadProblem::NotOnThisSystem, "live windows exist on Windows and under Wine only; use a desktop file here"};
}

class LoaderSystemElsewhere : public ILoaderSystem {
public:
    std::vector<WindowInfo> TopLevelWindows(WindowFilter) override { return {}; }
    LoadResult<WindowInfo> Describe(HWND) override { return NotHere(); }
    bool ProcessExists(DWORD) override { return false; }
    LoadResult<WindowInfo> Launch(const std::wstring&, std::chrono::milliseconds, std::stop_token) override { return NotHere(); }
    LoadResult<std::unique_ptr<ITarget>> Open(HWND, const LoaderOptions&) override { return NotHere(); }
};

}  // namespace

std::unique_ptr<ILoaderSystem> CreateLoaderSystem() { return std::make_unique<LoaderSystemElsewhere>(); }

}  // namespace Zorvex::Loader
