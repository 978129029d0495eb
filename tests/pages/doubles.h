// COM objects of the tests' own: they live on the stack and know who still refers to them.
#pragma once

#include <gtest/gtest.h>
#include <kitbag/pages.h>
#include <wrl/client.h>

#include <functional>
#include <string>
#include <vector>

namespace kitbag::test {

using Microsoft::WRL::ComPtr;

/// Fails its test when a reference is left at its end, or was released once too often.
template <class Interface = IUnknown>
class Double : public Interface {
 public:
    Double() = default;
    virtual ~Double() { EXPECT_EQ(0, references); }
    Double(const Double&) = delete;
    Double& operator=(const Double&) = delete;

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        const bool answers = id == __uuidof(Interface) || id == IID_IUnknown;
        *object = answers ? this : nullptr;
        if (answers) AddRef();
        return answers ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++references); }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--references); }

    int references = 0;
};

/// The application's user interface: does in CreatePage what the test says.
class UserInterface final : public Double<IKivUserInterface> {
 public:
    STDMETHODIMP CreatePage(IKivPageOwner* owner, IKivPageFactory* factory, LONG index,
                            IUnknown** page) override {
        created.push_back(index);
        return create(owner, factory, index, page);
    }

    std::function<HRESULT(IKivPageOwner*, IKivPageFactory*, LONG, IUnknown**)> create;
    std::vector<LONG> created;
};

/// The application's graphic factory: notes what it is handed and refuses while refusals are left.
class GraphicFactory final : public Double<IKivGraphicFactory> {
 public:
    STDMETHODIMP LoadScript(BSTR file, BSTR directory, BSTR language, BSTR subLanguage,
                            IUnknown** script) override {
        return Note({file, directory, language, subLanguage}, script);
    }
    STDMETHODIMP SaveScript(BSTR file, IUnknown* script) override {
        EXPECT_EQ(&object, script);
        return Note({file}, nullptr);
    }
    STDMETHODIMP LoadImageFile(BSTR path, IUnknown** image) override { return Note({path}, image); }

    std::vector<std::wstring> calls;
    int refusals = 0;
    Double<> object;

 private:
    HRESULT Note(std::initializer_list<std::wstring> texts, IUnknown** result) {
        calls.insert(calls.end(), texts);
        // An object handed out along with a failure must not leak either.
        if (result) object.QueryInterface(IID_PPV_ARGS(result));
        return refusals-- > 0 ? STG_E_FILENOTFOUND : S_OK;
    }
};

/// Registers the graphic factory's class in this process while it lives.
class GraphicClass final : public Double<IClassFactory> {
 public:
    explicit GraphicClass(GraphicFactory& graphics) : graphics_(graphics) {
        EXPECT_EQ(S_OK, ::CoRegisterClassObject(CLSID_KivGraphicFactory, this, CLSCTX_INPROC_SERVER,
                                                REGCLS_MULTIPLEUSE, &cookie_));
    }
    ~GraphicClass() override { EXPECT_EQ(S_OK, ::CoRevokeClassObject(cookie_)); }

    STDMETHODIMP CreateInstance(IUnknown*, REFIID id, void** object) override {
        return graphics_.QueryInterface(id, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
    GraphicFactory& graphics_;
    DWORD cookie_ = 0;
};

/// COM on this thread while it lives.
class Apartment {
 public:
    Apartment() { EXPECT_EQ(S_OK, ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    ~Apartment() { ::CoUninitialize(); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
};

inline ComPtr<IKivPageFactory> NewPageFactory() {
    ComPtr<IKivPageFactory> factory;
    EXPECT_TRUE(KB_CreateKivPageFactory(&factory));
    return factory;
}

}  // namespace kitbag::test
