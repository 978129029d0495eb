#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <oleauto.h>
#include <tests/faults/workload.h>
#include <tests/pages/doubles.h>
#include <tests/support/text_folder.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>

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

/// Takes functions, and calls them one after the other with these arguments.
template <class... Arguments>
auto With(Arguments&&... arguments) {
    return [&](auto... functions) { (functions(arguments...), ...); };
}

template <class Ch>
void UseValues(const Ch* section) {
    const auto keep = [&](auto set, auto value, auto get, auto before) {
        set(section, T("Value"), value);
        return Get(before, get, section, T("Value"));
    };
    const Text<Ch> text = T("a text that takes memory of its own");
    keep(KB(SetBool), true, KB(GetBool), false);
    keep(KB(SetDWORD), 7u, KB(GetDWORD), DWORD{99});
    keep(KB(SetInt), -7, KB(GetInt), 99);
    keep(KB(SetTString), text, KB(GetTString), Text<Ch>(T("before")));
    BSTR before = ::SysAllocString(L"before");
    BSTR stored = keep(KB(SetBSTR), before, KB(GetBSTR), before);
    if (stored != before) ::SysFreeString(stored);
    ::SysFreeString(before);

    Ch buffer[64] = {'='};
    KB(SetString)(section, T("Value"), text.c_str());
    EXPECT_TRUE(KB(GetString)(section, T("Value"), buffer, 64) || buffer[0] == '=');
    KB(SetData)(section, T("Value"), 4, "abc");
    DWORD size = 0;
    KB(GetDataSize)(section, T("Value"), &size);
    Get(DWORD{99}, KB(GetData), section, T("Value"), sizeof buffer, buffer);
}

template <class Ch>
void UseTree(const Ch* parent, const Ch* section) {
    Ch name[64] = {};
    Get(DWORD{64}, KB(EnumKey), parent, 0u, name);
    Get(DWORD{64}, KB(EnumValue), section, 0u, name);
    Get(Text<Ch>(T("before")), KB(EnumKeyTString), parent, 0u);
    Get(Text<Ch>(T("before")), KB(EnumValueTString), section, 0u);
    Text<Ch> dump;
    KB(DumpRegistry)(parent, dump);
    KB(DeleteValue)(section, T("Value"));
    KB(DeleteKey)(parent, T("Section"));
    With(parent)(KB(GetKeyCount), KB(GetValueCount), KB(DeleteSection));
}

template <class Ch>
void UseFiles(const TextFolder<Ch>& folder) {
    KB(CreatePath)(folder.In("made/on/the/way/").c_str());
    KB(CopyFileDeep)(folder.In("file").c_str(), folder.In("made/copy").c_str(), false);
    KB(DeleteDirectory)(folder.In("made").c_str());
    Ch path[MAX_PATH] = {'='}, description[MAX_PATH];
    EXPECT_TRUE(KB(LocalToUNC)(T("C:\\file"), path, MAX_PATH) || path[0] == '=');
    KB(UNCToLocal)(T("\\\\computer\\share\\file"), path, MAX_PATH);
    KB(GetLinkInfo)(folder.In("link.lnk").c_str(), path, description);
    Ch name[MAX_PATH] = {'a', '?', 0};
    With(name, true, true)(KB(ValidateFilename), KB(ValidatePath));
    KB(BrowseForFolder)(name, T("Choose"));
    With(T("a text"))(KB(ValidateComputerName), KB(SetIErrorInfo));
    DWORD major = 0, minor = 0;
    Get(DWORD{99}, KB(GetModuleVersion), T("Kitbag.dll"), &major, &minor);
}

template <class Ch>
void UseDirectories(const TextFolder<Ch>& folder) {
    With(folder.In("file"))(KB(SetConfigDirectory));
    With(folder.In("new"))(KB(SetSkinDirectory), KB(SetDataDirectory));
    With(folder.In(""))(KB(SetDocDirectory));
    Text<Ch> directory;
    With(directory)(KB(GetConfigDirectory), KB(GetSkinDirectory), KB(GetDataDirectory),
                    KB(GetDocDirectory));
}

template <class Ch>
void UseBothForms() {
    TextFolder<Ch> folder;
    folder.Write("file");
    folder.WriteLink("link.lnk", folder.Path().string());
    UseValues(T("Faults\\Section"));
    UseTree(T("Faults"), T("Faults\\Section"));
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
    With()(KB_IsNT, KB_IsInteractiveSession, KB_IsFirstRun, KB_GetCPUSpeed, KB_GetCPUSpeedNT,
           KB_GetCPUSpeedCalculated);
    for (const auto describe : {KB_GetVendorString, KB_GetSystemDescription}) std::free(describe());
    DWORD first = 0, second = 0;
    Get(DWORD{99}, KB_GetMemModuleVersion, HMODULE{}, &first, &second);
    const char* const file = "C:\\windows\\system32\\shell32.dll";
    KB_GetStoredLinkTime(file, "Faults", &first, &second, true);
    KB_IsNewerModule(file, "Faults", 1);
    With(file, "Faults")(KB_IsNewModule, KB_ForceNewModule);
    CModuleVersion version(file);
    if (version.Read()) version.GetStringValue("CompanyName");
    ModuleInfo info{sizeof info, {}, {}, {}, {}, {}, {}, {}};
    KB_FillModuleInfo(&info, nullptr, "Name", file, file);
    for (BSTR name : {info.moduleName, info.computerName, info.filePath}) ::SysFreeString(name);
}

