#include <comdef.h>
#include <kitbag/frame/caller_memory.h>
#include <kitbag/frame/file_calls.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/frame/text_form.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/system/module_version.h>

#include <cstring>
#include <string>

using kitbag::Guarded;

namespace {

constexpr WORD kWesternCodePage = 1252;

// After the virtual table: the fixed information, the block, the translation, the file name.
static_assert(sizeof(CModuleVersion) == 4 + 52 + 4 + 4 + 4);

/// A piece of a version block; null where the block lacks it or has less of it than wanted.
template <class T>
const T* Find(const BYTE* block, const char* path, std::size_t bytes) {
    void* found = nullptr;
    UINT size = 0;
    if (!::VerQueryValueA(block, path, &found, &size) || size < bytes) return nullptr;
    return static_cast<const T*>(found);
}

/// The bytes that a file's version block takes; 0 where it has none.
DWORD BlockSize(const char* file) {
    DWORD ignored = 0;
    return file ? ::GetFileVersionInfoSizeA(file, &ignored) : 0;
}

std::unique_ptr<BYTE[]> ReadBlock(const char* file, DWORD size) {
    auto block = std::make_unique<BYTE[]>(size);
    return ::GetFileVersionInfoA(file, 0, size, block.get()) ? std::move(block) : nullptr;
}

}  // namespace

CModuleVersion::CModuleVersion(const char* file)
    : VS_FIXEDFILEINFO{}, translation_{0, kWesternCodePage}, file_(file) {}

CModuleVersion::~CModuleVersion() = default;

bool CModuleVersion::Read() {
    return Guarded([&] {
        VS_FIXEDFILEINFO& fixed = *this;
        fixed = {};
        const DWORD size = BlockSize(file_);
        if (size == 0) return false;

        translation_.codePage = kWesternCodePage;
        // Lost, not freed: callers may hold texts that an earlier call has read.
        static_cast<void>(block_.release());
        block_ = ReadBlock(file_, size);
        if (!block_) return false;
        const auto* stored = Find<VS_FIXEDFILEINFO>(block_.get(), "\\", sizeof fixed);
        if (!stored) return false;
        fixed = *stored;
        if (const auto* first =
                Find<Translation>(block_.get(), "\\VarFileInfo\\Translation", sizeof(Translation)))
            translation_ = *first;
        return dwSignature == VS_FFI_SIGNATURE;
    });
}

const char* CModuleVersion::GetStringValue(const char* name) const {
    return Guarded([&]() -> const char* {
        if (!block_ || !name) return nullptr;
        TWinString<char> path;
        path.Format("\\StringFileInfo\\%04x%04x\\%s", translation_.language, translation_.codePage,
                    name);
        return Find<char>(block_.get(), path.c_str(), 0);
    });
}

namespace kitbag {

namespace {

bool GetModuleVersion(const char* file, DWORD* major, DWORD* minor, DWORD* build) {
    if (!IsWritable(major) || !IsWritable(minor)) return false;
    CModuleVersion version(file);
    if (!version.Read()) return false;
    *major = HIWORD(version.dwProductVersionMS);
    *minor = LOWORD(version.dwProductVersionMS);
    if (IsWritable(build)) *build = version.dwProductVersionLS;
    return true;
}

bool IsLoaderError(HMODULE module) {
    const auto value = reinterpret_cast<DWORD_PTR>(module);
    return 0 < value && value < 32;
}

bool GetMemModuleVersion(HMODULE module, DWORD* major, DWORD* minor, DWORD* build) {
    return !IsLoaderError(module) &&
           GetModuleVersion(ModuleFile<char>(module).c_str(), major, minor, build);
}

std::string ComputerName() {
    char name[MAX_PATH];
    DWORD size = sizeof name;
    return ::GetComputerNameA(name, &size) ? std::string(name, size) : std::string();
}

_bstr_t ToBstr(const char* text) { return {ToWide(text).c_str()}; }

bool FillModuleInfo(ModuleInfo* record, HMODULE module, const char* moduleName,
                    const void* firstBlock, const void* secondBlock) {
    if (!IsWritable(record) || record->size != sizeof *record ||
        !IsReadable(firstBlock, sizeof record->firstBlock) ||
        !IsReadable(secondBlock, sizeof record->secondBlock))
        return false;

    // The record is filled once all of it is there: where memory runs out it stays as it was.
    _bstr_t name = ToBstr(moduleName);
    _bstr_t computer = ToBstr(ComputerName().c_str());
    const std::string file = ModuleFile<char>(module);
    _bstr_t path = ToBstr(file.c_str());
    CModuleVersion version(file.c_str());
    const bool hasVersion = version.Read();

    record->moduleName = name.Detach();
    record->computerName = computer.Detach();
    record->filePath = path.Detach();
    record->productVersionMS = hasVersion ? version.dwProductVersionMS : 0;
    record->productVersionLS = hasVersion ? version.dwProductVersionLS : 0;
    std::memcpy(record->firstBlock, firstBlock, sizeof record->firstBlock);
    std::memcpy(record->secondBlock, secondBlock, sizeof record->secondBlock);
    return true;
}

}  // namespace

}  // namespace kitbag

bool KB_GetModuleVersionA(const char* file, DWORD* major, DWORD* minor, DWORD* build) {
    return Guarded([&] { return kitbag::GetModuleVersion(file, major, minor, build); });
}
bool KB_GetModuleVersionW(const wchar_t* file, DWORD* major, DWORD* minor, DWORD* build) {
    return Guarded(
        [&] { return KB_GetModuleVersionA(kitbag::ToNarrow(file).c_str(), major, minor, build); });
}
bool KB_GetMemModuleVersion(HMODULE module, DWORD* major, DWORD* minor, DWORD* build) {
    return Guarded([&] { return kitbag::GetMemModuleVersion(module, major, minor, build); });
}
bool KB_FillModuleInfo(ModuleInfo* record, HMODULE module, const char* moduleName,
                       const void* firstBlock, const void* secondBlock) {
    return Guarded([&] {
        return kitbag::FillModuleInfo(record, module, moduleName, firstBlock, secondBlock);
    });
}
