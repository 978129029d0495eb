// The page factory: the list of the application's pages and the objects that they share.
#pragma once

#include <kitbag/com/dispatch_object.h>
#include <kitbag/pages.h>
#include <kitbag/pages/locale_directories.h>
#include <wrl/client.h>

#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace kitbag {

/// Lives in the apartment of the thread that created it and takes no locks. Everything that it
/// calls may call back into it, so an object is let go only when the factory is in order again.
class CKivPageFactory final : public DispatchObject<IKivPageFactory, ISupportErrorInfo> {
 public:
    ~CKivPageFactory() override;

    STDMETHODIMP SetDefaultObject(IUnknown* object) override;
    STDMETHODIMP RegisterObject(GUID identifier, IUnknown* object) override;
    STDMETHODIMP GetScript(LONG index, IUnknown** script) override;
    STDMETHODIMP GetScriptImage(LONG unused, BSTR file, IUnknown** image) override;
    STDMETHODIMP GetScriptImage2(LONG unused, BSTR file, IUnknown** image) override;
    STDMETHODIMP GetRegisteredObject(GUID identifier, IUnknown** object) override;
    STDMETHODIMP GetPageCount(LONG* count) override;
    STDMETHODIMP LoadResourceString(LONG unused, LONG identifier, BSTR* text) override;
    STDMETHODIMP SetScript(LONG index, IUnknown* script) override;
    STDMETHODIMP AddPage(BSTR name, LONG* index) override;
    STDMETHODIMP CreatePage(LONG index, IKivUserInterface* userInterface, IKivPageOwner* owner,
                            IUnknown** page) override;
    STDMETHODIMP SetResourceModule(HMODULE resourceModule) override;
    STDMETHODIMP GetPage(LONG index, IUnknown** page) override;

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID interfaceId) override;

 private:
    using Object = Microsoft::WRL::ComPtr<IUnknown>;

    struct ByBytes {
        bool operator()(const GUID& left, const GUID& right) const {
            return std::memcmp(&left, &right, sizeof(GUID)) < 0;
        }
    };

    LONG PageCount() const { return static_cast<LONG>(pageFiles_.size()); }
    bool IsPage(LONG index) const { return index >= 0 && index < PageCount(); }
    std::string ScriptFile(LONG index, const char* operation) const;
    HRESULT CreateAllPages(IKivUserInterface* userInterface, IKivPageOwner* owner);
    HRESULT CreateOnePage(LONG index, IKivUserInterface* userInterface, IKivPageOwner* owner,
                          IUnknown** page);

    Object defaultObject_;
    std::map<GUID, Object, ByBytes> objects_;
    std::vector<std::string> pageFiles_;
    /// Never fewer than the file names; null until a page is created.
    std::vector<Object> pages_;
    LocaleDirectories locale_;
    /// Where texts are loaded from; null stands for the library itself.
    HMODULE resourceModule_ = nullptr;
};

}  // namespace kitbag
