#include <comdef.h>
#include <comutil.h>
#include <kitbag/registry/directories.h>
#include <kitbag/registry/values.h>
#include <shlobj.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

#include <cstdio>
#include <optional>

/// The locale library's functions; this program stands in for that library.
extern "C" __declspec(dllexport) unsigned GetLocaleLanguageDirectoryA(char* buffer, unsigned long) {
    return static_cast<unsigned>(std::sprintf(buffer, "L:\\de"));
}
extern "C" __declspec(dllexport) unsigned GetLocaleSubLanguageDirectoryA(char* buffer,
                                                                         unsigned long size) {
    EXPECT_EQ(260u, size);
    return static_cast<unsigned>(std::sprintf(buffer, "L:\\de-AT\\"));
}

namespace {

using namespace kitbag::test;
using Texts = std::vector<std::wstring>;

bool localeLibraryExists;

HMODULE WINAPI LoadLocaleLibrary(LPCSTR name) {
    EXPECT_STREQ("Lingrel.dll", name);
    char self[MAX_PATH];
    ::GetModuleFileNameA(nullptr, self, sizeof self);
    return localeLibraryExists ? ::LoadLibraryA(self) : nullptr;
}

LPITEMIDLIST WINAPI Cancel(LPBROWSEINFOA) { return nullptr; }

class PageScripts : public testing::Test {
 protected:
    PageScripts() {
        localeLibraryExists = true;
        KB_SetSkinDirectoryA(skin_.Path().string());
        for (const wchar_t* name : {L"Main.page", L"sub\\Main.page", L"c:Main.page"})
            factory_->AddPage(_bstr_t(name), nullptr);
    }

    /// The full path of a file in the skin directory.
    std::wstring InSkin(const wchar_t* name) { return (skin_.Path() / name).wstring(); }

    void ForgetSkin() {
        KB_SetSkinDirectoryA(std::string("C:\\no such folder"));
        trace_.Expect({});
    }

    Texts ImagesTried() { return std::exchange(graphics_.calls, {}); }

