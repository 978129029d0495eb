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

namespace kitbag::test {

namespace {

/// A getter that answered false must have left its output as it was.
template <class Value, class Getter>
void Get(const Value& before, Getter&& getter) {
    Value value = before;
    const bool answered = getter(value);
    EXPECT_TRUE(answered || value == before);
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
    Get(false, [&](bool& value) { return KB(GetBool)(section, T("Bool"), &value); });
    Get(DWORD{99}, [&](DWORD& value) { return KB(GetDWORD)(section, T("Number"), &value); });
    Get(99, [&](int& value) { return KB(GetInt)(section, T("Int"), &value); });
    Get(Text<Ch>(T("before")),
        [&](Text<Ch>& value) { return KB(GetTString)(section, T("Text"), value); });
    Ch buffer[64];
    KB(GetString)(section, T("Text"), buffer, 64);
    DWORD size = 0;
    KB(GetDataSize)(section, T("Data"), &size);
    Get(DWORD{99}, [&](DWORD& value) {
        return KB(GetData)(section, T("Data"), sizeof buffer, buffer, &value);
    });

    BSTR before = ::SysAllocString(L"before");
    KB(SetBSTR)(section, T("Bstr"), before);
    BSTR text = before;
    if (KB(GetBSTR)(section, T("Bstr"), &text)) ::SysFreeString(text);
    ::SysFreeString(before);
}

template <class Ch>
void UseTree() {
    const Ch* const section = T("Faults");
    KB(GetKeyCount)(section);
    KB(GetValueCount)(T("Faults\\Section"));
    Ch name[64] = {};
    Get(DWORD{64}, [&](DWORD& length) { return KB(EnumKey)(section, 0, name, &length); });
    Get(DWORD{64},
        [&](DWORD& length) { return KB(EnumValue)(T("Faults\\Section"), 0, name, &length); });
    Get(Text<Ch>(T("before")),
        [&](Text<Ch>& value) { return KB(EnumKeyTString)(section, 0, value); });
    Get(Text<Ch>(T("before")),
        [&](Text<Ch>& value) { return KB(EnumValueTString)(T("Faults\\Section"), 0, value); });
    Text<Ch> dump;
    KB(DumpRegistry)(section, dump);
    KB(DeleteValue)(T("Faults\\Section"), T("Number"));
    KB(DeleteKey)(section, T("Section"));
    KB(DeleteSection)(section);
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

    Ch target[MAX_PATH], description[MAX_PATH];
    KB(GetLinkInfo)(folder.In("link.lnk").c_str(), target, description);
    Ch chosen[MAX_PATH] = {};
    KB(BrowseForFolder)(chosen, T("Choose"));
    KB(LocalToUNC)(T("C:\\file"), target, MAX_PATH);
    KB(UNCToLocal)(T("\\\\computer\\share\\file"), target, MAX_PATH);
    KB(SetIErrorInfo)(T("an error"));
    DWORD version[3];
    KB(GetModuleVersion)(T("Kitbag.dll"), &version[0], &version[1], &version[2]);
}

template <class Ch>
void UseDirectories(const TextFolder<Ch>& folder) {
    KB(SetConfigDirectory)(folder.In("file"));
    KB(SetSkinDirectory)(folder.In("new"));
    KB(SetDataDirectory)(folder.In("new"));
    KB(SetDocDirectory)(folder.In(""));
    Text<Ch> directory;
    for (int call = 0; call < 2; ++call) {
        KB(GetConfigDirectory)(directory);
        KB(GetSkinDirectory)(directory);
        KB(GetDataDirectory)(directory);
        KB(GetDocDirectory)(directory);
    }
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

void UseChecksumsAndClipboard() {
    KB_MemCRC("abc", 3);
    KB_FileCRC("C:\\windows\\win.ini");
    ComPtr<IStream> stream;
    ::CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    KB_IStreamCRC(stream.Get());
    KB_CopyText(L"text");
    BSTR text = nullptr;
    if (KB_PasteText(&text)) ::SysFreeString(text);
    KB_EjectVolume('D');
}

void UseSystem() {
    KB_IsNT();
    KB_IsInteractiveSession();
    KB_GetCPUSpeed();
    KB_GetCPUSpeedNT();
    KB_GetCPUSpeedCalculated();
    std::free(KB_GetVendorString());
    std::free(KB_GetSystemDescription());
    DWORD major = 0, minor = 0, stored = 0, current = 0;
    KB_GetMemModuleVersion(nullptr, &major, &minor, nullptr);
    const char* const file = "C:\\windows\\system32\\shell32.dll";
    KB_GetStoredLinkTime(file, "Faults", &stored, &current, true);
    KB_IsNewModule(file, "Faults");
    KB_IsNewerModule(file, "Faults", 1);
    KB_ForceNewModule(file, "Faults");
    KB_IsFirstRun();
    CModuleVersion version(file);
    if (version.Read()) version.GetStringValue("CompanyName");
    ModuleInfo info{sizeof info, {}, {}, {}, {}, {}, {}, {}};
    const char blocks[16] = {};
    if (!KB_FillModuleInfo(&info, nullptr, "Name", blocks, blocks)) return;
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
    EXPECT_NE(nullptr, KB_GetAsValueTable(&music));
    KB_UILevelShowValue(&number);
    KB_DeleteSectionA("Faults");
}

/// Counts its passes; the workload waits for its end by itself, in case that waiting fails.
class Worker : public EventThread {
 public:
    ~Worker() override = default;
    void OnThreadStart() override { state = 1; }
    void OnThreadExit() override { state = 2; }
    bool OnEvent() override { return true; }
    bool OnTimeout() override { return true; }
    std::atomic<int> state = 0;
};

void UseThreads() {
    Worker worker;
    worker.Start(THREAD_PRIORITY_NORMAL, 1);
    for (int i = 0; worker.state == 0 && i < 50; ++i) ::Sleep(2);
    worker.TriggerEvent();
    worker.Stop();
    while (worker.state == 1) ::Sleep(1);
    // Its last steps on the way out of the thread.
    if (!worker.IsFinished()) ::Sleep(20);
    TimeDelayAction().DoAction(1);
}

void UseIdleMonitorAndLogger() {
    KB_UserIdleMonitorInit();
    Surroundings::PressAKey();
    KB_GetUserIdleTime();
    KB_UserIdleMonitorTerm();

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
    UsePages();
    // Classes, unlike plain functions, may tell by an exception that memory ran out.
    for (const auto use : {UseConfigurationValues, UseIdleMonitorAndLogger}) {
        try {
            use();
        } catch (const std::bad_alloc&) {
        }
    }
}

}  // namespace kitbag::test
