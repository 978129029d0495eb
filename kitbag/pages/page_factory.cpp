#include <comdef.h>
#include <comutil.h>
#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/path_text.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/frame/text_steps.h>
#include <kitbag/pages/page_factory.h>
#include <kitbag/pages/page_owner.h>
#include <kitbag/registry/directories.h>
#include <kitbag/registry/stored_values.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace kitbag {

namespace {

using Microsoft::WRL::ComPtr;

/// The settings that give a page another file than the one it is named for.
constexpr char kSkinsSection[] = "Skins";
/// Components know the texts cut to one byte less.
constexpr int kResourceTextRoom = 512;

_bstr_t ToBstr(const std::string& text) { return {ToWide(text.c_str()).c_str()}; }

/// Empty where there is none.
std::string SkinDirectory(const char* operation) {
    TWinString<char> directory;
    if (KB_GetSkinDirectoryA(directory)) return directory;
    DebugTrace("CKivPageFactory::%s - Can't get skin directory\n", operation);
    return {};
}

HRESULT LoadFirstImage(const std::string& name, const std::initializer_list<std::string>& folders,
                       IUnknown** image) {
    ComPtr<IKivGraphicFactory> graphics;
    if (!KB_CreateGraphicFactory(graphics.GetAddressOf())) return E_FAIL;
    for (const std::string& folder : folders) {
        if (folder.empty()) continue;
        ComPtr<IUnknown> loaded;
        if (FAILED(
                graphics->LoadImageFile(ToBstr(Join<char>(folder, name)), loaded.GetAddressOf())))
            continue;
        *image = loaded.Detach();
        return S_OK;
    }
    return E_FAIL;
}

HRESULT CreateDefaultOwner(ComPtr<IKivPageOwner>& owner) {
    const HRESULT result = CreateObject<CKivPageOwner>(nullptr, IID_PPV_ARGS(owner.GetAddressOf()));
    if (SUCCEEDED(result) || result == E_OUTOFMEMORY) return result;
    DebugTrace("CKivPageFactory::CreatePage - Can't create default page owner\n");
    return E_FAIL;
}

}  // namespace

CKivPageFactory::~CKivPageFactory() {
    // What is let go may call the factory once more: it finds one without pages and objects, all
    // in order, and what it adds or registers goes the same way.
    while (defaultObject_ || !objects_.empty() || !pages_.empty()) {
        pageFiles_.clear();
        const auto defaultObject = std::exchange(defaultObject_, nullptr);
        const auto objects = std::exchange(objects_, {});
        const auto pages = std::exchange(pages_, {});
    }
}

STDMETHODIMP CKivPageFactory::SetDefaultObject(IUnknown* object) {
    Object changing(object);
    changing.Swap(defaultObject_);
    return S_OK;
}

STDMETHODIMP CKivPageFactory::RegisterObject(GUID identifier, IUnknown* object) {
    return Operation([&] {
        // What was registered goes when the map is in order again.
        Object changing(object);
        if (object)
            changing.Swap(objects_[identifier]);
        else if (auto node = objects_.extract(identifier))
            changing.Swap(node.mapped());
        return S_OK;
    });
}

STDMETHODIMP CKivPageFactory::GetRegisteredObject(GUID identifier, IUnknown** object) {
    return Operation([&] {
        if (!object) return E_POINTER;
        const auto found = objects_.find(identifier);
        return (found != objects_.end() ? found->second : defaultObject_).CopyTo(object);
    });
}

std::string CKivPageFactory::ScriptFile(LONG index, const char* operation) const {
    // A copy: looking for the directory may ask the user, and the list may grow meanwhile.
    std::string name = pageFiles_[static_cast<std::size_t>(index)];
    if (FindFirstOf<char>(name, ":\\") != name.npos) return name;
    const std::string directory = SkinDirectory(operation);
    return directory.empty() ? name : Join<char>(directory, name);
}

STDMETHODIMP CKivPageFactory::GetScript(LONG index, IUnknown** script) {
    return Operation([=, this]() -> HRESULT {
        if (!script) return E_POINTER;
        *script = nullptr;
        if (!IsPage(index)) return E_INVALIDARG;
        const std::string file = ScriptFile(index, "GetScript");
        locale_.Update();
        ComPtr<IKivGraphicFactory> graphics;
        if (!KB_CreateGraphicFactory(graphics.GetAddressOf())) return E_FAIL;
        Object loaded;
        const HRESULT result = graphics->LoadScript(
            ToBstr(file), ToBstr(FolderOfFile<char>(file)), ToBstr(locale_.language),
            ToBstr(locale_.subLanguage), loaded.GetAddressOf());
        if (SUCCEEDED(result)) *script = loaded.Detach();
        return result;
    });
}

STDMETHODIMP CKivPageFactory::SetScript(LONG index, IUnknown* script) {
    return Operation([=, this]() -> HRESULT {
        if (!script) return E_POINTER;
        if (!IsPage(index)) return E_INVALIDARG;
        const std::string file = ScriptFile(index, "SetScript");
        ComPtr<IKivGraphicFactory> graphics;
        if (!KB_CreateGraphicFactory(graphics.GetAddressOf())) return E_FAIL;
        return graphics->SaveScript(ToBstr(file), script);
    });
}

