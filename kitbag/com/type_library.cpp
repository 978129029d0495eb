#include <kitbag/com/type_library.h>
#include <kitbag/frame/module_record.h>
#include <kitbag/frame/os_dependent_function.h>
#include <kitbag/pages.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <filesystem>
#include <utility>

namespace kitbag {

namespace {

using Microsoft::WRL::ComPtr;

struct TypeLibrary {
    std::wstring file;
    ComPtr<ITypeLib> library;
};

HRESULT Load(std::wstring file, TypeLibrary& loaded) {
    const HRESULT result = ::LoadTypeLibEx(file.c_str(), REGKIND_NONE, &loaded.library);
    loaded.file = std::move(file);
    return result;
}

HRESULT LoadOwn(TypeLibrary& loaded) {
    const std::wstring file = LibraryFile();
    if (file.empty()) return E_FAIL;
    const HRESULT result = Load(file, loaded);
    if (SUCCEEDED(result)) return result;
    return Load(std::filesystem::path(file).replace_extension(L".tlb").native(), loaded);
}

/// Owns the attributes of a type library.
class Attributes {
 public:
    explicit Attributes(ITypeLib* library) : library_(library) {
        library->GetLibAttr(&attributes_);
    }
    ~Attributes() {
        if (attributes_) library_->ReleaseTLibAttr(attributes_);
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const TLIBATTR* Get() const { return attributes_; }

 private:
    ITypeLib* library_;
    TLIBATTR* attributes_ = nullptr;
};

bool IsRegistered(const TLIBATTR& type) {
    BSTR path = nullptr;
    const HRESULT result =
        ::QueryPathOfRegTypeLib(type.guid, type.wMajorVerNum, type.wMinorVerNum, type.lcid, &path);
    ::SysFreeString(path);
    return SUCCEEDED(result);
}

/// Under the general critical section.
ITypeInfo* pageFactoryInfo = nullptr;

void WINAPI ReleasePageFactoryInfo(DWORD_PTR) {
    std::exchange(pageFactoryInfo, nullptr)->Release();
}

HRESULT LoadPageFactoryInfo() {
    TypeLibrary own;
    HRESULT result = LoadOwn(own);
    ComPtr<ITypeInfo> info;
    if (SUCCEEDED(result))
        result = own.library->GetTypeInfoOfGuid(__uuidof(IKivPageFactory), &info);
    if (FAILED(result)) return result;
    if (!moduleRecord.AddTerminationCallback(ReleasePageFactoryInfo, 0)) return E_OUTOFMEMORY;
    pageFactoryInfo = info.Detach();
    return S_OK;
}

}  // namespace

std::wstring LibraryFile() {
    // The longest path of the system.
    std::wstring path(32768, L'\0');
    path.resize(::GetModuleFileNameW(moduleRecord.typeLibraryInstance, path.data(),
                                     static_cast<DWORD>(path.size())));
    return path;
}

HRESULT RegisterOwnTypeLibrary() {
    TypeLibrary own;
    const HRESULT result = LoadOwn(own);
    if (FAILED(result)) return result;
    return ::RegisterTypeLib(own.library.Get(), own.file.data(), nullptr);
}

HRESULT UnregisterOwnTypeLibrary() {
    TOSDepFn<decltype(&::UnRegisterTypeLib)> unregister("oleaut32.dll", "UnRegisterTypeLib");
    if (!unregister.Load()) return TYPE_E_DLLFUNCTIONNOTFOUND;

    TypeLibrary own;
    const HRESULT result = LoadOwn(own);
    if (FAILED(result)) return result;
    const Attributes attributes(own.library.Get());
    const TLIBATTR* const type = attributes.Get();
    if (!type) return E_OUTOFMEMORY;
    if (!IsRegistered(*type)) return S_OK;
    return unregister.Function()(type->guid, type->wMajorVerNum, type->wMinorVerNum, type->lcid,
                                 type->syskind);
}

HRESULT PageFactoryTypeInfo(ITypeInfo** info) {
    *info = nullptr;
    const SectionLock lock(moduleRecord.generalSection);
    const HRESULT result = pageFactoryInfo ? S_OK : LoadPageFactoryInfo();
    if (FAILED(result)) return result;
    *info = pageFactoryInfo;
    pageFactoryInfo->AddRef();
    return S_OK;
}

}  // namespace kitbag
