#include <kitbag/files/local_server.h>
#include <kitbag/files/unc_translation.h>
#include <kitbag/frame/caller_memory.h>
#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/path_text.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace kitbag {

namespace {

template <class Ch>
using View = std::basic_string_view<Ch>;

void ToUpper(std::string& text) { ::CharUpperBuffA(text.data(), static_cast<DWORD>(text.size())); }
void ToUpper(std::wstring& text) {
    // On Windows 9x the function does nothing and answers 0.
    if (::CharUpperBuffW(text.data(), static_cast<DWORD>(text.size())) == 0)
        std::ranges::transform(text, text.begin(), UpperCase<wchar_t>);
}

/// A text whose beginning is compared without regard to case, over the other text's own length.
template <class Ch>
class CaselessText {
 public:
    explicit CaselessText(View<Ch> text) : text_(text) { ToUpper(text_); }

    /// Whether the text from the position on begins with the prefix, to the end of a character.
    bool BeginsWith(View<Ch> prefix, std::size_t position = 0) {
        const View<Ch> rest = View<Ch>(text_).substr(position);
        if (prefix.size() > rest.size()) return false;
        prefix_ = prefix;
        ToUpper(prefix_);
        return rest.starts_with(prefix_) && IsCharacterEdge(rest, prefix_.size());
    }

 private:
    std::basic_string<Ch> text_;
    /// Keeps its room from one comparison to the next.
    std::basic_string<Ch> prefix_;
};

template <class Ch>
bool AreUsable(const Ch* text, Ch* buffer, DWORD size) {
    return Length(text) > 0 && buffer && size > 0 && size <= MAXDWORD / sizeof(Ch) &&
           IsWritable(buffer, BytesOf<Ch>(size));
}

bool Fits(const char* function, std::size_t required, DWORD size) {
    if (size > required) return true;
    DebugTrace("%s: output buffer too small (%ld required, %ld provided)\n", function,
               static_cast<long>(required), static_cast<long>(size));
    return false;
}

/// Never writes past the size: a text that fills the buffer is left without a terminator.
template <class Ch>
DWORD Write(const std::basic_string<Ch>& text, Ch* buffer, DWORD size) {
    const std::size_t written = text.copy(buffer, size);
    if (written < size) buffer[written] = Ch{};
    return static_cast<DWORD>(written);
}

template <class Ch>
constexpr Ch kBackslash = '\\';

template <class Ch>
DWORD LocalToUnc(const Ch* localPath, Ch* buffer, DWORD size) {
    if (!AreUsable(localPath, buffer, size)) {
        DebugTrace("LocalToUNC: Invalid or empty parameters passed in\n");
        return 0;
    }
    const auto computer = LocalServerName<Ch>();
    if (!computer) {
        DebugTrace("LocalToUNC: Cannot get computer name\n");
        return 0;
    }
    const ShareList<Ch> shares = LocalShares<Ch>();
    if (shares.empty()) {
        DebugTrace("LocalToUNC: No shares found on computer\n");
        return 0;
    }
    const View<Ch> path = localPath;
    CaselessText<Ch> caseless(path);
    for (const Share<Ch>& share : shares) {
        // The match may end inside a folder's name; existing links count on such names.
        if (!caseless.BeginsWith(share.path)) continue;
        // Counts neither the separator of a drive's share nor the terminator behind it; callers
        // pass MAX_PATH or more.
        const std::size_t required =
            computer->size() + path.size() + 3 + share.name.size() - share.path.size();
        if (!Fits("LocalToUNC", required, size)) continue;

        std::basic_string<Ch> name = KITBAG_TEXT(Ch, "\\\\") + *computer + kBackslash<Ch>;
        name += share.name;
        if (EndsWithBackslash<Ch>(share.path)) name += kBackslash<Ch>;
        name += path.substr(share.path.size());
        return Write(name, buffer, size);
    }
    DebugTrace("LocalToUNC: No network share found for given local path\n");
    return 0;
}

/// What follows the computer's name and its backslash in a UNC name of this computer; none, traced,
/// where the name is another's or malformed.
template <class Ch>
std::optional<View<Ch>> ShareAndTail(View<Ch> name) {
    if (!BeginsAsUnc(name)) {
        DebugTrace("UNCToLocal: Invalid UNC name (no double opening back slashes)\n");
        return std::nullopt;
    }
    name.remove_prefix(2);
    const auto computer = LocalServerName<Ch>();
    if (!computer) {
        DebugTrace("UNCToLocal: Cannot get computer name\n");
        return std::nullopt;
    }
    if (!CaselessText<Ch>(name).BeginsWith(*computer)) {
        DebugTrace("UNCToLocal: UNC not on local computer (wrong computer name)\n");
        return std::nullopt;
    }
    name.remove_prefix(computer->size());
    if (!name.starts_with(kBackslash<Ch>)) {
        DebugTrace("UNCToLocal: Invalid UNC name (no back slash after computer name)\n");
        return std::nullopt;
    }
    return name.substr(1);
}

template <class Ch>
DWORD UncToLocal(const Ch* uncName, Ch* buffer, DWORD size) {
    if (!AreUsable(uncName, buffer, size)) {
        DebugTrace("UNCToLocal: Invalid or empty parameters passed in\n");
        return 0;
    }
    const auto start = ShareAndTail<Ch>(uncName);
    if (!start) return 0;
    const ShareList<Ch> shares = LocalShares<Ch>();
    if (shares.empty()) {
        DebugTrace("UNCToLocal: No shares found on computer\n");
        return 0;
    }
    View<Ch> rest = *start;
    CaselessText<Ch> caseless(rest);
    for (const Share<Ch>& share : shares) {
        // What a share's name has taken off stays off for the shares after it, and a share whose
        // name did not match may be taken too; callers count on the names that this finds.
        if (caseless.BeginsWith(share.name, start->size() - rest.size()))
            rest.remove_prefix(share.name.size());
        if (!rest.empty() && !rest.starts_with(kBackslash<Ch>)) continue;
        if (!Fits("UNCToLocal", share.path.size() + rest.size(), size)) continue;

        // The rest brings its own separator.
        if (!rest.empty() && EndsWithBackslash<Ch>(share.path)) rest.remove_prefix(1);
        return Write(share.path + std::basic_string<Ch>(rest), buffer, size);
    }
    DebugTrace("UNCToLocal: No network share found for given local path\n");
    return 0;
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

DWORD KB_LocalToUNCA(const char* localPath, char* buffer, DWORD size) {
    return Guarded([&] { return kitbag::LocalToUnc(localPath, buffer, size); });
}
DWORD KB_LocalToUNCW(const wchar_t* localPath, wchar_t* buffer, DWORD size) {
    return Guarded([&] { return kitbag::LocalToUnc(localPath, buffer, size); });
}
DWORD KB_UNCToLocalA(const char* uncName, char* buffer, DWORD size) {
    return Guarded([&] { return kitbag::UncToLocal(uncName, buffer, size); });
}
DWORD KB_UNCToLocalW(const wchar_t* uncName, wchar_t* buffer, DWORD size) {
    return Guarded([&] { return kitbag::UncToLocal(uncName, buffer, size); });
}
