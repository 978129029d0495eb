#include <kitbag/registry/directories.h>
#include <kitbag/runtime/com_error.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

#include <map>
#include <optional>
#include <thread>

// The locale library's functions; this program stands in for that library. In the code page of
// these tests 0x95 begins a character of two bytes, the second of which may be a backslash.
extern "C" __declspec(dllexport) int GetLocaleLanguageDirectoryA(char* to, unsigned long size) {
    return ::lstrcpyA(to, size == 260 ? "L:\\\x95\\" : "?") != nullptr;
}
extern "C" __declspec(dllexport) int GetLocaleSubLanguageDirectoryA(char* to, unsigned long size) {
    return ::lstrcpyA(to, size == 260 ? "L:\\de-AT\\" : "?") != nullptr;
}

namespace {

using namespace kitbag::test;
using Texts = std::vector<std::wstring>;
using Factory = IKivPageFactory;
/// What an operation answers, and what is in its out pointer: (E_FAIL, "null").
using Outcome = std::pair<HRESULT, std::string>;

HMODULE WINAPI LoadLocaleLibrary(LPCSTR name) {
    return ::lstrcmpA(name, "Lingrel.dll") ? nullptr : ::GetModuleHandleA(nullptr);
}
void* NoMemory(std::size_t) { throw std::bad_alloc(); }
void* NoMemoryQuietly(std::size_t, const std::nothrow_t&) { return nullptr; }
DWORD askedContext;
HRESULT WINAPI CreateNothing(REFCLSID, IUnknown*, DWORD context, REFIID, void**) {
    return askedContext = context, REGDB_E_CLASSNOTREG;
}

/// A factory with the application around it.
struct PageFactory : testing::Test {
    PageFactory() {
        ::CoRegisterClassObject(CLSID_KivGraphicFactory, &graphicClass, CLSCTX_INPROC_SERVER,
                                REGCLS_MULTIPLEUSE, &cookie);
        KB_SetSkinDirectoryA(std::string("C:\\windows"));
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory));
    }
    ~PageFactory() override { ::CoRevokeClassObject(cookie); }

    void Add(const wchar_t* name) { EXPECT_EQ(S_OK, factory->AddPage(_bstr_t(name), nullptr)); }
    template <class Operation, class... Arguments>
    Outcome Call(Operation operation, Arguments... arguments) {
        IUnknown* out = &overwritten;
        const HRESULT result = (factory.Get()->*operation)(arguments..., &out);
        if (out && out != &overwritten) out->Release();
        return {result, out == &overwritten ? "what was there" : names.at(out)};
    }
    HRESULT Create(LONG index) { return factory->CreatePage(index, &userInterface, &owner, {}); }
    Texts GraphicCalls() { return std::exchange(graphics.calls, {}); }

    const Com com;
    GraphicClass graphicClass;
    GraphicFactory& graphics = graphicClass.graphics;
    DWORD cookie = 0;
    const ImportPatch patches[3] = {
        {"LoadLibraryA", LoadLocaleLibrary},
        {"IsDBCSLeadByte", +[](BYTE byte) WINAPI -> BOOL { return byte == 0x95; }},
        {"SHBrowseForFolderA", +[](void*) WINAPI -> void* { return nullptr; }}};
    Double<> page, other, overwritten;
    const std::map<IUnknown*, std::string> names = {
        {{}, "null"}, {&page, "page"}, {&other, "other"}, {&graphics, "graphics"}};
    Double<IKivPageOwner> owner;
    UserInterface userInterface;
    ComPtr<Factory> factory;
    const _bstr_t image{L"a.gif"};
};