void UseIdleMonitor() {
    const Turn turn("Kitbag idle monitor tests");
    With()(KB_UserIdleMonitorInit, KB_GetUserIdleTime, KB_GetLastUserInputTime,
           KB_UserIdleMonitorTerm);
}

void UseValueClasses() {
    const TWinString<char> section = "Faults\\Values";
    UInt32Value number(section, "Number", true);
    number.SetDefaultValue(7, true);
    number.SetValue(number.GetValue() + 1);
    number.Compare(BooleanValue());
    GuidValue guid(section, "Guid", false);
    guid.SetValue(IID_IUnknown);
    GuidValue::GUID2DisplayString(guid.GetValue());
    ByteArrayValue bytes(section, "Bytes", false);
    bytes.SetValueSize(3);
    bytes.SetValue();
    unsigned long long size = 0;
    FilenameValue("C:\\windows\\win.ini").GetFileSize(size);

    ExternalProgramValueTable programs(section);
    programs.SetValueName("Programs");
    for (int i = 0; i < 3; ++i) {
        auto row = std::make_unique<ExternalProgramValueTableEntry>();
        if (programs.AddEntry(row.get())) static_cast<void>(row.release());
    }
    programs.Sort("Display Name");
    programs.Save();
    ExternalProgramValueTable(programs).LoadRegistry(section);
}

void UseCastsAndLevels() {
    MediaLocationValueTable music(MediaLocationValueTable::AudioRead);
    music.Save();
    const Value* const value = &music;
    With(value)(KB_GetAsBooleanValue, KB_GetAsByteArrayValue, KB_GetAsExternalProgramValueTable,
                KB_GetAsExternalProgramValueTableEntry, KB_GetAsFilenameValue, KB_GetAsGuidValue,
                KB_GetAsIdentValue, KB_GetAsInt32Value, KB_GetAsMediaLocationValueTable,
                KB_GetAsMediaLocationValueTableEntry, KB_GetAsTStringValue, KB_GetAsUInt32Enum,
                KB_GetAsUInt32Value, KB_GetAsValueCollection, KB_GetAsValueList, KB_GetAsValueTable,
                KB_GetAsValueTableEntry, KB_UILevelShowValue);
    KB_ShowUserInterfaceLevel(KB_GetUserInterfaceLevel());
    With(1, 2)(KB_CompareUserInterfaceLevels, KB_LowestInterfaceLevel, KB_HighestInterfaceLevel);
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
    TimeDelayAction().DoAction(1);
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

void UsePageFactory(IKivPageFactory* factory) {
    UserInterface userInterface;
    userInterface.create = [](auto*, auto*, LONG, IUnknown** page) {
        *page = nullptr;
        return S_OK;
    };
    factory->AddPage(_bstr_t(L"Main.page"), nullptr);
    factory->CreatePage(-1, &userInterface, nullptr, nullptr);
    ComPtr<IUnknown> object;
    factory->GetScript(0, &object);
    factory->GetScriptImage(0, _bstr_t(L"image.gif"), &object);
    _bstr_t text;
    factory->LoadResourceString(0, 101, text.GetAddress());
    ComPtr<ITypeInfo> type;
    factory->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type);
}

void UsePages() {
    for (const char* name : {"DllRegisterServer", "DllUnregisterServer"})
        ::GetProcAddress(::GetModuleHandleA("Kitbag.dll"), name)();
    GraphicClass graphics;
    DWORD cookie = 0;
    ::CoRegisterClassObject(CLSID_KivGraphicFactory, &graphics, CLSCTX_INPROC_SERVER,
                            REGCLS_MULTIPLEUSE, &cookie);
    ComPtr<IKivGraphicFactory> graphicFactory;
    KB_CreateGraphicFactory(&graphicFactory);
    ComPtr<IKivPageFactory> factory;
    if (KB_CreateKivPageFactory(&factory)) UsePageFactory(factory.Get());
    ::CoRevokeClassObject(cookie);
}

}  // namespace

void RunWorkload() {
    const Com com;
    for (const auto use :
         {UseBothForms<char>, UseBothForms<wchar_t>, UseChecksumsAndClipboard, UseSystem,
          UseIdleMonitor, UseThreads, UsePages, UseValueClasses, UseCastsAndLevels, UseLogger}) {
        try {
            use();
        } catch (const std::bad_alloc&) {
            // Classes, unlike plain functions, may tell by an exception that memory ran out.
            EXPECT_TRUE(use == UseValueClasses || use == UseCastsAndLevels || use == UseLogger);
        }
    }
}

}  // namespace kitbag::test
