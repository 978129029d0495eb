#include <kitbag/registry/tree.h>
#include <kitbag/values/text_values.h>
#include <kitbag/values/value_list.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

#include <cstring>

namespace {

using namespace kitbag::test;

template <class Ch>
struct SettingsTree : testing::Test {
    using ToBuffer = bool (*)(const Ch*, DWORD, Ch*, DWORD*);
    using ToObject = bool (*)(const Ch*, DWORD, Text<Ch>&);

    /// What is in the buffer up to the terminator, and behind it '#'.
    static void ExpectInBuffer(const Ch* expected, ToBuffer get, const Ch* section) {
        const Text<Ch> name(expected);
        const auto size = static_cast<DWORD>(name.size());
        std::basic_string<Ch> buffer(300, Ch{'#'});
        DWORD length = size;
        EXPECT_FALSE(get(section, 0, buffer.data(), &length)) << "no room for the terminator";
        EXPECT_EQ(size, length);
        length = size + 1;
        EXPECT_TRUE(get(section, 0, buffer.data(), &length)) << "an exact fit";
        EXPECT_EQ(size, length);
        EXPECT_STREQ(expected, buffer.c_str());
        EXPECT_EQ(Ch{'#'}, buffer[size + 1]) << "written past the room";

        length = 300;
        EXPECT_FALSE(get(section, 0, nullptr, &length));
        EXPECT_FALSE(get(section, 0, buffer.data(), nullptr));
        EXPECT_FALSE(get(section, 1, buffer.data(), &length)) << "past the end";
        EXPECT_FALSE(get("Missing"_t, 0, buffer.data(), &length));
        EXPECT_EQ(300u, length);
        length = 0x80000000;
        EXPECT_FALSE(get(section, 0, buffer.data(), &length)) << "more than there is memory";
    }
    static void ExpectInObject(const Ch* expected, ToObject get, const Ch* section) {
        Text<Ch> object("before"_t);
        EXPECT_FALSE(get(section, 1, object)) << "past the end";
        EXPECT_FALSE(get("Missing"_t, 0, object));
        EXPECT_EQ("before"_t, object);
        EXPECT_TRUE(get(section, 0, object));
        EXPECT_EQ(expected, object);
        if (!section) return;
        object = section;
        EXPECT_TRUE(get(object.c_str(), 0, object)) << "the section lies in the object";
        EXPECT_EQ(expected, object);
    }
};
TYPED_TEST_SUITE(SettingsTree, TextForms, TextFormName);

// The 8-bit form gives a key's path below the root, the 16-bit form its name alone.
TYPED_TEST(SettingsTree, NamesKeys) {
    using Kb = Exports<TypeParam>;
    RawKey("S\\Key");
    const struct {
        const TypeParam *section, *name;
    } rows[] = {{"S"_t, Pick<TypeParam>("S\\Key", L"Key")},
                {""_t, Pick<TypeParam>("\\S", L"S")},
                {nullptr, Pick<TypeParam>("\\S", L"S")}};
    for (const auto& [section, name] : rows) {
        SCOPED_TRACE(Called("EnumKey", section, 0));
        this->ExpectInBuffer(name, Kb::EnumKey, section);
        this->ExpectInObject(name, Kb::EnumKeyTString, section);
    }
}

TYPED_TEST(SettingsTree, NamesValues) {
    using Kb = Exports<TypeParam>;
    RawKey("S").Set(L"Value", 1u);
    RawKey().Set(L"", 1u);
    this->ExpectInBuffer("Value"_t, Kb::EnumValue, "S"_t);
    this->ExpectInObject("Value"_t, Kb::EnumValueTString, "S"_t);
    this->ExpectInBuffer(""_t, Kb::EnumValue, nullptr);
    this->ExpectInObject(""_t, Kb::EnumValueTString, nullptr);
}

TYPED_TEST(SettingsTree, NamesUpTo254CharactersInObjects) {
    using Kb = Exports<TypeParam>;
    for (const std::size_t length : {254u, 255u}) {
        SCOPED_TRACE(length);
        const Text<TypeParam> name(length, TypeParam{'n'}),
            path = Pick<TypeParam>("S\\", L"") + name;
        RawKey("S\\" + std::string(length, 'n'));
        RawKey("S").Set(std::wstring(length, L'n').c_str(), 1u);
        const bool fits = length == 254;
        Text<TypeParam> key, value;
        EXPECT_EQ(fits, Kb::EnumKeyTString("S"_t, 0, key));
        EXPECT_EQ(fits ? path : Text<TypeParam>(), key);
        EXPECT_EQ(fits, Kb::EnumValueTString("S"_t, 0, value));
        EXPECT_EQ(fits ? name : Text<TypeParam>(), value);
        Kb::DeleteSection("S"_t);
    }
}

int enumerations = 0;

// "S\" alone would fill the room.
TEST(SettingsTreeOf8Bits, AsksForNoKeyWhereItsSectionDoesNotFit) {
    RawKey("S\\K");
    const ImportPatch count(
        "RegEnumKeyExA", +[](HKEY key, DWORD index, char* name, DWORD* length, DWORD* reserved,
                             char* kind, DWORD* kindLength, FILETIME* time) WINAPI {
            ++enumerations;
            return ::RegEnumKeyExA(key, index, name, length, reserved, kind, kindLength, time);
        });
    for (const DWORD room : {0u, 1u, 2u, 3u, 4u}) {
        SCOPED_TRACE(room);
        char buffer[] = "before";
        DWORD length = room;
        enumerations = 0;
        EXPECT_EQ(room == 4, KB_EnumKeyA("S", 0, buffer, &length));
        EXPECT_EQ(room > 2, enumerations == 1);
        EXPECT_EQ(room == 4 ? 3 : room, length);
        EXPECT_STREQ(room == 4 ? "S\\K" : "before", buffer);
    }
}

TYPED_TEST(SettingsTree, CountsKeysAndValues) {
    using Kb = Exports<TypeParam>;
    RawKey("S\\One\\Inner");
    RawKey("S\\Two");
    for (const wchar_t* name : {L"A", L"B", L"C"}) RawKey("S").Set(name, 1u);
    EXPECT_EQ(2, Kb::GetKeyCount("S"_t));
    EXPECT_EQ(3, Kb::GetValueCount("S"_t));
    EXPECT_EQ(1, Kb::GetKeyCount(nullptr));
    EXPECT_EQ(0, Kb::GetValueCount(nullptr));
    EXPECT_EQ(0, Kb::GetKeyCount("Missing"_t));
    EXPECT_EQ(0, Kb::GetValueCount("Missing"_t));
    EXPECT_FALSE(RawKey::Exists("Missing"));
    const ImportPatch fail(
        Pick<TypeParam>("RegQueryInfoKeyA", "RegQueryInfoKeyW"),
        +[](HKEY, void*, DWORD*, DWORD*, DWORD* keys, DWORD*, DWORD*, DWORD* values, DWORD*, DWORD*,
            DWORD*, FILETIME*) WINAPI {
            *keys = *values = 7;
            return LSTATUS{ERROR_ACCESS_DENIED};
        });
    EXPECT_EQ(0, Kb::GetKeyCount("S"_t)) << "where the system fails";
    EXPECT_EQ(0, Kb::GetValueCount("S"_t)) << "where the system fails";
}

TYPED_TEST(SettingsTree, DeletesKeysWithEverythingBelow) {
    using Kb = Exports<TypeParam>;
    const struct {
        const char* what;
        bool (*deleteIt)();
        const char* left;
    } rows[] = {
        {"a key", [] { return Kb::DeleteKey("S"_t, "One"_t); }, "S"},
        {"a key below the root", [] { return Kb::DeleteKey(nullptr, "S"_t); }, ""},
        {"a key further below", [] { return Kb::DeleteKey(""_t, "S\\One"_t); }, "S"},
        {"a section", [] { return Kb::DeleteSection("S"_t); }, ""},
        {"a section further below", [] { return Kb::DeleteSection("S\\One\\A"_t); }, "S\\One"},
        // As the enumeration of the root names it.
        {"with a backslash", [] { return Kb::DeleteSection("\\S"_t); }, ""},
        {"with several backslashes", [] { return Kb::DeleteSection("\\\\\\S\\One"_t); }, "S"},
    };
    for (const auto& [what, deleteIt, left] : rows) {
        SCOPED_TRACE(what);
        RawKey("S\\One\\A\\Deep").Set(L"N", 1u);
        RawKey("S\\One\\A\\Deeper\\Still");
        EXPECT_TRUE(deleteIt());
        EXPECT_TRUE(RawKey::Exists(left));
        EXPECT_EQ(0, Kb::GetKeyCount(Text<TypeParam>(left, left + std::strlen(left)).c_str()));
    }
}

TYPED_TEST(SettingsTree, DeletesNothingWithoutAName) {
    using Kb = Exports<TypeParam>;
    RawKey("S\\One");
    RawKey().Set(L"N", 1u);
    EXPECT_FALSE(Kb::DeleteKey("S"_t, ""_t));
    EXPECT_FALSE(Kb::DeleteKey("S"_t, nullptr));
    EXPECT_FALSE(Kb::DeleteKey("S"_t, "Missing"_t));
    EXPECT_FALSE(Kb::DeleteSection("Missing"_t));
    for (const TypeParam* section :
         {static_cast<const TypeParam*>(nullptr), static_cast<const TypeParam*>(""_t),
          static_cast<const TypeParam*>("\\"_t), static_cast<const TypeParam*>("\\\\\\"_t)})
        EXPECT_FALSE(Kb::DeleteSection(section)) << Called("DeleteSection", section);
    EXPECT_TRUE(RawKey::Exists("S\\One"));
    EXPECT_TRUE(RawKey().Has(L"N"));
}

TYPED_TEST(SettingsTree, DeletesValues) {
    using Kb = Exports<TypeParam>;
    RawKey("S").Set(L"N", 1u);
    RawKey("S").Set(L"", 1u);
    EXPECT_TRUE(Kb::DeleteValue("S"_t, "N"_t));
    EXPECT_FALSE(RawKey("S").Has(L"N"));
    EXPECT_FALSE(Kb::DeleteValue("S"_t, "N"_t)) << "the second time";
    EXPECT_TRUE(Kb::DeleteValue("S"_t, nullptr)) << "the key's default value";
    EXPECT_FALSE(RawKey("S").Has(L""));
}

TYPED_TEST(SettingsTree, CreatesTheSectionBeforeADeletion) {
    using Kb = Exports<TypeParam>;
    EXPECT_FALSE(Kb::DeleteSection("Any"_t));
    EXPECT_TRUE(RawKey::Exists()) << "of a section, the root";
    EXPECT_FALSE(Kb::DeleteValue("Of\\A value"_t, "N"_t));
    EXPECT_TRUE(RawKey::Exists("Of\\A value"));
    EXPECT_FALSE(Kb::DeleteKey("Of\\A key"_t, "K"_t));
    EXPECT_TRUE(RawKey::Exists("Of\\A key"));
}

HKEY left;
LSTATUS WINAPI LeaveAKeyAndFail(HKEY, const void*, DWORD, REGSAM, HKEY* key) {
    *key = left;
    return ERROR_ACCESS_DENIED;
}

TYPED_TEST(SettingsTree, ClosesNoKeyThatAFailedOpenLeaves) {
    using Kb = Exports<TypeParam>;
    const RawKey another("Another");
    left = another.Get();
    RawKey("S\\One");
    {
        const ImportPatch fail(Pick<TypeParam>("RegOpenKeyExA", "RegOpenKeyExW"), LeaveAKeyAndFail);
        EXPECT_FALSE(Kb::DeleteKey("S"_t, "One"_t));
        EXPECT_EQ(0, Kb::GetKeyCount("S"_t));
    }
    another.Set(L"Still open", 1u);
    EXPECT_TRUE(RawKey::Exists("S\\One"));
}

TYPED_TEST(SettingsTree, StopsDeletingAtTheFirstFailure) {
    using Kb = Exports<TypeParam>;
    RawKey("S\\One\\A");
    {
        const ImportPatch fail(
            Pick<TypeParam>("RegDeleteKeyA", "RegDeleteKeyW"),
            +[](HKEY, const void*) WINAPI { return LSTATUS{ERROR_ACCESS_DENIED}; });
        EXPECT_FALSE(Kb::DeleteSection("S"_t));
    }
    const ImportPatch fail(
        Pick<TypeParam>("RegEnumKeyExA", "RegEnumKeyExW"),
        +[](HKEY, DWORD, void*, DWORD*, DWORD*, void*, DWORD*, FILETIME*)
             WINAPI { return LSTATUS{ERROR_ACCESS_DENIED}; });
    EXPECT_FALSE(Kb::DeleteSection("S\\One\\A"_t)) << "it may have keys that were not seen";
    EXPECT_TRUE(RawKey::Exists("S\\One\\A"));
}

TYPED_TEST(SettingsTree, LeavesNoHandleOpen) {
    using Kb = Exports<TypeParam>;
    ExpectNoHandleLeak([] {
        Text<TypeParam> name;
        RawKey("S\\One\\A");
        EXPECT_TRUE(Kb::EnumKeyTString("S"_t, 0, name));
        EXPECT_FALSE(Kb::EnumValueTString("S"_t, 0, name));
        EXPECT_EQ(1, Kb::GetKeyCount("S"_t));
        EXPECT_FALSE(Kb::DeleteValue("S"_t, "N"_t));
        EXPECT_TRUE(Kb::DeleteSection("S"_t));
    });
}

struct Numbers : ValueList {
    explicit Numbers(int count) {
        ValueList::SetValueName("Numbers");
        for (; count > 0; --count) ValueList::AddEntry(new Int32Value);
    }
    using ValueList::operator=;
    Value* Copy() const override { return new Numbers(*this); }
    Value* EntryFactory(const TWinString<char>&) const override { return new Int32Value; }
};

TEST(SettingsTreeOf8Bits, KeepsNoRemovedElementsOfAListInTheRoot) {
    for (const int count : {3, 1}) {
        Numbers(count).SaveRegistry("");
        EXPECT_EQ(count, KB_GetKeyCountA("Numbers"));
        Numbers loaded(0);
        loaded.LoadRegistry("");
        EXPECT_EQ(count, loaded.size());
    }
}

}  // namespace
