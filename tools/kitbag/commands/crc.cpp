#include <kitbag/kitbag.h>

#include <algorithm>

#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/file_stream.h"
#include "tools/kitbag/system_error.h"
#include "tools/kitbag/text.h"

namespace kitbag::tool {

namespace {

ULONGLONG SizeOf(const File& file) {
    ULARGE_INTEGER size{};
    size.LowPart = ::GetFileSize(file.Get(), &size.HighPart);
    return size.QuadPart;
}

void PrintChecksum(const std::wstring& path, Progress& progress) {
    const File file = OpenFile(path);
    const ULONGLONG size = SizeOf(file);
    FileStream stream(file, [&](ULONGLONG read) {
        progress.Show(path + L": " + std::to_wstring(size > 0 ? read * 100 / size : 100) + L" %");
    });
    const DWORD checksum = KB_IStreamCRC(&stream);
    progress.Clear();
    if (stream.Error() != ERROR_SUCCESS) throw SystemFailure(path, stream.Error());
    PrintLine(Hexadecimal(checksum, 8) + L"  " + std::to_wstring(stream.BytesRead()) + L"  " +
              path);
}

/// The files that a word of the command line means; the word itself where it has no wildcards.
std::vector<std::wstring> FilesOf(const std::wstring& word) {
    if (word.find_first_of(L"*?") == std::wstring::npos) return {word};
    std::vector<std::wstring> files;
    for (const std::wstring& name : FileNames(word)) files.push_back(FolderOf(word) + name);
    if (files.empty()) throw SystemFailure(word, DWORD{ERROR_FILE_NOT_FOUND});
    return files;
}

ExitCode Crc(const Arguments& arguments) {
    Progress progress;
    ExitCode result = ExitCode::Done;
    for (const std::wstring& word : arguments.All()) {
        // One bad file does not keep the others from being read.
        try {
            for (const std::wstring& file : FilesOf(word)) PrintChecksum(file, progress);
        } catch (const Failure& failure) {
            PrintError(failure.message);
            result = std::max(result, failure.code);
        }
    }
    return result;
}

}  // namespace

const Command kCrc = {
    L"crc",
    L"FILE ...",
    L"shows the CRC-32 checksums of files",
    L"A line for each file: the checksum (that of zip and PNG), the size in bytes, the name. The\n"
    L"wildcards * and ? may stand in a name. Files that programs hold open are read, too.\n",
    {1, SIZE_MAX, {}},
    Crc};

}  // namespace kitbag::tool
