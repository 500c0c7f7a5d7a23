// Scripted object models in a desktop file.
#include "Platform/Simulated/AutomationObject.h"
#include "Platform/Simulated/JsonPlace.h"

namespace Simulated {
namespace {

AutomationValue ReadValue(const JsonPlace& place) {
    const Json& json = place.Value();
    if (json.is_null()) return {};
    if (json.is_boolean()) return {json.get<bool>()};
    if (json.is_number_float()) return {json.get<double>()};
    if (json.is_number()) return {place.Long()};
    if (json.is_string()) return {place.Text()};
    if (json.is_array()) {
        std::vector<AutomationValue> list;
        place.ForEach([&](const JsonPlace& item) { list.push_back(ReadValue(item)); });
        return {std::move(list)};
    }
    if (json.size() == 1 && json.contains("$result")) {
        AutomationFailure failure;
        place.IfKey("$result", [&](const JsonPlace& at) { failure.result = static_cast<HRESULT>(at.Bits()); });
        return {failure};
    }
    if (json.size() == 1 && json.contains("$throw")) {
        place.IfKey("$throw", [](const JsonPlace& at) { at.Flag(); });
        return {AutomationFailure{E_FAIL, true}};
    }
    return {ReadAutomation(place)};
}

OrderedJson WriteValue(const AutomationValue& value);

struct ValueWriter {
    OrderedJson operator()(std::monostate) const { return nullptr; }
    OrderedJson operator()(bool flag) const { return flag; }
    OrderedJson operator()(LONG number) const { return number; }
    OrderedJson operator()(double number) const { return number; }
    OrderedJson operator()(const std::wstring& text) const { return Narrow(text); }
    OrderedJson operator()(const AutomationPtr& object) const { return WriteAutomation(*object); }
    OrderedJson operator()(const std::vector<AutomationValue>& list) const {
        OrderedJson json = OrderedJson::array();
        for (const AutomationValue& item : list) json.push_back(WriteValue(item));
        return json;
    }
    OrderedJson operator()(const AutomationFailure& failure) const {
        if (failure.raise) return {{"$throw", true}};
        return {{"$result", HexText(static_cast<std::uint32_t>(failure.result))}};
    }
};

OrderedJson WriteValue(const AutomationValue& value) { return std::visit(ValueWriter(), value.value); }

}  // namespace

AutomationPtr ReadAutomation(const JsonPlace& place) {
    if (!place.Value().is_object()) place.Fail("an object is expected");
    auto object = std::make_shared<AutomationData>();
    for (const auto& item : place.Value().items())
        object->properties.emplace_back(Widen(item.key()), ReadValue(JsonPlace(place, item.key(), item.value())));
    return object;
}

OrderedJson WriteAutomation(const AutomationData& object) {
    OrderedJson json = OrderedJson::object();
    for (const auto& [name, value] : object.properties) json[Narrow(name)] = WriteValue(value);
    return json;
}

}  // namespace Simulated
