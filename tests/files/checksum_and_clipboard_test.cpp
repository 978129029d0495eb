#include <kitbag/files/checksum.h>
#include <kitbag/files/clipboard.h>
#include <shlwapi.h>
#include <tests/support/temporary_folder.h>

namespace {

TEST(Checksum, CoversMemoryFilesAndTheRestOfStreams) {
    EXPECT_EQ(0xCBF43926u, KB_MemCRC("123456789", 9));
    // Longer than the chunks in which files and streams are read.
    const std::string text = "skipped" + std::string(70000, '\xe9');
    const DWORD sum = KB_MemCRC(&text[7], 70000);
    const kitbag::test::TextFolder<char> folder;
    folder.Write("file", text.substr(7));
    EXPECT_EQ(sum, KB_FileCRC(folder.In("file").c_str()));
    IStream* stream = ::SHCreateMemStream(reinterpret_cast<const BYTE*>(text.data()), 70007);
    stream->Seek({{7, 0}}, STREAM_SEEK_SET, nullptr);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(sum, KB_IStreamCRC(stream)) << "position kept";
    stream->Release();
}

TEST(Clipboard, PassesTextOnAsFarAsTheCodePageGoes) {
    // All tests share the clipboard; this one's turn ends with its process.
    ::WaitForSingleObject(::CreateMutexA(nullptr, FALSE, "Kitbag tests: clipboard"), INFINITE);
    BSTR pasted = nullptr;
    EXPECT_TRUE(KB_CopyText(L"t\xe9 \x4e2d") && KB_PasteText(&pasted));
    EXPECT_TRUE(::OpenClipboard(nullptr)) << "closed by both calls";
    ::EmptyClipboard();
    ::CloseClipboard();
    EXPECT_FALSE(KB_PasteText(&pasted));
    EXPECT_STREQ(L"t\xe9 ?", pasted) << "untouched where there is no text";
    ::SysFreeString(pasted);
}

}  // namespace
