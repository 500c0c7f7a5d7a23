#include "tests/requests/RequestCase.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/Output.h"
#include "Controller/CommandLine/RecordJson.h"
#include "Controller/CommandLine/TableXml.h"
#include "RuntimeCore/Requests/Catalogue.h"

namespace Zorvex::Testing {

namespace {

using Json = nlohmann::ordered_json;

// The client that the requests come from, unless they say another one. No process has the number.
constexpr std::uint32_t kClient = 4711;
constexpr std::uint32_t kSearchMilliseconds = 5'000;
constexpr std::size_t kLineWidth = 140;

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error(path + " can't be read");
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(':', start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

bool IsNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789", text[0] == '-') == std::string::npos;
}

// An identifier, with handles and numbers or with their names: window, container, four more.
bool IsIdentifier(const std::vector<std::string>& parts) {
    const auto window = [](const std::string& part) { return part.rfind("0x", 0) == 0 || part.rfind('@', 0) == 0; };
    return parts.size() == 6 && window(parts[0]) && window(parts[5]) && (IsNumber(parts[1]) || parts[1].rfind('$', 0) == 0) &&
           IsNumber(parts[2]) && IsNumber(parts[3]) && IsNumber(parts[4]);
}

std::string Joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : ":") + part;
    return text;
}

// What differs from stage to stage and from run to run has names: handles of windows, numbers of containers.
class Names {
public:
    explicit Names(const std::map<std::string, HWND>& windows) {
        for (const auto& [id, handle] : windows) {
            const std::string text = Controller::HandleText(handle);
            m_handleOfWindow["@" + id] = text;
            m_windowOfHandle[text] = "@" + id;
        }
    }

    // A request's names become what they stand for.
    Json Resolved(const Json& json) const {
        if (json.is_string()) return ResolvedText(json.get<std::string>());
        if (!json.is_structured()) return json;
        Json result = json;
        for (auto& item : result) item = Resolved(item);
        return result;
    }

    // An answer's handles and container numbers become names. A container that has none takes the one that `expected`
    // has in its place, if that isn't another container's.
    Json Named(const Json& json, const Json& expected) {
        if (json.is_string()) return NamedText(json.get<std::string>(), expected.is_string() ? expected.get<std::string>() : "");
        if (json.is_array()) {
            Json result = Json::array();
            for (std::size_t i = 0; i < json.size(); ++i)
                result.push_back(Named(json[i], expected.is_array() && i < expected.size() ? expected[i] : Json()));
            return result;
        }
        if (!json.is_object()) return json;
        Json result = Json::object();
        for (const auto& [key, item] : json.items()) {
            const std::string name = NamedText(key, "");
            result[name] = Named(item, expected.is_object() && expected.contains(name) ? expected[name] : Json());
        }
        return result;
    }

private:
    std::string ResolvedText(const std::string& text) const {
        auto parts = Split(text);
        if (!IsIdentifier(parts)) return text.rfind('@', 0) == 0 ? Handle(text) : text;
        parts[0] = Handle(parts[0]);
        parts[5] = Handle(parts[5]);
        if (parts[1][0] == '$') {
            const auto container = m_numberOfContainer.find(parts[1]);
            if (container == m_numberOfContainer.end()) throw std::runtime_error("no answer before has a container " + parts[1]);
            parts[1] = container->second;
        }
        return Joined(parts);
    }

    std::string Handle(const std::string& name) const {
        if (name.rfind('@', 0) != 0) return name;
        const auto window = m_handleOfWindow.find(name);
        if (window == m_handleOfWindow.end()) throw std::runtime_error("the desktop has no window " + name);
        return window->second;
    }

    std::string Window(const std::string& handle) const {
        const auto window = m_windowOfHandle.find(handle);
        return window == m_windowOfHandle.end() ? handle : window->second;
    }

    std::string NamedText(const std::string& text, const std::string& expected) {
        auto parts = Split(text);
        if (!IsIdentifier(parts)) return Window(text);
        parts[0] = Window(parts[0]);
        parts[5] = Window(parts[5]);
        // 0 is no container but the window itself, or nothing at all.
        if (parts[1] != "0") parts[1] = Container(parts[1], Split(expected));
        return Joined(parts);
    }

    std::string Container(const std::string& number, const std::vector<std::string>& expected) {
        if (const auto known = m_containerOfNumber.find(number); known != m_containerOfNumber.end()) return known->second;
        std::string name;
        if (IsIdentifier(expected) && expected[1][0] == '$' && !m_numberOfContainer.count(expected[1])) name = expected[1];
        for (int i = 1; name.empty(); ++i)
            if (!m_numberOfContainer.count("$" + std::to_string(i))) name = "$" + std::to_string(i);
        m_numberOfContainer[name] = number;
        return m_containerOfNumber[number] = name;
    }

    std::map<std::string, std::string> m_handleOfWindow, m_windowOfHandle;
    std::map<std::string, std::string> m_numberOfContainer, m_containerOfNumber;
};

