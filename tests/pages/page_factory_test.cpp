#include <kitbag/registry/directories.h>
#include <kitbag/runtime/com_error.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

#include <functional>
#include <map>
#include <thread>

namespace {

const char* languageDirectory;
const char* subLanguageDirectory;

}  // namespace

// The locale library's functions; this program stands in for that library.
extern "C" __declspec(dllexport) int GetLocaleLanguageDirectoryA(char* to, unsigned long size) {
    return ::lstrcpyA(to, size == 260 ? languageDirectory : "?") != nullptr;
}
extern "C" __declspec(dllexport) int GetLocaleSubLanguageDirectoryA(char* to, unsigned long size) {
    return ::lstrcpyA(to, size == 260 ? subLanguageDirectory : "?") != nullptr;
}

namespace {

using namespace kitbag::test;
using Texts = std::vector<std::wstring>;
using Factory = IKivPageFactory;

HMODULE WINAPI LoadLocaleLibrary(LPCSTR name) {
    return ::lstrcmpA(name, "Lingrel.dll") ? nullptr : ::GetModuleHandleA(nullptr);
}
HMODULE WINAPI LoadNoLibrary(LPCSTR) { return nullptr; }
void* WINAPI CancelDialog(void*) { return nullptr; }
void* NoMemory(std::size_t) { throw std::bad_alloc(); }
void* NoMemoryQuietly(std::size_t, const std::nothrow_t&) { return nullptr; }

std::string NameOf(HRESULT result) {
    static const std::map<HRESULT, const char*> names = {
        {S_OK, "S_OK"},
        {S_FALSE, "S_FALSE"},
        {E_ABORT, "E_ABORT"},
        {E_FAIL, "E_FAIL"},
        {E_INVALIDARG, "E_INVALIDARG"},
        {E_POINTER, "E_POINTER"},
        {STG_E_FILENOTFOUND, "STG_E_FILENOTFOUND"}};
    return names.contains(result) ? names.at(result) : std::to_string(result);
}

/// The text of the thread's error object, which goes; "none" where there is none.
std::wstring TakeErrorText() {
    ComPtr<IErrorInfo> error;
    _bstr_t text(L"none");
    if (::GetErrorInfo(0, &error) == S_OK) error->GetDescription(text.GetAddress());
    return static_cast<const wchar_t*>(text);
}

/// A factory with the application around it.
struct PageFactory : testing::Test {
    PageFactory() {
        languageDirectory = "L:\\de";
        subLanguageDirectory = "L:\\de-AT\\";
        ::CoRegisterClassObject(CLSID_KivGraphicFactory, &graphicClass, CLSCTX_INPROC_SERVER,
                                REGCLS_MULTIPLEUSE, &cookie);
        KB_SetSkinDirectoryA(std::string("C:\\windows"));
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory));
    }
    ~PageFactory() override { RevokeGraphicClass(); }

    void RevokeGraphicClass() {
        if (cookie) ::CoRevokeClassObject(std::exchange(cookie, 0));
    }
    void Add(const wchar_t* name) { EXPECT_EQ(S_OK, factory->AddPage(_bstr_t(name), nullptr)); }
    /// What an operation answers and leaves in its out pointer: "E_FAIL null", "S_OK page".
    template <class Operation, class... Arguments>
    std::string Call(Operation operation, Arguments... arguments) {
        IUnknown* out = &overwritten;
        const HRESULT result = (factory.Get()->*operation)(arguments..., &out);
        const std::string name = ObjectName(out);
        if (out) out->Release();
        return NameOf(result) + ' ' + name;
    }
    std::string ObjectName(IUnknown* object) {
        return object == nullptr     ? "null"
               : object == &page     ? "page"
               : object == &other    ? "other"
               : object == &graphics ? "graphics"
                                     : "what was there";
    }
    Texts GraphicCalls() { return std::exchange(graphics.calls, {}); }

    const Com com;
    GraphicClass graphicClass;
    GraphicFactory& graphics = graphicClass.graphics;
    DWORD cookie = 0;
    ImportPatch load{"LoadLibraryA", LoadLocaleLibrary};
    ImportPatch browse{"SHBrowseForFolderA", CancelDialog};
    Double<> page, other, overwritten;
    Double<IKivPageOwner> owner;
    UserInterface userInterface;
    ComPtr<Factory> factory;
};

