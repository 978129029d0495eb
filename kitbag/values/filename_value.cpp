#include <kitbag/frame/owned.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/values/filename_value.h>
#include <windows.h>

#include <string>

namespace {

constexpr char kSeparators[] = "\\/";
constexpr char kFilter[] = "/filter";
constexpr char kIsDirectory[] = "/Is directory";
constexpr char kMustExist[] = "/Must exist";

}  // namespace

FilenameValue::FilenameValue(const TWinString<char>& path) { FilenameValue::SetValue(path); }

TWinString<char> FilenameValue::GetFilename() const {
    const std::string& path = Initialised();
    return path.substr(path.find_last_of(kSeparators) + 1);
}

TWinString<char> FilenameValue::GetFilenameNoExtension() const {
    const std::string& path = Initialised();
    // Position arithmetic is modulo its size: no separator gives a start of 0; no dot, or one
    // before the separator, gives a length past the end.
    const std::size_t start = path.find_last_of(kSeparators) + 1;
    return path.substr(start, path.rfind('.') - start);
}

TWinString<char> FilenameValue::GetDirectory() const {
    const std::string& path = Initialised();
    if (isDirectory_) return path;
    const std::size_t separator = path.find_last_of(kSeparators);
    return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

TWinString<char> FilenameValue::GetExtension() const {
    const std::string& path = Initialised();
    const std::size_t dot = path.rfind('.');
    return dot == std::string::npos ? std::string() : path.substr(dot);
}

bool FilenameValue::GetFileSize(unsigned long long& size) const {
    size = 0;
    const kitbag::FileHandle file(::CreateFileA(datum_.c_str(), GENERIC_READ,
                                                FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                OPEN_EXISTING, 0, nullptr));
    if (!file) return false;
    DWORD high = 0;
    const DWORD low = ::GetFileSize(file.Get(), &high);
    size = static_cast<unsigned long long>(high) << 32 | low;
    return true;
}

Value* FilenameValue::Copy() const { return new FilenameValue(*this); }

void FilenameValue::SaveRegistry() const {
    TStringValue::SaveRegistry();
    const char* section = GetRegistrySection().c_str();
    const TWinString<char> name = GetValueName();
    KB_SetTStringA(section, (name + kFilter).c_str(), filterString_);
    KB_SetBoolA(section, (name + kIsDirectory).c_str(), isDirectory_);
    KB_SetBoolA(section, (name + kMustExist).c_str(), mustExist_);
}

void FilenameValue::LoadRegistry() {
    TStringValue::LoadRegistry();
    const char* section = GetRegistrySection().c_str();
    const TWinString<char> name = GetValueName();
    KB_GetTStringA(section, (name + kFilter).c_str(), filterString_);
    KB_GetBoolA(section, (name + kIsDirectory).c_str(), &isDirectory_);
    KB_GetBoolA(section, (name + kMustExist).c_str(), &mustExist_);
}

void FilenameValue::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }

bool FilenameValue::IsExplicitDirectory() const {
    const TWinString<char> directory = GetDirectory();
    const std::size_t separator = directory.find_first_of(kSeparators);
    return separator == 0 || (separator == 2 && directory[1] == ':');
}

bool FilenameValue::IsRelativeDirectory() const { return !IsExplicitDirectory(); }

bool FilenameValue::IsWindowsMedia() const {
    const std::string extension = GetExtension();
    return extension == ".asf" || extension == ".wmv" || extension == ".wma";
}
bool FilenameValue::IsAVI() const { return GetExtension() == ".avi"; }
bool FilenameValue::IsSSF() const { return GetExtension() == ".ssf"; }
bool FilenameValue::IsMP3() const { return GetExtension() == ".mp3"; }
bool FilenameValue::IsWMA() const { return GetExtension() == ".wma"; }
