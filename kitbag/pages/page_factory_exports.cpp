#include <kitbag/com/com_initialisation.h>
#include <kitbag/frame/com_object.h>
#include <kitbag/pages.h>
#include <kitbag/pages/page_factory.h>

using kitbag::ComInitialisation;

bool KB_CreateKivPageFactory(IKivPageFactory** factory) {
    if (!factory) return false;
    *factory = nullptr;
    const ComInitialisation com("KB_CreateKivPageFactory");
    return SUCCEEDED(kitbag::CreateObject<kitbag::CKivPageFactory>(nullptr, IID_PPV_ARGS(factory)));
}

bool KB_CreateGraphicFactory(IKivGraphicFactory** factory) {
    if (!factory) return false;
    *factory = nullptr;
    const ComInitialisation com("CKitbag::KB_CreateGraphicFactory");
    return SUCCEEDED(
        ::CoCreateInstance(CLSID_KivGraphicFactory, nullptr, CLSCTX_ALL, IID_PPV_ARGS(factory)));
}
