// The disk shares of a computer, the most specific one first.
#pragma once

#include <set>
#include <string>

namespace kitbag {

/// A folder that the computer shares with its network.
template <class Ch>
struct Share {
    std::basic_string<Ch> name;
    std::basic_string<Ch> path;
};

/// Longer paths come first, equally long ones in plain character order: of several shares that
/// cover a file, the one closest to it is met first.
struct MoreSpecific {
    template <class Ch>
    bool operator()(const Share<Ch>& left, const Share<Ch>& right) const {
        if (left.path.size() != right.path.size()) return left.path.size() > right.path.size();
        return left.path < right.path;
    }
};

/// Of several shares of one path the list keeps the first that it is given.
template <class Ch>
using ShareList = std::set<Share<Ch>, MoreSpecific>;

}  // namespace kitbag