TEST_F(PageFactory, KeepsObjectsAndADefaultForTheOthers) {
    const auto get = &Factory::GetRegisteredObject;
    EXPECT_EQ("S_OK null", Call(get, IID_IUnknown));
    for (IUnknown* object : {&page, &other}) EXPECT_EQ(S_OK, factory->SetDefaultObject(object));
    EXPECT_EQ("S_OK other", Call(get, IID_IUnknown)) << "the default set last";
    // Identifiers that differ in one byte.
    for (const auto& [id, object] : {std::pair<GUID, IUnknown*>(IID_IUnknown, &graphics),
                                     {IID_IClassFactory, &other},
                                     {IID_IUnknown, &page}})
        EXPECT_EQ(S_OK, factory->RegisterObject(id, object));
    EXPECT_EQ("S_OK page", Call(get, IID_IUnknown)) << "the object registered last";
    EXPECT_EQ("S_OK other", Call(get, IID_IDispatch)) << "the default";
    EXPECT_EQ(S_OK, factory->RegisterObject(IID_IUnknown, nullptr));
    EXPECT_EQ(S_OK, factory->RegisterObject(IID_IStream, nullptr)) << "what is not there";
    EXPECT_EQ("S_OK other", Call(get, IID_IUnknown));
    EXPECT_EQ(S_OK, factory->SetDefaultObject(nullptr));
    EXPECT_EQ("S_OK null", Call(get, IID_IUnknown));
}

TEST_F(PageFactory, NumbersItsPages) {
    for (const LONG expected : {0, 1, 2}) {
        LONG index = -1, count = -1;
        EXPECT_EQ(S_OK, factory->GetPageCount(&count));
        EXPECT_EQ(expected, count);
        EXPECT_EQ(S_OK, factory->AddPage(_bstr_t(L"Same.page"), &index));
        EXPECT_EQ(expected, index);
    }
    Add(std::wstring(10000, L'x').c_str());
    for (const LONG wrong : {-1, 4, 1000}) {
        EXPECT_EQ("E_INVALIDARG null", Call(&Factory::GetPage, wrong)) << wrong;
        EXPECT_EQ("E_INVALIDARG null", Call(&Factory::GetScript, wrong)) << wrong;
        EXPECT_EQ(E_INVALIDARG, factory->SetScript(wrong, &other)) << wrong;
    }
}

TEST_F(PageFactory, FailsByACodeWithoutAnEarlierErrorsText) {
    const _bstr_t image(L"a.gif");
    const struct {
        const char* operation;
        HRESULT expected;
        std::function<HRESULT()> call;
    } rows[] = {
        {"RegisterObject", E_OUTOFMEMORY,
         [&] {
             const ImportPatch memory("_Znwj", NoMemory);
             return factory->RegisterObject(IID_IUnknown, &page);
         }},
        {"GetScript", E_POINTER, [&] { return factory->GetScript(0, nullptr); }},
        {"GetScriptImage", E_POINTER, [&] { return factory->GetScriptImage(0, image, nullptr); }},
        {"GetScriptImage2", E_POINTER, [&] { return factory->GetScriptImage2(0, image, nullptr); }},
        {"GetRegisteredObject", E_POINTER,
         [&] { return factory->GetRegisteredObject(IID_IUnknown, nullptr); }},
        {"GetPageCount", E_POINTER, [&] { return factory->GetPageCount(nullptr); }},
        {"LoadResourceString", E_POINTER,
         [&] { return factory->LoadResourceString(0, 399, nullptr); }},
        {"SetScript", E_POINTER, [&] { return factory->SetScript(0, nullptr); }},
        {"AddPage without name", E_INVALIDARG, [&] { return factory->AddPage(nullptr, nullptr); }},
        {"AddPage", E_INVALIDARG, [&] { return factory->AddPage(_bstr_t(L""), nullptr); }},
        {"CreatePage", E_POINTER,
         [&] { return factory->CreatePage(0, nullptr, nullptr, nullptr); }},
        {"GetPage", E_POINTER, [&] { return factory->GetPage(0, nullptr); }},
    };
    Add(L"c:Main.page");
    for (const auto& [operation, expected, call] : rows) {
        KB_SetIErrorInfoA("of another component");
        EXPECT_EQ(expected, call()) << operation;
        EXPECT_EQ(L"none", TakeErrorText()) << operation;
    }
}

