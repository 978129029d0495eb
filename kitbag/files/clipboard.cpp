#include <kitbag/files/clipboard.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/owned.h>
#include <kitbag/frame/text_conversion.h>
#include <oleauto.h>

#include <cstring>
#include <string>

namespace kitbag {

namespace {

/// The clipboard, opened without an owner window and closed in the end.
class Clipboard {
 public:
    Clipboard() : isOpen_(::OpenClipboard(nullptr)) {}
    ~Clipboard() {
        if (isOpen_) ::CloseClipboard();
    }
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;

    explicit operator bool() const { return isOpen_; }

 private:
    bool isOpen_;
};

struct GlobalBlockPolicy {
    using Handle = HGLOBAL;
    static Handle None() { return nullptr; }
    static void Close(HGLOBAL block) { ::GlobalFree(block); }
};
using GlobalBlock = Owned<GlobalBlockPolicy>;

/// The content of a global block, locked in its place while this lives.
class LockedBlock {
 public:
    explicit LockedBlock(HGLOBAL block)
        : block_(block), content_(block ? static_cast<char*>(::GlobalLock(block)) : nullptr) {}
    ~LockedBlock() {
        if (content_) ::GlobalUnlock(block_);
    }
    LockedBlock(const LockedBlock&) = delete;
    LockedBlock& operator=(const LockedBlock&) = delete;

    char* Content() const { return content_; }
    std::size_t Size() const { return ::GlobalSize(block_); }

 private:
    HGLOBAL block_;
    char* content_;
};

GlobalBlock BlockOf(const std::string& text) {
    GlobalBlock block(::GlobalAlloc(GMEM_MOVEABLE, text.size() + 1));
    const LockedBlock locked(block.Get());
    if (!locked.Content()) return {};
    std::memcpy(locked.Content(), text.c_str(), text.size() + 1);
    return block;
}

bool CopyText(const wchar_t* text) {
    if (!text) return false;
    const Clipboard clipboard;
    if (!clipboard) return false;
    ::EmptyClipboard();
    GlobalBlock block = BlockOf(ToNarrow(text));
    if (!block || !::SetClipboardData(CF_TEXT, block.Get())) return false;
    block.Release();  // the clipboard's now
    return true;
}

bool PasteText(BSTR* text) {
    if (!text || !::IsClipboardFormatAvailable(CF_TEXT)) return false;
    const Clipboard clipboard;
    if (!clipboard) return false;
    const LockedBlock block(::GetClipboardData(CF_TEXT));
    if (!block.Content()) return false;
    // Other programs' blocks need not hold a terminator.
    const std::string narrow(block.Content(), ::strnlen(block.Content(), block.Size()));
    const std::wstring wide = ToWide(narrow.c_str());
    BSTR created = ::SysAllocStringLen(wide.c_str(), static_cast<UINT>(wide.size()));
    if (!created) return false;
    *text = created;
    return true;
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_CopyText(const wchar_t* text) {
    return Guarded([&] { return kitbag::CopyText(text); });
}

bool KB_PasteText(BSTR* text) {
    return Guarded([&] { return kitbag::PasteText(text); });
}
