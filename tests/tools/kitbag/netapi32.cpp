// The network library of a computer that shares two folders.
#include <tests/files/stand_ins/netapi32.cpp>

namespace {

const bool isFilled = (shares = {{"Media", "C:\\Media", STYPE_DISKTREE},
                                 {"Disk", "D:\\", STYPE_DISKTREE},
                                 {"C$", "C:\\", STYPE_DISKTREE | STYPE_SPECIAL}},
                       true);

}  // namespace