TEST_F(PageFactory, HandsOnTheErrorThatTheApplicationLeaves) {
    Add(L"0");
    userInterface.create = [](auto...) { return KB_SetIErrorInfoA("No script"), E_ABORT; };
    KB_SetIErrorInfoA("of another component");
    EXPECT_EQ("E_ABORT null", Call(&Factory::CreatePage, 0, &userInterface, &owner));
    EXPECT_EQ(L"No script", TakeErrorText());
}

TEST_F(PageFactory, KeepsThePagesThatTheUserInterfaceCreates) {
    const struct {
        const char* about;
        LONG index;
        std::pair<HRESULT, IUnknown*> answers[2];
        const char *outcome, *kept;
    } rows[] = {
        {"a failure, a page", -1, {{E_ABORT, {}}, {S_FALSE, &page}}, "E_ABORT null", "null page"},
        {"two failures", -2, {{E_ABORT, {}}, {E_FAIL, &other}}, "E_FAIL null", "null page"},
        {"all pages", -1, {{S_FALSE, &page}, {S_FALSE, &page}}, "S_OK null", "page page"},
        {"one page", 1, {{}, {S_FALSE, &other}}, "S_FALSE other", "page other"},
        {"one failure", 1, {{}, {E_ABORT, {}}}, "E_ABORT null", "page other"},
        {"success without a page", 1, {{}, {S_OK, {}}}, "S_OK null", "page null"},
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
        ComPtr<IUnknown> pages[2];
        for (const LONG i : {0, 1}) EXPECT_EQ(S_OK, factory->GetPage(i, &pages[i]));
        EXPECT_EQ(kept, ObjectName(pages[0].Get()) + ' ' + ObjectName(pages[1].Get()));
    }
    EXPECT_EQ(S_OK, factory->CreatePage(1, &userInterface, &owner, nullptr)) << "unwanted page";
}

TEST_F(PageFactory, MakesAnOwnerWhereNoneIsGiven) {
    Add(L"0");
    Add(L"1");
    std::vector<ComPtr<IKivPageOwner>> owners;
    userInterface.create = [&](IKivPageOwner* handed, auto...) {
        EXPECT_NE(nullptr, handed);
        owners.emplace_back(handed);
        return S_OK;
    };
    EXPECT_EQ(S_OK, factory->CreatePage(-1, &userInterface, nullptr, nullptr));
    EXPECT_EQ(S_OK, factory->CreatePage(0, &userInterface, nullptr, nullptr));
    ASSERT_EQ(3u, owners.size());
    EXPECT_EQ(owners[0].Get(), owners[1].Get()) << "all pages of a call have the same";
    EXPECT_NE(owners[0].Get(), owners[2].Get()) << "each call has its own";
    EXPECT_EQ(0u, owners[2].Detach()->Release()) << "the factory keeps none";
}

TEST_F(PageFactory, TracesWhyAPageIsNotCreated) {
    TraceCapture trace;
    const std::string operation = "CKivPageFactory::CreatePage - ";
    EXPECT_EQ("E_POINTER null", Call(&Factory::CreatePage, 0, nullptr, &owner));
    EXPECT_EQ("E_FAIL null", Call(&Factory::CreatePage, 0, &userInterface, &owner));
    trace.Expect({operation + "Invalid IKivUserInterface pointer\n",
                  operation + "No filenames for pages given\n"});
    Add(L"0");
    Add(L"Second.page");
    userInterface.create = [](auto...) { return E_ABORT; };
    EXPECT_EQ("E_INVALIDARG null", Call(&Factory::CreatePage, 2, &userInterface, &owner));
    EXPECT_EQ("E_ABORT null", Call(&Factory::CreatePage, 1, &userInterface, &owner));
    trace.Expect({operation + "Index invalid\n",
                  operation + "Failed to create page 'Second.page' (HRESULT:80004004)\n"});
}

