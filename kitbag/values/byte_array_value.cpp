#include <kitbag/registry/stored_values.h>
#include <kitbag/values/byte_array_value.h>
#include <kitbag/values/scalar_bodies.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

namespace kitbag {

namespace {

using Bytes = std::vector<unsigned char>;

/// So often a value is read at most: another process may make it longer after its size was asked.
constexpr int kReads = 5;

unsigned char* DataOf(const Bytes& bytes) {
    return bytes.empty() ? nullptr : const_cast<unsigned char*>(bytes.data());
}

}  // namespace

bool Stored<Bytes>::Read(const char* section, const char* name, Bytes& datum) {
    unsigned long size = 0;
    if (!KB_GetDataSizeA(section, name, &size)) return false;
    for (int reads = kReads; reads > 0; --reads) {
        datum.assign(size, 0);
        if (size == 0 || KB_GetDataA(section, name, size, datum.data(), nullptr)) break;
        if (!KB_GetDataSizeA(section, name, &size)) break;
    }
    return true;
}
void Stored<Bytes>::Write(const char* section, const char* name, const Bytes& datum) {
    KB_SetDataA(section, name, static_cast<DWORD>(datum.size()), datum.data());
}

template class ScalarValue<ByteArrayValue, Bytes>;

}  // namespace kitbag

bool ByteArrayValue::operator==(const ByteArrayValue& other) const {
    return Initialised() == other.Initialised();
}
bool ByteArrayValue::operator!=(const ByteArrayValue& other) const { return !(*this == other); }

unsigned char* ByteArrayValue::GetValue() const { return kitbag::DataOf(Initialised()); }

unsigned char* ByteArrayValue::GetValue(unsigned long* size) const {
    *size = GetValueSize();
    // Not by way of GetValue: an uncached value would be read again, with a size of its own.
    return kitbag::DataOf(datum_);
}

bool ByteArrayValue::GetValue(unsigned char* buffer, unsigned long* size) const {
    const unsigned long available = std::exchange(*size, GetValueSize());
    if (available < *size) return false;
    std::ranges::copy(datum_, buffer);
    return true;
}

unsigned long ByteArrayValue::GetValueSize() const {
    return static_cast<unsigned long>(Initialised().size());
}

unsigned char* ByteArrayValue::SetValueSize(unsigned long size) {
    datum_.resize(size);
    return kitbag::DataOf(datum_);
}

void ByteArrayValue::SetValue() { Commit(); }

unsigned char* ByteArrayValue::GetDefaultValue(unsigned long& size) const {
    size = static_cast<unsigned long>(default_.size());
    return kitbag::DataOf(default_);
}

void ByteArrayValue::LoadRegistry() {
    if (ReadStored(datum_)) MarkInitialised();
}

TWinString<char> ByteArrayValue::SaveStringDataOnly() const {
    return std::string(GetValueSize(), '\7');
}
