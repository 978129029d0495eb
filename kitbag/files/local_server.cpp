#include <kitbag/files/local_server.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/system/system_information.h>

#include <type_traits>

namespace kitbag {

namespace {

template <class Ch, class From>
std::basic_string<Ch> Converted(const std::basic_string<From>& text) {
    if constexpr (std::is_same_v<Ch, From>)
        return text;
    else if constexpr (std::is_same_v<Ch, char>)
        return ToNarrow(text.c_str());
    else
        return ToWide(text.c_str());
}

template <class Ch, class From>
ShareList<Ch> Converted(ShareList<From> shares) {
    if constexpr (std::is_same_v<Ch, From>) {
        return shares;
    } else {
        ShareList<Ch> converted;
        for (const Share<From>& share : shares)
            converted.insert({Converted<Ch>(share.name), Converted<Ch>(share.path)});
        return converted;
    }
}

template <class Ch, class From>
std::optional<std::basic_string<Ch>> Converted(const std::optional<std::basic_string<From>>& text) {
    if (!text) return std::nullopt;
    return Converted<Ch>(*text);
}

}  // namespace

template <class Ch>
ShareList<Ch> LocalShares() {
    return KB_IsNT() ? Converted<Ch>(windows_nt::Shares()) : Converted<Ch>(windows_9x::Shares());
}

template <class Ch>
std::optional<std::basic_string<Ch>> LocalServerName() {
    return KB_IsNT() ? Converted<Ch>(windows_nt::ServerName())
                     : Converted<Ch>(windows_9x::ServerName());
}

template ShareList<char> LocalShares();
template ShareList<wchar_t> LocalShares();
template std::optional<std::string> LocalServerName();
template std::optional<std::wstring> LocalServerName();

}  // namespace kitbag
