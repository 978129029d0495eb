#include <kitbag/kitbag.h>
#include <kitbag/pages.h>

/// A table of the program's own, which the library calls back.
class Programs : public ValueTable {
 public:
    Programs() { ValueTable::SetValueName("Programs"); }
    Value* Copy() const override { return new Programs(*this); }
    ValueTableEntry* EntryFactory(const TWinString<char>&) const override {
        return new ExternalProgramValueTableEntry;
    }
};

int main() {
    TWinString<char> section;
    section.Format("Package %s", "test");
    Programs saved, loaded;
    saved.AddEntry(new ExternalProgramValueTableEntry);
    saved.SaveRegistry(section);
    loaded.LoadRegistry(section);

    IKivPageFactory* factory = nullptr;
    void* same = nullptr;
    const bool works = loaded.size() == 1 && KB_CreateKivPageFactory(&factory) &&
                       factory->QueryInterface(IID_IKivPageFactory, &same) == S_OK &&
                       factory->Release() == 1 && factory->Release() == 0;
    return KB_DeleteSectionA(section.c_str()) && works ? 0 : 1;
}
