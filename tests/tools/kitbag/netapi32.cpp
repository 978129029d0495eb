// The network library of a computer that shares two folders.
#include <tests/files/stand_ins/netapi32.cpp>

namespace {

const bool isFilled = (server.shares = {{L"Media", L"C:\\Media", STYPE_DISKTREE},
                                        {L"Disk", L"D:\\", STYPE_DISKTREE},
                                        {L"C$", L"C:\\", STYPE_DISKTREE | STYPE_SPECIAL}},
                       true);

}  // namespace
