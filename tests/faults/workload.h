// Everything that the library offers, called once.
#pragma once

namespace kitbag::test {

/// Calls every exported function and drives the classes; whatever fails meanwhile, outputs that a
/// failed call promises to leave alone are checked. Leaves nothing open.
void RunWorkload();

}  // namespace kitbag::test
