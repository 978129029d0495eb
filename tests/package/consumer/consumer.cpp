#include <kitbag/kitbag.h>

int main() {
    const char* const section = "Package test";
    TWinString<char> written, read;
    written.Format("%d of %d", 3, 10);
    const bool same = KB_SetTStringA(section, "Text", written) &&
                      KB_GetTStringA(section, "Text", read) && read == "3 of 10";
    return same && KB_DeleteSectionA(section) ? 0 : 1;
}
