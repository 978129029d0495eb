#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <oleauto.h>
#include <tests/faults/surroundings.h>
#include <tests/faults/workload.h>
#include <tests/pages/doubles.h>
#include <tests/support/text_folder.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>

namespace kitbag::test {

namespace {

/// Calls a getter, whose output comes last; one that answers false must have left it as it was.
template <class Value, class... Parameters, class... Arguments>
Value Get(Value before, bool getter(Parameters...), Arguments... arguments) {
    Value value = before;
    bool answered = false;
    if constexpr (std::is_invocable_v<decltype(getter), Arguments..., Value&>)
        answered = getter(arguments..., value);
    else
        answered = getter(arguments..., &value);
    EXPECT_TRUE(answered || value == before);
    return value;
}

template <class Ch>
void UseValues() {
    const Ch* const section = T("Faults\\Section");
    KB(SetBool)(section, T("Bool"), true);
    KB(SetDWORD)(section, T("Number"), 7);
    KB(SetInt)(section, T("Int"), -7);
    KB(SetString)(section, T("Text"), T("a text that takes memory of its own"));
    KB(SetTString)(section, T("Object"), T("another one, which is long enough for that"));
    KB(SetData)(section, T("Data"), 4, "abc");
    Get(false, KB(GetBool), section, T("Bool"));
    Get(DWORD{99}, KB(GetDWORD), section, T("Number"));
    Get(99, KB(GetInt), section, T("Int"));
    Get(Text<Ch>(T("before")), KB(GetTString), section, T("Text"));
    Ch buffer[64] = {'='};
    EXPECT_TRUE(KB(GetString)(section, T("Text"), buffer, 64) || buffer[0] == '=');
    DWORD size = 0;
    KB(GetDataSize)(section, T("Data"), &size);
    Get(DWORD{99}, KB(GetData), section, T("Data"), sizeof buffer, buffer);

    BSTR before = ::SysAllocString(L"before");
    KB(SetBSTR)(section, T("Bstr"), before);
    BSTR text = Get(before, KB(GetBSTR), section, T("Bstr"));
    if (text != before) ::SysFreeString(text);
    ::SysFreeString(before);
}

template <class Ch>
void UseTree() {
    const Ch *const parent = T("Faults"), *const section = T("Faults\\Section");
    KB(GetKeyCount)(parent);
    KB(GetValueCount)(section);
    Ch name[64] = {};
    Get(DWORD{64}, KB(EnumKey), parent, 0, name);
    Get(DWORD{64}, KB(EnumValue), section, 0, name);
    Get(Text<Ch>(T("before")), KB(EnumKeyTString), parent, 0);
    Get(Text<Ch>(T("before")), KB(EnumValueTString), section, 0);
    Text<Ch> dump;
    KB(DumpRegistry)(parent, dump);
    KB(DeleteValue)(section, T("Number"));
    KB(DeleteKey)(parent, T("Section"));
    KB(DeleteSection)(parent);
}

template <class Ch>
void UseFiles(const TextFolder<Ch>& folder) {
    KB(CreatePath)(folder.In("made/on/the/way/").c_str());
    KB(CopyFileDeep)(folder.In("file").c_str(), folder.In("made/copy").c_str(), false);
    KB(DeleteDirectory)(folder.In("made").c_str());
    Ch name[] = {'a', '?', 0};
    KB(ValidateFilename)(name, true, false);
    KB(ValidatePath)(name, true, true);
    KB(ValidateComputerName)(T("\\\\computer"));

    Ch path[MAX_PATH] = {'='}, description[MAX_PATH];
    EXPECT_TRUE(KB(LocalToUNC)(T("C:\\file"), path, MAX_PATH) || path[0] == '=');
    KB(UNCToLocal)(T("\\\\computer\\share\\file"), path, MAX_PATH);
    KB(GetLinkInfo)(folder.In("link.lnk").c_str(), path, description);
    Ch chosen[MAX_PATH] = {};
    KB(BrowseForFolder)(chosen, T("Choose"));
    KB(SetIErrorInfo)(T("an error"));
    DWORD major = 0, minor = 0;
    Get(DWORD{99}, KB(GetModuleVersion), T("Kitbag.dll"), &major, &minor);
}

template <class Ch>
void UseDirectories(const TextFolder<Ch>& folder) {
    KB(SetConfigDirectory)(folder.In("file"));
    KB(SetDocDirectory)(folder.In(""));
    for (const auto set : {KB(SetSkinDirectory), KB(SetDataDirectory)}) set(folder.In("new"));
    Text<Ch> directory;
    for (const auto get :
         {KB(GetConfigDirectory), KB(GetSkinDirectory), KB(GetDataDirectory), KB(GetDocDirectory)})
        get(directory);
}

template <class Ch>
void UseBothForms() {
    TextFolder<Ch> folder;
    folder.Write("file");
    folder.WriteLink("link.lnk", folder.Path().string());
    UseValues<Ch>();
    UseTree<Ch>();
    UseFiles(folder);
    UseDirectories(folder);
}

/// While it lives, no other test's process has what all processes share.
struct Turn {
    explicit Turn(const char* name) : mutex(::CreateMutexA(nullptr, FALSE, name)) {
        ::WaitForSingleObject(mutex, INFINITE);
    }
    ~Turn() {
        ::ReleaseMutex(mutex);
        ::CloseHandle(mutex);
    }
    HANDLE mutex;
};

void UseChecksumsAndClipboard() {
    KB_MemCRC("abc", 3);
    KB_FileCRC("C:\\windows\\win.ini");
    ComPtr<IStream> stream;
    ::CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    KB_IStreamCRC(stream.Get());
    KB_EjectVolume('D');
    const Turn turn("Kitbag tests: clipboard");
    KB_CopyText(L"text");
    ::SysFreeString(Get(BSTR{}, KB_PasteText));
}

void UseSystem() {
    KB_IsNT();
    KB_IsInteractiveSession();
    KB_GetCPUSpeed();
    KB_GetCPUSpeedNT();
    KB_GetCPUSpeedCalculated();
    std::free(KB_GetVendorString());
    std::free(KB_GetSystemDescription());
    DWORD first = 0, second = 0;
    Get(DWORD{99}, KB_GetMemModuleVersion, HMODULE{}, &first, &second);
    const char* const file = "C:\\windows\\system32\\shell32.dll";
    KB_GetStoredLinkTime(file, "Faults", &first, &second, true);
    KB_IsNewModule(file, "Faults");
    KB_IsNewerModule(file, "Faults", 1);
    KB_ForceNewModule(file, "Faults");
    KB_IsFirstRun();
    CModuleVersion version(file);
    if (version.Read()) version.GetStringValue("CompanyName");
    ModuleInfo info{sizeof info, {}, {}, {}, {}, {}, {}, {}};
    const char blocks[16] = {};
    KB_FillModuleInfo(&info, nullptr, "Name", blocks, blocks);
    for (BSTR name : {info.moduleName, info.computerName, info.filePath}) ::SysFreeString(name);
}

void UseConfigurationValues() {
    const TWinString<char> section = "Faults\\Values";
    UInt32Value number(section, "Number", true);
    number.SetDefaultValue(7, true);
    number.SetValue(number.GetValue() + 1);
    GuidValue guid(section, "Guid", false);
    guid.SetValue(IID_IUnknown);
    GuidValue::GUID2DisplayString(guid.GetValue());
    ByteArrayValue bytes(section, "Bytes", false);
    bytes.SetValueSize(3);
    bytes.SetValue();
    BooleanValue truth;
    truth.Compare(number);
    truth.Compare(BooleanValue());
    FilenameValue file("C:\\windows\\win.ini");
    unsigned long long size = 0;
    file.GetFileSize(size);

    ExternalProgramValueTable programs(section);
    programs.SetValueName("Programs");
    for (int i = 0; i < 3; ++i) {
        auto row = std::make_unique<ExternalProgramValueTableEntry>();
        if (programs.AddEntry(row.get())) static_cast<void>(row.release());
    }
    programs.Sort("Display Name");
    programs.Save();
    ExternalProgramValueTable(programs).LoadRegistry(section);
    MediaLocationValueTable music(MediaLocationValueTable::AudioRead);
    music.Save();
    KB_DeleteSectionA("Faults");
}

void UseCastsAndLevels() {
    const MediaLocationValueTable music(MediaLocationValueTable::AudioRead);
    const auto cast = [&](auto... to) { return (... + (to(&music) != nullptr)); };
    EXPECT_EQ(2,
              cast(KB_GetAsValueTable, KB_GetAsMediaLocationValueTable, KB_GetAsValueList,
                   KB_GetAsValueCollection, KB_GetAsBooleanValue, KB_GetAsByteArrayValue,
                   KB_GetAsGuidValue, KB_GetAsInt32Value, KB_GetAsUInt32Value, KB_GetAsTStringValue,
                   KB_GetAsUInt32Enum, KB_GetAsFilenameValue, KB_GetAsIdentValue,
                   KB_GetAsValueTableEntry, KB_GetAsMediaLocationValueTableEntry,
                   KB_GetAsExternalProgramValueTable, KB_GetAsExternalProgramValueTableEntry));
    KB_ShowUserInterfaceLevel(KB_GetUserInterfaceLevel());
    KB_CompareUserInterfaceLevels(KB_LowestInterfaceLevel(1, 2), KB_HighestInterfaceLevel(1, 2));
    KB_UILevelShowValue(&music);
}

class Worker : public EventThread {
 public:
    bool OnEvent() override { return passed = true; }
    bool OnTimeout() override { return true; }
    std::atomic<bool> passed = false;
};

void UseThreads() {
    Worker worker;
    worker.Start(THREAD_PRIORITY_NORMAL, 1);
    worker.TriggerEvent();
    for (int i = 0; !worker.passed && i < 50; ++i) ::Sleep(2);
    worker.Stop();
    worker.IsFinished();
    Surroundings::JoinThread();
    TimeDelayAction().DoAction(1);
}

void UseIdleMonitor() {
    const Turn turn("Kitbag idle monitor tests");
    KB_UserIdleMonitorInit();
    KB_GetUserIdleTime();
    KB_GetLastUserInputTime();
    KB_UserIdleMonitorTerm();
}

void UseLogger() {
    KB_SetBoolA("Debug\\Performance", "Faults Enable", true);
    KB_SetDWORDA("Debug\\Performance", "Faults Size", 8);
    PerformanceLogger logger("Faults", "");
    TimePerformanceMeasurement time(logger, "Time", "", 0, "");
    logger.Start();
    time.StartTimer();
    time.MarkTimerAndRecord(true);
    logger.StopAndProduceReport();
}

void UsePages() {
    GraphicClass graphics;
    DWORD cookie = 0;
    ::CoRegisterClassObject(CLSID_KivGraphicFactory, &graphics, CLSCTX_INPROC_SERVER,
                            REGCLS_MULTIPLEUSE, &cookie);
    UserInterface userInterface;
    userInterface.create = [](auto*, auto*, LONG, IUnknown** page) {
        *page = nullptr;
        return S_OK;
    };
    ComPtr<IKivGraphicFactory> graphicFactory;
    KB_CreateGraphicFactory(&graphicFactory);
    ComPtr<IKivPageFactory> factory;
    if (KB_CreateKivPageFactory(&factory)) {
        factory->AddPage(_bstr_t(L"Main.page"), nullptr);
        factory->CreatePage(-1, &userInterface, nullptr, nullptr);
        ComPtr<IUnknown> object;
        factory->GetScript(0, &object);
        factory->GetScriptImage(0, _bstr_t(L"image.gif"), &object);
        _bstr_t text;
        factory->LoadResourceString(0, 101, text.GetAddress());
        DISPID identifier = 0;
        wchar_t name[] = L"GetPageCount";
        OLECHAR* names = name;
        factory->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &identifier);
    }
    ::CoRevokeClassObject(cookie);

    HMODULE library = ::GetModuleHandleA("Kitbag.dll");
    for (const char* registration : {"DllRegisterServer", "DllUnregisterServer"})
        reinterpret_cast<HRESULT(WINAPI*)()>(
            reinterpret_cast<void*>(::GetProcAddress(library, registration)))();
}

}  // namespace

void RunWorkload() {
    const Com com;
    UseBothForms<char>();
    UseBothForms<wchar_t>();
    UseChecksumsAndClipboard();
    UseSystem();
    UseThreads();
    UseIdleMonitor();
    UsePages();
    // Classes, unlike plain functions, may tell by an exception that memory ran out.
    for (const auto use : {UseConfigurationValues, UseCastsAndLevels, UseLogger}) {
        try {
            use();
        } catch (const std::bad_alloc&) {
        }
    }
}

}  // namespace kitbag::test
