// A file as a stream that the library reads.
#pragma once

#include <objidl.h>

#include <functional>

#include "file.h"

namespace kitbag::tool {

/// For reading from the start to the end, on the stack: references do not matter. Tells after each
/// piece how many bytes were read.
class FileStream final : public IStream {
 public:
    FileStream(const File& file, std::function<void(ULONGLONG)> onProgress)
        : file_(file), onProgress_(std::move(onProgress)) {}

    /// Zero unless the file could not be read to its end.
    DWORD Error() const { return error_; }
    ULONGLONG BytesRead() const { return position_; }

    STDMETHODIMP Read(void* buffer, ULONG size, ULONG* read) override;
    /// Tells where the reading is; moves nothing.
    STDMETHODIMP Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER* position) override;

    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP Write(const void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    STDMETHODIMP SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    STDMETHODIMP CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Commit(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Revert() override { return E_NOTIMPL; }
    STDMETHODIMP LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Clone(IStream**) override { return E_NOTIMPL; }

 private:
    const File& file_;
    const std::function<void(ULONGLONG)> onProgress_;
    ULONGLONG position_ = 0;
    DWORD error_ = ERROR_SUCCESS;
};

}  // namespace kitbag::tool
