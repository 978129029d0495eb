// Everything that the library offers, called once, for tests that make the system fail meanwhile.
//
// A new function gets a line with what it needs in order to succeed, behind the calls that make it
// so. Arguments that are missing are made up: numbers and texts of '?', and places for output,
// which must be untouched where it answers false.
//
//     With(section, "Value"_t)(KB_SetBoolA, KB_GetBoolA);  // the number, and the place for it
//     Noted("AddPage", factory->AddPage(name, nullptr));   // a method
//
// The test Workload.CallsEveryExportAndSucceeds names what is missing.
#pragma once

#include <kitbag/kitbag.h>
#include <tests/faults/exported_functions.h>
#include <tests/pages/doubles.h>
#include <tests/support/temporary_folder.h>

#include <map>
#include <tuple>

namespace kitbag::test {

/// Whether all calls since the start of the workload succeeded, by name.
inline std::map<std::string, bool> succeeded;

template <class Answer>
Answer Noted(const std::string& name, Answer answer) {
    const bool isSuccess = std::is_same_v<Answer, HRESULT> ? SUCCEEDED(answer) : answer != Answer();
    const auto [noted, isFirst] = succeeded.emplace(name, isSuccess);
    noted->second &= isSuccess;
    return answer;
}

template <class Value>
const Value kSome = Value('?');
template <class Value>
requires std::is_class_v<Value>
const Value kSome<Value> = Value(40, '?');
/// Where a BSTR is handed out there must have been one.
inline wchar_t someText[] = L"?";
template <>
inline const BSTR kSome<BSTR> = someText;

/// An argument for a parameter of any type: a value, or a place for output, text and BSTRs too.
template <class Parameter>
struct Argument {
    using Place = std::remove_pointer_t<std::remove_cvref_t<Parameter>>;
    using Value = std::conditional_t<std::is_void_v<Place>, char, std::remove_const_t<Place>>;

    ~Argument() {
        if constexpr (std::is_same_v<Value, BSTR>)
            if (!IsUntouched()) ::SysFreeString(*values);
    }
    operator Parameter() requires std::is_pointer_v<Parameter> { return values; }
    operator Parameter() requires(!std::is_pointer_v<Parameter>) { return *values; }
    bool IsUntouched() const { return *values == kSome<Value>; }

