// The record is not exported: the test has one of its own.

#include <gmock/gmock.h>
#include <kitbag/frame/module_record.h>

namespace {

using namespace kitbag;
using testing::ElementsAre;

std::vector<std::string> events;

template <char name>
void NoteModule(bool starting) {
    events.push_back(std::string(1, name) + (starting ? " starts" : " ends"));
}

/// A class object that says when it is let go.
struct ClassObject final : IUnknown {
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return events.push_back("object goes"), 0; }
};

void WINAPI NoteCallback(void* argument) { events.push_back(static_cast<const char*>(argument)); }

TEST(ModuleRecordTest, TellsItsClassesThatTheLibraryStartsAndEnds) {
    ModuleRecord record;
    ClassObject object;
    ClassObjectEntry map[] = {{{&IID_IUnknown, nullptr, nullptr, NoteModule<'A'>}, L"", L""},
                              {{&IID_IDispatch, nullptr, nullptr, nullptr}, L"", L""},
                              {{&IID_IStream, nullptr, nullptr, NoteModule<'C'>}, L"", L""},
                              {}};
    const auto library = reinterpret_cast<HINSTANCE>(&record);
    record.Initialise(library, map);
    EXPECT_THAT(std::exchange(events, {}), ElementsAre("A starts", "C starts"));
    EXPECT_EQ(sizeof record, record.size);
    EXPECT_EQ(ModuleRecord::kCurrentVersion, record.version);
    for (HINSTANCE instance :
         {record.instance, record.resourceInstance, record.typeLibraryInstance})
        EXPECT_EQ(library, instance);
    EXPECT_EQ(0, record.lockCount);

    char first[] = "callback 1", second[] = "callback 2";
    map[1].classObject = &object;
    for (char* name : {first, second}) record.AddTerminationCallback(NoteCallback, name);
    record.Terminate();
    EXPECT_THAT(std::exchange(events, {}),
                ElementsAre("A ends", "object goes", "C ends", "callback 2", "callback 1"));
    EXPECT_EQ(nullptr, map[1].classObject);

    // Entries are shorter where the record is of the first version.
    ClassObjectEntryV1 shorter[] = {map[0], map[1], map[2], {}};
    record.Initialise(library, &map[3]);
    record.version = ModuleRecord::kFirstVersion;
    record.classObjects = shorter;
    record.Terminate();
    EXPECT_THAT(std::exchange(events, {}), ElementsAre("A ends", "C ends"));
}

}  // namespace
