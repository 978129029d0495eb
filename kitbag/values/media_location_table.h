// MediaLocationValueTable: the folders that the application reads media from and writes them to.
//
//     MediaLocationValueTable folders(MediaLocationValueTable::VideoRead);
//     folders.AddEntry(new MediaLocationValueTableEntry("D:\\Films\\", true));
//     folders.Save();
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/boolean_value.h>
#include <kitbag/values/filename_value.h>
#include <kitbag/values/value_table.h>

/// One folder. The directory identifies it.
class KITBAG_API MediaLocationValueTableEntry : public ValueTableEntry {
 public:
    MediaLocationValueTableEntry();
    /// A final "\" or "\." of the directory is dropped, except where it is a drive's root.
    MediaLocationValueTableEntry(const TWinString<char>& directory, bool allDrives, bool recurse);
    /// A directory that begins with a drive or is a UNC name is one folder, any other is looked for
    /// on all drives.
    MediaLocationValueTableEntry(const TWinString<char>& directory, bool recurse);
    MediaLocationValueTableEntry(const MediaLocationValueTableEntry& other);

    MediaLocationValueTableEntry& operator=(const MediaLocationValueTableEntry& other) = default;
    MediaLocationValueTableEntry& operator=(const ValueTableEntry& other) override;
    using ValueTableEntry::operator=;

    Value* Copy() const override;
    void DeclareValues() override;
    void Accept(CValueVisitor& visitor) const override;

    /// An absolute path, or a folder's name relative to the root of a drive.
    FilenameValue Directory;
    /// The folder is looked for at the root of every drive.
    BooleanValue AllDrives;
    /// Sub-folders are included.
    BooleanValue Recurse;
};

/// The folders of one kind of media. Accepts visitors as a ValueTable.
class KITBAG_API MediaLocationValueTable : public ValueTable {
 public:
    enum MediaType : long {
        VideoRead,
        VideoWrite,
        AudioRead,
        AudioWrite,
        PhotoRead,
        PhotoWrite,
        DvdRead,
        DvdWrite,
    };

    /// Loads at once; where no folder is stored the table holds the default ones, which are not
    /// stored until Save. A type that is none of the eight has no place and no defaults. A derived
    /// table with rows of classes of its own empties itself and loads again in its own constructor.
    explicit MediaLocationValueTable(MediaType type);
    MediaLocationValueTable(const MediaLocationValueTable& other) = default;
    /// Takes the folders; section, value name and media type remain this table's own.
    MediaLocationValueTable& operator=(const MediaLocationValueTable& other);
    using ValueTable::operator=;

    Value* Copy() const override;
    ValueTableEntry* EntryFactory(const TWinString<char>& className) const override;
    /// Writes the table's whole tree anew, and the media type beside the rows.
    void Save() const;
    /// Appends the default folders of the media type; those that are there stay.
    void SetDefaultValue();

 private:
    // Written, and copied with the table; only its place in the layout matters.
    bool loaded_ = false;
    const char* section_ = nullptr;
    /// Replaced by the stored type on loading, which does not move the table.
    MediaType mediaType_;
};
