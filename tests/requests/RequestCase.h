// A request case: a desktop, and requests with the answers that they get there. The same file is replayed natively, on
// the simulated desktop, and live, on the desktop behind real windows. README.md beside this file has the format.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Controller/Client/Connection.h"
#include "Platform/Windows.h"

namespace Zorvex::Testing {

// A case's own mistakes (no such request, a field that it doesn't have, an unknown window or name) throw
// std::runtime_error with the number of the step.
class RequestCase {
public:
    // The text of a case file. `folder` is where a desktop that is named by its file lies.
    RequestCase(const std::string& text, const std::string& folder);

    // The text of the desktop file.
    const std::string& Desktop() const { return m_desktop; }
    // Why the live stage can't have these answers; empty if it must have them.
    const std::string& NativeOnly() const { return m_nativeOnly; }

    // Makes all requests, whatever the earlier ones answered, and says which answers aren't as written. `windows` are
    // the handles of the desktop's windows by their ids, on this stage. Afterwards the server holds nothing for the
    // client of the requests.
    std::vector<std::string> Replay(Client::Client& client, const std::map<std::string, HWND>& windows);

    // The case with the answers of the last replay in place of those that were written.
    const std::string& Rewritten() const { return m_rewritten; }

private:
    std::string m_text;
    std::string m_desktop;
    std::string m_nativeOnly;
    std::string m_rewritten;
};

// The case files of tests/requests, without folder and ending, sorted.
std::vector<std::string> RequestCaseNames();
std::string RequestCasePath(const std::string& name);
RequestCase ReadRequestCase(const std::string& name);

}  // namespace Zorvex::Testing
