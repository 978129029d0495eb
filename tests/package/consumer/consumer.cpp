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
namespace {

bool KeepsSettings() {
    const char* const section = "Package test";
    TWinString<char> written, read;
    written.Format("%d of %d", 3, 10);
    const bool same = KB_SetTStringA(section, "Text", written) &&
                      KB_GetTStringA(section, "Text", read) && read == "3 of 10";

    Programs saved, loaded;
    saved.AddEntry(new ExternalProgramValueTableEntry);
    saved.SaveRegistry(section);
    loaded.LoadRegistry(section);
    return same && loaded.size() == 1 && KB_DeleteSectionA(section) ? 0 : 1;
    return same && KB_DeleteSectionA(section);
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

int main() { return KeepsSettings() && CreatesAPageFactory() ? 0 : 1; }
