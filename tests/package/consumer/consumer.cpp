#include <kitbag/kitbag.h>
#include <kitbag/pages.h>

namespace {

/// A table of the program's own, which the library calls back.
class Programs : public ValueTable {
 public:
    Programs() { ValueTable::SetValueName("Programs"); }
    Value* Copy() const override { return new Programs(*this); }
    ValueTableEntry* EntryFactory(const TWinString<char>&) const override {
        return new ExternalProgramValueTableEntry;
    }
};

bool KeepsSettings(const char* section) {
    TWinString<char> written, read;
    written.Format("%d of %d", 3, 10);
    return KB_SetTStringA(section, "Text", written) && KB_GetTStringA(section, "Text", read) &&
           read == "3 of 10";
}

bool KeepsATable(const char* section) {
    Programs saved, loaded;
    saved.AddEntry(new ExternalProgramValueTableEntry);
    saved.SaveRegistry(section);
    loaded.LoadRegistry(section);
    return loaded.size() == 1;
}

bool CreatesAPageFactory() {
    IKivPageFactory* factory = nullptr;
    if (!KB_CreateKivPageFactory(&factory)) return false;
    void* same = nullptr;
    LONG count = -1;
    const bool works = factory->QueryInterface(IID_IKivPageFactory, &same) == S_OK &&
                       factory->GetPageCount(&count) == S_OK && count == 0;
    return works && factory->Release() == 1 && factory->Release() == 0;
}

}  // namespace

int main() {
    const char* const section = "Package test";
    const bool works = KeepsSettings(section) && KeepsATable(section) && CreatesAPageFactory();
    return KB_DeleteSectionA(section) && works ? 0 : 1;
}
