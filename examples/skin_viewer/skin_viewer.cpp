// Shows the pages of a skin: what an application does with Kitbag's page factory.
//
//     skin_viewer                        every page for two seconds
//     skin_viewer --page 1               one page, until its window is closed
//     skin_viewer --page 1 --seconds 5   one page for five seconds
//
// The skin lies in data\skin beside this program. The application's part is a user interface that
// creates the pages and a graphic factory that loads their scripts and images.

#include <comdef.h>
#include <comutil.h>
#include <kitbag/kitbag.h>
#include <kitbag/pages.h>
#include <olectl.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

#include "com_object.h"
#include "graphic_factory.h"

using Microsoft::WRL::ComPtr;

namespace {

constexpr const wchar_t* kPages[] = {L"Main.page", L"Television.page", L"Pictures.page"};
constexpr SIZE kPageSize = {640, 400};
constexpr UINT_PTR kTimer = 1;

}  // namespace

/// What the viewer's user interface hands out as a page.
MIDL_INTERFACE("0a3e44af-a7f8-45b0-9050-2d31836fcafb")
IViewerPage : public IUnknown { virtual void STDMETHODCALLTYPE Draw(HDC device) = 0; };
__CRT_UUID_DECL(IViewerPage, 0x0a3e44af, 0xa7f8, 0x45b0, 0x90, 0x50, 0x2d, 0x31, 0x83, 0x6f, 0xca,
                0xfb)

namespace {

/// The file names of the skin are plain ASCII.
std::wstring Wide(const std::string& text) { return {text.begin(), text.end()}; }

void DrawPicture(HDC device, IPicture* picture, int x, int y) {
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    picture->get_Width(&width);
    picture->get_Height(&height);
    constexpr int kHimetricPerInch = 2540;
    const int right = ::MulDiv(width, ::GetDeviceCaps(device, LOGPIXELSX), kHimetricPerInch);
    const int bottom = ::MulDiv(height, ::GetDeviceCaps(device, LOGPIXELSY), kHimetricPerInch);
    // A picture's own origin is its lower left corner.
    picture->Render(device, x, y, right, bottom, 0, height, width, -height, nullptr);
}

void DrawWords(HDC device, const PageElement& element) {
    HFONT font = ::CreateFontA(-element.height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                               DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                               ANTIALIASED_QUALITY, VARIABLE_PITCH | FF_SWISS, "Tahoma");
    HGDIOBJ previous = ::SelectObject(device, font);
    ::SetBkMode(device, TRANSPARENT);
    ::SetTextColor(device, element.color);
    ::TextOutA(device, element.x, element.y, element.shown.c_str(),
               static_cast<int>(element.shown.size()));
    ::SelectObject(device, previous);
    ::DeleteObject(font);
}

class Page final : public ComObject<IViewerPage> {
 public:
    /// Fetches the page's script and the images in it from the factory.
    HRESULT Load(IKivPageFactory* factory, LONG index) {
        ComPtr<IUnknown> script;
        if (const HRESULT result = factory->GetScript(index, &script); FAILED(result))
            return result;
        if (const HRESULT result = script.As(&script_); FAILED(result)) return result;
        for (const PageElement& element : script_->Elements()) {
            ComPtr<IUnknown> image;
            if (element.kind == PageElement::Kind::Image)
                factory->GetScriptImage(0, _bstr_t(Wide(element.text).c_str()), &image);
            // An image that is missing leaves its place empty.
            ComPtr<IPicture> picture;
            if (image) image.As(&picture);
            pictures_.push_back(picture);
        }
        return S_OK;
    }

    void STDMETHODCALLTYPE Draw(HDC device) override {
        auto picture = pictures_.begin();
        for (const PageElement& element : script_->Elements()) {
            if (element.kind == PageElement::Kind::Text) DrawWords(device, element);
            if (*picture) DrawPicture(device, picture->Get(), element.x, element.y);
            ++picture;
        }
    }

 private:
    ComPtr<IPageScript> script_;
    /// One for each element; null for texts.
    std::vector<ComPtr<IPicture>> pictures_;
};

class UserInterface final : public ComObject<IKivUserInterface> {
 public:
    STDMETHODIMP CreatePage(IKivPageOwner*, IKivPageFactory* factory, LONG index,
                            IUnknown** page) override {
        ComPtr<Page> created;
        created.Attach(new Page);
        const HRESULT result = created->Load(factory, index);
        return FAILED(result) ? result : created->QueryInterface(IID_PPV_ARGS(page));
    }
};

struct Options {
    LONG page = -1;
    int seconds = 0;
};

Options ReadOptions(int count, char** arguments) {
    Options options;
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string name = arguments[i];
        if (name == "--page") options.page = std::atoi(arguments[i + 1]);
        if (name == "--seconds") options.seconds = std::atoi(arguments[i + 1]);
    }
    if (options.page < 0 && options.seconds == 0) options.seconds = 2;
    return options;
}