    TemporaryFolder skin_;
    Apartment apartment_;
    GraphicFactory graphics_;
    std::optional<GraphicClass> class_{graphics_};
    ImportPatch loadLibrary_{"LoadLibraryA", LoadLocaleLibrary};
    ImportPatch browse_{"SHBrowseForFolderA", Cancel};
    TraceCapture trace_;
    ComPtr<IKivPageFactory> factory_ = NewPageFactory();
    ComPtr<IUnknown> out_;
};

TEST_F(PageScripts, AreLoadedFromTheSkinDirectoryOrTheirOwn) {
    RawKey("Skins").Set(L"Renamed", L"New.page");
    factory_->AddPage(_bstr_t(L"Renamed"), nullptr);
    const Texts expected[] = {
        {InSkin(L"Main.page"), InSkin(L""), L"L:\\de", L"L:\\de-AT\\"},
        {L"sub\\Main.page", L"sub\\", L"L:\\de", L"L:\\de-AT\\"},
        {L"c:Main.page", L"", L"L:\\de", L"L:\\de-AT\\"},
        {InSkin(L"New.page"), InSkin(L""), L"L:\\de", L"L:\\de-AT\\"},
    };
    for (LONG index = 0; index < 4; ++index) {
        graphics_.calls.clear();
        EXPECT_EQ(S_OK, factory_->GetScript(index, &out_));
        EXPECT_EQ(&graphics_.object, out_.Get());
        EXPECT_EQ(expected[index], graphics_.calls);
    }
    graphics_.refusals = 1;
    EXPECT_EQ(STG_E_FILENOTFOUND, factory_->GetScript(0, &out_));
    EXPECT_EQ(nullptr, out_);
    EXPECT_EQ(0, graphics_.object.references);
    EXPECT_EQ(0, graphics_.references);
    trace_.Expect({});
}

TEST_F(PageScripts, AreSavedWhereTheyAreLoadedFrom) {
    EXPECT_EQ(S_OK, factory_->SetScript(0, &graphics_.object));
    EXPECT_EQ(S_OK, factory_->SetScript(1, &graphics_.object));
    EXPECT_EQ((Texts{InSkin(L"Main.page"), L"sub\\Main.page"}), graphics_.calls);
    graphics_.refusals = 1;
    EXPECT_EQ(STG_E_FILENOTFOUND, factory_->SetScript(2, &graphics_.object));
}

TEST_F(PageScripts, TakeImagesFromTheMostParticularDirectory) {
    const auto image = [&](int refusals, auto operation) {
        graphics_.refusals = refusals;
        const HRESULT result = (factory_.Get()->*operation)(7, _bstr_t(L"a.png"), &out_);
        EXPECT_EQ(SUCCEEDED(result) ? &graphics_.object : nullptr, out_.Get());
        return result;
    };
    for (const auto operation :
         {&IKivPageFactory::GetScriptImage, &IKivPageFactory::GetScriptImage2}) {
        factory_ = NewPageFactory();
        factory_->AddPage(_bstr_t(L"Main.page"), nullptr);
        // The languages' directories are known once a script was asked for.
        EXPECT_EQ(S_OK, image(0, operation));
        EXPECT_EQ(Texts{InSkin(L"a.png")}, ImagesTried());
        factory_->GetScript(0, &out_);
        ImagesTried();

        const Texts all = {L"L:\\de-AT\\a.png", L"L:\\de\\a.png", InSkin(L"a.png")};
        for (const int refusals : {0, 1, 2}) {
            EXPECT_EQ(S_OK, image(refusals, operation));
            EXPECT_EQ(Texts(all.begin(), all.begin() + refusals + 1), ImagesTried());
        }
        EXPECT_EQ(E_FAIL, image(3, operation));
        EXPECT_EQ(all, ImagesTried());
        graphics_.refusals = 0;
        EXPECT_EQ(S_OK, (factory_.Get()->*operation)(0, nullptr, &out_));
        ImagesTried();
    }
    trace_.Expect({});
}

TEST_F(PageScripts, DoWithoutALocaleLibrary) {
    localeLibraryExists = false;
    EXPECT_EQ(S_OK, factory_->GetScript(0, &out_));
    EXPECT_EQ((Texts{InSkin(L"Main.page"), InSkin(L""), L"", L""}), ImagesTried());
    graphics_.refusals = 1;
    EXPECT_EQ(E_FAIL, factory_->GetScriptImage(0, _bstr_t(L"a.png"), &out_));
    EXPECT_EQ(Texts{InSkin(L"a.png")}, ImagesTried());
}

TEST_F(PageScripts, DoWithoutASkinDirectory) {
    ForgetSkin();
    EXPECT_EQ(S_OK, factory_->GetScript(0, &out_));
    EXPECT_EQ((Texts{L"Main.page", L"", L"L:\\de", L"L:\\de-AT\\"}), ImagesTried());
    trace_.Expect({"CKivPageFactory::GetScript - Can't get skin directory\n"});
    EXPECT_EQ(S_OK, factory_->SetScript(0, &graphics_.object));
    EXPECT_EQ(Texts{L"Main.page"}, ImagesTried());
    trace_.Expect({"CKivPageFactory::SetScript - Can't get skin directory\n"});
    graphics_.refusals = 2;
    EXPECT_EQ(E_FAIL, factory_->GetScriptImage2(0, _bstr_t(L"a.png"), &out_));
    EXPECT_EQ((Texts{L"L:\\de-AT\\a.png", L"L:\\de\\a.png"}), ImagesTried());
    trace_.Expect({"CKivPageFactory::GetScriptImage - Can't get skin directory\n"});
}

TEST_F(PageScripts, FailWithoutAGraphicFactory) {
    class_.reset();
    EXPECT_EQ(E_FAIL, factory_->GetScript(0, &out_));
    EXPECT_EQ(E_FAIL, factory_->SetScript(0, &graphics_.object));
    EXPECT_EQ(E_FAIL, factory_->GetScriptImage(0, _bstr_t(L"a.png"), &out_));
    auto* graphics = static_cast<IKivGraphicFactory*>(&graphics_);
    EXPECT_FALSE(KB_CreateGraphicFactory(&graphics));
    EXPECT_EQ(nullptr, graphics);
    EXPECT_FALSE(KB_CreateGraphicFactory(nullptr));
}

}  // namespace
