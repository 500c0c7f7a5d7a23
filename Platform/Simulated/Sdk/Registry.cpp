#include <cstring>

#include "Platform/Simulated/Sdk/SystemState.h"

namespace Simulated {
namespace {

constexpr std::wstring_view UserEnvironment = L"Environment";
constexpr std::wstring_view MachineEnvironment = L"System\\CurrentControlSet\\Control\\Session Manager\\Environment";
constexpr DWORD BytesPerUnit = 2;

auto RegistryKey(HKEY root, std::wstring_view subKey, std::wstring_view name) {
    return std::tuple(reinterpret_cast<std::uintptr_t>(root), LowerCase(subKey), LowerCase(name));
}

}  // namespace

void SetRegistryText(HKEY root, std::wstring_view subKey, std::wstring_view name, std::wstring_view value, DWORD type) {
    std::lock_guard guard(State().lock);
    State().registry[RegistryKey(root, subKey, name)] = {type, std::wstring(value)};
}
void RemoveRegistryValue(HKEY root, std::wstring_view subKey, std::wstring_view name) {
    std::lock_guard guard(State().lock);
    State().registry.erase(RegistryKey(root, subKey, name));
}
void SetUserEnvironment(std::wstring_view name, std::wstring_view value) {
    SetRegistryText(HKEY_CURRENT_USER, UserEnvironment, name, value);
}
void RemoveUserEnvironment(std::wstring_view name) { RemoveRegistryValue(HKEY_CURRENT_USER, UserEnvironment, name); }
void SetMachineEnvironment(std::wstring_view name, std::wstring_view value) {
    SetRegistryText(HKEY_LOCAL_MACHINE, MachineEnvironment, name, value);
}
unsigned RegistryReads() {
    std::lock_guard guard(State().lock);
    return State().registryReads;
}

}  // namespace Simulated

using namespace Simulated;

LONG RegGetValueW(HKEY key, LPCWSTR subKey, LPCWSTR value, DWORD flags, DWORD* type, void* data, DWORD* size) {
    std::lock_guard guard(State().lock);
    ++State().registryReads;
    if (data && !size) return ERROR_INVALID_PARAMETER;
    const auto found = State().registry.find(RegistryKey(key, subKey ? subKey : L"", value ? value : L""));
    if (found == State().registry.end()) return ERROR_FILE_NOT_FOUND;

    // A text that names variables is expanded and given as plain text, unless the caller wants it as it stands. None
    // of the simulated texts names a variable.
    const bool expands = found->second.type == TypeExpandText && !(flags & RRF_NOEXPAND);
    const DWORD given = expands ? TypeText : found->second.type;
    const DWORD wanted = given == TypeText ? RRF_RT_REG_SZ : given == TypeExpandText ? RRF_RT_REG_EXPAND_SZ : 0;
    if (type) *type = given;
    if (!(flags & wanted)) return ERROR_UNSUPPORTED_TYPE;

    const std::wstring& text = found->second.text;
    const DWORD needed = static_cast<DWORD>(text.size() + 1) * BytesPerUnit;
    if (!size) return ERROR_SUCCESS;
    const DWORD capacity = *size;
    *size = needed;
    if (!data) return ERROR_SUCCESS;
    if (capacity < needed) return ERROR_MORE_DATA;
    std::memcpy(data, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    return ERROR_SUCCESS;
}