    DWORD bytes = sizeof(Value);  // stands before the characters of a BSTR
    Value values[MAX_PATH] = {kSome<Value>};
};

/// Calls a function with the given arguments, and makes those that are missing. If it answers false
/// it must have left these untouched.
template <class Answer, class... Parameters, class... Given>
bool Call(Answer function(Parameters...), Given&... given) {
    if constexpr (sizeof...(given) < sizeof...(Parameters)) {
        Argument<std::tuple_element_t<sizeof...(given), std::tuple<Parameters...>>> made;
        const bool answered = Call(function, given..., made);
        if (!answered) {
            EXPECT_TRUE(made.IsUntouched()) << NameOf(function);
        }
        return answered;
    } else if constexpr (std::is_void_v<Answer>) {
        function(given...);
        return Noted(NameOf(function), true);
    } else {
        return Noted(NameOf(function), function(given...)) != Answer();
    }
}

/// Takes functions, and calls them one after the other.
auto With(auto&&... given) {
    return [&](auto... functions) { (Call(functions, given...), ...); };
}

template <class Ch>
void UseRegistry() {
    const Ch *const parent = "Faults"_t, *const section = "Faults\\Section"_t;
    With(section, "Value"_t)(Exports<Ch>::SetBool, Exports<Ch>::GetBool, Exports<Ch>::SetDWORD,
                             Exports<Ch>::GetDWORD, Exports<Ch>::SetInt, Exports<Ch>::GetInt,
                             Exports<Ch>::SetTString, Exports<Ch>::GetTString, Exports<Ch>::SetBSTR,
                             Exports<Ch>::GetBSTR, Exports<Ch>::SetString, Exports<Ch>::GetString,
                             Exports<Ch>::SetData, Exports<Ch>::GetData);
    With(section, "Value"_t, Argument<DWORD*>())(Exports<Ch>::GetDataSize);
    With(parent, 0u)(Exports<Ch>::EnumKey, Exports<Ch>::EnumKeyTString);
    With(section, 0u)(Exports<Ch>::EnumValue, Exports<Ch>::EnumValueTString);
    With(parent, Text<Ch>())(Exports<Ch>::DumpRegistry);
    With(parent)(Exports<Ch>::GetKeyCount);
    With(section)(Exports<Ch>::GetValueCount);
    With(section, "Value"_t)(Exports<Ch>::DeleteValue);
    With(parent, "Section"_t)(Exports<Ch>::DeleteKey);
    With(parent)(Exports<Ch>::DeleteSection);
}

template <class Ch>
void UseFiles() {
    const TextFolder<Ch> folder;
    folder.Write("file");
    folder.WriteLink("link.lnk", folder.Path().string());
    With(folder.In("made/on/the/way/").c_str())(Exports<Ch>::CreatePath);
    With(folder.In("file").c_str(), folder.In("made/copy").c_str())(Exports<Ch>::CopyFileDeep);
    With(folder.In("made").c_str())(Exports<Ch>::DeleteDirectory);
    With((folder / "file").string().c_str())(KB_FileCRC);
    With(folder.In("link.lnk").c_str(), Argument<Ch*>(), Argument<Ch*>())(Exports<Ch>::GetLinkInfo);
    Text<Ch> name("Name"_t);
    With(name.data())(Exports<Ch>::ValidateFilename, Exports<Ch>::ValidatePath,
                      Exports<Ch>::ValidateComputerName);
    With()(Exports<Ch>::SetIErrorInfo, Exports<Ch>::BrowseForFolder);
    With("C:\\windows\\system32\\shell32.dll"_t)(Exports<Ch>::LocalToUNC,
                                                 Exports<Ch>::GetModuleVersion);
    With("\\\\computer\\share\\file"_t, Argument<Ch*>())(Exports<Ch>::UNCToLocal);
    With(folder.In("new"))(Exports<Ch>::SetConfigDirectory, Exports<Ch>::SetSkinDirectory,
                           Exports<Ch>::SetDataDirectory, Exports<Ch>::SetDocDirectory);
    With(Text<Ch>())(Exports<Ch>::GetConfigDirectory, Exports<Ch>::GetSkinDirectory,
                     Exports<Ch>::GetDataDirectory, Exports<Ch>::GetDocDirectory);
}

inline void UseSystem() {
    ::RegSetValueA(HKEY_LOCAL_MACHINE, "Software\\Tarnwick\\Vidmoor\\RunOnce", REG_SZ, "", 0);
    With()(KB_IsNT, KB_IsInteractiveSession, KB_IsFirstRun, KB_GetCPUSpeed, KB_GetCPUSpeedNT,
           KB_GetCPUSpeedCalculated, KB_MemCRC);
    for (const auto describe : {KB_GetVendorString, KB_GetSystemDescription})
        std::free(Noted(NameOf(describe), describe()));
    With('D')(KB_EjectVolume);
    With(::GetModuleHandleA("kernel32"))(KB_GetMemModuleVersion);
    const char* const file = "C:\\windows\\system32\\shell32.dll";
    With(file, "Faults")(KB_IsNewModule);
    With(file, "Faults", Argument<DWORD*>(), Argument<DWORD*>())(KB_GetStoredLinkTime);
    With(file, "Faults", MAXDWORD)(KB_IsNewerModule);
    With(file, "Faults")(KB_ForceNewModule);
    CModuleVersion version(file);
    if (Noted("CModuleVersion::Read", version.Read())) version.GetStringValue("CompanyName");
    ModuleInfo info{sizeof info, {}, {}, {}, {}, {}, {}, {}};
    With(&info, HMODULE{}, "Name", file, file)(KB_FillModuleInfo);
    for (BSTR name : {info.moduleName, info.computerName, info.filePath}) ::SysFreeString(name);
    ComPtr<IStream> stream;
    ::CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    stream->Write(file, 10, nullptr);
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    With(stream.Get())(KB_IStreamCRC);
}

/// One process at a time has its turn.
inline void UseWhatAllProcessesShare() {
    HANDLE turn = ::CreateMutexA(nullptr, FALSE, "Kitbag tests: clipboard");
    ::WaitForSingleObject(turn, INFINITE);
    With()(KB_CopyText, KB_PasteText, KB_UserIdleMonitorInit, KB_GetUserIdleTime,
           KB_GetLastUserInputTime, KB_UserIdleMonitorTerm);
    ::ReleaseMutex(turn);
    ::CloseHandle(turn);
}

template <class... Values>
void SaveAndLoad() {
    const auto saveAndLoad = [](Value&& value) { value.SaveRegistry(), value.LoadRegistry(); };
    (saveAndLoad(Values("Faults\\Values", "Value", true)), ...);
}

inline void UseValues() {
    SaveAndLoad<BooleanValue, ByteArrayValue, GuidValue, Int32Value, TStringValue, UInt32Value>();
    unsigned long long size = 0;
    FilenameValue("C:\\windows\\win.ini").GetFileSize(size);
    MediaLocationValueTable music(MediaLocationValueTable::AudioRead);
    music.AddEntry(new MediaLocationValueTableEntry("C:\\Music\\", true));
    music.Sort("Directory");
    music.Save();
    MediaLocationValueTable(music).LoadRegistry("Faults\\Values");
    const Value* const value = &music;
    With(value)(KB_GetAsBooleanValue, KB_GetAsByteArrayValue, KB_GetAsExternalProgramValueTable,
                KB_GetAsExternalProgramValueTableEntry, KB_GetAsFilenameValue, KB_GetAsGuidValue,
                KB_GetAsIdentValue, KB_GetAsInt32Value, KB_GetAsMediaLocationValueTable,
                KB_GetAsMediaLocationValueTableEntry, KB_GetAsTStringValue, KB_GetAsUInt32Enum,
                KB_GetAsUInt32Value, KB_GetAsValueCollection, KB_GetAsValueList, KB_GetAsValueTable,
                KB_GetAsValueTableEntry, KB_UILevelShowValue);
    With()(KB_GetUserInterfaceLevel, KB_ShowUserInterfaceLevel, KB_CompareUserInterfaceLevels,
           KB_LowestInterfaceLevel, KB_HighestInterfaceLevel);
}

struct Worker : EventThread {
    bool OnEvent() override { return false; }
    bool OnTimeout() override { return true; }
};

inline void UseRuntime() {
    Worker worker;
    Noted("Start", worker.Start(THREAD_PRIORITY_NORMAL, 1));
    worker.TriggerEvent();
    worker.Stop();
    Noted("DoAction", TimeDelayAction().DoAction(1));
    KB_SetBoolA("Debug\\Performance", "Faults Enable", true);
    PerformanceLogger logger("Faults", "");
    TimePerformanceMeasurement time(logger, "Time", "", 0, "");
    logger.Start();
    time.StartTimer();
    time.MarkTimerAndRecord(true);
    logger.StopAndProduceReport();
}

/// A function of a COM server's, which programs find by name.
template <class... Parameters>
void CallServer(const char* name, Parameters... arguments) {
    const auto function = reinterpret_cast<HRESULT(WINAPI*)(Parameters...)>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("Kitbag.dll"), name)));
    Noted(name, function(arguments...));
}

