#include <kitbag/registry/directories.h>
#include <shlobj.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

#include <cstring>

/// The locale library's functions; this program stands in for that library.
extern "C" __declspec(dllexport) unsigned GetLocaleLanguageDirectoryA(char* buffer, unsigned long) {
    return std::strcpy(buffer, "L:\\de") != nullptr;
}
extern "C" __declspec(dllexport) unsigned GetLocaleSubLanguageDirectoryA(char* buffer,
                                                                         unsigned long size) {
    EXPECT_EQ(260u, size);
    return std::strcpy(buffer, "L:\\de-AT\\") != nullptr;
}

namespace {

using namespace kitbag::test;
using Texts = std::vector<std::wstring>;

const char* localeLibrary;

HMODULE WINAPI LoadLocaleLibrary(LPCSTR name) {
    EXPECT_STREQ("Lingrel.dll", name);
    return ::LoadLibraryA(localeLibrary);
}

LPITEMIDLIST WINAPI Cancel(LPBROWSEINFOA) { return nullptr; }

class PageScripts : public testing::Test {
 protected:
    PageScripts() {
        ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        ::CoRegisterClassObject(CLSID_KivGraphicFactory, &class_, CLSCTX_INPROC_SERVER,
                                REGCLS_MULTIPLEUSE, &cookie_);
        localeLibrary = "kitbag_pages_tests.exe";
        KB_SetSkinDirectoryA(skin_.Path().string());
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory_));
        RawKey("Skins").Set(L"Renamed", L"New.page");
        for (const wchar_t* name : {L"Main.page", L"sub\\Main.page", L"c:Main.page", L"Renamed"})
            factory_->AddPage(_bstr_t(name), nullptr);
    }
    ~PageScripts() override { ::CoRevokeClassObject(cookie_); }

    /// The full path of a file in the skin directory.
    std::wstring InSkin(const wchar_t* name) { return (skin_.Path() / name).wstring(); }
    Texts Calls() { return std::exchange(graphics_.calls, {}); }

    TemporaryFolder skin_;
    GraphicClass class_;
    GraphicFactory& graphics_ = class_.graphics;
    DWORD cookie_ = 0;
    ImportPatch loadLibrary_{"LoadLibraryA", LoadLocaleLibrary};
    ImportPatch browse_{"SHBrowseForFolderA", Cancel};
    TraceCapture trace_;
    ComPtr<IKivPageFactory> factory_;
    ComPtr<IUnknown> out_;
};

TEST_F(PageScripts, LieInTheSkinDirectoryOrTheirOwn) {
    const Texts expected[] = {
        {InSkin(L"Main.page"), InSkin(L""), L"L:\\de", L"L:\\de-AT\\"},
        {L"sub\\Main.page", L"sub\\", L"L:\\de", L"L:\\de-AT\\"},
        {L"c:Main.page", L"", L"L:\\de", L"L:\\de-AT\\"},
        {InSkin(L"New.page"), InSkin(L""), L"L:\\de", L"L:\\de-AT\\"},
    };
    for (LONG index = 0; index < 4; ++index) {
        EXPECT_EQ(S_OK, factory_->GetScript(index, &out_));
        EXPECT_EQ(&graphics_.object, out_.Get());
        EXPECT_EQ(expected[index], Calls());
        EXPECT_EQ(S_OK, factory_->SetScript(index, out_.Get()));
        EXPECT_EQ(Texts{expected[index][0]}, Calls());
    }
    graphics_.refusals = 2;
    EXPECT_EQ(STG_E_FILENOTFOUND, factory_->SetScript(0, out_.Get()));
    EXPECT_EQ(STG_E_FILENOTFOUND, factory_->GetScript(0, &out_));
    EXPECT_EQ(nullptr, out_);
}

TEST_F(PageScripts, TakeImagesFromTheMostParticularDirectory) {
    const Texts all = {L"L:\\de-AT\\a.gif", L"L:\\de\\a.gif", InSkin(L"a.gif")};
    // The languages' directories are known once a script was asked for.
    EXPECT_EQ(S_OK, factory_->GetScriptImage(7, _bstr_t(L"a.gif"), &out_));
    EXPECT_EQ(Texts{all[2]}, Calls());
    factory_->GetScript(0, &out_);
    Calls();
    for (const auto get : {&IKivPageFactory::GetScriptImage, &IKivPageFactory::GetScriptImage2})
        for (const int refusals : {0, 1, 2, 3}) {
            graphics_.refusals = refusals;
            const bool found = refusals < 3;
            EXPECT_EQ(found ? S_OK : E_FAIL, (factory_.Get()->*get)(7, _bstr_t(L"a.gif"), &out_));
            EXPECT_EQ(found ? &graphics_.object : nullptr, out_.Get());
            EXPECT_EQ(Texts(all.begin(), all.begin() + (found ? refusals + 1 : 3)), Calls());
        }
    trace_.Expect({});
}

TEST_F(PageScripts, DoWithoutALocaleLibraryAndASkinDirectory) {
    localeLibrary = "no such library.dll";
    KB_SetSkinDirectoryA(std::string("C:\\no such folder"));
    EXPECT_EQ(S_OK, factory_->GetScript(0, &out_));
    EXPECT_EQ((Texts{L"Main.page", L"", L"", L""}), Calls());
    EXPECT_EQ(S_OK, factory_->SetScript(0, out_.Get()));
    EXPECT_EQ(Texts{L"Main.page"}, Calls());
    EXPECT_EQ(E_FAIL, factory_->GetScriptImage2(0, nullptr, &out_));
    EXPECT_EQ(Texts{}, Calls());
    trace_.Expect({"CKivPageFactory::GetScript - Can't get skin directory\n",
                   "CKivPageFactory::SetScript - Can't get skin directory\n",
                   "CKivPageFactory::GetScriptImage - Can't get skin directory\n"});
}

TEST_F(PageScripts, FailWithoutAGraphicFactory) {
    ::CoRevokeClassObject(std::exchange(cookie_, 0));
    EXPECT_EQ(E_FAIL, factory_->GetScript(0, &out_));
    EXPECT_EQ(E_FAIL, factory_->SetScript(0, &graphics_.object));
    EXPECT_EQ(E_FAIL, factory_->GetScriptImage(0, _bstr_t(L"a.gif"), &out_));
    IKivGraphicFactory* graphics = &graphics_;
    EXPECT_FALSE(KB_CreateGraphicFactory(&graphics));
    EXPECT_EQ(nullptr, graphics);
    EXPECT_FALSE(KB_CreateGraphicFactory(nullptr));
}

}  // namespace