TEST_F(PageFactory, LivesThroughTheCreationOfAPage) {
    Add(L"0");
    userInterface.create = [&](IKivPageOwner* handed, Factory* from, LONG, IUnknown** out) {
        // All that the application referred to goes, but for what the factory itself holds.
        factory.Reset();
        EXPECT_EQ(1, userInterface.references);
        EXPECT_EQ(&owner, handed);
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
class LastWord final : public Double<> {
 public:
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = Double::Release();
        if (left == 0) std::exchange(speak, [] {})();
        return left;
    }
    std::function<void()> speak = [] {};
};

TEST_F(PageFactory, HearsWhatItLetsGoAtItsEnd) {
    Factory* const ending = factory.Get();
    LONG spoken = 0;
    LastWord words[3];
    for (LastWord& word : words)
        word.speak = [&] {
            // It is a factory in order, with what was added since its end began.
            LONG index = -1;
            IUnknown* out = &overwritten;
            EXPECT_EQ(S_OK, ending->GetRegisteredObject(IID_IDispatch, &out));
            EXPECT_EQ(nullptr, out);
            EXPECT_EQ(S_OK, ending->AddPage(_bstr_t(L"late"), &index));
            EXPECT_EQ(spoken++, index);
            EXPECT_EQ(S_OK, ending->CreatePage(index, &userInterface, &owner, nullptr));
            EXPECT_EQ(E_INVALIDARG, ending->GetPage(index + 1, &out));
            EXPECT_EQ(S_OK, ending->RegisterObject(IID_IUnknown, &other));
        };
    IUnknown* created = &words[0];
    userInterface.create = [&](auto*, auto*, LONG, IUnknown** out) {
        return created->QueryInterface(IID_PPV_ARGS(out));
    };
    Add(L"0");
    EXPECT_EQ(S_OK, factory->CreatePage(0, &userInterface, &owner, nullptr));
    created = &page;
    factory->RegisterObject(IID_IDispatch, &words[1]);
    factory->SetDefaultObject(&words[2]);
    EXPECT_EQ(0u, factory.Detach()->Release());
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
        {"no skin directory", L"C:\\no such folder", L"Main.page", L"Main.page", L""},
    };
    for (LONG index = 0; const auto& [about, skin, name, file, directory] : rows) {
        SCOPED_TRACE(about);
        KB_SetSkinDirectoryW(skin);
        Add(name);
        EXPECT_EQ("S_OK graphics", Call(&Factory::GetScript, index));
        EXPECT_EQ(S_OK, factory->SetScript(index++, &other));
        EXPECT_EQ((Texts{file, directory, L"L:\\de", L"L:\\de-AT\\", file}), GraphicCalls());
    }
}

TEST_F(PageFactory, AnswersWhatTheGraphicFactoryDoes) {
    Add(L"c:Main.page");
    graphics.refusals = 2;
    EXPECT_EQ("STG_E_FILENOTFOUND null", Call(&Factory::GetScript, 0));
    EXPECT_EQ(STG_E_FILENOTFOUND, factory->SetScript(0, &other));
    RevokeGraphicClass();
    EXPECT_EQ("E_FAIL null", Call(&Factory::GetScript, 0));
    EXPECT_EQ(E_FAIL, factory->SetScript(0, &other));
    EXPECT_EQ("E_FAIL null", Call(&Factory::GetScriptImage, 0, _bstr_t(L"a.gif")));
}

TEST_F(PageFactory, DoesWithoutTheLocaleLibrary) {
    const ImportPatch none("LoadLibraryA", LoadNoLibrary);
    Add(L"c:Main.page");
    EXPECT_EQ("S_OK graphics", Call(&Factory::GetScript, 0));
    EXPECT_EQ((Texts{L"c:Main.page", L"", L"", L""}), GraphicCalls());
    EXPECT_EQ("S_OK graphics", Call(&Factory::GetScriptImage, 0, _bstr_t(L"a.gif")));
    EXPECT_EQ(Texts{L"C:\\windows\\a.gif"}, GraphicCalls());
}

TEST_F(PageFactory, TakesImagesFromTheMostParticularDirectory) {
    const _bstr_t name(L"a.gif");
    const Texts all = {L"L:\\de-AT\\a.gif", L"L:\\de\\a.gif", L"C:\\windows\\a.gif"};
    // The languages' directories are known once a script was asked for.
    EXPECT_EQ("S_OK graphics", Call(&Factory::GetScriptImage, 7, name));
    EXPECT_EQ(Texts{all[2]}, GraphicCalls());
    Add(L"c:Main.page");
    Call(&Factory::GetScript, 0);
    GraphicCalls();
    for (const auto operation : {&Factory::GetScriptImage, &Factory::GetScriptImage2}) {
        for (const int refusals : {0, 1, 2, 3}) {
            SCOPED_TRACE(refusals);
            graphics.refusals = refusals;
            EXPECT_EQ(refusals < 3 ? "S_OK graphics" : "E_FAIL null", Call(operation, 7, name));
            EXPECT_EQ(Texts(all.begin(), all.begin() + std::min(refusals + 1, 3)), GraphicCalls());
        }
    }
    KB_SetSkinDirectoryW(L"C:\\no such folder");
    graphics.refusals = 2;
    EXPECT_EQ("E_FAIL null", Call(&Factory::GetScriptImage, 7, name));
    EXPECT_EQ((Texts{all[0], all[1]}), GraphicCalls());
}

