// A folder of the test's own.
#pragma once

#include <windows.h>

#include <filesystem>

namespace kitbag::test {

/// A new empty folder below the system's temporary folder; deleted with its content at the end.
class TemporaryFolder {
 public:
    TemporaryFolder() { create_directories(path_); }
    ~TemporaryFolder() {
        std::error_code ignored;
        remove_all(path_, ignored);
    }

    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
    static inline int count_ = 0;
    const std::filesystem::path path_ =
        std::filesystem::temp_directory_path() /
        ("kitbag-" + std::to_string(::GetCurrentProcessId()) + '-' + std::to_string(++count_));
};

}  // namespace kitbag::test
