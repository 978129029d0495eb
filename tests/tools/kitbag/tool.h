// kitbag.exe as a user runs it, with settings that are the test's own.
#pragma once

#include <gmock/gmock.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

#include <map>

namespace kitbag::test {

/// How a program ended and what it wrote, with the line ends of a text.
struct Ending {
    DWORD code = 0;
    std::string output;
    std::string errors;
};

/// A program that runs until it ends or this object does.
class Running {
 public:
    /// In the folder; the output goes into a file of this object's own, or where it is wanted.
    Running(std::wstring command, const std::filesystem::path& folder,
            const wchar_t* output = nullptr);
    ~Running();
    Running(const Running&) = delete;

    std::string Output() const { return Written("output"); }
    /// Waits until the output holds the text; the test fails where it does not come.
    void WaitFor(const std::string& text) const;
    Ending Wait() const;

 private:
    std::string Written(const char* name) const;

    const TemporaryFolder folder_;
    HANDLE process_ = nullptr;
};

/// The folder of the programs that were built, with the backslash at its end.
std::wstring BuiltFolder();

inline void PrintTo(const Ending& ending, std::ostream* out) {
    *out << "exit code " << ending.code << "\n--- output\n"
         << ending.output << "--- errors\n"
         << ending.errors;
}

/// The bytes of a text as the registry and wide files hold it, without a terminator.
std::string Utf16(const std::wstring& text);

/// Every value below the settings' root by its path, with its type and bytes; sections end in a
/// backslash.
using Snapshot = std::map<std::wstring, std::pair<DWORD, Bytes>>;
inline const Snapshot::mapped_type kSection{REG_NONE, Bytes("")};
Snapshot TakeSnapshot();

/// Any bytes as a value of any type.
void Store(const std::string& section, const std::wstring& name, DWORD type,
           const std::string& bytes);

/// The tool is another process: it does not see the private registry. While a test runs, the
/// application's real keys are put aside. Programs run in the test's own folder.
class ToolTest : public testing::Test {
 protected:
    ToolTest();
    ~ToolTest() override;

    Ending Run(const std::wstring& command) const { return Running(command, Folder()).Wait(); }
    static std::wstring KitbagCommand(const std::wstring& arguments) {
        return L'"' + BuiltFolder() + L"kitbag.exe\" " + arguments;
    }
    Ending Kitbag(const std::wstring& arguments) const { return Run(KitbagCommand(arguments)); }

    const std::filesystem::path& Folder() const { return folder_.Path(); }
    std::wstring In(const std::string& name) const { return folder_.In(name); }
    std::string ContentOf(const std::string& name) const;

    const TextFolder<wchar_t> folder_;
};

}  // namespace kitbag::test