/// The window with one of the factory's pages; it ends the message loop when it is closed.
class Viewer {
 public:
    Viewer(IKivPageFactory* factory, const Options& options)
        : factory_(factory), current_(options.page < 0 ? 0 : options.page), options_(options) {}

    bool Open() {
        WNDCLASSA windowClass = {};
        windowClass.lpfnWndProc = Dispatch;
        windowClass.lpszClassName = "Skin viewer";
        windowClass.hInstance = ::GetModuleHandleA(nullptr);
        windowClass.hCursor = ::LoadCursor(nullptr, IDC_ARROW);
        ::RegisterClassA(&windowClass);
        RECT frame = {0, 0, kPageSize.cx, kPageSize.cy};
        ::AdjustWindowRect(&frame, WS_OVERLAPPEDWINDOW, FALSE);
        HWND window = ::CreateWindowA("Skin viewer", "Vidmoor", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                      0, frame.right - frame.left, frame.bottom - frame.top,
                                      nullptr, nullptr, windowClass.hInstance, this);
        if (!window) return false;
        if (options_.seconds > 0)
            ::SetTimer(window, kTimer, static_cast<UINT>(options_.seconds) * 1000, nullptr);
        return true;
    }

 private:
    static LRESULT CALLBACK Dispatch(HWND window, UINT message, WPARAM word, LPARAM argument) {
        if (message == WM_NCCREATE)
            ::SetWindowLongPtrA(window, GWLP_USERDATA,
                                reinterpret_cast<LONG_PTR>(
                                    reinterpret_cast<CREATESTRUCTA*>(argument)->lpCreateParams));
        auto* viewer = reinterpret_cast<Viewer*>(::GetWindowLongPtrA(window, GWLP_USERDATA));
        if (viewer && viewer->Handle(window, message)) return 0;
        return ::DefWindowProcA(window, message, word, argument);
    }

    bool Handle(HWND window, UINT message) {
        switch (message) {
            case WM_PAINT:
                Paint(window);
                return true;
            case WM_TIMER:
                ShowNext(window);
                return true;
            case WM_DESTROY:
                ::PostQuitMessage(0);
                return true;
            default:
                return false;
        }
    }

    void Paint(HWND window) {
        PAINTSTRUCT paint;
        HDC device = ::BeginPaint(window, &paint);
        ComPtr<IUnknown> object;
        ComPtr<IViewerPage> page;
        factory_->GetPage(current_, &object);
        if (object && SUCCEEDED(object.As(&page))) page->Draw(device);
        ::EndPaint(window, &paint);
    }

    void ShowNext(HWND window) {
        LONG count = 0;
        factory_->GetPageCount(&count);
        if (options_.page >= 0 || ++current_ >= count)
            ::DestroyWindow(window);
        else
            ::InvalidateRect(window, nullptr, FALSE);
    }

    IKivPageFactory* factory_;
    LONG current_;
    Options options_;
};

std::string OwnFolder() {
    char path[MAX_PATH];
    const std::string file(path, ::GetModuleFileNameA(nullptr, path, sizeof path));
    return file.substr(0, file.rfind('\\') + 1);
}

int Show(const Options& options) {
    if (options.page >= static_cast<LONG>(std::size(kPages))) {
        std::printf("there are only %u pages\n", static_cast<unsigned>(std::size(kPages)));
        return EXIT_FAILURE;
    }
    const GraphicFactoryRegistration registration;
    // What the application's set-up does.
    KB_SetSkinDirectoryA(OwnFolder() + "data\\skin");

    ComPtr<IKivPageFactory> factory;
    if (!KB_CreateKivPageFactory(&factory)) return EXIT_FAILURE;
    for (const wchar_t* page : kPages) factory->AddPage(_bstr_t(page), nullptr);

    ComPtr<UserInterface> userInterface;
    userInterface.Attach(new UserInterface);
    const HRESULT result = factory->CreatePage(-1, userInterface.Get(), nullptr, nullptr);
    if (FAILED(result)) std::printf("not all pages could be created: %08lX\n", result);

    Viewer viewer(factory.Get(), options);
    if (!viewer.Open()) {
        std::printf("the window could not be opened: is there a display?\n");
        return EXIT_FAILURE;
    }
    for (MSG message; ::GetMessageA(&message, nullptr, 0, 0) > 0;) ::DispatchMessageA(&message);
    return SUCCEEDED(result) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int count, char** arguments) {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const int code = Show(ReadOptions(count, arguments));
    ::CoUninitialize();
    return code;
}
