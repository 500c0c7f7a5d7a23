// What the command line needs of the live system beyond the loader.
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/SystemChoice.h"
#include "Platform/Windows.h"

namespace Zorvex::Controller {

std::unique_ptr<Loader::ILoaderSystem> OpenDesktopFile(const std::wstring&) {
    throw CommandFailure(ExitCode::WrongArguments,
                         "--desktop belongs to the native build: here windows are live. A desktop file is served by served_desktop.exe");
}

std::wstring LibraryPath(const std::wstring& name) {
    const bool bare = !name.empty() && name.find_first_of(L"\\/:") == std::wstring::npos;
    if (!bare || ::GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES) return name;
    wchar_t program[1024];
    const DWORD length = ::GetModuleFileNameW(nullptr, program, 1024);
    if (length == 0 || length >= 1024) return name;
    const std::wstring path = program;
    return path.substr(0, path.find_last_of(L'\\') + 1) + name;
}

std::uint32_t OwnClientNumber() { return ::GetCurrentProcessId(); }

std::optional<Bitmap> TakePicture(HWND window) {
    RECT area{};
    if (!::IsWindowVisible(window) || !::GetWindowRect(window, &area)) return std::nullopt;
    const int width = area.right - area.left, height = area.bottom - area.top;
    if (width <= 0 || height <= 0 || width > 16'384 || height > 16'384) return std::nullopt;
    HDC screen = ::GetDC(nullptr);
    if (!screen) return std::nullopt;
    HDC memory = ::CreateCompatibleDC(screen);
    BITMAPINFO form{};
    form.bmiHeader.biSize = sizeof(form.bmiHeader);
    form.bmiHeader.biWidth = width;
    form.bmiHeader.biHeight = -height;  // top down
    form.bmiHeader.biPlanes = 1;
    form.bmiHeader.biBitCount = 32;
    form.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP section = memory ? ::CreateDIBSection(screen, &form, DIB_RGB_COLORS, &bits, nullptr, 0) : nullptr;
    std::optional<Bitmap> picture;
    if (section && bits) {
        const HGDIOBJ before = ::SelectObject(memory, section);
        // From the screen: what other windows cover is covered in the picture too.
        if (::BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY)) {
            ::GdiFlush();
            picture.emplace(width, height, Color{0, 0, 0});
            const auto* pixel = static_cast<const std::uint8_t*>(bits);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x, pixel += 4) picture->Set(x, y, {pixel[2], pixel[1], pixel[0]});
        }
        ::SelectObject(memory, before);
    }
    if (section) ::DeleteObject(section);
    if (memory) ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
    return picture;
}

}  // namespace Zorvex::Controller
