#include <kitbag/files/checksum.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/owned.h>
#include <wrl/client.h>

#include <array>
#include <span>

namespace kitbag {

namespace {

constexpr std::size_t kChunk = 32767;

using Table = std::array<DWORD, 256>;

constexpr Table MakeTable() {
    Table table{};
    for (DWORD i = 0; i < table.size(); ++i) {
        DWORD entry = i;
        for (int bit = 0; bit < 8; ++bit) entry = (entry >> 1) ^ (entry & 1 ? 0xEDB88320 : 0);
        table[i] = entry;
    }
    return table;
}
constexpr Table kTable = MakeTable();
static_assert(kTable[1] == 0x77073096);

class Crc {
 public:
    void Update(const BYTE* bytes, std::size_t length) {
        DWORD reg = register_;
        for (const BYTE byte : std::span(bytes, length))
            reg = (reg >> 8) ^ kTable[(reg ^ byte) & 0xFF];
        register_ = reg;
    }
    DWORD Value() const { return ~register_; }

 private:
    DWORD register_ = 0xFFFFFFFF;
};

DWORD CrcOfFile(const char* path) {
    Crc crc;
    const FileHandle file(::CreateFileA(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) return crc.Value();
    BYTE chunk[kChunk];
    DWORD read = 0;
    // A read at the end of the file succeeds with no bytes.
    while (::ReadFile(file.Get(), chunk, sizeof chunk, &read, nullptr) && read > 0)
        crc.Update(chunk, read);
    return crc.Value();
}

DWORD CrcOfStream(IStream* given) {
    const Microsoft::WRL::ComPtr<IStream> stream(given);
    if (!stream) return 0;
    ULARGE_INTEGER position{};
    stream->Seek({}, STREAM_SEEK_CUR, &position);

    Crc crc;
    BYTE chunk[kChunk];
    ULONG read = 0;
    while (SUCCEEDED(stream->Read(chunk, sizeof chunk, &read)) && read > 0) crc.Update(chunk, read);

    LARGE_INTEGER back;
    back.QuadPart = static_cast<LONGLONG>(position.QuadPart);
    stream->Seek(back, STREAM_SEEK_SET, nullptr);
    return crc.Value();
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

DWORD KB_MemCRC(const void* data, long length) {
    kitbag::Crc crc;
    if (data && length > 0)
        crc.Update(static_cast<const BYTE*>(data), static_cast<std::size_t>(length));
    return crc.Value();
}

DWORD KB_FileCRC(const char* path) {
    return Guarded([&] { return kitbag::CrcOfFile(path); });
}

DWORD KB_IStreamCRC(IStream* stream) {
    return Guarded([&] { return kitbag::CrcOfStream(stream); });
}
