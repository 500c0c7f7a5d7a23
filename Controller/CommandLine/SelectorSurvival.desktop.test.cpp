// How many generated selectors still find their element when the program has changed: the table of docs/selectors.md.
#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/ElementDescription.h"
#include "Controller/CommandLine/ElementTree.h"
#include "tests/Support/DesktopFixture.h"

namespace Zorvex::Controller {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kDesktops[] = {"notepad.json", "settings.json", "browser.json", "registry.json"};
constexpr double kResemblance = 0.7;

// Every element that the file lists, parents first.
void EachElement(Json& desktop, const std::function<void(Json& element)>& visit) {
    const std::function<void(Json&)> walk = [&](Json& element) {
        visit(element);
        if (element.contains("children"))
            for (Json& child : element["children"])
                if (!child.contains("windowObject")) walk(child);
    };
    const std::function<void(Json&)> windows = [&](Json& list) {
        for (Json& window : list) {
            if (window.contains("objects"))
                for (auto& object : window["objects"]) walk(object);
            if (window.contains("children")) windows(window["children"]);
        }
    };
    windows(desktop["windows"]);
}

// An element is known again by its help text, which no generated selector looks at.
void Mark(Json& desktop) {
    int number = 0;
    EachElement(desktop, [&](Json& element) { element["help"] = "mark " + std::to_string(++number); });
}

void Retitle(Json& desktop, const std::function<std::string(const std::string&)>& change) {
    for (Json& window : desktop["windows"]) {
        const std::string old = window.value("title", "");
        if (old.empty()) continue;
        window["title"] = change(old);
        EachElement(desktop, [&](Json& element) {
            if (element.value("name", "") == old) element["name"] = window["title"];
        });
    }
}

struct Change {
    const char* name;
    std::function<void(Json&)> before;  // makes the desktop fit for the change
    std::function<void(Json&)> after;
};

const Change kChanges[] = {
    {"nothing", [](Json&) {}, [](Json&) {}},
    {"the first word of the title", [](Json&) {},
     [](Json& desktop) { Retitle(desktop, [](const std::string& title) { return "Other" + title.substr(std::min(title.find(' '), title.size())); }); }},
    {"a number in the title", [](Json& desktop) { Retitle(desktop, [](const std::string& title) { return title + " 12"; }); },
     [](Json& desktop) { Retitle(desktop, [](const std::string& title) { return title.substr(0, title.size() - 1) + "3"; }); }},
    {"a sibling in front of the others", [](Json&) {},
     [](Json& desktop) {
         EachElement(desktop, [](Json& element) {
             if (!element.contains("children") || element["children"].empty() || element["children"][0].contains("windowObject")) return;
             const Json role = element["children"][0].value("role", Json("pane"));
             element["children"].insert(element["children"].begin(), Json{{"role", role}, {"name", "New"}});
         });
     }},
    {"a pane around all children", [](Json&) {},
     [](Json& desktop) {
         EachElement(desktop, [](Json& element) {
             if (!element.contains("children") || element["children"].empty() || element.value("role", Json()) == Json("pane") ) return;
             for (const Json& child : element["children"])
                 if (child.contains("windowObject") || child.value("simple", false)) return;
             element["children"] = Json::array({Json{{"role", "pane"}, {"children", element["children"]}}});
         });
     }},
    {"the order of the children", [](Json&) {},
     [](Json& desktop) {
         EachElement(desktop, [](Json& element) {
             if (element.contains("children")) std::reverse(element["children"].begin(), element["children"].end());
         });
     }},
};

GeneralOptions WithDesktop(const Json& desktop) {
    const std::string file = testing::TempDir() + "survival.json";
    GeneralOptions options;
    options.desktopFile = std::wstring(file.begin(), file.end());
    WriteWholeFile(options.desktopFile, desktop.dump());
    return options;
}

// Mark and selector of every marked element of the desktop's first visible window.
std::vector<std::pair<std::wstring, std::wstring>> Describe(const Json& desktop, std::optional<double> fuzzyLevel) {
    Session session(WithDesktop(desktop));
    session.Open();
    std::vector<AAObjectIdentifier> elements;
    for (const TreeNode& node : ReadTree(session, 1'000, 100'000).nodes) elements.push_back(node.identifier);
    const auto marks = ReadTexts(session, elements, L"helpText");
    DescriptionWishes wishes;
    wishes.fuzzyLevel = fuzzyLevel;
    std::vector<std::pair<std::wstring, std::wstring>> described;
    for (std::size_t i = 0; i < elements.size(); ++i)
        if (marks[i].rfind(L"mark ", 0) == 0)
            described.emplace_back(marks[i], WriteSelector(DescribeElement(session, elements[i], wishes).selector));
    return described;
}

std::size_t Survivors(const Json& desktop, const std::vector<std::pair<std::wstring, std::wstring>>& described) {
    Session session(WithDesktop(desktop));
    std::size_t survivors = 0;
    for (const auto& [mark, selector] : described) {
        try {
            survivors += ReadTexts(session, {FindTarget(session, {selector})}, L"helpText").front() == mark;
        } catch (const CommandFailure&) {
            // Nothing is found any more.
        }
    }
    return survivors;
}

TEST(SelectorSurvival, TableOfTheDocumentIsTrue) {
    std::string table;
    for (const Change& change : kChanges) {
        std::size_t all = 0, exact = 0, fuzzy = 0;
        for (const char* file : kDesktops) {
            Json before = Json::parse(Testing::DesktopFixture::ShippedFile(file));
            Mark(before);
            change.before(before);
            Json after = before;
            change.after(after);
            const auto exactly = Describe(before, std::nullopt), resembling = Describe(before, kResemblance);
            all += exactly.size();
            exact += Survivors(after, exactly);
            fuzzy += Survivors(after, resembling);
        }
        table += "| " + std::string(change.name) + " | " + std::to_string(exact) + " of " + std::to_string(all) + " | " + std::to_string(fuzzy) +
                 " of " + std::to_string(all) + " |";
        table += '\n';
    }
    std::cout << table;
    const std::string document = ReadWholeFile(WideText(VANTREL_SOURCE_DIR "/docs/selectors.md"));
    for (std::size_t start = 0; start < table.size();) {
        const std::size_t end = table.find('\n', start);
        EXPECT_NE(document.find(table.substr(start, end - start)), std::string::npos) << table.substr(start, end - start);
        start = end + 1;
    }
}

}  // namespace
}  // namespace Zorvex::Controller