// On one line where it fits.
std::string Layout(const Json& json, std::size_t indent, std::size_t before) {
    std::string line;
    for (const bool compact : {true, false}) {
        if (!json.is_structured() || json.empty()) return json.dump();
        const std::string gap = compact ? "" : "\n" + std::string(indent + 1, ' ');
        line = json.is_array() ? "[" : "{";
        const char* comma = "";
        for (const auto& [key, item] : json.items()) {
            const std::string label = json.is_array() ? "" : Json(key).dump() + ": ";
            line += std::string(comma) + gap + label + Layout(item, indent + 1, compact ? 0 : label.size());
            comma = compact ? ", " : ",";
        }
        if (!compact) line += "\n" + std::string(indent, ' ');
        line += json.is_array() ? "]" : "}";
        if (compact && indent > 0 && indent + before + line.size() <= kLineWidth && line.find('\n') == std::string::npos) break;
    }
    return line;
}

// The answer as JSON; null if the server gives none, the kind of failure where an exception leaves it.
Json Answer(Client::Client& client, RequestId id, const RequestBuffer& request) {
    RequestBuffer response;
    if (const auto failure = client.CallRaw(request, response); failure && failure->problem != Client::Problem::NoResponse) {
        // The detail is the stage's own word.
        if (failure->problem == Client::Problem::ServerException) return {{"failure", Client::ToText(failure->problem)}};
        throw std::runtime_error(failure->ToString());
    }
    Json answer = Json::parse(Controller::DecodeResponseJson(id, response));
    // Stages lay the same document out differently.
    if (id == RequestId::ExtractTable && answer.is_object())
        if (const auto table = Controller::ReadTableXml(WideText(answer["xml"].get<std::string>())))
            answer["xml"] = NarrowText(Controller::WriteTableXml(*table));
    return answer;
}

// Only the places that differ: answers may be long.
std::string Difference(const Json& expected, const Json& answer) {
    // Without their order, which carries no meaning.
    const nlohmann::json one = nlohmann::json::parse(expected.dump()), other = nlohmann::json::parse(answer.dump());
    std::string text;
    for (const auto& change : nlohmann::json::diff(one, other)) {
        const std::string path = change["path"];
        text += "\n  " + (path.empty() ? "the answer" : path);
        if (change["op"] != "add") text += " was expected to be " + one[nlohmann::json::json_pointer(path)].dump();
        text += change["op"] == "remove" ? " and isn't there" : " is " + change["value"].dump();
    }
    return text;
}

}  // namespace

RequestCase::RequestCase(const std::string& text, const std::string& folder) : m_text(text) {
    const Json json = Json::parse(text);
    const Json& desktop = json.at("desktop");
    m_desktop = desktop.is_string() ? ReadFile(folder + "/" + desktop.get<std::string>()) : desktop.dump();
    m_nativeOnly = json.value("nativeOnly", "");
}

std::vector<std::string> RequestCase::Replay(Client::Client& client, const std::map<std::string, HWND>& windows) {
    Json json = Json::parse(m_text);
    Names names(windows);
    std::vector<std::string> problems;
    std::set<std::uint32_t> clients{kClient};
    std::size_t number = 0;
    for (Json& step : json.at("steps")) {
        const std::string label = "step " + std::to_string(++number) + ", " + step.at("request").get<std::string>();
        try {
            const auto id = Controller::FindRequest(step.at("request"));
            if (!id) throw std::runtime_error("there is no such request");
            const Json fields = names.Resolved(step.value("fields", Json::object()));
            if (fields.contains("clientPid")) clients.insert(fields["clientPid"].get<std::uint32_t>());
            const RequestBuffer request = Controller::EncodeRequestJson(*id, fields.dump(), {kClient, nullptr, kSearchMilliseconds});
            const Json expected = step.value("answer", Json());
            const Json answer = names.Named(Answer(client, *id, request), expected);
            const std::string difference = Difference(expected, answer);
            if (!step.contains("answer")) problems.push_back(label + ": no answer is written");
            else if (!difference.empty()) problems.push_back(label + ":" + difference);
            step["answer"] = answer;
        } catch (const std::exception& problem) {
            problems.push_back(label + ": " + problem.what());
        }
    }
    m_rewritten = Layout(json, 0, 0) + "\n";
    for (const std::uint32_t one : clients) client.Call(UnregisterAllContainersByClientPidRequest{one, nullptr});
    return problems;
}

std::vector<std::string> RequestCaseNames() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(std::filesystem::path(VANTREL_SOURCE_DIR) / "tests/requests"))
        if (file.path().extension() == ".json") names.push_back(file.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string RequestCasePath(const std::string& name) { return VANTREL_SOURCE_DIR "/tests/requests/" + name + ".json"; }

RequestCase ReadRequestCase(const std::string& name) { return {ReadFile(RequestCasePath(name)), VANTREL_SOURCE_DIR}; }

}  // namespace Zorvex::Testing
