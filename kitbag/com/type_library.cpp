#include <comdef.h>
#include <comutil.h>
#include <kitbag/com/type_library.h>
#include <kitbag/frame/file_calls.h>
#include <kitbag/frame/module_record.h>
#include <kitbag/frame/os_dependent_function.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <filesystem>
#include <utility>

namespace kitbag {

namespace {

using Microsoft::WRL::ComPtr;

/// No path of the system is longer, its terminator included.
constexpr DWORD kPathRoom = 32768;

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

    // The system looks for a file that is not there in other places, too, where another program's
    // may lie.
    std::wstring beside = std::filesystem::path(file).replace_extension(L".tlb").native();
    const DWORD attributes = AttributesOf(beside.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || IsFolder(attributes)) return result;
    return Load(std::move(beside), loaded);
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
    _bstr_t file;
    return SUCCEEDED(::QueryPathOfRegTypeLib(type.guid, type.wMajorVerNum, type.wMinorVerNum,
                                             type.lcid, file.GetAddress()));
}

}  // namespace

std::wstring LibraryFile() {
    std::wstring path(kPathRoom, L'\0');
    path.resize(::GetModuleFileNameW(moduleRecord.typeLibraryInstance, path.data(), kPathRoom));
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

HRESULT InterfaceDescription::Get(ITypeInfo** info) {
    const SectionLock lock(moduleRecord.generalSection);
    const HRESULT result = info_ ? S_OK : Load();
    return FAILED(result) ? result : ComPtr<ITypeInfo>(info_).CopyTo(info);
}

HRESULT InterfaceDescription::Load() {
    TypeLibrary own;
    HRESULT result = LoadOwn(own);
    ComPtr<ITypeInfo> info;
    if (SUCCEEDED(result)) result = own.library->GetTypeInfoOfGuid(interfaceId_, &info);
    if (FAILED(result)) return result;
    if (!moduleRecord.AddTerminationCallback(Release, this)) return E_OUTOFMEMORY;
    info_ = info.Detach();
    return S_OK;
}

void WINAPI InterfaceDescription::Release(void* description) {
    auto& self = *static_cast<InterfaceDescription*>(description);
    std::exchange(self.info_, nullptr)->Release();
}

}  // namespace kitbag