STDMETHODIMP CKivPageFactory::GetScriptImage(LONG, BSTR file, IUnknown** image) {
    return Operation([=, this] {
        if (!image) return E_POINTER;
        *image = nullptr;
        const std::string skin = SkinDirectory("GetScriptImage");
        return LoadFirstImage(ToNarrow(file), {locale_.subLanguage, locale_.language, skin}, image);
    });
}

STDMETHODIMP CKivPageFactory::GetScriptImage2(LONG unused, BSTR file, IUnknown** image) {
    return GetScriptImage(unused, file, image);
}

STDMETHODIMP CKivPageFactory::GetPageCount(LONG* count) {
    return Operation([=, this] {
        if (!count) return E_POINTER;
        *count = PageCount();
        return S_OK;
    });
}

STDMETHODIMP CKivPageFactory::LoadResourceString(LONG, LONG identifier, BSTR* text) {
    return Operation([=, this] {
        if (!text) return E_POINTER;
        *text = nullptr;
        HINSTANCE module = resourceModule_ ? resourceModule_ : moduleRecord.resourceInstance;
        char buffer[kResourceTextRoom];
        if (!::LoadStringA(module, static_cast<UINT>(identifier), buffer, kResourceTextRoom))
            return E_FAIL;
        *text = ToBstr(buffer).Detach();
        return S_OK;
    });
}

STDMETHODIMP CKivPageFactory::SetResourceModule(HMODULE resourceModule) {
    resourceModule_ = resourceModule;
    return S_OK;
}

STDMETHODIMP CKivPageFactory::AddPage(BSTR name, LONG* index) {
    return Operation([=, this] {
        if (!name || !*name) return E_INVALIDARG;
        const std::string pageName = ToNarrow(name);
        TWinString<char> file;
        if (!KB_GetTStringA(kSkinsSection, pageName.c_str(), file)) file = pageName;
        // The pages first: they are never fewer than the files, even where memory runs out.
        pages_.resize(pageFiles_.size() + 1);
        pageFiles_.push_back(std::move(file));
        if (index) *index = PageCount() - 1;
        return S_OK;
    });
}

STDMETHODIMP CKivPageFactory::GetPage(LONG index, IUnknown** page) {
    return Operation([=, this] {
        if (!page) return E_POINTER;
        *page = nullptr;
        if (!IsPage(index)) return E_INVALIDARG;
        return pages_[static_cast<std::size_t>(index)].CopyTo(page);
    });
}

STDMETHODIMP CKivPageFactory::CreatePage(LONG index, IKivUserInterface* userInterface,
                                         IKivPageOwner* owner, IUnknown** page) {
    return Operation([=, this]() -> HRESULT {
        if (page) *page = nullptr;
        if (!userInterface) {
            DebugTrace("CKivPageFactory::CreatePage - Invalid IKivUserInterface pointer\n");
            return E_POINTER;
        }
        if (pageFiles_.empty()) {
            DebugTrace("CKivPageFactory::CreatePage - No filenames for pages given\n");
            return E_FAIL;
        }
        if (index >= PageCount()) {
            DebugTrace("CKivPageFactory::CreatePage - Index invalid\n");
            return E_INVALIDARG;
        }
        // The user interface may let go of any of the three while it creates a page.
        const ComPtr<IKivPageFactory> self(this);
        const ComPtr<IKivUserInterface> creator(userInterface);
        ComPtr<IKivPageOwner> pageOwner(owner);
        if (!owner)
            if (const HRESULT result = CreateDefaultOwner(pageOwner); FAILED(result)) return result;
        return index < 0 ? CreateAllPages(creator.Get(), pageOwner.Get())
                         : CreateOnePage(index, creator.Get(), pageOwner.Get(), page);
    });
}

HRESULT CKivPageFactory::CreateAllPages(IKivUserInterface* userInterface, IKivPageOwner* owner) {
    HRESULT lastFailure = S_OK;
    for (LONG index = 0; index < PageCount(); ++index) {
        const HRESULT result = CreateOnePage(index, userInterface, owner, nullptr);
        if (FAILED(result)) lastFailure = result;
    }
    return lastFailure;
}

HRESULT CKivPageFactory::CreateOnePage(LONG index, IKivUserInterface* userInterface,
                                       IKivPageOwner* owner, IUnknown** page) {
    const auto position = static_cast<std::size_t>(index);
    Object changing;
    const HRESULT result = userInterface->CreatePage(owner, this, index, changing.GetAddressOf());
    if (FAILED(result)) {
        DebugTrace("CKivPageFactory::CreatePage - Failed to create page '%s' (HRESULT:%08X)\n",
                   pageFiles_[position].c_str(), static_cast<unsigned>(result));
        return result;
    }
    if (page) changing.CopyTo(page);
    changing.Swap(pages_[position]);
    return result;
}

STDMETHODIMP CKivPageFactory::InterfaceSupportsErrorInfo(REFIID interfaceId) {
    return interfaceId == __uuidof(IKivPageFactory) ? S_OK : S_FALSE;
}

}  // namespace kitbag
