// Paths as texts of both forms, taken apart and put together by whole characters. The file system
// is not asked.
//
//     const std::basic_string<Ch> beside = Join<Ch>(FolderOfFile<Ch>(file), name);
#pragma once

#include <kitbag/frame/text_form.h>
#include <kitbag/frame/text_steps.h>

#include <string>
#include <string_view>

namespace kitbag {

template <class Ch>
constexpr bool IsDriveLetter(Ch character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

/// "C:" and "c:\Films" do.
template <class Ch>
constexpr bool BeginsWithDrive(std::basic_string_view<Ch> path) {
    return path.size() > 1 && IsDriveLetter(path[0]) && path[1] == ':';
}

/// "\\PC" and "\\PC\Films" do; so does a bare "\\".
template <class Ch>
constexpr bool BeginsAsUnc(std::basic_string_view<Ch> path) {
    return path.starts_with(KITBAG_TEXT(Ch, "\\\\"));
}

/// The path with a backslash at its end; an empty path stays empty.
template <class Ch>
std::basic_string<Ch> WithBackslash(std::basic_string<Ch> path) {
    if (!path.empty() && !EndsWithBackslash<Ch>(path)) path += Ch{'\\'};
    return path;
}

/// What comes before the last component, the backslash included; empty where there is none.
template <class Ch>
std::basic_string<Ch> FolderOfFile(std::basic_string_view<Ch> path) {
    return std::basic_string<Ch>(path.substr(0, FindLastOf<Ch>(path, KITBAG_TEXT(Ch, "\\")) + 1));
}

/// The two with one backslash between them, which may be the folder's own. An empty folder is the
/// root of the current drive.
template <class Ch>
std::basic_string<Ch> Join(std::basic_string<Ch> folder, std::basic_string_view<Ch> name) {
    if (!EndsWithBackslash<Ch>(folder)) folder += Ch{'\\'};
    return folder += name;
}

}  // namespace kitbag
