// Writes into the registry what a registration script says, and takes it back.
#pragma once

#include <kitbag/com/registration_script.h>
#include <windows.h>

#include <vector>

namespace kitbag {

/// Writes the entries in order, up to the first that fails; what is written by then stays.
HRESULT WriteRegistration(const std::vector<RegistrationRoot>& roots);

/// Takes back what the entries write, as far as it is there: own keys with everything in them, of
/// other keys the values and keys that the script names. A key of ours goes once it is empty. Goes
/// on after a failure and answers the first one.
HRESULT RemoveRegistration(const std::vector<RegistrationRoot>& roots);

}  // namespace kitbag
