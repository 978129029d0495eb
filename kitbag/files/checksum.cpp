#include <kitbag/files/checksum.h>
#include <kitbag/files/crc32.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/owned.h>
#include <wrl/client.h>

#include <algorithm>
#include <span>

namespace kitbag {

namespace {

constexpr std::size_t kChunk = 32767;

using CrcUpdate = DWORD (*)(DWORD crc, std::span<const BYTE> bytes);

CrcUpdate FastestUpdate() {
    if (ProcessorCanFoldWide()) return UpdateCrcByWideFolding;
    if (ProcessorCanFold()) return UpdateCrcByFolding;
    return UpdateCrcByTables;
}

class Crc {
 public:
    void Update(std::span<const BYTE> bytes) {
        static const CrcUpdate update = FastestUpdate();
        register_ = update(register_, bytes);
    }
    DWORD Value() const { return ~register_; }

 private:
    DWORD register_ = 0xFFFFFFFF;
};

DWORD CrcOfFile(const char* path) {
    Crc crc;
    const FileHandle file(::CreateFileA(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    // A device or a pipe may keep a reader waiting for ever.
    if (!file || ::GetFileType(file.Get()) != FILE_TYPE_DISK) return crc.Value();
    BYTE chunk[kChunk];
    DWORD read = 0;
    // A read at the end of the file succeeds with no bytes.
    while (::ReadFile(file.Get(), chunk, sizeof chunk, &read, nullptr) && read > 0)
        crc.Update({chunk, read});
    return crc.Value();
}

/// The bytes that a stream read into the buffer. It may claim more than it was asked for.
std::span<const BYTE> ReadFrom(IStream& stream, std::span<BYTE> buffer) {
    ULONG read = 0;
    if (FAILED(stream.Read(buffer.data(), static_cast<ULONG>(buffer.size()), &read))) return {};
    return buffer.first(std::min<std::size_t>(read, buffer.size()));
}

DWORD CrcOfStream(IStream* given) {
    const Microsoft::WRL::ComPtr<IStream> stream(given);
    if (!stream) return 0;
    ULARGE_INTEGER position{};
    stream->Seek({}, STREAM_SEEK_CUR, &position);

    Crc crc;
    BYTE chunk[kChunk];
    for (;;) {
        const std::span<const BYTE> bytes = ReadFrom(*stream.Get(), chunk);
        if (bytes.empty()) break;
        crc.Update(bytes);
    }

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
        crc.Update({static_cast<const BYTE*>(data), static_cast<std::size_t>(length)});
    return crc.Value();
}

DWORD KB_FileCRC(const char* path) {
    return Guarded([&] { return kitbag::CrcOfFile(path); });
}

DWORD KB_IStreamCRC(IStream* stream) {
    return Guarded([&] { return kitbag::CrcOfStream(stream); });
}
