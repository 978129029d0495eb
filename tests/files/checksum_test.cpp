#include <gtest/gtest.h>
#include <kitbag/files/checksum.h>
#include <shlwapi.h>
#include <tests/support/text_folder.h>

namespace {

TEST(Checksum, CoversMemoryFilesAndTheRestOfStreams) {
    EXPECT_EQ(0xCBF43926u, KB_MemCRC("123456789", 9));
    EXPECT_EQ(0xBAE01919u, KB_MemCRC("\xff\x80\x7f", 3));
    EXPECT_EQ(0u, KB_MemCRC("1", -1));
    const kitbag::test::TextFolder<char> folder;
    const auto path = folder.In("file");
    // Around the size of a chunk, so that chunks add up.
    for (const long size : {0l, 1l, 32766l, 32767l, 32768l, 65535l}) {
        const std::string text(static_cast<std::size_t>(size) + 10, 'x');
        folder.Write("file", text.substr(10));
        EXPECT_EQ(KB_MemCRC(text.data(), size), KB_FileCRC(path.c_str()));
        IStream* stream = ::SHCreateMemStream(reinterpret_cast<const BYTE*>(text.data()),
                                              static_cast<UINT>(text.size()));
        stream->Seek({{10, 0}}, STREAM_SEEK_SET, nullptr);
        for (int i = 0; i < 2; ++i)
            EXPECT_EQ(KB_MemCRC(text.data(), size), KB_IStreamCRC(stream)) << "position kept";
        EXPECT_EQ(0u, stream->Release());
    }
    const std::ifstream other(path);
    EXPECT_EQ(0u, KB_FileCRC(path.c_str())) << "another program has it open";
    EXPECT_EQ(0u, KB_IStreamCRC(nullptr));
}

}  // namespace