TEST_F(PageFactory, KeepsObjectsAndADefaultForTheOthers) {
    const auto get = &Factory::GetRegisteredObject;
    EXPECT_EQ(Outcome(S_OK, "null"), Call(get, IID_IUnknown));
    for (IUnknown* object : {&page, &other}) EXPECT_EQ(S_OK, factory->SetDefaultObject(object));
    EXPECT_EQ(Outcome(S_OK, "other"), Call(get, IID_IUnknown)) << "the default set last";
    // Identifiers that differ in one byte.
    EXPECT_EQ(S_OK, factory->RegisterObject(IID_IUnknown, &graphics));
    EXPECT_EQ(S_OK, factory->RegisterObject(IID_IClassFactory, &other));
    EXPECT_EQ(S_OK, factory->RegisterObject(IID_IUnknown, &page));
    EXPECT_EQ(Outcome(S_OK, "page"), Call(get, IID_IUnknown)) << "the object registered last";
    EXPECT_EQ(S_OK, factory->RegisterObject(IID_IUnknown, nullptr));
    EXPECT_EQ(S_OK, factory->RegisterObject(IID_IStream, nullptr)) << "what is not there";
    EXPECT_EQ(Outcome(S_OK, "other"), Call(get, IID_IUnknown)) << "the default again";
    EXPECT_EQ(S_OK, factory->SetDefaultObject(nullptr));
    EXPECT_EQ(Outcome(S_OK, "null"), Call(get, IID_IUnknown));
}

TEST_F(PageFactory, NumbersItsPages) {
    for (const LONG expected : {0, 1, 2}) {
        LONG index = -1, count = -1;
        EXPECT_EQ(S_OK, factory->GetPageCount(&count));
        EXPECT_EQ(expected, count);
        EXPECT_EQ(S_OK, factory->AddPage(_bstr_t(std::wstring(10000, L'x').c_str()), &index));
        EXPECT_EQ(expected, index);
    }
    for (const LONG wrong : {-1, 3, 1000}) {
        EXPECT_EQ(Outcome(E_INVALIDARG, "null"), Call(&Factory::GetPage, wrong)) << wrong;
        EXPECT_EQ(Outcome(E_INVALIDARG, "null"), Call(&Factory::GetScript, wrong)) << wrong;
        EXPECT_EQ(E_INVALIDARG, factory->SetScript(wrong, &other)) << wrong;
    }
}

TEST_F(PageFactory, FailsWithTheApplicationsErrorTextOrNone) {
    Factory& f = *factory.Get();
    IUnknown* out = &overwritten;
    const std::tuple<const char*, HRESULT, std::function<HRESULT()>> rows[] = {
        {"RegisterObject", E_OUTOFMEMORY, [&] { return f.RegisterObject(IID_IUnknown, &page); }},
        {"GetScript", E_FAIL, [&] { return f.GetScript(0, &out); }},
        {"GetScript", E_POINTER, [&] { return f.GetScript(0, nullptr); }},
        {"GetScriptImage", E_FAIL, [&] { return f.GetScriptImage(0, image, &out); }},
        {"GetScriptImage", E_POINTER, [&] { return f.GetScriptImage(0, image, nullptr); }},
        {"GetRegisteredObject", E_POINTER, [&] { return f.GetRegisteredObject({}, nullptr); }},
        {"GetPageCount", E_POINTER, [&] { return f.GetPageCount(nullptr); }},
        {"LoadResourceString", E_POINTER, [&] { return f.LoadResourceString(0, 399, nullptr); }},
        {"SetScript", E_OUTOFMEMORY, [&] { return f.SetScript(0, &other); }},
        {"SetScript", E_FAIL, [&] { return f.SetScript(0, &other); }},
        {"SetScript", E_POINTER, [&] { return f.SetScript(0, nullptr); }},
        {"AddPage without a name", E_INVALIDARG, [&] { return f.AddPage(nullptr, nullptr); }},
        {"AddPage", E_INVALIDARG, [&] { return f.AddPage(_bstr_t(L""), nullptr); }},
        {"CreatePage", E_OUTOFMEMORY, [&] { return f.CreatePage(0, &userInterface, {}, &out); }},
        {"GetPage", E_POINTER, [&] { return f.GetPage(0, nullptr); }},
        {"GetTypeInfoCount", E_POINTER, [&] { return f.GetTypeInfoCount(nullptr); }},
        {"GetTypeInfo", E_POINTER, [&] { return f.GetTypeInfo(0, 0, nullptr); }},
        {"GetIDsOfNames", E_POINTER, [&] { return f.GetIDsOfNames({}, nullptr, 1, 0, nullptr); }},
        {"Invoke", E_POINTER, [&] { return f.Invoke(7, {}, 0, DISPATCH_METHOD, {}, {}, {}, {}); }},
    };
    Add(L"c:Main.page");
    for (const auto& [operation, expected, call] : rows) {
        KB_SetIErrorInfoA("of another component");
        std::optional<ImportPatch> fault, quietly;
        if (expected == E_FAIL) fault.emplace("CoCreateInstance", CreateNothing);
        if (expected == E_OUTOFMEMORY) fault.emplace("_Znwj", NoMemory);
        if (expected == E_OUTOFMEMORY) quietly.emplace("_ZnwjRKSt9nothrow_t", NoMemoryQuietly);
        EXPECT_EQ(expected, call()) << operation;
        EXPECT_EQ(S_FALSE, ::GetErrorInfo(0, ComPtr<IErrorInfo>().GetAddressOf())) << operation;
    }
    EXPECT_EQ(nullptr, out);

    userInterface.create = [](auto...) { return KB_SetIErrorInfoA("No script"), E_ABORT; };
    EXPECT_EQ(E_ABORT, Create(0));
    ComPtr<IErrorInfo> error;
    _bstr_t text;
    ASSERT_EQ(S_OK, ::GetErrorInfo(0, &error));
    error->GetDescription(text.GetAddress());
    EXPECT_STREQ(L"No script", text);
}

