// COM objects of the tests' own: they live on the stack and know who still refers to them.
#pragma once

#include <comutil.h>
#include <gtest/gtest.h>
#include <kitbag/pages.h>
#include <wrl/client.h>

#include <functional>
#include <vector>

namespace kitbag::test {

using Microsoft::WRL::ComPtr;

/// Fails its test when a reference is left at its end, or was released once too often.
template <class Interface = IUnknown>
class Double : public Interface {
 public:
    virtual ~Double() { EXPECT_EQ(0, references); }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        *object = id == __uuidof(Interface) || id == IID_IUnknown ? this : nullptr;
        return *object ? AddRef(), S_OK : E_NOINTERFACE;
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
        return create(owner, factory, index, page);
    }

    std::function<HRESULT(IKivPageOwner*, IKivPageFactory*, LONG, IUnknown**)> create;
};

/// The application's graphic factory: notes what it is handed and refuses while refusals are left.
class GraphicFactory final : public Double<IKivGraphicFactory> {
 public:
    STDMETHODIMP LoadScript(BSTR file, BSTR directory, BSTR language, BSTR subLanguage,
                            IUnknown** script) override {
        return Note({file, directory, language, subLanguage}, script);
    }
    STDMETHODIMP SaveScript(BSTR file, IUnknown*) override { return Note({file}); }
    STDMETHODIMP LoadImageFile(BSTR path, IUnknown** image) override { return Note({path}, image); }

    HRESULT Note(std::initializer_list<std::wstring> texts, IUnknown** result = nullptr) {
        calls.insert(calls.end(), texts);
        // It stands for scripts and images, too. One handed out along with a failure must not leak.
        if (result) QueryInterface(IID_PPV_ARGS(result));
        return refusals-- > 0 ? STG_E_FILENOTFOUND : S_OK;
    }

    std::vector<std::wstring> calls;
    int refusals = 0;
};

/// The class object through which COM finds that graphic factory.
class GraphicClass final : public Double<IClassFactory> {
 public:
    STDMETHODIMP CreateInstance(IUnknown*, REFIID id, void** object) override {
        return graphics.QueryInterface(id, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

    GraphicFactory graphics;
};

}  // namespace kitbag::test
