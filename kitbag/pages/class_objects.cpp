#include <kitbag/frame/class_object_map.h>
#include <kitbag/frame/com_object.h>
#include <kitbag/pages.h>
#include <kitbag/pages/page_factory.h>

namespace kitbag {

constinit ClassObjectEntry classObjectMap[] = {
    {{&CLSID_KivPageFactory, &CreateObject<CKivPageFactory>, nullptr, nullptr},
     L"Kitbag.KivPageFactory",
     L"Vidmoor page factory"},
    {},
};

constinit const GUID* const typeLibraryId = &LIBID_Kitbag;

}  // namespace kitbag