TEST_F(PageFactory, KeepsThePagesThatTheUserInterfaceCreates) {
    const struct {
        const char* about;
        LONG index;
        std::pair<HRESULT, IUnknown*> answers[2];
        Outcome outcome;
        const char* kept[2];
    } rows[] = {
        {"a failure", -1, {{E_ABORT, {}}, {S_FALSE, &page}}, {E_ABORT, "null"}, {"null", "page"}},
        {"two", -2, {{E_ABORT, {}}, {E_FAIL, &other}}, {E_FAIL, "null"}, {"null", "page"}},
        {"all pages", -1, {{S_FALSE, &page}, {S_FALSE, &page}}, {S_OK, "null"}, {"page", "page"}},
        {"one page", 1, {{}, {S_FALSE, &other}}, {S_FALSE, "other"}, {"page", "other"}},
        {"its failure", 1, {{}, {E_ABORT, {}}}, {E_ABORT, "null"}, {"page", "other"}},
        {"success without a page", 1, {{}, {S_OK, {}}}, {S_OK, "null"}, {"page", "null"}},
    };
    for (const wchar_t* name : {L"0", L"1"}) Add(name);
    for (const auto& [about, index, answers, outcome, kept] : rows) {
        SCOPED_TRACE(about);
        userInterface.create = [&](IKivPageOwner* handed, auto* from, LONG asked, IUnknown** out) {
            EXPECT_EQ(&owner, handed);
            EXPECT_EQ(factory.Get(), from);
            ComPtr<IUnknown>(answers[asked].second).CopyTo(out);
            return answers[asked].first;
        };
        EXPECT_EQ(outcome, Call(&Factory::CreatePage, index, &userInterface, &owner));
        for (const LONG i : {0, 1}) EXPECT_EQ(Outcome(S_OK, kept[i]), Call(&Factory::GetPage, i));
    }
    EXPECT_EQ(S_OK, Create(1)) << "unwanted page";
}

