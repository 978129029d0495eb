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

bool KeepsATable(const char* section) {
    Programs saved, loaded;
    saved.AddEntry(new ExternalProgramValueTableEntry);
    saved.SaveRegistry(section);
    loaded.LoadRegistry(section);
    return loaded.size() == 1 && KB_DeleteSectionA(section);
}

bool CreatesAPageFactory() {
    IKivPageFactory* factory = nullptr;
    void* same = nullptr;
    return KB_CreateKivPageFactory(&factory) &&
           factory->QueryInterface(IID_IKivPageFactory, &same) == S_OK && factory->Release() == 1 &&
           factory->Release() == 0;
}

}  // namespace

int main() {
    TWinString<char> section;
    section.Format("Package %s", "test");
    return KeepsATable(section.c_str()) && CreatesAPageFactory() ? 0 : 1;
}
