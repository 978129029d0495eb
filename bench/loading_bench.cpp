// What the library, as it is installed, costs a program before its first call: its size, and being
// loaded and unloaded.
//
// The idle monitor's shared section has its price: at every load Wine's server makes a file for it,
// copies the section there and deletes the file. That is the platform's doing, so that the bound is
// for the library beside an empty DLL that has such a section, too; what the section costs, the DLL
// without one shows.

#include <bench/measure.h>
#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

using namespace kitbag::bench;

namespace {

std::filesystem::path Beside(const char* name) {
    char program[MAX_PATH];
    ::GetModuleFileNameA(nullptr, program, MAX_PATH);
    return std::filesystem::path(program).replace_filename(name);
}

/// The program has the same imports too, so that what they come from stays loaded.
Calls Load(const char* name) {
    return [file = Beside(name).string()](int count) {
        for (int i = 0; i < count; ++i) {
            const HMODULE library = ::LoadLibraryA(file.c_str());
            if (!library) throw std::runtime_error(file + " cannot be loaded");
            ::FreeLibrary(library);
        }
    };
}

/// scripts/bench installs the library here.
constexpr char kInstalled[] = "..\\installed\\bin\\Kitbag.dll";

Result Size() {
    constexpr std::uintmax_t kBound = 500'000;
    const auto bytes = std::filesystem::file_size(Beside(kInstalled));
    const auto kilobytes = [](auto size) { return std::to_string(size / 1000) + " KB"; };
    return {"Kitbag.dll, installed",          kilobytes(bytes), "", "", "<= " + kilobytes(kBound),
            bytes <= kBound ? "" : "EXCEEDED"};
}

}  // namespace

int main() {
    const auto compare = [](const char* reference, const char* library, double bound) {
        return Measure(Comparison{"LoadLibrary and FreeLibrary", Load(kInstalled), reference,
                                  Load(library), bound});
    };
    return Print({compare("an empty DLL with the same imports", "bench_imports.dll", 0),
                  compare("the same with a shared section", "bench_imports_shared.dll", 1.3),
                  Size()})
               ? 0
               : 1;
}