TEST_F(PageFactory, MakesAnOwnerWhereNoneIsGiven) {
    for (const wchar_t* name : {L"0", L"1"}) Add(name);
    std::vector<ComPtr<IKivPageOwner>> owners;
    userInterface.create = [&](IKivPageOwner* handed, auto...) {
        return owners.emplace_back(handed), S_OK;
    };
    for (const LONG index : {-1, 0})
        EXPECT_EQ(S_OK, factory->CreatePage(index, &userInterface, nullptr, nullptr)) << index;
    ASSERT_EQ(3u, owners.size());
    EXPECT_EQ(owners[0].Get(), owners[1].Get()) << "all pages of a call have the same";
    EXPECT_NE(owners[0].Get(), owners[2].Get()) << "each call has its own";
    EXPECT_EQ(E_NOINTERFACE, owners[2].CopyTo(ComPtr<IDispatch>().GetAddressOf()));
    EXPECT_EQ(0u, owners[2].Detach()->Release()) << "the factory keeps none";
}

TEST_F(PageFactory, TracesWhatItCannotDo) {
    KB_SetSkinDirectoryW(L"C:\\no such folder");
    // Whoever asks the user for the directory asks at the first request only.
    TWinString<char> directory;
    KB_GetSkinDirectoryA(directory);
    userInterface.create = [](auto...) { return E_ABORT; };
    IUnknown* out = nullptr;
    Factory& f = *factory.Get();
    const HRESULT noFile = STG_E_FILENOTFOUND;
    const std::tuple<HRESULT, std::string, std::function<HRESULT()>> rows[] = {
        {E_POINTER, "CreatePage - Invalid IKivUserInterface pointer",
         [&] { return f.CreatePage(0, nullptr, nullptr, &out); }},
        {E_FAIL, "CreatePage - No filenames for pages given", [&] { return Create(0); }},
        {E_INVALIDARG, "CreatePage - Index invalid", [&] { return Add(L"0.page"), Create(1); }},
        {E_ABORT, "CreatePage - Failed to create page '0.page' (HRESULT:80004004)",
         [&] { return Create(0); }},
        {noFile, "GetScript - Can't get skin directory", [&] { return f.GetScript(0, &out); }},
        {noFile, "SetScript - Can't get skin directory", [&] { return f.SetScript(0, &page); }},
        {E_FAIL, "GetScriptImage - Can't get skin directory",
         [&] { return f.GetScriptImage2(0, image, &out); }},
    };
    TraceCapture trace;
    graphics.refusals = 9;
    for (const auto& [expected, line, call] : rows) {
        EXPECT_EQ(expected, call()) << line;
        trace.Expect({"CKivPageFactory::" + line + '\n'});
    }
}

TEST_F(PageFactory, LivesThroughTheCreationOfAPage) {
    Add(L"0");
    userInterface.create = [&](IKivPageOwner*, Factory* from, LONG, IUnknown** out) {
        // All that the application referred to goes, but for what the factory itself holds.
        factory.Reset();
        EXPECT_EQ(1, userInterface.references);
        EXPECT_EQ(1, owner.references);
        EXPECT_EQ(S_OK, from->AddPage(_bstr_t(L"1"), nullptr));
        return page.QueryInterface(IID_PPV_ARGS(out));
    };
    ComPtr<IUnknown> created;
    EXPECT_EQ(S_OK, factory->CreatePage(0, &userInterface, &owner, &created));
    EXPECT_EQ(&page, created.Get());
    EXPECT_EQ(1, page.references) << "the factory has ended";
}

/// Calls the factory once more when its last reference goes.
struct LastWord final : Double<> {
    STDMETHODIMP_(ULONG) Release() override {
        if (references == 1) std::exchange(speak, [] {})();
        return Double::Release();
    }
    std::function<void()> speak;
};

