#include <kitbag/kitbag.h>

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
}
