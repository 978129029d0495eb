// A second Kitbag.dll in the process, with nothing remembered yet.
//
//     const LibraryCopy library;
//     const ImportPatch patch("GetVersionExA", Fail, library.kName);
//     EXPECT_FALSE(library.Find<decltype(KB_IsNT)>("KB_IsNT")());
#pragma once

#include <tests/support/temporary_folder.h>

namespace kitbag::test {

/// A copy of the library's file, loaded: what the library keeps for the life of its process begins
/// anew, and the words that processes share are the test's own. One at a time.
class LibraryCopy {
 public:
    static constexpr char kName[] = "KitbagCopy.dll";

    LibraryCopy() {
        copy_file(Built() / "Kitbag.dll", File());
        module_ = ::LoadLibraryW(File().c_str());
        EXPECT_NE(nullptr, module_);
    }
    ~LibraryCopy() { ::FreeLibrary(module_); }
    LibraryCopy(LibraryCopy&&) = delete;

    /// Where the tests' programs and libraries lie.
    static std::filesystem::path Built() { return std::filesystem::path(_pgmptr).parent_path(); }

    std::filesystem::path File() const { return folder_ / kName; }
    HMODULE Get() const { return module_; }
    template <class Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(::GetProcAddress(module_, name)));
    }

 private:
    const TemporaryFolder folder_;
    HMODULE module_ = nullptr;
};

}  // namespace kitbag::test
