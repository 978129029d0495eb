// Checksums: both of their ways against other implementations, and what a file's costs beside the
// reading.

#include <bench/benches.h>
#include <kitbag/files/checksum.h>
#include <kitbag/files/crc32.h>
#include <tests/support/temporary_folder.h>
#include <zlib.h>

#include <array>
#include <fstream>
#include <memory>
#include <span>
#include <string>

namespace kitbag::bench {

namespace {

constexpr std::size_t kBlock = 1 << 16;

std::span<const BYTE> Block() {
    static const std::vector<BYTE> block = [] {
        std::vector<BYTE> bytes(kBlock);
        for (std::size_t i = 0; i < kBlock; ++i) bytes[i] = static_cast<BYTE>(i * 31);
        return bytes;
    }();
    return block;
}

DWORD ByteByByte(std::span<const BYTE> bytes) {
    static const std::vector<DWORD> table = [] {
        std::vector<DWORD> entries(256);
        for (DWORD i = 0; i < 256; ++i) {
            entries[i] = i;
            for (int bit = 0; bit < 8; ++bit) entries[i] = TimesX(entries[i]);
        }
        return entries;
    }();
    const DWORD* entry = table.data();
    DWORD crc = 0xFFFFFFFF;
    for (const BYTE byte : bytes) crc = (crc >> 8) ^ entry[(crc ^ byte) & 0xFF];
    return ~crc;
}

template <class Checksum>
Calls OfTheBlock(Checksum checksum) {
    return [=](int count) {
        for (int i = 0; i < count; ++i) Keep(checksum(Block()));
    };
}

DWORD ByLibrary(std::span<const BYTE> bytes) {
    return KB_MemCRC(bytes.data(), static_cast<long>(bytes.size()));
}
/// The ways that the library goes on processors of other kinds, compiled into this program.
template <DWORD update(DWORD, std::span<const BYTE>)>
DWORD By(std::span<const BYTE> bytes) {
    return ~update(0xFFFFFFFF, bytes);
}
DWORD ByZlib(std::span<const BYTE> bytes) {
    return ::crc32(0, bytes.data(), static_cast<uInt>(bytes.size()));
}

/// The calls of KB_FileCRC, and nothing else.
void Read(const char* path) {
    HANDLE file = ::CreateFileA(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    ::GetFileType(file);
    BYTE chunk[32767];
    DWORD read = 0;
    while (::ReadFile(file, chunk, sizeof chunk, &read, nullptr) && read > 0) Keep(chunk);
    ::CloseHandle(file);
}

/// The file was written just now and lies in the system's cache.
Result OfAFile() {
    const test::TextFolder<char> folder;
    const std::string file = folder.In("64 MB");
    folder.Write("64 MB", std::string(64 << 20, 'x'));
    return Measure(Comparison{"KB_FileCRC, 64 MB",
                              [&](int count) {
                                  for (int i = 0; i < count; ++i) Keep(KB_FileCRC(file.c_str()));
                              },
                              "reading it with the same calls",
                              [&](int count) {
                                  for (int i = 0; i < count; ++i) Read(file.c_str());
                              },
                              1.3});
}

}  // namespace

std::vector<Result> MeasureChecksums() {
    constexpr double kZlibBound = 0.35;
    std::vector<Result> results;
    const auto compare = [&](const char* operation, const Calls& library, const char* reference,
                             const Calls& calls, double bound) {
        results.push_back(Measure(Comparison{operation, library, reference, calls, bound}));
    };
    compare("KB_MemCRC, 64 KB", OfTheBlock(ByLibrary), "zlib's crc32", OfTheBlock(ByZlib),
            ProcessorCanFold() ? kZlibBound : 0);
    if (ProcessorCanFold())
        compare("KB_MemCRC, 64 KB, lane by lane", OfTheBlock(By<UpdateCrcByFolding>),
                "zlib's crc32", OfTheBlock(ByZlib), kZlibBound);
    compare("KB_MemCRC, 64 KB, by tables", OfTheBlock(By<UpdateCrcByTables>),
            "a byte-per-step table loop", OfTheBlock(ByteByByte), 0.25);
    results.push_back(OfAFile());
    return results;
}

}  // namespace kitbag::bench
