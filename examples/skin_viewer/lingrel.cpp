// Stands in for the application's locale library: its language is German, without a sub-language.
// A skin's German files lie in the folder "de" of the skin beside this library.

#include <windows.h>

#include <cstring>
#include <string>

namespace {

std::string OwnFolder() {
    char path[MAX_PATH];
    const DWORD length = ::GetModuleFileNameA(::GetModuleHandleA("Lingrel.dll"), path, sizeof path);
    const std::string file(path, length);
    return file.substr(0, file.rfind('\\') + 1);
}

unsigned Copy(const std::string& text, char* buffer, unsigned long size) {
    if (text.size() >= size) return 0;
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return static_cast<unsigned>(text.size());
}

}  // namespace

extern "C" __declspec(dllexport) unsigned GetLocaleLanguageDirectoryA(char* buffer,
                                                                      unsigned long size) {
    return Copy(OwnFolder() + "data\\skin\\de\\", buffer, size);
}

extern "C" __declspec(dllexport) unsigned GetLocaleSubLanguageDirectoryA(char* buffer,
                                                                         unsigned long size) {
    return Copy("", buffer, size);
}
