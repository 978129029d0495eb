#include <gtest/gtest.h>
#include <kitbag/files/checksum.h>
#include <shlwapi.h>
#include <tests/support/leak_check.h>
#include <tests/support/temporary_folder.h>

#include <fstream>
#include <numeric>
#include <vector>

namespace {

/// Around the size of a chunk, so that chunks add up.
constexpr std::size_t sizes[] = {0, 1, 32766, 32767, 32768, 65534, 65535, 100000};

std::vector<char> Bytes(std::size_t size) {
    std::vector<char> bytes(size);
    std::iota(bytes.begin(), bytes.end(), '\0');
    return bytes;
}

DWORD CrcOf(const std::vector<char>& bytes) {
    return KB_MemCRC(bytes.data(), static_cast<long>(bytes.size()));
}

TEST(Checksum, IsTheOneOfTheStandard) {
    EXPECT_EQ(0xCBF43926u, KB_MemCRC("123456789", 9));
    EXPECT_EQ(0x29058C73u, CrcOf(Bytes(256)));
    for (const long length : {0l, -1l, LONG_MIN}) EXPECT_EQ(0u, KB_MemCRC("1", length));
    EXPECT_EQ(0u, KB_MemCRC(nullptr, 9));
}

TEST(Checksum, CoversFilesOfAnySize) {
    const kitbag::test::TemporaryFolder folder;
    const std::string path = (folder / "file").string();
    EXPECT_EQ(0u, KB_FileCRC(path.c_str()));
    EXPECT_EQ(0u, KB_FileCRC(nullptr));
    for (const std::size_t size : sizes) {
        const auto bytes = Bytes(size);
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<long>(size));
        EXPECT_EQ(CrcOf(bytes), KB_FileCRC(path.c_str()));
    }
    kitbag::test::ExpectNoHandleLeak([&] { KB_FileCRC(path.c_str()); });
    const std::ifstream other(path);
    EXPECT_EQ(0u, KB_FileCRC(path.c_str())) << "another program has it open";
}

TEST(Checksum, CoversTheRestOfAStream) {
    for (const std::size_t size : sizes) {
        const auto bytes = Bytes(size + 10);
        IStream* stream = ::SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()),
                                              static_cast<UINT>(bytes.size()));
        LARGE_INTEGER position;
        position.QuadPart = 10;
        stream->Seek(position, STREAM_SEEK_SET, nullptr);
        EXPECT_EQ(CrcOf({bytes.begin() + 10, bytes.end()}), KB_IStreamCRC(stream));
        ULARGE_INTEGER after;
        stream->Seek({}, STREAM_SEEK_CUR, &after);
        EXPECT_EQ(10u, after.QuadPart);
        EXPECT_EQ(0u, stream->Release());
    }
    EXPECT_EQ(0u, KB_IStreamCRC(nullptr));
}

}  // namespace
