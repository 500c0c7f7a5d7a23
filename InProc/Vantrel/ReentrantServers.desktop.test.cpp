// Servers that come back from inside an action: they ask the server again, let go of the client's elements, or destroy
// the window they live in.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/Support/FakeElement.h"
#include "tests/Support/RegisteredElement.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [{"id": "main", "class": "Chrome_WidgetWin_1"}]})";

class ReentrantServers : public FakeElementTest {
protected:
    using Action = std::function<void(const AAObjectIdentifier&)>;

    // Each request on an element for which it comes to an action. The callback is the server's.
    std::vector<std::pair<std::string, Action>> Requests() {
        return {{"SetFocus", [](const auto& element) { TryCall(SetFocusRequest{{element}}); }},
                {"DoDefaultAction", [](const auto& element) { TryCall(DoDefaultActionRequest{{element}}); }},
                {"ScrollIntoView", [](const auto& element) { TryCall(ScrollIntoViewRequest{{element}}); }},
                {"WriteText", [](const auto& element) { TryCall(WriteTextRequest{element, L"text"}); }},
                {"SetIsChecked", [](const auto& element) { TryCall(SetIsCheckedRequest{element, true}); }},
                {"ExpandDomAriaCombo", [](const auto& element) { TryCall(ExpandDomAriaComboRequest{element, true}); }},
                {"ExpandDomAriaCombo, collapse", [](const auto& element) { TryCall(ExpandDomAriaComboRequest{element, false}); }}};
    }

    // Runs every request with the callback in its action, and once more with it in the reads of the state.
    void ForEachRequest(const std::function<void(DesktopFixture&, const AAObjectIdentifier&, const Action&)>& callback) {
        for (const auto& [name, request] : Requests())
            for (const bool inState : {false, true}) {
                DesktopFixture desktop(kDesktop);
                auto element = FakeElement::Make();
                element->roleAnswer = name == "SetIsChecked" ? ROLE_SYSTEM_CHECKBUTTON : ROLE_SYSTEM_COMBOBOX;
                element->defaultAction = L"open";
                element->stateAnswer = name == "ScrollIntoView"                 ? STATE_SYSTEM_OFFSCREEN
                                       : name == "ExpandDomAriaCombo, collapse" ? STATE_SYSTEM_EXPANDED
                                                                                : STATE_SYSTEM_COLLAPSED;
                const AAObjectIdentifier identifier = Register(desktop.Window("main"), CComPtr<IAccessible>(static_cast<IAccessible2*>(element.p)));
                int reached = 0;
                const auto come = [&, act = request] {
                    // Once: what it asks comes here again.
                    if (reached++ == 0) callback(desktop, identifier, act);
                };
                if (inState) element->onState = [come](int) { come(); };
                else element->onAction = come;
                // The cache's reference and the one of the call are all that hold it.
                FakeElement* const bare = element.p;
                element.Release();
                request(identifier);
                const bool readsNoState = name == "DoDefaultAction" || name == "WriteText";
                EXPECT_EQ(reached > 0, !inState || !readsNoState) << name;
                if (FakeElement::Alive() == 1) bare->onAction = nullptr, bare->onState = nullptr;
                CacheCleaner::Release();
                EXPECT_EQ(FakeElement::Alive(), 0) << name;
            }
    }
};

TEST_F(ReentrantServers, ThatAskAgainAreServed) {
    ForEachRequest([](DesktopFixture& desktop, const AAObjectIdentifier& element, const Action& request) {
        request(element);
        GetObjectIdFromWindowRequest other;
        other.clientPid = kClientPid;
        other.window = desktop.Window("main");
        EXPECT_NE(Call(other).element.containerId, 0u);
    });
}

TEST_F(ReentrantServers, ThatUnregisterTheClientKeepTheElementAliveForTheLengthOfTheCall) {
    ForEachRequest([](DesktopFixture&, const AAObjectIdentifier&, const Action&) {
        CacheCleaner::Release();
        EXPECT_EQ(FakeElement::Alive(), 1);
    });
}

TEST_F(ReentrantServers, ThatDestroyTheirWindowEndWell) {
    ForEachRequest([](DesktopFixture& desktop, const AAObjectIdentifier& element, const Action& request) {
        desktop.DestroyWindow("main");
        request(element);
        CacheCleaner::Release();
    });
}

// The same, where the platform's objects die with their window.
TEST_F(ReentrantServers, WhoseElementsDieInTheirOwnActionEndWell) {
    for (const char* end : {R"({"destroyWindow": "main"})", R"({"remove": "box"})"}) {
        const std::string action = std::string(R"("do": [)") + end + "]}";
        const std::string text = R"({"windows": [{"id": "main", "class": "Chrome_WidgetWin_1", "objects": {"client": {"children": [
            {"id": "box", "role": "combo box", "defaultAction": "open", "state": ["collapsed", "offscreen"], "ia2": {}, "faults": [
              {"call": "accSelect", )" + action + R"(, {"call": "accDoDefaultAction", )" + action + R"(, {"call": "put_accValue", )" +
                               action + R"(, {"call": "scrollTo", )" + action + "]}]}}}]}";
        for (const auto& [name, request] : Requests()) {
            DesktopFixture desktop(text);
            const AAObjectIdentifier identifier = Register(desktop, "main", "box");
            request(identifier);
            request(identifier);
            CacheCleaner::Release();
            EXPECT_EQ(desktop.OutstandingReferences(), 0) << name;
        }
    }
}

}  // namespace
}  // namespace Zorvex::Testing
