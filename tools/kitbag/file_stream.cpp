#include "file_stream.h"

namespace kitbag::tool {

STDMETHODIMP FileStream::Read(void* buffer, ULONG size, ULONG* read) {
    DWORD bytes = 0;
    if (!::ReadFile(file_.Get(), buffer, size, &bytes, nullptr)) {
        error_ = ::GetLastError();
        return E_FAIL;
    }
    position_ += bytes;
    if (read) *read = bytes;
    onProgress_(position_);
    return S_OK;
}

STDMETHODIMP FileStream::Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER* position) {
    if (position) position->QuadPart = position_;
    return S_OK;
}

}  // namespace kitbag::tool
