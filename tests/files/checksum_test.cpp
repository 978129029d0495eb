#include <kitbag/files/checksum.h>
#include <kitbag/files/crc32.h>
#include <shlwapi.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>

#include <climits>
#include <cstring>
#include <optional>
#include <random>
#include <span>

namespace {

using namespace kitbag::test;
using ByteSpan = std::span<const BYTE>;

DWORD ByteByByte(ByteSpan bytes) {
    DWORD crc = 0xFFFFFFFF;
    for (const BYTE byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    return ~crc;
}
DWORD ByteByByte(const std::string& text) {
    return ByteByByte({reinterpret_cast<const BYTE*>(text.data()), text.size()});
}

std::string RandomText(std::size_t length) {
    std::mt19937 random(1);
    std::string text(length, '\0');
    for (char& character : text) character = static_cast<char>(random());
    return text;
}

TEST(Checksum, IsTheUsualCrc32) { EXPECT_EQ(0xCBF43926, KB_MemCRC("123456789", 9)); }

TEST(Checksum, OfNothingIs0) {
    EXPECT_EQ(0u, KB_MemCRC(nullptr, 9));
    for (const long length : {0L, -1L, LONG_MIN}) EXPECT_EQ(0u, KB_MemCRC("x", length)) << length;
    EXPECT_EQ(0u, KB_IStreamCRC(nullptr));
}

void ExpectSameAsByteByByte(DWORD crc(ByteSpan)) {
    constexpr std::size_t kMegabyte = 1 << 20;
    const std::string text = RandomText(kMegabyte + 16);
    const ByteSpan bytes(reinterpret_cast<const BYTE*>(text.data()), text.size());
    for (std::size_t start = 0; start < 16; ++start) {
        for (std::size_t length = 0; length <= 300; ++length)
            ASSERT_EQ(ByteByByte(bytes.subspan(start, length)), crc(bytes.subspan(start, length)))
                << length << " bytes from " << start;
        ASSERT_EQ(ByteByByte(bytes.subspan(start, kMegabyte)), crc(bytes.subspan(start, kMegabyte)))
            << "a megabyte from " << start;
    }
}

TEST(Checksum, IsTheSameAsByteByByte) {
    ExpectSameAsByteByByte(
        [](ByteSpan bytes) { return KB_MemCRC(bytes.data(), static_cast<long>(bytes.size())); });
}

// The ways that the library goes on processors of different kinds, compiled into the tests.
template <DWORD update(DWORD, ByteSpan)>
DWORD CrcBy(ByteSpan bytes) {
    return ~update(0xFFFFFFFF, bytes);
}

TEST(Checksum, IsTheSameByTables) { ExpectSameAsByteByByte(CrcBy<kitbag::UpdateCrcByTables>); }

TEST(Checksum, IsTheSameByFolding) {
    if (!kitbag::ProcessorCanFold()) GTEST_SKIP() << "not on this processor";
    ExpectSameAsByteByByte(CrcBy<kitbag::UpdateCrcByFolding>);
}

TEST(Checksum, IsTheSameByWideFolding) {
    if (!kitbag::ProcessorCanFoldWide()) GTEST_SKIP() << "not on this processor";
    ExpectSameAsByteByByte(CrcBy<kitbag::UpdateCrcByWideFolding>);
}

TEST(ChecksumOfAFile, IsThatOfItsBytes) {
    const TextFolder<char> folder;
    // Around the length of the pieces in which a file is read.
    for (const std::size_t length : {0u, 1u, 32766u, 32767u, 32768u, 70000u}) {
        const std::string text = RandomText(length);
        folder.Write("file", text);
        EXPECT_EQ(ByteByByte(text), KB_FileCRC(folder.In("file").c_str())) << length << " bytes";
    }
}

TEST(ChecksumOfAFile, IsThatOfThePartThatCanBeRead) {
    const TextFolder<char> folder;
    folder.Write("file", std::string(70000, 'x'));
    static DWORD firstPart;
    firstPart = 0;
    const ImportPatch patch(
        "ReadFile", +[](HANDLE file, void* buffer, DWORD size, DWORD* read, OVERLAPPED*) WINAPI {
            if (firstPart > 0) return ::SetLastError(ERROR_CRC), FALSE;
            const BOOL success = ::ReadFile(file, buffer, size, read, nullptr);
            firstPart = *read;
            return success;
        });
    const DWORD crc = KB_FileCRC(folder.In("file").c_str());
    EXPECT_EQ(ByteByByte(std::string(firstPart, 'x')), crc) << firstPart << " bytes read";
}

TEST(ChecksumOfAFile, Is0WhereItCannotBeOpened) {
    const TextFolder<char> folder;
    folder.Write("in use");
    const std::ifstream user(folder / "in use");  // who lets others open it
    for (const char* name : {"in use", "missing", "."})
        EXPECT_EQ(0u, KB_FileCRC(folder.In(name).c_str())) << name;
    EXPECT_EQ(0u, KB_FileCRC(nullptr));
}

TEST(ChecksumOfAFile, Is0ForADeviceOrAPipeWithoutReadingFromIt) {
    const std::string pipe = R"(\\.\pipe\kitbag-)" + std::to_string(::GetCurrentProcessId());
    HANDLE server = ::CreateNamedPipeA(pipe.c_str(), PIPE_ACCESS_DUPLEX, 0, 1, 0, 0, 0, nullptr);
    static int reads;
    reads = 0;
    const ImportPatch patch(
        "ReadFile", +[](HANDLE, void*, DWORD, DWORD* read, OVERLAPPED*)
                         WINAPI { return *read = 1, ++reads == 1; });
    for (const auto& name : {pipe, std::string("NUL"), std::string("CON")}) {
        EXPECT_EQ(0u, KB_FileCRC(name.c_str())) << name;
        EXPECT_EQ(0, reads) << name;
    }
    EXPECT_FALSE(::ConnectNamedPipe(server, nullptr));
    EXPECT_EQ(ERROR_NO_DATA, ::GetLastError()) << "someone has opened the pipe and closed it again";
    ::CloseHandle(server);
}

TEST(ChecksumOfAStream, GoesFromItsPositionToItsEndAndPutsThePositionBack) {
    const std::string text = RandomText(70000);
    ComPtr<IStream> stream;
    stream.Attach(::SHCreateMemStream(reinterpret_cast<const BYTE*>(text.data()),
                                      static_cast<UINT>(text.size())));
    stream->Seek({{7, 0}}, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(ByteByByte(text.substr(7)), KB_IStreamCRC(stream.Get()));
    ULARGE_INTEGER position{};
    stream->Seek({}, STREAM_SEEK_CUR, &position);
    EXPECT_EQ(7u, position.QuadPart);
}

struct Answer {
    HRESULT result;
    ULONG bytes;
};

/// A stream at position 7 whose reads fill the buffer, whatever the test has them answer.
class Stream final : public Double<IStream> {
 public:
    STDMETHODIMP Read(void* buffer, ULONG size, ULONG* bytes) override {
        bufferSize = size;
        std::memset(buffer, 'x', size);
        *bytes = next->bytes;
        return next++->result;
    }
    STDMETHODIMP Seek(LARGE_INTEGER offset, DWORD origin, ULARGE_INTEGER* position) override {
        if (origin == STREAM_SEEK_SET) sought = offset.QuadPart;
        if (position) position->QuadPart = 7;
        return S_OK;
    }
    STDMETHODIMP Write(const void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    STDMETHODIMP SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    STDMETHODIMP CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Commit(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Revert() override { return E_NOTIMPL; }
    STDMETHODIMP LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Clone(IStream**) override { return E_NOTIMPL; }

    const Answer* next = nullptr;
    ULONG bufferSize = 0;
    LONGLONG sought = -1;
};

TEST(ChecksumOfAStream, CoversWhatTheStreamReadInTruth) {
    struct Case {
        std::string name;
        std::vector<Answer> reads;
        std::optional<std::size_t> covered;  // else as much as the buffer holds
    };
    const std::vector<Case> cases{
        {"fails in the middle", {{S_OK, 100}, {E_FAIL, 50}, {S_OK, 100}}, 100},
        {"fails at once", {{E_FAIL, 50}, {S_OK, 100}}, 0},
        {"ends with fewer bytes than asked for", {{S_OK, 100}, {S_FALSE, 50}, {S_FALSE, 0}}, 150},
        {"claims more bytes than it was asked for", {{S_OK, 40000}, {S_OK, 0}}, std::nullopt}};
    for (const auto& [name, reads, covered] : cases) {
        Stream stream;
        stream.next = reads.data();
        const DWORD crc = KB_IStreamCRC(&stream);
        EXPECT_EQ(ByteByByte(std::string(covered.value_or(stream.bufferSize), 'x')), crc) << name;
        EXPECT_EQ(7, stream.sought) << name;
    }
}

}  // namespace
