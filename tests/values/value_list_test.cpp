#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <tests/support/import_patch.h>
#include <tests/support/printing.h>
#include <tests/values/damaged_settings.h>
#include <tests/values/recordings.h>

#include <memory>
#include <new>
#include <stdexcept>

namespace {

using namespace kitbag::test;

TEST(ValueList, OwnsItsEntries) {
    static int alive = 0;
    struct Counted : Int32Value {
        Counted() { ++alive; }
        Counted(const Counted& other) : Int32Value(other) { ++alive; }
        using Int32Value::operator=;
        ~Counted() override { --alive; }
        Value* Copy() const override { return new Counted(*this); }
    };
    {
        Notes list;
        EXPECT_TRUE(list.IsEmpty());
        for (int i = 0; i < 4; ++i) EXPECT_TRUE(list.AddEntry(new Counted));
        EXPECT_FALSE(list.AddEntry(static_cast<Value*>(nullptr)));
        EXPECT_FALSE(list.IsEmpty());
        list.RemoveEntry(0);
        EXPECT_EQ(3, alive) << "one is removed";
        Notes copy(list), assigned{1, 2};
        assigned = list;
        EXPECT_EQ(9, alive) << "three copies twice";
        EXPECT_EQ(3, assigned.size());
        assigned.RemoveAllEntries();
        EXPECT_EQ(6, alive) << "all of one are removed";
        EXPECT_TRUE(assigned.IsEmpty());
    }
    EXPECT_EQ(0, alive);
}

TEST(ValueList, InsertsBeforeAnIndex) {
    const struct {
        int index;
        const char* numbers;
    } rows[] = {{0, "9 1 2"}, {1, "1 9 2"}, {2, "1 2 9"}, {3, "1 2 9"}, {-1, "1 2 9"}};
    for (const auto& [index, numbers] : rows) {
        Notes list{1, 2};
        auto* entry = new Int32Value;
        entry->SetValue(9);
        EXPECT_TRUE(list.InsertEntry(index, *entry)) << index;
        EXPECT_EQ(numbers, list.Texts()) << index;
    }
}

TEST(ValueList, MovesAnEntryToAnIndex) {
    const struct {
        int from, to;
        const char* numbers;
    } rows[] = {{0, 0, "0 1 2 3"}, {0, 1, "1 0 2 3"}, {0, 3, "1 2 3 0"},  {3, 0, "3 0 1 2"},
                {2, 1, "0 2 1 3"}, {1, 9, "0 2 3 1"}, {2, -5, "2 0 1 3"}, {7, 7, "0 1 2 3"}};
    for (const auto& [from, to, numbers] : rows) {
        SCOPED_TRACE(Called("MoveEntry", from, to));
        Notes list{0, 1, 2, 3}, relative{0, 1, 2, 3};
        list.MoveEntry(from, to);
        EXPECT_EQ(numbers, list.Texts());
        relative.MoveEntryRelative(from, to - from);
        EXPECT_EQ(numbers, relative.Texts()) << "relative";
    }
    Notes list{0, 1};
    list.MoveEntryRelative(1, INT_MAX);
    EXPECT_EQ("0 1", list.Texts());
    for (const int from : {2, -1})
        EXPECT_THAT([&] { list.MoveEntry(from, 0); },
                    testing::ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"))
            << from;
}

TEST(ValueList, IsLengthenedPastItsEnd) {
    Notes list{1};
    EXPECT_EQ(nullptr, list.at(2));
    EXPECT_EQ(3, list.size());
    list[1] = new Int32Value;
    EXPECT_EQ("1 0 null", list.Texts());
    list.RemoveEntry(4);
    EXPECT_EQ("1 0 null null", list.Texts()) << "lengthened to five, of which one went";
    EXPECT_EQ("[=1,\n=0]", list.SaveStringDataOnly());
    EXPECT_EQ("[]", Notes().SaveStringDataOnly());
    EXPECT_EQ(2, Notes(list).size()) << "null entries are not copied";
}

TEST(ValueList, TakesOverTheContentOfItsOwnEntry) {
    Notes list{1};
    list.AddEntry(new Notes{2, 3});
    list = dynamic_cast<const Notes&>(*list[1]);
    EXPECT_EQ("2 3", list.Texts());
    Notes& self = list;
    list = self;
    EXPECT_EQ("2 3", list.Texts());
}

TEST(ValueList, StaysAsItWasWhereACopyFails) {
    struct Uncopied : Int32Value {
        using Int32Value::operator=;
        Value* Copy() const override { throw std::bad_alloc(); }
    };
    Notes source{1, 2}, target{3};
    source.AddEntry(new Uncopied);
    source.SetValueActions(0x3003);
    EXPECT_THROW(target = source, std::bad_alloc);
    EXPECT_EQ("3", target.Texts());
    EXPECT_EQ(0xF0u, target.GetValueActions());
    EXPECT_FALSE(target.RestartNeeded());
}

TEST(ValueList, CarriesItsAuxiliaryText) {
    struct : Notes {
        using Notes::operator=;
        using ValueList::auxiliaryText_;
    } source, target;
    source.auxiliaryText_ = "text";
    target = static_cast<const Notes&>(source);
    EXPECT_EQ("text", target.auxiliaryText_);
    EXPECT_EQ("text", decltype(source)(source).auxiliaryText_);
}

TEST(ValueList, IsSavedAnewAsATree) {
    Notes list{7, 8, 9};
    list.at(0)->SetValueName("Seven");
    list.SaveRegistry("S");
    EXPECT_EQ(1u, RawKey("S\\Tree").NumberOf(L"Table Version"));
    const RawKey first("S\\Tree\\00000000");
    EXPECT_EQ(L"class Int32Value", first.TextOf(L"Value Class"));
    EXPECT_EQ(L"Seven", first.TextOf(L"Value Name"));
    EXPECT_EQ(7u, first.NumberOf(L"Seven"));
    EXPECT_TRUE(RawKey::Exists("S\\Tree\\00000002"));
    list.RemoveEntry(2);
    list.SaveRegistry("S");
    EXPECT_FALSE(RawKey::Exists("S\\Tree\\00000002")) << "of the longer list before";
    while (list.size() < 11) list.Add(0);
    list.SaveRegistry("S");
    EXPECT_TRUE(RawKey::Exists("S\\Tree\\0000000a"));
    Notes().SaveRegistry("S");
    EXPECT_EQ(0, KB_GetKeyCountA("S\\Tree"));
}

TEST(ValueList, TellsTheVersionOfAStoredTree) {
    Notes list{1};
    list.SaveRegistry("S");
    unsigned long version = 0;
    EXPECT_TRUE(list.ExistsRegistry("S\\Tree", version));
    EXPECT_EQ(1u, version);
    EXPECT_FALSE(list.ExistsRegistry("S", version));
    EXPECT_EQ(0xFFFFFFFF, version);
}

TEST(ValueList, IsReplacedWhereAtLeastOneElementIsKnown) {
    Notes list{1, 2};
    const RawKey unknown("S\\Tree\\00000000");
    unknown.Set(L"Value Class", L"class Unknown");
    EXPECT_TRUE(list.Value::IsEmpty());
    list.LoadRegistry("S");
    EXPECT_EQ("1 2", list.Texts());
    EXPECT_FALSE(list.Value::IsEmpty()) << "it has been loaded";
    const RawKey known("S\\Tree\\00000001");
    known.Set(L"Value Class", L"class Int32Value");
    known.Set(L"Value Name", L"Nine");
    known.Set(L"Nine", 9u);
    list.LoadRegistry("S");
    EXPECT_EQ("[Nine=9]", list.SaveStringDataOnly());
    EXPECT_EQ("class Int32Value", TextIn("S\\Tree\\00000001", "Value Class"));
    list.LoadRegistry("S");
    EXPECT_EQ(1, list.size()) << "replaced once more";
}

TEST(ValueList, LoadsPastAKeyWhoseNameIsTooLong) {
    Notes{1, 2}.SaveRegistry("S");
    const RawKey foreign("S\\Tree\\00000000" + std::string(247, 'x'));
    TWinString<char> name;
    EXPECT_FALSE(KB_EnumKeyTStringA("S\\Tree", 1, name));
    Notes list;
    list.LoadRegistry("S");
    EXPECT_EQ(2, list.size());
}

TEST(ValueList, IsNeverSavedUnderANameThatIsNoClassName) {
    const ImportPatch patch(
        "__cxa_demangle", +[](const char*, char*, std::size_t*, int*) -> char* { return nullptr; });
    EXPECT_THROW(Notes{1}.SaveRegistry("S"), std::bad_alloc);
    EXPECT_THROW(Recording().SaveRegistry("R"), std::bad_alloc);
    EXPECT_FALSE(RawKey("S\\Tree\\00000000").Has(L"Value Class"));
    EXPECT_FALSE(RawKey("R").Has(L"ValueTableEntry Class"));
}

/// What a damaged tree holds: a list's numbers, or a table's rows, as texts.
using Texts = std::vector<std::string>;

void PlantTree(const std::string& tree) {
    Store(RawKey(tree), L"Table Version", {L"3"});
    for (DWORD elements = Below(12); elements > 0; --elements) {
        const RawKey key(tree + '\\' + std::to_string(Below(20)));
        Store(key, L"Value Class", {L"class Int32Value", L"Int32Value"});
        Store(key, L"ValueTableEntry Class", {L"class Recording", L"class recording"});
        Store(key, L"Value Name", {L"Channel", L"Minutes", L"none"});
        for (const wchar_t* name : {L"Channel", L"Minutes", L"Extra"})
            Store(key, name, {L"One", L"it's |=\"\u00e9"});
    }
}

template <class Visit>
void ForEachElement(const std::string& tree, Visit visit) {
    char key[100];
    for (DWORD i = 0; !::RegEnumKeyA(RawKey(tree).Get(), i, key, sizeof key); ++i)
        visit(tree + '\\' + key);
}

Texts NumbersIn(const std::string& tree) {
    Texts texts;
    ForEachElement(tree, [&](const std::string& element) {
        if (TextIn(element, "Value Class") != "class Int32Value") return;
        const std::string name = TextIn(element, "Value Name").value_or("");
        texts.push_back(name + '=' + std::to_string(NumberIn<int>(element, name).value_or(0)));
    });
    return texts;
}

Texts RowsIn(const std::string& tree) {
    Texts texts;
    ForEachElement(tree, [&](const std::string& element) {
        if (TextIn(element, "ValueTableEntry Class") != "class Recording") return;
        const int minutes = NumberIn<int>(element, "Minutes").value_or(30);
        texts.push_back("={Channel='" + TextIn(element, "Channel").value_or("") +
                        "',Minutes=" + std::to_string(minutes) + '}');
    });
    return texts;
}

/// What the container has loaded; once saved, anybody finds the same and nothing else.
template <class Container>
void ExpectLoad(const Texts& expected, Container container, Texts (*find)(const std::string&)) {
    SCOPED_TRACE(typeid(Container).name());
    std::string all;
    for (const auto& text : expected) all += (all.empty() ? "[" : ",\n") + text;
    container.LoadRegistry("S");
    EXPECT_EQ(all + ']', container.SaveStringDataOnly());
    container.SaveRegistry("Saved");
    EXPECT_EQ(expected, find("Saved\\Tree"));
    EXPECT_EQ(container.DeclareVersion(), NumberIn("Saved\\Tree", "Table Version"));
}

TEST(ValueList, LoadsAsATableDoesWhatIsWholeInADamagedTreeAndSavesItWithoutDamage) {
    for (int round = 0; round < 120 && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        ::RegDeleteTreeA(RawKey().Get(), "S");
        PlantTree("S\\Tree");
        // A list replaces what it holds, but not by nothing; a table appends.
        const Texts numbers = NumbersIn("S\\Tree");
        ExpectLoad(numbers.empty() ? Texts{"=0"} : numbers, Notes{0}, NumbersIn);
        Texts rows = RowsIn("S\\Tree");
        rows.insert(rows.begin(), "={Channel='1',Minutes=1}");
        ExpectLoad(rows, Recordings{1}, RowsIn);
    }
}

}  // namespace
