#include <kitbag/registry/directories.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/trace_capture.h>

// The locale library's functions; this program stands in for that library.
extern "C" __declspec(dllexport) int GetLocaleLanguageDirectoryA(char* to, unsigned long size) {
    return ::lstrcpyA(to, size == 260 ? "L:\\de" : "") != nullptr;
}
extern "C" __declspec(dllexport) int GetLocaleSubLanguageDirectoryA(char* to, unsigned long size) {
    return ::lstrcpyA(to, size == 260 ? "L:\\de-AT\\" : "") != nullptr;
}

namespace {

using namespace kitbag::test;
using Texts = std::vector<std::wstring>;
using Factory = IKivPageFactory;

HMODULE WINAPI LoadLocaleLibrary(LPCSTR name) {
    return ::lstrcmpA(name, "Lingrel.dll") ? nullptr : ::GetModuleHandleA(nullptr);
}
void* WINAPI CancelDialog(void*) { return nullptr; }

/// A factory with the application around it.
struct PageFactory : testing::Test {
    PageFactory() {
        ::CoInitialize(nullptr);
        ::CoRegisterClassObject(CLSID_KivGraphicFactory, &graphicClass, CLSCTX_INPROC_SERVER,
                                REGCLS_MULTIPLEUSE, &cookie);
        KB_SetSkinDirectoryA(std::string("C:\\windows"));
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory));
    }
    ~PageFactory() override { ::CoRevokeClassObject(cookie); }

    void Add(const wchar_t* name) { EXPECT_EQ(S_OK, factory->AddPage(_bstr_t(name), nullptr)); }
    /// What an operation answers and leaves in its out pointer; only CreatePage does without one.
    using Outcome = std::pair<HRESULT, IUnknown*>;
    template <class Operation, class... Arguments>
    Outcome Call(Operation operation, Arguments... arguments) {
        if constexpr (!std::is_same_v<Operation, decltype(&Factory::CreatePage)>) {
            EXPECT_EQ(E_POINTER, (factory.Get()->*operation)(arguments..., nullptr));
        }
        IUnknown* out = &overwritten;
        const HRESULT result = (factory.Get()->*operation)(arguments..., &out);
        if (out) out->Release();
        return {result, out};
    }
    Texts GraphicCalls() { return std::exchange(graphics.calls, {}); }

    GraphicClass graphicClass;
    GraphicFactory& graphics = graphicClass.graphics;
    DWORD cookie = 0;
    ImportPatch load{"LoadLibraryA", LoadLocaleLibrary};
    ImportPatch browse{"SHBrowseForFolderA", CancelDialog};
    TraceCapture trace;
    Double<> page, other, overwritten;
    Double<IKivPageOwner> owner;
    UserInterface userInterface;
    ComPtr<Factory> factory;
};

TEST_F(PageFactory, RefusesWhatItCannotUse) {
    ComPtr<ISupportErrorInfo> errors;
    ASSERT_EQ(S_OK, factory.As(&errors));
    EXPECT_EQ(S_OK, errors->InterfaceSupportsErrorInfo(IID_IKivPageFactory));
    EXPECT_EQ(S_FALSE, errors->InterfaceSupportsErrorInfo(IID_IDispatch));
    EXPECT_EQ(E_INVALIDARG, factory->AddPage(nullptr, nullptr));
    Add(std::wstring(10000, L'x').c_str());
    for (const LONG wrong : {-1, 1, 1000}) {
        EXPECT_EQ(Outcome(E_INVALIDARG, nullptr), Call(&Factory::GetPage, wrong));
        EXPECT_EQ(Outcome(E_INVALIDARG, nullptr), Call(&Factory::GetScript, wrong));
        EXPECT_EQ(E_INVALIDARG, factory->SetScript(wrong, &other));
    }
    for (const HRESULT refused : {factory->SetScript(0, nullptr), factory->GetPageCount(nullptr),
                                  factory->LoadResourceString(0, 399, nullptr)})
        EXPECT_EQ(E_POINTER, refused);
    EXPECT_FALSE(KB_CreateKivPageFactory(nullptr) || KB_CreateGraphicFactory(nullptr));
    // This program has no strings.
    factory->SetResourceModule(::GetModuleHandleA(nullptr));
    EXPECT_EQ(E_FAIL, factory->LoadResourceString(0, 399, _bstr_t().GetAddress()));
}

