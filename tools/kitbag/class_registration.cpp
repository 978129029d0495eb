#include "class_registration.h"

#include <kitbag/pages.h>
#include <oleauto.h>

#include <algorithm>

#include "file.h"
#include "sections.h"
#include "text.h"

namespace kitbag::tool {

namespace {

std::wstring ClassKey(const CLSID& identifier) {
    wchar_t text[40];
    ::StringFromGUID2(identifier, text, std::size(text));
    return L"CLSID\\" + std::wstring(text);
}

std::wstring WithVariables(const std::wstring& path) {
    wchar_t expanded[32768];
    const DWORD length = ::ExpandEnvironmentStringsW(path.c_str(), expanded, std::size(expanded));
    return length > 0 && length <= std::size(expanded) ? expanded : path;
}

std::wstring WithoutQuotes(const std::wstring& path) {
    return path.starts_with(L'"') ? path.substr(1, path.find(L'"', 1) - 1) : path;
}

/// The program of a command line: what stands in quotes, or what goes up to its extension.
std::wstring ProgramOf(const std::wstring& command) {
    if (command.starts_with(L'"')) return WithoutQuotes(command);
    const std::size_t end = Folded(command).find(L".EXE");
    return end == std::wstring::npos ? command : command.substr(0, end + 4);
}

/// The file that serves the class; empty where it is not registered.
std::wstring ServerOf(const CLSID& identifier) {
    const std::wstring key = ClassKey(identifier);
    const auto library = ReadText(HKEY_CLASSES_ROOT, key + L"\\InprocServer32", {});
    if (library) return WithoutQuotes(WithVariables(*library));
    const auto program = ReadText(HKEY_CLASSES_ROOT, key + L"\\LocalServer32", {});
    return program ? ProgramOf(WithVariables(*program)) : std::wstring();
}

/// Registration may have stored the short form.
std::wstring LongPath(const std::wstring& path) {
    wchar_t buffer[32768];
    const DWORD length = ::GetLongPathNameW(path.c_str(), buffer, std::size(buffer));
    return length > 0 && length < std::size(buffer) ? buffer : path;
}

std::wstring ServerText(const std::wstring& server) {
    if (server.empty()) return L"not registered";
    return server + (FileExists(server) ? L"" : L" ! the file is missing");
}

std::wstring RegisteredTypeLibrary() {
    BSTR path = nullptr;
    if (FAILED(::QueryPathOfRegTypeLib(LIBID_Kitbag, 1, 0, LOCALE_NEUTRAL, &path))) return {};
    // Systems differ in whether the terminator is counted.
    std::wstring file = path;
    ::SysFreeString(path);
    return file;
}

bool HoldsTypeLibrary(const std::wstring& file) {
    ITypeLib* library = nullptr;
    if (FAILED(::LoadTypeLibEx(file.c_str(), REGKIND_NONE, &library))) return false;
    library->Release();
    return true;
}

std::wstring TypeLibraryText() {
    const std::wstring file = RegisteredTypeLibrary();
    if (file.empty()) return L"not registered";
    return file + (HoldsTypeLibrary(file) ? L"" : L" ! cannot be loaded");
}

}  // namespace

std::wstring PageFactoryText() {
    const std::wstring server = ServerOf(CLSID_KivPageFactory);
    const std::wstring own = ModuleFile(::GetModuleHandleW(L"Kitbag.dll"));
    std::wstring text = L"page factory     " + ServerText(server) + L'\n';
    if (!server.empty() && !AreSameNames(LongPath(server), LongPath(own)))
        text += L"                 ! another library than " + own + L'\n';
    return text + L"type library     " + TypeLibraryText() + L'\n';
}

std::wstring GraphicFactoryText() {
    return L"graphic factory  " + ServerText(ServerOf(CLSID_KivGraphicFactory)) + L'\n';
}

}  // namespace kitbag::tool
