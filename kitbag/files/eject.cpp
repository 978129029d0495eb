#include <kitbag/files/eject.h>
#include <kitbag/files/eject_ways.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/path_text.h>
#include <kitbag/system/system_information.h>

namespace kitbag {

namespace {

bool EjectVolume(char letter) {
    return IsDriveLetter(letter) && (KB_IsNT() ? EjectOnNt(letter) : EjectOn9x(letter));
}

}  // namespace

}  // namespace kitbag

bool KB_EjectVolume(char driveLetter) {
    return kitbag::Guarded([&] { return kitbag::EjectVolume(driveLetter); });
}