TEST_F(PageFactory, HearsWhatItLetsGoAtItsEnd) {
    LONG spoken = 0;
    LastWord words[3];
    for (LastWord& word : words)
        word.speak = [&] {
            // It is a factory in order, with what was added since its end began.
            LONG index = -1;
            EXPECT_EQ(Outcome(S_OK, "null"), Call(&Factory::GetRegisteredObject, IID_IDispatch));
            EXPECT_EQ(S_OK, factory->AddPage(_bstr_t(L"late"), &index));
            EXPECT_EQ(spoken++, index);
            EXPECT_EQ(S_OK, Create(index));
            EXPECT_EQ(S_OK, factory->RegisterObject(IID_IUnknown, &other));
        };
    IUnknown* created = &words[0];
    userInterface.create = [&](auto*, auto*, LONG, IUnknown** out) {
        return std::exchange(created, &page)->QueryInterface(IID_PPV_ARGS(out));
    };
    Add(L"0");
    EXPECT_EQ(S_OK, Create(0));
    factory->RegisterObject(IID_IDispatch, &words[1]);
    factory->SetDefaultObject(&words[2]);
    EXPECT_EQ(0u, factory->Release());
    factory.Detach();
    EXPECT_EQ(3, spoken);
}

TEST_F(PageFactory, FindsScriptsInTheSkinDirectoryOrTheirOwn) {
    RawKey("Skins").Set(L"Renamed", L"sub\\New.page");
    const struct {
        const char* about;
        const wchar_t *skin, *name, *file, *directory;
    } rows[] = {
        {"a name", L"C:\\windows", L"x.page", L"C:\\windows\\x.page", L"C:\\windows\\"},
        {"a drive", L"C:\\windows", L"c:Main.page", L"c:Main.page", L""},
        {"a folder", L"C:\\windows", L"a\\b\\x.page", L"a\\b\\x.page", L"a\\b\\"},
        {"a name with another file", L"C:\\windows", L"Renamed", L"sub\\New.page", L"sub\\"},
        {"a second byte", L"C:\\windows", L"\x2022\\", L"C:\\windows\\\x2022\\", L"C:\\windows\\"},
        {"a folder, such a byte", L"C:\\windows", L"a\\\x2022\\", L"a\\\x2022\\", L"a\\"},
        {"no skin directory", L"C:\\no such folder", L"Main.page", L"Main.page", L""},
    };
    for (LONG index = 0; const auto& [about, skin, name, file, directory] : rows) {
        SCOPED_TRACE(about);
        KB_SetSkinDirectoryW(skin);
        Add(name);
        EXPECT_EQ(Outcome(S_OK, "graphics"), Call(&Factory::GetScript, index));
        EXPECT_EQ(S_OK, factory->SetScript(index++, &other));
        EXPECT_EQ((Texts{file, directory, L"L:\\\x2022\\", L"L:\\de-AT\\", file}), GraphicCalls());
    }
}

TEST_F(PageFactory, DoesWithoutTheLocaleLibrary) {
    const ImportPatch none(
        "LoadLibraryA", +[](LPCSTR) WINAPI { return HMODULE{}; });
    Add(L"c:Main.page");
    EXPECT_EQ(Outcome(S_OK, "graphics"), Call(&Factory::GetScript, 0));
    EXPECT_EQ((Texts{L"c:Main.page", L"", L"", L""}), GraphicCalls());
}

TEST_F(PageFactory, TakesImagesFromTheMostParticularDirectory) {
    const Texts all = {L"L:\\de-AT\\a.gif", L"L:\\\x2022\\\\a.gif", L"C:\\windows\\a.gif"};
    Add(L"c:Main.page");
    EXPECT_EQ(Outcome(S_OK, "graphics"), Call(&Factory::GetScriptImage, 7, image));
    EXPECT_EQ(Texts{all[2]}, GraphicCalls()) << "the languages' directories are not known";
    Call(&Factory::GetScript, 0);
    graphics.calls.clear();
    for (const auto operation : {&Factory::GetScriptImage, &Factory::GetScriptImage2}) {
        for (const int refusals : {0, 1, 2, 3}) {
            SCOPED_TRACE(refusals);
            graphics.refusals = refusals;
            EXPECT_EQ(refusals < 3 ? Outcome(S_OK, "graphics") : Outcome(E_FAIL, "null"),
                      Call(operation, 7, image));
            EXPECT_EQ(Texts(all.begin(), all.begin() + std::min(refusals + 1, 3)), GraphicCalls());
        }
    }
}

HMODULE askedModule;

