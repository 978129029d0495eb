// The owner of a page whose caller gives none.
#pragma once

#include <kitbag/frame/com_object.h>
#include <kitbag/pages.h>

namespace kitbag {

class CKivPageOwner final : public ComObject<IKivPageOwner> {};

}  // namespace kitbag
