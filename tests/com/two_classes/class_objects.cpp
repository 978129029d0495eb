// A library with two classes, made of the rooms that every COM class stands on.

#include <kitbag/com/dispatch_object.h>
#include <kitbag/frame/class_object_map.h>
#include <kitbag/frame/com_object.h>
#include <two_classes.h>

namespace kitbag {

namespace {

class First final : public DispatchObject<IFirst> {
    STDMETHODIMP GetFirst(LONG* number) override { return *number = 1, S_OK; }
};

class Second final : public DispatchObject<ISecond> {
    STDMETHODIMP GetSecond(LONG* number) override { return *number = 2, S_OK; }
};

}  // namespace

constinit ClassObjectEntry classObjectMap[] = {
    {{&CLSID_First, &CreateObject<First>, nullptr, nullptr}, L"TwoClasses.First", L"The first"},
    {{&CLSID_Second, &CreateObject<Second>, nullptr, nullptr}, L"TwoClasses.Second", L"The second"},
    {},
};

constinit const GUID* const typeLibraryId = &LIBID_TwoClasses;

}  // namespace kitbag
