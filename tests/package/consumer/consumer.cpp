#include <kitbag/kitbag.h>
#include <kitbag/pages.h>
#include <kitbag/settings.h>

struct Numbers : kitbag::Section<Numbers> {
    using Section::Section;
    kitbag::Setting<UInt32Value> number{*this, "Number", 6};
};

int main() {
    TWinString<char> section;
    section.Format("Package %s", "test");
    Numbers numbers(section);
    numbers.number = 7;
    DWORD stored = 0;
    IKivPageFactory* factory = nullptr;
    const bool works = KB_GetDWORDA(section.c_str(), "Number", &stored) && stored == 7 &&
                       KB_CreateKivPageFactory(&factory) && factory->Release() == 0;
    return KB_DeleteSectionA(section.c_str()) && works ? 0 : 1;
}
