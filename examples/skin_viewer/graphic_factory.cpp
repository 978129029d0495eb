#include "graphic_factory.h"

#include <kitbag/pages.h>
#include <olectl.h>
#include <wrl/client.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string_view>

#include "com_object.h"

namespace {

using Microsoft::WRL::ComPtr;

bool ReadElement(const std::string& line, PageElement& element) {
    std::istringstream words(line);
    std::string kind;
    words >> kind >> element.x >> element.y;
    element.kind = kind == "text" ? PageElement::Kind::Text : PageElement::Kind::Image;
    if (element.kind == PageElement::Kind::Text) {
        unsigned rgb = 0;
        words >> element.height >> std::hex >> rgb;
        element.color = RGB(rgb >> 16 & 0xff, rgb >> 8 & 0xff, rgb & 0xff);
    }
    std::getline(words >> std::ws, element.text);
    return words && (kind == "text" || kind == "image");
}

void WriteElement(std::ostream& file, const PageElement& element) {
    const bool isText = element.kind == PageElement::Kind::Text;
    file << (isText ? "text " : "image ") << element.x << ' ' << element.y << ' ';
    if (isText) {
        char rgb[7];
        std::snprintf(rgb, sizeof rgb, "%02x%02x%02x", GetRValue(element.color),
                      GetGValue(element.color), GetBValue(element.color));
        file << element.height << ' ' << rgb << ' ';
    }
    file << element.text << '\n';
}

/// The skin's texts and what they are in a language. Languages without the file have none.
std::map<std::string, std::string> ReadWords(const std::filesystem::path& language) {
    constexpr std::string_view kIs = " = ";
    std::map<std::string, std::string> words;
    std::ifstream file(language / "words");
    for (std::string line; std::getline(file, line);)
        if (const std::size_t end = line.find(kIs); end != std::string::npos)
            words.emplace(line.substr(0, end), line.substr(end + kIs.size()));
    return words;
}

class PageScript final : public ComObject<IPageScript> {
 public:
    /// False for a file that cannot be read or has a line that is no element.
    bool Load(const std::filesystem::path& path, const std::filesystem::path& language) {
        std::ifstream file(path);
        if (!file) return false;
        for (std::string line; std::getline(file, line);) {
            if (line.empty() || line.starts_with('#')) continue;
            if (!ReadElement(line, elements_.emplace_back())) return false;
        }
        const auto words = ReadWords(language);
        for (PageElement& element : elements_) {
            const auto known = words.find(element.text);
            element.shown = known == words.end() ? element.text : known->second;
        }
        return true;
    }

    const std::vector<PageElement>& STDMETHODCALLTYPE Elements() override { return elements_; }

 private:
    std::vector<PageElement> elements_;
};

class GraphicFactory final : public ComObject<IKivGraphicFactory> {
 public:
    STDMETHODIMP LoadScript(BSTR file, BSTR, BSTR language, BSTR, IUnknown** script) override {
        ComPtr<PageScript> loaded;
        loaded.Attach(new PageScript);
        const bool read = loaded->Load(file, language ? language : L"");
        std::printf("script %ls%s\n", file, read ? "" : " cannot be read");
        return read ? loaded->QueryInterface(IID_PPV_ARGS(script)) : E_FAIL;
    }

    STDMETHODIMP SaveScript(BSTR path, IUnknown* script) override {
        ComPtr<IPageScript> page;
        if (FAILED(script->QueryInterface(IID_PPV_ARGS(&page)))) return E_INVALIDARG;
        std::ofstream file{std::filesystem::path(path)};
        for (const PageElement& element : page->Elements()) WriteElement(file, element);
        return file ? S_OK : E_FAIL;
    }

    STDMETHODIMP LoadImageFile(BSTR path, IUnknown** image) override {
        const HRESULT result = ::OleLoadPicturePath(path, nullptr, 0, 0, IID_IPicture,
                                                    reinterpret_cast<void**>(image));
        if (SUCCEEDED(result)) std::printf("  image %ls\n", path);
        return result;
    }
};

class GraphicFactoryClass final : public ComObject<IClassFactory> {
 public:
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** object) override {
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        ComPtr<GraphicFactory> factory;
        factory.Attach(new GraphicFactory);
        return factory->QueryInterface(id, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }
};

}  // namespace

GraphicFactoryRegistration::GraphicFactoryRegistration() {
    ComPtr<GraphicFactoryClass> classObject;
    classObject.Attach(new GraphicFactoryClass);
    ::CoRegisterClassObject(CLSID_KivGraphicFactory, classObject.Get(), CLSCTX_INPROC_SERVER,
                            REGCLS_MULTIPLEUSE, &cookie_);
}

GraphicFactoryRegistration::~GraphicFactoryRegistration() { ::CoRevokeClassObject(cookie_); }
