// Triggers on live windows: what the served objects were asked, and what the event hook leaves.
#include <gtest/gtest.h>

#include "Controller/Client/Connection.h"
#include "Controller/Loader/Bitness.h"
#include "Controller/Loader/LoaderTransport.h"
#include "RuntimeCore/Requests/Catalogue.h"
#include "tests/live/LiveTarget.h"
#include "tests/live/ServedCalls.h"
#include "tests/live/ServedDesktop.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({ "windows": [
  { "id": "plain", "class": "Frame", "rectangle": [0, 0, 100, 100] },
  { "id": "chromium", "class": "Chrome_WidgetWin_1", "rectangle": [100, 0, 100, 100], "objects": { "client": { "id": "client", "role": "client", "ia2": {},
    "children": [ { "id": "frame", "role": "pane", "ia2": {}, "children": [ { "id": "content", "role": "pane", "ia2": {}, "children": [
      { "id": "document", "role": "document", "ia2": {} } ] } ] } ] } },
    "children": [ { "id": "render", "class": "Chrome_RenderWidgetHostHWND", "rectangle": [100, 0, 100, 100] } ] },
  { "id": "firefox", "class": "MozillaWindowClass", "rectangle": [200, 0, 100, 100],
    "objects": { "window": { "id": "firefoxWindow", "role": "window", "name": "News", "children": [] } } },
  { "id": "page", "class": "AVL_AVView", "title": "AVPageView", "rectangle": [300, 0, 100, 100],
    "objects": { "window": { "id": "pageWindow", "role": "window", "name": "Letter", "children": [] } } } ] })";

class EnablementLive : public ::testing::Test {
protected:
    EnablementLive() {
        Loader::LoaderOptions options;
        options.hostPath = LiveFolder() + Loader::HostLibraryName(Loader::OwnBitness());
        options.serverPath = LiveFolder() + L"vantrel_x64.dll";
        options.afterRequest = Loader::AfterRequest::Stay;
        auto target = Loader::CreateLoaderSystem()->Open(desktop.Front(), options);
        if (!target) throw std::runtime_error(target.Error().ToString());
        transport = std::make_unique<Loader::LoaderTransport>(std::move(*target));
        client = std::make_unique<Client::Client>(*transport);
        ::GetWindowThreadProcessId(desktop.Front(), &process);
    }
    HWND Window(const char* id) const { return desktop.Windows().at(id); }
    bool Trigger(const char* id, TriggerScope scope = TriggerScope::Window) {
        const auto answer = client->Call(TriggerAccessibilityRequest{Window(id), scope});
        EXPECT_TRUE(answer) << (answer ? "" : answer.Error().ToString());
        return answer && answer->success;
    }
    int Calls(const std::string& question) const { return ServedCalls(desktop.Front(), question); }
    // What ends may take a moment to leave the system's list.
    bool ThreadsGoBackTo(DWORD count) const {
        for (int i = 0; i < 200 && CountThreads(process) > count; ++i) ::Sleep(10);
        return CountThreads(process) <= count;
    }

    const ServedDesktop desktop{kDesktop};
    std::unique_ptr<Loader::LoaderTransport> transport;
    std::unique_ptr<Client::Client> client;
    DWORD process = 0;
};

TEST_F(EnablementLive, PlainWindowIsAskedNothing) {
    EXPECT_FALSE(Trigger("plain"));
    EXPECT_EQ(Calls("client get_states"), 0);
    EXPECT_EQ(Calls("nobody get_states"), -1);
}

TEST_F(EnablementLive, ChromiumIsAskedOnceForItsClientContentAndDocument) {
    EXPECT_TRUE(Trigger("chromium", TriggerScope::Descendants));
    for (const char* question : {"client get_states", "content get_states", "document get_states"}) EXPECT_EQ(Calls(question), 1) << question;
    EXPECT_EQ(Calls("frame get_states"), 0);
}

TEST_F(EnablementLive, FirefoxIsAskedForItsName) {
    const int before = Calls("firefoxWindow get_accName");
    EXPECT_TRUE(Trigger("firefox"));
    EXPECT_EQ(Calls("firefoxWindow get_accName"), before + 1);
}

TEST_F(EnablementLive, ReaderIsAskedUnderAHookWhoseThreadIsGoneAfterwards) {
    // The first time, the process sets up what it keeps.
    EXPECT_TRUE(Trigger("page"));
    const DWORD threads = CountThreads(process);
    const int names = Calls("pageWindow get_accName"), hooks = Calls("page hooks");
    EXPECT_GT(hooks, 0) << "no hook asked for the window's object";
    for (int i = 0; i < 20; ++i) EXPECT_TRUE(Trigger("page"));
    EXPECT_EQ(Calls("pageWindow get_accName"), names + 20);
    EXPECT_GE(Calls("page hooks"), hooks + 20);
    EXPECT_TRUE(ThreadsGoBackTo(threads)) << CountThreads(process) << " threads, there were " << threads;

    // Neither a hook nor a thread may be left in a library that goes: the window raises events and answers on.
    EXPECT_FALSE(transport->Target().Unload(std::chrono::seconds(5)));
    const int afterwards = Calls("page hooks");
    DWORD_PTR answer = 0;
    EXPECT_TRUE(::SendMessageTimeoutW(Window("page"), WM_GETOBJECT, 0, static_cast<LPARAM>(OBJID_WINDOW), SMTO_ABORTIFHUNG, 5000, &answer));
    EXPECT_EQ(Calls("page hooks"), afterwards);
}

}  // namespace
}  // namespace Zorvex::Testing
