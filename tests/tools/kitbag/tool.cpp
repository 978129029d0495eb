#include <tests/tools/kitbag/tool.h>

namespace kitbag::test {

namespace {

constexpr wchar_t kApplication[] = L"Software\\Tarnwick";
constexpr wchar_t kPutAside[] = L"Software\\Kitbag tests\\put aside";

/// As the system's own rules want it: backslashes before a quote are doubled.
std::wstring Quoted(const std::wstring& word) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'"') quoted.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L'"';
}

HANDLE NewFile(const std::filesystem::path& path) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0,
                         nullptr);
}

std::string Content(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void CopyTree(HKEY from, const wchar_t* path, HKEY to, const wchar_t* copy) {
    HKEY source = nullptr;
    HKEY target = nullptr;
    if (::RegOpenKeyW(from, path, &source) != ERROR_SUCCESS) return;
    ::RegCreateKeyW(to, copy, &target);
    ::RegCopyTreeW(source, nullptr, target);
    ::RegCloseKey(source);
    ::RegCloseKey(target);
}

void AddTo(Snapshot& snapshot, HKEY key, const std::wstring& path) {
    wchar_t name[300];
    BYTE data[70000];
    for (DWORD i = 0;; ++i) {
        DWORD length = 300, type = 0, size = sizeof data;
        if (::RegEnumValueW(key, i, name, &length, nullptr, &type, data, &size)) break;
        snapshot.emplace(path + name, std::pair(type, Bytes(data, size)));
    }
    for (DWORD i = 0; ::RegEnumKeyW(key, i, name, 300) == ERROR_SUCCESS; ++i) {
        HKEY child = nullptr;
        ::RegOpenKeyW(key, name, &child);
        snapshot.emplace(path + name + L'\\', std::pair(DWORD{}, Bytes("")));
        AddTo(snapshot, child, path + name + L'\\');
        ::RegCloseKey(child);
    }
}

}  // namespace

Running::Running(const std::wstring& program, const std::vector<std::wstring>& words) {
    std::wstring command = Quoted(program);
    for (const std::wstring& word : words) command += L' ' + Quoted(word);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = NewFile(folder_ / "output");
    start.hStdError = NewFile(folder_ / "errors");
    PROCESS_INFORMATION process{};
    EXPECT_TRUE(::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                 folder_.Path().c_str(), &start, &process))
        << testing::PrintToString(command);
    ::CloseHandle(start.hStdOutput);
    ::CloseHandle(start.hStdError);
    ::CloseHandle(process.hThread);
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
    Ending ending;
    ::WaitForSingleObject(process_, INFINITE);
    ::GetExitCodeProcess(process_, &ending.code);
    ending.output = Output();
    ending.errors = Written("errors");
    return ending;
}

std::string Running::Written(const char* name) const {
    std::string content = Content(folder_ / name);
    std::erase(content, '\r');
    return content;
}

std::wstring BuiltFolder() {
    return std::filesystem::path(_pgmptr).parent_path().wstring() + L'\\';
}

Ending RunProgram(const std::wstring& program, const std::vector<std::wstring>& words) {
    return Running(program, words).Wait();
}

Ending Kitbag(const std::vector<std::wstring>& words) {
    return RunProgram(BuiltFolder() + L"kitbag.exe", words);
}

Snapshot SnapshotOf(const std::string& section) {
    Snapshot snapshot;
    if (RawKey::Exists(section)) AddTo(snapshot, RawKey(section).Get(), {});
    return snapshot;
}

ToolTest::ToolTest() {
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    CopyTree(HKEY_LOCAL_MACHINE, kApplication, HKEY_CURRENT_USER, kPutAside);
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, kApplication);
}

ToolTest::~ToolTest() {
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, kApplication);
    CopyTree(HKEY_CURRENT_USER, kPutAside, HKEY_LOCAL_MACHINE, kApplication);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, kPutAside);
}

std::string ToolTest::ContentOf(const std::string& name) const { return Content(folder_ / name); }

void ToolTest::Write(const std::string& name, const std::string& content) const {
    create_directories((folder_ / name).parent_path());
    std::ofstream(folder_ / name, std::ios::binary) << content;
}

void ToolTest::WriteWide(const std::string& name, const std::wstring& text) const {
    std::string bytes = "\xff\xfe";
    for (const wchar_t c : text) {
        if (c == L'\n') bytes += std::string("\r\0", 2);
        bytes += static_cast<char>(c & 0xff);
        bytes += static_cast<char>(c >> 8);
    }
    Write(name, bytes);
}

}  // namespace kitbag::test
