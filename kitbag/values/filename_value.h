// FilenameValue: the path of a file or directory.
//
//     FilenameValue skin("Screen", "Skin", true);
//     skin.SetDefaultValue("C:\\Skins\\blue.skn");
//     Show(skin.GetFilenameNoExtension());  // "blue"
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/text_values.h>

/// A value named N is stored with three more beside it: "N/filter" (text), "N/Is directory" and
/// "N/Must exist" (truth values). Where one of the three is missing, a load leaves it as it is. A
/// change of the path writes all four: one that was never read overwrites stored attributes with
/// its own.
///
/// Both kinds of slash separate the parts of a path.
class KITBAG_API FilenameValue : public TStringValue {
 public:
    using TStringValue::TStringValue;
    FilenameValue() = default;
    FilenameValue(const TWinString<char>& path);

    virtual FilenameValue& operator=(const FilenameValue& other) = default;
    using TStringValue::operator=;
    /// The part after the last separator.
    virtual TWinString<char> GetFilename() const;
    /// The same without what follows the last dot. A dot before the last separator leaves the whole
    /// file name.
    virtual TWinString<char> GetFilenameNoExtension() const;
    /// The whole path of a directory; else the part before the last separator, which may be empty.
    virtual TWinString<char> GetDirectory() const;
    /// From the last dot of the path on, the dot included; empty where there is none.
    virtual TWinString<char> GetExtension() const;
    /// The size of the file in bytes; false, and 0, where it cannot be opened. Looks at the path
    /// that the value holds already: nothing is loaded for it.
    virtual bool GetFileSize(unsigned long long& size) const;

    Value* Copy() const override;
    using TStringValue::LoadRegistry;
    using TStringValue::SaveRegistry;
    void SaveRegistry() const override;
    void LoadRegistry() override;
    void Accept(CValueVisitor& visitor) const override;

    bool IsDirectory() const { return isDirectory_; }
    void SetIsDirectory(bool isDirectory) { isDirectory_ = isDirectory; }
    bool MustExist() const { return mustExist_; }
    void SetMustExist(bool mustExist) { mustExist_ = mustExist; }
    /// A filter for file dialogs.
    const TWinString<char>& GetFilterString() const { return filterString_; }
    void SetFilterString(const TWinString<char>& filter) { filterString_ = filter; }

    /// True when GetDirectory begins with a separator, or with a drive and a separator.
    bool IsExplicitDirectory() const;
    bool IsRelativeDirectory() const;

    // By the extension in lower case only, as the application writes it: components leave files
    // with other extensions alone.
    bool IsWindowsMedia() const;
    bool IsAVI() const;
    bool IsSSF() const;
    bool IsMP3() const;
    bool IsWMA() const;

 private:
    bool isDirectory_ = false;
    bool mustExist_ = false;
    TWinString<char> filterString_;
};