inline void UsePages() {
    CallServer("DllRegisterServer");
    CallServer("DllUnregisterServer");
    ComPtr<IClassFactory> classFactory;
    CallServer<REFCLSID, REFIID, void**>("DllGetClassObject", CLSID_KivPageFactory,
                                         IID_IClassFactory, &classFactory);
    CallServer("DllCanUnloadNow");
    GraphicClass graphics;
    UserInterface userInterface;
    userInterface.create = [&](IKivPageOwner*, IKivPageFactory*, LONG, IUnknown** page) {
        return graphics.graphics.QueryInterface(IID_PPV_ARGS(page));
    };
    DWORD cookie = 0;
    ::CoRegisterClassObject(CLSID_KivGraphicFactory, &graphics, CLSCTX_INPROC_SERVER,
                            REGCLS_MULTIPLEUSE, &cookie);
    With(ComPtr<IKivGraphicFactory>().GetAddressOf())(KB_CreateGraphicFactory);
    ComPtr<IKivPageFactory> factory;
    With(factory.GetAddressOf())(KB_CreateKivPageFactory);
    if (factory) {
        Noted("AddPage", factory->AddPage(_bstr_t(L"Main.page"), nullptr));
        Noted("GetScript", factory->GetScript(0, ComPtr<IUnknown>().GetAddressOf()));
        Noted("GetScriptImage",
              factory->GetScriptImage(0, _bstr_t(L"image.gif"), ComPtr<IUnknown>().GetAddressOf()));
        Noted("CreatePage",
              factory->CreatePage(0, &userInterface, nullptr, ComPtr<IUnknown>().GetAddressOf()));
        Noted("LoadResourceString", factory->LoadResourceString(0, 101, _bstr_t().GetAddress()));
        Noted("GetTypeInfo",
              factory->GetTypeInfo(0, LOCALE_USER_DEFAULT, ComPtr<ITypeInfo>().GetAddressOf()));
        factory->CreatePage(-1, &userInterface, nullptr, nullptr);
    }
    ::CoRevokeClassObject(cookie);
}

/// Calls every exported function and drives the classes; whatever fails meanwhile, outputs that a
/// failed call promises to leave alone are checked. Leaves nothing open.
inline void RunWorkload() {
    succeeded.clear();
    const Com com;
    for (const auto use : {UseRegistry<char>, UseRegistry<wchar_t>, UseFiles<char>,
                           UseFiles<wchar_t>, UseSystem, UseWhatAllProcessesShare, UsePages})
        use();
    for (const auto use : {UseValues, UseRuntime}) {
        try {
            use();
        } catch (const std::bad_alloc&) {
            // Classes, unlike plain functions, may tell by an exception that memory ran out.
        }
    }
}

}  // namespace kitbag::test
