// Exits with the last input's tick, as this process sees it through the given library.

#include <windows.h>

int main(int, char** argv) {
    return ::GetProcAddress(::LoadLibraryA(argv[1]), "KB_GetLastUserInputTime")();
}
