#include <tests/tools/kitbag/tool.h>

namespace kitbag::test {

namespace {

constexpr wchar_t kApplication[] = L"Software\\Tarnwick";
constexpr wchar_t kPutAside[] = L"Software\\Kitbag tests\\put aside";

HANDLE NewFile(const std::filesystem::path& path) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return ::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE,
                         FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, CREATE_ALWAYS, 0, nullptr);
}

std::string Content(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void MoveTree(HKEY from, const wchar_t* path, HKEY to, const wchar_t* newPath) {
    HKEY source = nullptr;
    HKEY target = nullptr;
    if (::RegOpenKeyW(from, path, &source) != ERROR_SUCCESS) return;
    ::RegCreateKeyW(to, newPath, &target);
    ::RegCopyTreeW(source, nullptr, target);
    ::RegCloseKey(source);
    ::RegCloseKey(target);
    ::RegDeleteTreeW(from, path);
}

void AddTo(Snapshot& snapshot, HKEY key, const std::wstring& path) {
    wchar_t name[300];
    BYTE data[2000];
    for (DWORD i = 0;; ++i) {
        DWORD length = 300, type = 0, size = sizeof data;
        if (::RegEnumValueW(key, i, name, &length, nullptr, &type, data, &size)) break;
        snapshot.emplace(path + name, std::pair(type, Bytes(data, size)));
    }
    for (DWORD i = 0; ::RegEnumKeyW(key, i, name, 300) == ERROR_SUCCESS; ++i) {
        HKEY child = nullptr;
        ::RegOpenKeyW(key, name, &child);
        snapshot.emplace(path + name + L'\\', kSection);
        AddTo(snapshot, child, path + name + L'\\');
        ::RegCloseKey(child);
    }
}

}  // namespace

Running::Running(std::wstring command, const std::filesystem::path& folder, const wchar_t* output) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = NewFile(output ? output : folder_ / "output");
    start.hStdError = NewFile(folder_ / "errors");
    PROCESS_INFORMATION process{};
    EXPECT_TRUE(::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                 folder.c_str(), &start, &process))
        << testing::PrintToString(command);
    for (HANDLE handle : {start.hStdOutput, start.hStdError, process.hThread})
        ::CloseHandle(handle);
    process_ = process.hProcess;
}

Running::~Running() {
    ::TerminateProcess(process_, 0);
    ::WaitForSingleObject(process_, INFINITE);
    ::CloseHandle(process_);
}

void Running::WaitFor(const std::string& text) const {
    const DWORD start = ::GetTickCount();
    while (Output().find(text) == std::string::npos) {
        ASSERT_EQ(DWORD{WAIT_TIMEOUT}, ::WaitForSingleObject(process_, 10)) << Output();
        ASSERT_GT(60'000u, ::GetTickCount() - start) << "no " << text << " in\n" << Output();
    }
}

Ending Running::Wait() const {
    DWORD code = 0;
    ::WaitForSingleObject(process_, INFINITE);
    ::GetExitCodeProcess(process_, &code);
    return {code, Output(), Written("errors")};
}

std::string Running::Written(const char* name) const {
    std::string content = Content(folder_ / name);
    std::erase(content, '\r');
    return content;
}

std::wstring BuiltFolder() {
    return std::filesystem::path(_pgmptr).parent_path().wstring() + L'\\';
}

std::string Utf16(const std::wstring& text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

Snapshot TakeSnapshot() {
    Snapshot snapshot;
    if (RawKey::Exists()) AddTo(snapshot, RawKey().Get(), {});
    return snapshot;
}

void Store(const std::string& section, const std::wstring& name, DWORD type,
           const std::string& bytes) {
    RawKey(section).Set(name.c_str(), type, bytes.data(), static_cast<DWORD>(bytes.size()));
}

ToolTest::ToolTest() {
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    MoveTree(HKEY_LOCAL_MACHINE, kApplication, HKEY_CURRENT_USER, kPutAside);
}

ToolTest::~ToolTest() {
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, kApplication);
    MoveTree(HKEY_CURRENT_USER, kPutAside, HKEY_LOCAL_MACHINE, kApplication);
}

std::string ToolTest::ContentOf(const std::string& name) const { return Content(folder_ / name); }

}  // namespace kitbag::test