BOOL WINAPI IsBullet(BYTE byte) { return byte == 0x95; }

TEST_F(PageFactory, TakesNoSecondByteOfACharacterForASeparator) {
    // As where 0x95 begins a character of two bytes, of which the second may be a backslash.
    const ImportPatch doubleBytes("IsDBCSLeadByte", IsBullet);
    languageDirectory = "L:\\\x95\\";
    subLanguageDirectory = "L:\\\x95\\\\";
    Add(L"\x2022\\.page");
    Add(L"x\\\x2022\\.page");
    EXPECT_EQ("S_OK graphics", Call(&Factory::GetScript, 0));
    EXPECT_EQ((Texts{L"C:\\windows\\\x2022\\.page", L"C:\\windows\\", L"L:\\\x2022\\",
                     L"L:\\\x2022\\\\"}),
              GraphicCalls());
    EXPECT_EQ("S_OK graphics", Call(&Factory::GetScript, 1));
    EXPECT_EQ((Texts{L"x\\\x2022\\.page", L"x\\", L"L:\\\x2022\\", L"L:\\\x2022\\\\"}),
              GraphicCalls());
    graphics.refusals = 1;
    EXPECT_EQ("S_OK graphics", Call(&Factory::GetScriptImage, 0, _bstr_t(L"a.gif")));
    EXPECT_EQ((Texts{L"L:\\\x2022\\\\a.gif", L"L:\\\x2022\\\\a.gif"}), GraphicCalls());
}

TEST_F(PageFactory, TracesThatTheSkinDirectoryIsUnknown) {
    KB_SetSkinDirectoryW(L"C:\\no such folder");
    Add(L"0");
    // Whoever asks the user asks at the first request only.
    Call(&Factory::GetScript, 0);
    TraceCapture trace;
    Call(&Factory::GetScript, 0);
    trace.Expect({"CKivPageFactory::GetScript - Can't get skin directory\n"});
    factory->SetScript(0, &other);
    trace.Expect({"CKivPageFactory::SetScript - Can't get skin directory\n"});
    const std::string line = "CKivPageFactory::GetScriptImage - Can't get skin directory\n";
    Call(&Factory::GetScriptImage, 0, _bstr_t(L"a.gif"));
    Call(&Factory::GetScriptImage2, 0, _bstr_t(L"a.gif"));
    trace.Expect({line, line});
}

HMODULE askedModule;
UINT askedString;
int WINAPI FillText(HINSTANCE module, UINT id, LPSTR text, int size) {
    askedModule = module;
    askedString = id;
    std::fill_n(text, size - 1, 'x');
    text[size - 1] = '\0';
    return size - 1;
}

TEST_F(PageFactory, LoadsTextsOfAModuleOrTheLibrary) {
    _bstr_t text;
    EXPECT_EQ(S_OK, factory->LoadResourceString(7, 399, text.GetAddress()));
    EXPECT_STREQ(L"Yes", text);
    // This program has no texts.
    EXPECT_EQ(S_OK, factory->SetResourceModule(::GetModuleHandleA(nullptr)));
    BSTR none = text;
    EXPECT_EQ(E_FAIL, factory->LoadResourceString(7, 399, &none));
    EXPECT_EQ(nullptr, none);

    const ImportPatch fill("LoadStringA", FillText);
    EXPECT_EQ(S_OK, factory->LoadResourceString(7, 12, text.GetAddress()));
    EXPECT_EQ(::GetModuleHandleA(nullptr), askedModule);
    EXPECT_EQ(12u, askedString);
    EXPECT_EQ(std::wstring(511, L'x'), static_cast<const wchar_t*>(text));
    EXPECT_EQ(S_OK, factory->SetResourceModule(nullptr));
    EXPECT_EQ(S_OK, factory->LoadResourceString(7, 12, text.GetAddress()));
    EXPECT_EQ(::GetModuleHandleA("Kitbag.dll"), askedModule);
}

