#include <kitbag/files/shell_link.h>
#include <tests/support/code_page_932.h>
#include <tests/support/printing.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;

template <class Ch>
using String = std::basic_string<Ch>;

/// A shell link that tells what it was asked for, and fails at one of the steps.
class FakeLink : public IShellLinkA, public IPersistFile {
 public:
    std::vector<std::wstring> asked;
    std::wstring failing;
    /// Without the test's own.
    long references = 0;

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (id == IID_IShellLinkA) *object = static_cast<IShellLinkA*>(this);
        if (id == IID_IPersistFile) *object = static_cast<IPersistFile*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++references); }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--references); }

    STDMETHODIMP Load(LPCOLESTR file, DWORD mode) override { return Asked(L"Load", file, mode); }
    STDMETHODIMP Resolve(HWND owner, DWORD flags) override {
        return Asked(L"Resolve", owner == ::GetFocus() ? L"for the focus" : L"", flags);
    }
    STDMETHODIMP GetPath(LPSTR path, int room, WIN32_FIND_DATAA* found, DWORD flags) override {
        EXPECT_EQ(nullptr, found);
        ::lstrcpyA(path, "C:\\target");
        return Asked(L"GetPath", std::to_wstring(room), flags);
    }
    STDMETHODIMP GetDescription(LPSTR description, int room) override {
        ::lstrcpyA(description, "what");
        return Asked(L"GetDescription", std::to_wstring(room), 0);
    }

    STDMETHODIMP GetIDList(LPITEMIDLIST*) override { return E_NOTIMPL; }
    STDMETHODIMP SetIDList(LPCITEMIDLIST) override { return E_NOTIMPL; }
    STDMETHODIMP SetDescription(LPCSTR) override { return E_NOTIMPL; }
    STDMETHODIMP GetWorkingDirectory(LPSTR, int) override { return E_NOTIMPL; }
    STDMETHODIMP SetWorkingDirectory(LPCSTR) override { return E_NOTIMPL; }
    STDMETHODIMP GetArguments(LPSTR, int) override { return E_NOTIMPL; }
    STDMETHODIMP SetArguments(LPCSTR) override { return E_NOTIMPL; }
    STDMETHODIMP GetHotkey(WORD*) override { return E_NOTIMPL; }
    STDMETHODIMP SetHotkey(WORD) override { return E_NOTIMPL; }
    STDMETHODIMP GetShowCmd(int*) override { return E_NOTIMPL; }
    STDMETHODIMP SetShowCmd(int) override { return E_NOTIMPL; }
    STDMETHODIMP GetIconLocation(LPSTR, int, int*) override { return E_NOTIMPL; }
    STDMETHODIMP SetIconLocation(LPCSTR, int) override { return E_NOTIMPL; }
    STDMETHODIMP SetRelativePath(LPCSTR, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP SetPath(LPCSTR) override { return E_NOTIMPL; }
    STDMETHODIMP GetClassID(CLSID*) override { return E_NOTIMPL; }
    STDMETHODIMP IsDirty() override { return E_NOTIMPL; }
    STDMETHODIMP Save(LPCOLESTR, BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP SaveCompleted(LPCOLESTR) override { return E_NOTIMPL; }
    STDMETHODIMP GetCurFile(LPOLESTR*) override { return E_NOTIMPL; }

 private:
    HRESULT Asked(const std::wstring& step, const std::wstring& detail, DWORD number) {
        asked.push_back(step + L' ' + detail + L' ' + std::to_wstring(number));
        return step == failing ? E_FAIL : S_OK;
    }
};

FakeLink* fake;

HRESULT WINAPI CreateFake(REFCLSID id, IUnknown* outer, DWORD context, REFIID wanted, void** link) {
    EXPECT_EQ(CLSID_ShellLink, id);
    EXPECT_EQ(nullptr, outer);
    EXPECT_EQ(DWORD{CLSCTX_INPROC_SERVER}, context);
    return fake->QueryInterface(wanted, link);
}

template <class Ch>
struct ShellLink : testing::Test, Com, TextFolder<Ch> {
    /// Leaves the buffers' texts, which are 8-bit ones in both forms.
    bool Read(const String<Ch>& file, bool withDescription = true) {
        Ch target[MAX_PATH] = {'#'}, description[MAX_PATH] = {'#'};
        const bool isRead =
            Exports<Ch>::GetLinkInfo(file.c_str(), target, withDescription ? description : nullptr);
        target_ = reinterpret_cast<const char*>(target);
        description_ = reinterpret_cast<const char*>(description);
        return isRead;
    }

    std::string target_, description_;
};
TYPED_TEST_SUITE(ShellLink, TextForms, TextFormName);

TYPED_TEST(ShellLink, IsReadIn8BitsInBothForms) {
    this->WriteLink("link", "C:\\windows");
    EXPECT_TRUE(this->Read(this->In("link")));
    EXPECT_STRCASEEQ("C:\\windows", this->target_.c_str());
    EXPECT_EQ("A description", this->description_);
    this->Write("text");
    for (const char* noLink : {"text", "missing"}) {
        EXPECT_FALSE(this->Read(this->In(noLink))) << noLink;
        EXPECT_EQ("", this->target_) << noLink;
        EXPECT_EQ("", this->description_) << noLink;
    }
}

TYPED_TEST(ShellLink, ThatLeadsToNoFileHasAnEmptyTarget) {
    this->WriteLink("link", "");
    EXPECT_TRUE(this->Read(this->In("link")));
    EXPECT_EQ("", this->target_);
}

TYPED_TEST(ShellLink, IsReadStepByStepUpToTheFirstThatFails) {
    const ImportPatch create("CoCreateInstance", CreateFake);
    const std::vector<std::wstring> steps = {L"Load C:\\a.lnk 0", L"Resolve for the focus 3",
                                             L"GetPath 260 1", L"GetDescription 260 0"};
    const struct {
        const wchar_t* failing;
        int asked;
        const char *target, *description;
    } rows[] = {{L"Load", 1, "", ""},
                {L"Resolve", 2, "", ""},
                {L"GetPath", 3, "C:\\target", ""},
                {L"GetDescription", 4, "C:\\target", "what"},
                {L"none", 4, "C:\\target", "what"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.failing);
        FakeLink link;
        link.failing = row.failing;
        fake = &link;
        EXPECT_EQ(link.failing == L"none", this->Read(Text<TypeParam>("C:\\a.lnk"_t)));
        EXPECT_EQ(std::vector(steps.begin(), steps.begin() + row.asked), link.asked);
        EXPECT_EQ(row.target, this->target_);
        EXPECT_EQ(row.description, this->description_);
        EXPECT_EQ(0, link.references);
    }
    FakeLink link;
    fake = &link;
    EXPECT_TRUE(this->Read(Text<TypeParam>("C:\\a.lnk"_t), false)) << "without a description";
    EXPECT_EQ(std::vector(steps.begin(), steps.begin() + 3), link.asked);
}

TYPED_TEST(ShellLink, IsNotLookedForWithoutAUsableName) {
    using Ch = TypeParam;
    const ImportPatch create("CoCreateInstance", CreateFake);
    FakeLink link;
    fake = &link;
    Ch target[MAX_PATH] = {'#'}, description[MAX_PATH] = {'#'};
    EXPECT_FALSE(Exports<Ch>::GetLinkInfo(nullptr, target, description));
    EXPECT_EQ(0, target[0]);
    EXPECT_EQ(0, description[0]);
    description[0] = '#';
    EXPECT_FALSE(Exports<Ch>::GetLinkInfo("C:\\a.lnk"_t, nullptr, description)) << "no target";
    EXPECT_EQ('#', description[0]);
    EXPECT_FALSE(this->Read(String<Ch>(260, 'x'))) << "260 characters";
    EXPECT_EQ("", this->target_);
    EXPECT_EQ("", this->description_);
    EXPECT_TRUE(link.asked.empty());
    EXPECT_TRUE(this->Read(String<Ch>(259, 'x'))) << "259 characters";
    EXPECT_EQ(4u, link.asked.size());
}

TEST(DoubleByteShellLink, HasItsNameCountedIn16Bits) {
    const CodePage932 japanese;
    const ImportPatch create("CoCreateInstance", CreateFake);
    FakeLink link;
    fake = &link;
    const std::wstring longest(259, L'\x8868');
    char target[MAX_PATH];
    EXPECT_FALSE(KB_GetLinkInfoA(In932(longest + L'x').c_str(), target, nullptr));
    EXPECT_TRUE(KB_GetLinkInfoA(In932(longest).c_str(), target, nullptr));
    EXPECT_EQ(L"Load " + longest + L" 0", link.asked.at(0));
}

}  // namespace