TEST_F(PageFactory, LoadsTextsOfAModuleOrTheLibrary) {
    HMODULE program = ::GetModuleHandleA(nullptr);
    _bstr_t text;
    EXPECT_EQ(S_OK, factory->LoadResourceString(7, 399, text.GetAddress()));
    EXPECT_STREQ(L"Yes", text);
    EXPECT_EQ(S_OK, factory->SetResourceModule(program));
    BSTR none = text;
    EXPECT_EQ(E_FAIL, factory->LoadResourceString(7, 399, &none)) << "this program has no texts";
    EXPECT_EQ(nullptr, none);

    const ImportPatch fill(
        "LoadStringA", +[](HINSTANCE module, UINT id, LPSTR to, int size) WINAPI {
            askedModule = module;
            *std::fill_n(to, size - 1, static_cast<char>(id)) = '\0';
            return size - 1;
        });
    for (HMODULE module : {program, HMODULE{}}) {
        EXPECT_EQ(S_OK, factory->SetResourceModule(module));
        EXPECT_EQ(S_OK, factory->LoadResourceString(7, 'x', text.GetAddress()));
        EXPECT_EQ(module ? module : ::GetModuleHandleA("Kitbag.dll"), askedModule);
        EXPECT_STREQ(std::wstring(511, L'x').c_str(), text);
    }
}

TEST_F(PageFactory, TellsForWhichInterfaceItExplainsErrors) {
    ComPtr<ISupportErrorInfo> errors;
    ASSERT_EQ(S_OK, factory.As(&errors));
    EXPECT_EQ(S_OK, errors->InterfaceSupportsErrorInfo(IID_IKivPageFactory));
    EXPECT_EQ(S_FALSE, errors->InterfaceSupportsErrorInfo(IID_IDispatch));
}

/// Creates on a thread of its own, which must have one initialisation to undo afterwards.
template <class Object>
void CreateOnThread(const char* function, bool create(Object**), bool isInitialised) {
    std::thread([=] {
        TWinString<char> line;
        line.Format("%s - Thread 0x%08X should call CoInitialise\n", function,
                    static_cast<unsigned>(::GetCurrentThreadId()));
        if (isInitialised) ::CoInitialize(nullptr);
        TraceCapture trace;
        create(ComPtr<Object>().GetAddressOf());
        trace.Expect(isInitialised ? TraceCapture::Texts{} : TraceCapture::Texts{line});
        EXPECT_EQ(S_FALSE, ::CoInitialize(nullptr)) << function;
        ::CoUninitialize();
        ::CoUninitialize();
        EXPECT_EQ(S_OK, ::CoInitialize(nullptr)) << function;
    }).join();
}

TEST(PageFactoryExports, LeaveOneInitialisationOnBothKindsOfThread) {
    const ImportPatch nothing("CoCreateInstance", CreateNothing);
    for (const bool isInitialised : {true, false}) {
        CreateOnThread("KB_CreateKivPageFactory", KB_CreateKivPageFactory, isInitialised);
        CreateOnThread("CKitbag::KB_CreateGraphicFactory", KB_CreateGraphicFactory, isInitialised);
        EXPECT_EQ(DWORD{CLSCTX_ALL}, std::exchange(askedContext, 0));
    }
}

TEST(PageFactoryExports, AnswerFalseWhereNothingCanBeCreated) {
    const Com com;
    const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemoryQuietly);
    GraphicFactory overwritten;
    IKivGraphicFactory* graphics = &overwritten;
    auto* factory = reinterpret_cast<Factory*>(&overwritten);
    EXPECT_FALSE(KB_CreateGraphicFactory(&graphics)) << "its class is not registered";
    EXPECT_EQ(nullptr, graphics);
    EXPECT_FALSE(KB_CreateGraphicFactory(nullptr));
    EXPECT_FALSE(KB_CreateKivPageFactory(&factory)) << "no memory";
    EXPECT_EQ(nullptr, factory);
    EXPECT_FALSE(KB_CreateKivPageFactory(nullptr));
}

}  // namespace