TEST_F(PageFactory, TellsForWhichInterfaceItExplainsErrors) {
    ComPtr<ISupportErrorInfo> errors;
    ASSERT_EQ(S_OK, factory.As(&errors));
    EXPECT_EQ(S_OK, errors->InterfaceSupportsErrorInfo(IID_IKivPageFactory));
    for (const IID& id : {IID_IUnknown, IID_IDispatch, IID_ISupportErrorInfo, IID_IKivPageOwner})
        EXPECT_EQ(S_FALSE, errors->InterfaceSupportsErrorInfo(id));
}

TEST_F(PageFactory, AnswersThatMemoryRanOut) {
    Add(L"c:Main.page");
    const _bstr_t image(L"a.gif");
    IUnknown* out = &overwritten;
    BSTR text = nullptr;
    const std::pair<const char*, std::function<HRESULT()>> rows[] = {
        {"RegisterObject", [&] { return factory->RegisterObject(IID_IUnknown, &page); }},
        {"GetScript", [&] { return factory->GetScript(0, &out); }},
        {"GetScriptImage", [&] { return factory->GetScriptImage(0, image, &out); }},
        {"GetScriptImage2", [&] { return factory->GetScriptImage2(0, image, &out); }},
        {"LoadResourceString", [&] { return factory->LoadResourceString(0, 399, &text); }},
        {"SetScript", [&] { return factory->SetScript(0, &other); }},
        {"AddPage", [&] { return factory->AddPage(image, nullptr); }},
        {"CreatePage", [&] { return factory->CreatePage(0, &userInterface, nullptr, &out); }},
    };
    {
        const ImportPatch memory("_Znwj", NoMemory);
        const ImportPatch quietly("_ZnwjRKSt9nothrow_t", NoMemoryQuietly);
        for (const auto& [operation, call] : rows) EXPECT_EQ(E_OUTOFMEMORY, call()) << operation;
        EXPECT_FALSE(KB_CreateKivPageFactory(&factory));
    }
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(nullptr, text);
    EXPECT_EQ(nullptr, factory.Get());
}

/// Creates on a thread of its own, which must have one initialisation to undo afterwards.
template <class Object>
void CreateOnThread(bool (*create)(Object**), const std::string& function, bool isInitialised) {
    SCOPED_TRACE(function + (isInitialised ? " on a COM thread" : " on any other thread"));
    TraceCapture trace;
    TWinString<char> line;
    std::thread([&] {
        line.Format("%s - Thread 0x%08X should call CoInitialise\n", function.c_str(),
                    static_cast<unsigned>(::GetCurrentThreadId()));
        if (isInitialised) ::CoInitialize(nullptr);
        Object* object = nullptr;
        EXPECT_TRUE(create(&object));
        ASSERT_NE(nullptr, object);
        object->Release();
        EXPECT_EQ(S_FALSE, ::CoInitialize(nullptr));
        ::CoUninitialize();
        ::CoUninitialize();
        EXPECT_EQ(S_OK, ::CoInitialize(nullptr));
        ::CoUninitialize();
    }).join();
    trace.Expect(isInitialised ? TraceCapture::Texts{} : TraceCapture::Texts{line});
}

DWORD askedContext;
GraphicFactory* made;
HRESULT WINAPI MakeGraphics(REFCLSID classId, IUnknown* outer, DWORD context, REFIID id,
                            void** object) {
    EXPECT_TRUE(classId == CLSID_KivGraphicFactory);
    EXPECT_EQ(nullptr, outer);
    askedContext = context;
    return made->QueryInterface(id, object);
}

TEST(PageFactoryExports, LeaveOneInitialisationOnBothKindsOfThread) {
    GraphicFactory graphics;
    made = &graphics;
    const ImportPatch create("CoCreateInstance", MakeGraphics);
    for (const bool isInitialised : {true, false}) {
        CreateOnThread(KB_CreateKivPageFactory, "KB_CreateKivPageFactory", isInitialised);
        CreateOnThread(KB_CreateGraphicFactory, "CKitbag::KB_CreateGraphicFactory", isInitialised);
        EXPECT_EQ(DWORD{CLSCTX_ALL}, askedContext);
    }
}

TEST(PageFactoryExports, AnswerFalseWhereNothingCanBeCreated) {
    const Com com;
    GraphicFactory overwritten;
    IKivGraphicFactory* graphics = &overwritten;
    EXPECT_FALSE(KB_CreateGraphicFactory(&graphics)) << "its class is not registered";
    EXPECT_EQ(nullptr, graphics);
    EXPECT_FALSE(KB_CreateGraphicFactory(nullptr));
    EXPECT_FALSE(KB_CreateKivPageFactory(nullptr));
}

}  // namespace
