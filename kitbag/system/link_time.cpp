#include <kitbag/frame/owned.h>
#include <kitbag/system/link_time.h>

#include <cstddef>

namespace kitbag {

namespace {

/// Every field that is read here, or begins a part of the header, fits into 4 bytes.
std::optional<DWORD> ReadField(const FileHandle& file) {
    DWORD field = 0;
    DWORD read = 0;
    if (!::ReadFile(file.Get(), &field, sizeof field, &read, nullptr) || read != sizeof field)
        return std::nullopt;
    return field;
}

bool Seek(const FileHandle& file, LONG distance, DWORD from) {
    return ::SetFilePointer(file.Get(), distance, nullptr, from) != INVALID_SET_FILE_POINTER;
}

/// Leaves the file behind the signature of its PE header.
bool SeekBehindSignature(const FileHandle& file) {
    const auto dosHeader = ReadField(file);
    if (!dosHeader || LOWORD(*dosHeader) != IMAGE_DOS_SIGNATURE) return false;
    if (!Seek(file, offsetof(IMAGE_DOS_HEADER, e_lfanew), FILE_BEGIN)) return false;
    const auto newHeader = ReadField(file);
    return newHeader && Seek(file, static_cast<LONG>(*newHeader), FILE_BEGIN) &&
           ReadField(file) == DWORD{IMAGE_NT_SIGNATURE};
}

}  // namespace

std::optional<DWORD> LinkTime(const char* file) {
    const FileHandle module(::CreateFileA(file, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!module || !SeekBehindSignature(module) ||
        !Seek(module, offsetof(IMAGE_FILE_HEADER, TimeDateStamp), FILE_CURRENT))
        return std::nullopt;
    return ReadField(module);
}

}  // namespace kitbag
