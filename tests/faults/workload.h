// Everything that the library offers, called once.
#pragma once

#include <kitbag/kitbag.h>
#include <tests/pages/doubles.h>
#include <tests/support/temporary_folder.h>

#include <tuple>

namespace kitbag::test {

template <class Value>
const Value kSome = Value('?');
template <class Value>
requires std::is_class_v<Value>
const Value kSome<Value> = Value(40, '?');

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
        EXPECT_TRUE(answered || made.IsUntouched());
        return answered;
    } else if constexpr (std::is_void_v<Answer>) {
        return function(given...), true;
    } else {
        return function(given...);
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
    With(section, "Value"_t)(Exports<Ch>::DeleteValue, Exports<Ch>::DeleteKey);
    With(parent)(Exports<Ch>::GetKeyCount, Exports<Ch>::GetValueCount, Exports<Ch>::DeleteSection);
}

template <class Ch>
void UseFiles() {
    const TextFolder<Ch> folder;
    folder.Write("file");
    folder.WriteLink("link.lnk", folder.Path().string());
    With(folder.In("made/on/the/way/").c_str())(Exports<Ch>::CreatePath);
    With(folder.In("file").c_str(), folder.In("made/copy").c_str())(Exports<Ch>::CopyFileDeep);
    With(folder.In("made").c_str())(Exports<Ch>::DeleteDirectory);
    KB_FileCRC((folder / "file").string().c_str());
    With(folder.In("link.lnk").c_str(), Argument<Ch*>(), Argument<Ch*>())(Exports<Ch>::GetLinkInfo);
    With()(Exports<Ch>::ValidateFilename, Exports<Ch>::ValidatePath,
           Exports<Ch>::ValidateComputerName, Exports<Ch>::SetIErrorInfo,
           Exports<Ch>::BrowseForFolder);
    With("C:\\windows\\system32\\shell32.dll"_t)(Exports<Ch>::LocalToUNC,
                                                 Exports<Ch>::GetModuleVersion);
    With("\\\\computer\\share\\file"_t, Argument<Ch*>())(Exports<Ch>::UNCToLocal);
    With(folder.In("new"))(Exports<Ch>::SetConfigDirectory, Exports<Ch>::SetSkinDirectory,
                           Exports<Ch>::SetDataDirectory, Exports<Ch>::SetDocDirectory);
    With(Text<Ch>())(Exports<Ch>::GetConfigDirectory, Exports<Ch>::GetSkinDirectory,
                     Exports<Ch>::GetDataDirectory, Exports<Ch>::GetDocDirectory);
}

inline void UseSystem() {
    With()(KB_IsNT, KB_IsInteractiveSession, KB_IsFirstRun, KB_GetCPUSpeed, KB_GetCPUSpeedNT,
           KB_GetCPUSpeedCalculated, KB_MemCRC);
    for (const auto describe : {KB_GetVendorString, KB_GetSystemDescription}) std::free(describe());
    With('D')(KB_EjectVolume);
    With(HMODULE{})(KB_GetMemModuleVersion);
    const char* const file = "C:\\windows\\system32\\shell32.dll";
    With(file, "Faults", Argument<DWORD*>(), Argument<DWORD*>())(KB_GetStoredLinkTime);
    With(file, "Faults")(KB_IsNewModule, KB_IsNewerModule, KB_ForceNewModule);
    CModuleVersion version(file);
    if (version.Read()) version.GetStringValue("CompanyName");
    ModuleInfo info{sizeof info, {}, {}, {}, {}, {}, {}, {}};
    KB_FillModuleInfo(&info, nullptr, "Name", file, file);
    for (BSTR name : {info.moduleName, info.computerName, info.filePath}) ::SysFreeString(name);
    ComPtr<IStream> stream;
    ::CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    KB_IStreamCRC(stream.Get());
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
    worker.Start(THREAD_PRIORITY_NORMAL, 1);
    worker.TriggerEvent();
    worker.Stop();
    TimeDelayAction().DoAction(1);
    KB_SetBoolA("Debug\\Performance", "Faults Enable", true);
    PerformanceLogger logger("Faults", "");
    TimePerformanceMeasurement time(logger, "Time", "", 0, "");
    logger.Start();
    time.StartTimer();
    time.MarkTimerAndRecord(true);
    logger.StopAndProduceReport();
}

inline void UsePages() {
    for (const char* name : {"DllRegisterServer", "DllUnregisterServer"})
        ::GetProcAddress(::GetModuleHandleA("Kitbag.dll"), name)();
    GraphicClass graphics;
    UserInterface userInterface;
    userInterface.create = [](auto...) { return E_FAIL; };
    DWORD cookie = 0;
    ::CoRegisterClassObject(CLSID_KivGraphicFactory, &graphics, CLSCTX_INPROC_SERVER,
                            REGCLS_MULTIPLEUSE, &cookie);
    KB_CreateGraphicFactory(ComPtr<IKivGraphicFactory>().GetAddressOf());
    ComPtr<IKivPageFactory> factory;
    if (KB_CreateKivPageFactory(&factory)) {
        factory->AddPage(_bstr_t(L"Main.page"), nullptr);
        factory->CreatePage(-1, &userInterface, nullptr, nullptr);
        factory->GetScript(0, ComPtr<IUnknown>().GetAddressOf());
        factory->GetScriptImage(0, _bstr_t(L"image.gif"), ComPtr<IUnknown>().GetAddressOf());
        factory->LoadResourceString(0, 101, _bstr_t().GetAddress());
        factory->GetTypeInfo(0, LOCALE_USER_DEFAULT, ComPtr<ITypeInfo>().GetAddressOf());
    }
    ::CoRevokeClassObject(cookie);
}

/// Calls every exported function and drives the classes; whatever fails meanwhile, outputs that a
/// failed call promises to leave alone are checked. Leaves nothing open.
inline void RunWorkload() {
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