TEST_F(PageFactory, KeepsObjectsAndADefaultForTheOthers) {
    const auto get = &Factory::GetRegisteredObject;
    EXPECT_EQ(Outcome(S_OK, nullptr), Call(get, IID_IUnknown));
    for (IUnknown* object : {&page, &other}) factory->SetDefaultObject(object);
    factory->RegisterObject(IID_IUnknown, &page);
    EXPECT_EQ(Outcome(S_OK, &page), Call(get, IID_IUnknown));
    EXPECT_EQ(Outcome(S_OK, &other), Call(get, IID_IDispatch));
    factory->RegisterObject(IID_IUnknown, nullptr);
    EXPECT_EQ(Outcome(S_OK, &other), Call(get, IID_IUnknown));
}

TEST_F(PageFactory, KeepsThePagesThatTheUserInterfaceCreates) {
    struct {
        LONG index;
        Outcome answers[2], outcome;
        IUnknown* kept[2];
    } const calls[] = {
        {2, {}, {E_INVALIDARG, nullptr}, {}},
        // All pages go on after a failure, of which the last one is answered.
        {-1, {{E_ABORT, nullptr}, {S_FALSE, &page}}, {E_ABORT, nullptr}, {nullptr, &page}},
        {-2, {{E_ABORT, nullptr}, {E_FAIL, &other}}, {E_FAIL, nullptr}, {nullptr, &page}},
        {-1, {{S_FALSE, &page}, {S_FALSE, &page}}, {S_OK, nullptr}, {&page, &page}},
        {1, {{}, {S_FALSE, &other}}, {S_FALSE, &other}, {&page, &other}},
        {1, {{}, {S_OK, nullptr}}, {S_OK, nullptr}, {&page, nullptr}},
    };
    EXPECT_EQ(Outcome(E_POINTER, nullptr), Call(&Factory::CreatePage, 0, nullptr, &owner));
    trace.Expect({"CKivPageFactory::CreatePage - Invalid IKivUserInterface pointer\n"});
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(&Factory::CreatePage, 0, &userInterface, &owner));
    for (const wchar_t* name : {L"0", L"1"}) Add(name);
    for (const auto& [index, answers, outcome, kept] : calls) {
        IKivPageOwner* const given = index < 0 ? nullptr : &owner;
        userInterface.create = [&](auto* handed, auto*, LONG asked, IUnknown** out) {
            EXPECT_TRUE(given ? handed == given : handed != nullptr);
            ComPtr<IUnknown>(answers[asked].second).CopyTo(out);
            return answers[asked].first;
        };
        EXPECT_EQ(outcome, Call(&Factory::CreatePage, index, &userInterface, given));
        for (const LONG i : {0, 1}) EXPECT_EQ(Outcome(S_OK, kept[i]), Call(&Factory::GetPage, i));
    }
}

TEST_F(PageFactory, FindsScriptsInTheSkinDirectoryOrTheirOwn) {
    RawKey("Skins").Set(L"Renamed", L"sub\\New.page");
    const wchar_t* const cases[][4] = {
        {L"C:\\windows", L"Main.page", L"C:\\windows\\Main.page", L"C:\\windows\\"},
        {L"C:\\windows", L"c:Main.page", L"c:Main.page", L""},
        {L"C:\\windows", L"Renamed", L"sub\\New.page", L"sub\\"},
        {L"C:\\no such folder", L"Main.page", L"Main.page", L""},
    };
    for (LONG index = 0; const auto& [skin, name, file, directory] : cases) {
        KB_SetSkinDirectoryW(skin);
        Add(name);
        EXPECT_EQ(Outcome(S_OK, &graphics), Call(&Factory::GetScript, index));
        EXPECT_EQ(S_OK, factory->SetScript(index++, &other));
        EXPECT_EQ((Texts{file, directory, L"L:\\de", L"L:\\de-AT\\", file}), GraphicCalls());
    }
    ::CoRevokeClassObject(cookie);
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(&Factory::GetScript, 1));
}

TEST_F(PageFactory, TakesImagesFromTheMostParticularDirectory) {
    const _bstr_t name(L"a.gif");
    const Texts all = {L"L:\\de-AT\\a.gif", L"L:\\de\\a.gif", L"C:\\windows\\a.gif"};
    // The languages' directories are known once a script was asked for.
    Add(L"c:Main.page");
    Call(&Factory::GetScript, 0);
    GraphicCalls();
    graphics.refusals = 2;
    EXPECT_EQ(Outcome(S_OK, &graphics), Call(&Factory::GetScriptImage2, 7, name));
    EXPECT_EQ(all, GraphicCalls());
    KB_SetSkinDirectoryW(L"C:\\no such folder");
    graphics.refusals = 2;
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(&Factory::GetScriptImage, 7, name));
    EXPECT_EQ((Texts{all[0], all[1]}), GraphicCalls());
}

}  // namespace
