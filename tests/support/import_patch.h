// Replaces one system function in the shipping library, to fake it or to make it fail.
//
//     ImportPatch patch("CopyFileA", +[](LPCSTR, LPCSTR, BOOL) WINAPI -> BOOL { return FALSE; });
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kitbag::test {

/// While it lives, the module's calls of the named import go to another function; only that
/// module's calls do. A name that is not imported fails the test.
class ImportPatch {
 public:
    template <class Function>
    ImportPatch(const char* name, Function* fake, const char* module = "Kitbag.dll")
        : ImportPatch(name, reinterpret_cast<DWORD_PTR>(fake), ::GetModuleHandleA(module)) {}
    ~ImportPatch();
    ImportPatch(ImportPatch&&) = delete;

 private:
    ImportPatch(const char* name, DWORD_PTR fake, HMODULE module);

    DWORD_PTR* const slot_;
    DWORD_PTR original_ = 0;
};

/// The names of everything that the library imports.
std::vector<std::string> ImportedNames();

}  // namespace kitbag::test
