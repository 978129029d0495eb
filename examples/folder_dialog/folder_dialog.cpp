// Lets the user choose a folder and prints the choice.
// Use: folder_dialog FOLDER      the dialog opens on FOLDER

#include <kitbag/kitbag.h>
#include <objbase.h>
#include <windows.h>

#include <cstdio>
#include <string_view>

int main(int argc, char** argv) {
    // The dialog writes the choice into the buffer that it takes its first folder from.
    char folder[MAX_PATH] = {};
    if (argc > 1) std::string_view(argv[1]).copy(folder, MAX_PATH - 1);

    ::CoInitialize(nullptr);
    const bool isChosen = KB_BrowseForFolderA(folder, "Where are your films?");
    ::CoUninitialize();

    std::puts(isChosen ? folder : "nothing chosen");
    return isChosen ? 0 : 1;
}
