#include <kitbag/frame/text_steps.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/values/element_trees.h>
#include <kitbag/values/media_location_table.h>
#include <shlobj.h>
#include <windows.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr char kMediaType[] = "Media Type";
constexpr int kNoUserFolder = -1;

struct MediaKind {
    const char* section;
    const char* valueName;
    /// Looked for on all drives.
    const char* defaultFolder;
    int userFolder;
};

/// In the order of MediaLocationValueTable::MediaType.
constexpr MediaKind kMediaKinds[] = {
    {"Media Locations\\Video", "Read Directories", "Video", kNoUserFolder},
    {"Media Locations\\Video", "Write Directories", "Video", kNoUserFolder},
    {"Media Locations\\Audio", "Read Directories", "Music", CSIDL_MYMUSIC},
    {"Media Locations\\Audio", "Write Directories", "Music", kNoUserFolder},
    {"Media Locations\\Photo", "Read Directories", "Photos", CSIDL_MYPICTURES},
    {"Media Locations\\Photo", "Write Directories", "Photos", kNoUserFolder},
    {"Media Locations\\DVD", "Read Directories", "Movies", kNoUserFolder},
    {"Media Locations\\DVD", "Write Directories", "Movies", kNoUserFolder},
};

/// Null for a number, such as a stored one, that is no media type.
const MediaKind* FindKind(long type) {
    const auto index = static_cast<unsigned long>(type);
    return index < std::size(kMediaKinds) ? &kMediaKinds[index] : nullptr;
}

/// Empty where the system knows none.
std::string UserFolder(int id) {
    char path[MAX_PATH] = "";
    return ::SHGetSpecialFolderPathA(nullptr, path, id, FALSE) == TRUE ? path : "";
}

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

bool IsAbsolute(const std::string& directory) {
    return directory.starts_with("\\\\") ||
           (directory.size() >= 2 && IsLetter(directory[0]) && directory[1] == ':');
}

/// The length of a drive's root, "C:\".
constexpr std::size_t kRootLength = 3;

/// Without a final "\" or "\.".
std::string Normalised(const std::string& directory) {
    std::string_view path = directory;
    if (path.ends_with('.')) path.remove_suffix(1);
    if (path.size() < kRootLength || !kitbag::EndsWithBackslash(path)) return directory;
    return std::string(path.substr(0, std::max(path.size() - 1, kRootLength)));
}

}  // namespace

MediaLocationValueTableEntry::MediaLocationValueTableEntry() {
    MediaLocationValueTableEntry::DeclareValues();
}

MediaLocationValueTableEntry::MediaLocationValueTableEntry(const TWinString<char>& directory,
                                                           bool allDrives, bool recurse)
    : MediaLocationValueTableEntry() {
    Directory.SetIsDirectory(true);
    Directory.SetValue(Normalised(directory));
    AllDrives.SetValue(allDrives);
    Recurse.SetValue(recurse);
}

MediaLocationValueTableEntry::MediaLocationValueTableEntry(const TWinString<char>& directory,
                                                           bool recurse)
    : MediaLocationValueTableEntry(directory, !IsAbsolute(directory), recurse) {}

MediaLocationValueTableEntry::MediaLocationValueTableEntry(
    const MediaLocationValueTableEntry& other)
    : ValueTableEntry(other),
      Directory(other.Directory),
      AllDrives(other.AllDrives),
      Recurse(other.Recurse) {
    MediaLocationValueTableEntry::DeclareValues();
}

MediaLocationValueTableEntry& MediaLocationValueTableEntry::operator=(
    const ValueTableEntry& other) {
    return kitbag::AssignRow(*this, other);
}

Value* MediaLocationValueTableEntry::Copy() const {
    return new MediaLocationValueTableEntry(*this);
}

void MediaLocationValueTableEntry::DeclareValues() {
    DeclareValue(Directory, "Directory", true);
    DeclareValue(AllDrives, "All drives", false);
    DeclareValue(Recurse, "Recurse", false);
}

void MediaLocationValueTableEntry::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }

MediaLocationValueTable::MediaLocationValueTable(MediaType type) : mediaType_(type) {
    const MediaKind* kind = FindKind(type);
    if (!kind) return;
    section_ = kind->section;
    ValueTable::SetValueName(kind->valueName);
    ValueTable::LoadRegistry(section_);

    int stored = type;
    if (IsEmpty())
        SetDefaultValue();
    else if (KB_GetIntA(kitbag::TreeKey(section_, GetValueName()).c_str(), kMediaType, &stored))
        mediaType_ = static_cast<MediaType>(stored);
    loaded_ = true;
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the one that it hands on to asks
MediaLocationValueTable& MediaLocationValueTable::operator=(const MediaLocationValueTable& other) {
    // Before the rows, in one of which the other may lie.
    loaded_ = other.loaded_;
    ValueTable::operator=(other);
    return *this;
}

Value* MediaLocationValueTable::Copy() const { return new MediaLocationValueTable(*this); }

ValueTableEntry* MediaLocationValueTable::EntryFactory(const TWinString<char>& className) const {
    return className == "class MediaLocationValueTableEntry" ? new MediaLocationValueTableEntry
                                                             : nullptr;
}

void MediaLocationValueTable::Save() const {
    if (!section_) return;
    SaveRegistry(section_);
    KB_SetIntA(kitbag::TreeKey(section_, GetValueName()).c_str(), kMediaType, mediaType_);
}

void MediaLocationValueTable::SetDefaultValue() {
    const MediaKind* kind = FindKind(mediaType_);
    if (!kind) return;
    const auto add = [this](const TWinString<char>& directory, bool allDrives) {
        kitbag::Adopt(*this,
                      std::make_unique<MediaLocationValueTableEntry>(directory, allDrives, true));
    };
    add(kind->defaultFolder, true);
    if (kind->userFolder == kNoUserFolder) return;
    const std::string folder = UserFolder(kind->userFolder);
    if (!folder.empty()) add(folder, false);
}
