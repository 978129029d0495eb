// The texts of a module's string table, in both text forms.
#pragma once

#include <kitbag/frame/text_form.h>
#include <windows.h>

#include <string>

namespace kitbag {

/// Room for a text that is four paths long; longer ones are cut off, the terminator included.
constexpr int kTextRoom = 4 * MAX_PATH;

/// Empty where the module has no such text.
template <class Ch>
std::basic_string<Ch> LoadText(HMODULE module, UINT id) {
    Ch text[kTextRoom];
    const int length = PickForm<Ch>(::LoadStringA, ::LoadStringW)(module, id, text, kTextRoom);
    return {text, static_cast<std::size_t>(length)};
}

}  // namespace kitbag
