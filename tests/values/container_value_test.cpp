// What lists, tables and collections do alike.

#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <tests/support/import_patch.h>
#include <tests/support/printing.h>
#include <tests/values/damaged_settings.h>
#include <tests/values/recordings.h>

#include <new>
#include <stdexcept>

namespace {

using namespace kitbag::test;

/// For a list and a table, which own their entries.
template <class Container>
class ContainerValue : public testing::Test {};
using Owners = testing::Types<Notes, Recordings>;
TYPED_TEST_SUITE(ContainerValue, Owners);

template <class Base>
struct Counted : Base {
    Counted() { ++alive; }
    Counted(const Counted& other) : Base(other) { ++alive; }
    using Base::operator=;
    ~Counted() override { --alive; }
    Value* Copy() const override { return new Counted(*this); }
    static inline int alive = 0;
};

TYPED_TEST(ContainerValue, OwnsItsEntries) {
    using Entry = Counted<typename TypeParam::Entry>;
    {
        TypeParam container;
        EXPECT_TRUE(container.IsEmpty());
        for (int i = 0; i < 4; ++i) EXPECT_TRUE(container.AddEntry(new Entry));
        EXPECT_FALSE(container.AddEntry(static_cast<Entry*>(nullptr)));
        EXPECT_FALSE(container.IsEmpty());
        container.RemoveEntry(0);
        EXPECT_EQ(3, Entry::alive) << "one is removed";
        TypeParam copy(container), assigned{1, 2};
        assigned = container;
        EXPECT_EQ(9, Entry::alive) << "three copies twice";
        EXPECT_EQ(3, assigned.size());
        assigned.RemoveAllEntries();
        EXPECT_EQ(6, Entry::alive) << "all of one are removed";
        EXPECT_TRUE(assigned.IsEmpty());
    }
    EXPECT_EQ(0, Entry::alive);
}

TYPED_TEST(ContainerValue, InsertsBeforeAnIndex) {
    const struct {
        int index;
        const char* numbers;
    } rows[] = {{0, "9 1 2"}, {1, "1 9 2"}, {2, "1 2 9"}, {3, "1 2 9"}, {-1, "1 2 9"}};
    for (const auto& [index, numbers] : rows) {
        TypeParam container{1, 2};
        EXPECT_TRUE(container.InsertEntry(index, *TypeParam::Made(9))) << index;
        EXPECT_EQ(numbers, Shown(container)) << index;
    }
}

TYPED_TEST(ContainerValue, MovesAnEntryToAnIndex) {
    const struct {
        int from, to;
        const char* numbers;
    } rows[] = {{0, 0, "0 1 2 3"}, {0, 1, "1 0 2 3"}, {0, 3, "1 2 3 0"},  {3, 0, "3 0 1 2"},
                {2, 1, "0 2 1 3"}, {1, 9, "0 2 3 1"}, {2, -5, "2 0 1 3"}, {7, 7, "0 1 2 3"}};
    for (const auto& [from, to, numbers] : rows) {
        SCOPED_TRACE(Called("MoveEntry", from, to));
        TypeParam container{0, 1, 2, 3}, relative{0, 1, 2, 3};
        container.MoveEntry(from, to);
        EXPECT_EQ(numbers, Shown(container));
        relative.MoveEntryRelative(from, to - from);
        EXPECT_EQ(numbers, Shown(relative)) << "relative";
    }
    TypeParam container{0, 1};
    container.MoveEntryRelative(1, INT_MAX);
    EXPECT_EQ("0 1", Shown(container));
    for (const int from : {2, -1})
        EXPECT_THAT([&] { container.MoveEntry(from, 0); },
                    testing::ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"))
            << from;
}

TYPED_TEST(ContainerValue, IsLengthenedPastItsEnd) {
    TypeParam container{1};
    EXPECT_EQ(nullptr, container.at(2));
    EXPECT_EQ(3, container.size());
    container[1] = TypeParam::Made(0);
    EXPECT_EQ("1 0 null", Shown(container));
    container.RemoveEntry(4);
    EXPECT_EQ("1 0 null null", Shown(container)) << "lengthened to five, of which one went";
    EXPECT_EQ("1 0", Shown(TypeParam(container))) << "null entries are not copied";
    EXPECT_EQ("[]", TypeParam().SaveStringDataOnly());
}

TYPED_TEST(ContainerValue, TakesOverAnotherThatLiesInOneOfItsEntries) {
    struct Owner : TypeParam::Entry {
        using TypeParam::Entry::operator=;
        TypeParam part{4, 5};
    };
    TypeParam container{1};
    auto* owner = new Owner;
    container.AddEntry(owner);
    container = owner->part;
    EXPECT_EQ("4 5", Shown(container));
    const TypeParam& self = container;
    container = self;
    EXPECT_EQ("4 5", Shown(container));
}

TYPED_TEST(ContainerValue, StaysAsItWasWhereACopyFails) {
    struct Uncopied : TypeParam::Entry {
        using TypeParam::Entry::operator=;
        Value* Copy() const override { throw std::bad_alloc(); }
    };
    TypeParam source{1, 2}, target{3};
    source.AddEntry(new Uncopied);
    source.SetValueActions(0x3003);
    EXPECT_THROW(target = source, std::bad_alloc);
    EXPECT_EQ("3", Shown(target));
    EXPECT_EQ(0xF0u, target.GetValueActions());
    EXPECT_FALSE(target.RestartNeeded());
}

TYPED_TEST(ContainerValue, CarriesItsAuxiliaryText) {
    struct : TypeParam {
        using TypeParam::operator=;
        using TypeParam::auxiliaryText_;
    } source, target;
    source.auxiliaryText_ = "text";
    target = static_cast<const TypeParam&>(source);
    EXPECT_EQ("text", target.auxiliaryText_);
    EXPECT_EQ("text", decltype(source)(source).auxiliaryText_);
}

TYPED_TEST(ContainerValue, IsSavedAnewAsATreeWithItsVersion) {
    TypeParam container{7, 8, 9};
    container.SaveRegistry("S");
    container.RemoveEntry(2);
    container.SaveRegistry("S");
    EXPECT_FALSE(RawKey::Exists("S\\Tree\\00000002")) << "of the longer one before";
    while (container.size() < 11) container.AddEntry(TypeParam::Made(container.size()));
    container.SaveRegistry("S");
    EXPECT_TRUE(RawKey::Exists("S\\Tree\\0000000a"));
    TypeParam().SaveRegistry("S");
    EXPECT_EQ(0, KB_GetKeyCountA("S\\Tree"));
    unsigned long version = 0;
    EXPECT_TRUE(container.ExistsRegistry("S\\Tree", version));
    EXPECT_EQ(container.DeclareVersion(), version);
    EXPECT_FALSE(container.ExistsRegistry("S", version));
    EXPECT_EQ(0xFFFFFFFF, version);
    container.LoadRegistry("None");
    EXPECT_EQ(11, container.size());
    EXPECT_FALSE(container.Value::IsEmpty()) << "it has been loaded";
}

TYPED_TEST(ContainerValue, IsNeverSavedUnderANameThatIsNoClassName) {
    const ImportPatch patch(
        "__cxa_demangle", +[](const char*, char*, std::size_t*, int*) -> char* { return nullptr; });
    EXPECT_THROW(TypeParam{1}.SaveRegistry("S"), std::bad_alloc);
    for (const wchar_t* name : {L"Value Class", L"ValueTableEntry Class"})
        EXPECT_FALSE(RawKey("S\\Tree\\00000000").Has(name)) << name;
}

TEST(ContainerValue, StartsWithItsOwnFlags) {
    EXPECT_EQ(0x100u, Int32Value().GetValueActions()) << "no container";
    EXPECT_EQ(0x130u, ValueCollection().GetValueActions());
    EXPECT_EQ(0x130u, ValueTableEntry().GetValueActions());
    EXPECT_EQ(0xF0u, Recordings().GetValueActions());
    EXPECT_EQ(0xF0u, Notes().GetValueActions());
}

template <class Container>
void ExpectLevelsAndNeeds(Container& container, Int32Value& child) {
    SCOPED_TRACE(typeid(Container).name());
    Int32Value source;
    const unsigned long rows[][2] = {{0, 0}, {0x2000, 0}, {0x1000, 0}, {0, 0x2000}, {0, 0x1000}};
    for (const auto& [childs, own] : rows) {
        SCOPED_TRACE(Called("actions of child and container", childs, own));
        source.SetValueActions(childs);
        child = source;
        container.SetValueActions(own | 2);
        EXPECT_EQ(own | 2, container.GetValueActions());
        EXPECT_EQ(childs | 2, child.GetValueActions()) << "the level alone";
        EXPECT_EQ((childs | own) == 0x2000, container.RebootNeeded());
        EXPECT_EQ((childs | own) == 0x1000, container.RestartNeeded());
        EXPECT_EQ(childs == 0x2000, child.RebootNeeded());
        container.SetMinimumUserInterfaceLevel(Value::ValueAction{0x13});
        EXPECT_EQ(own | 3, container.GetValueActions());
        EXPECT_EQ(childs | 3, child.GetValueActions());
    }
    source.SetValueActions(0x3000);
    Container assigned;
    static_cast<Value&>(assigned) = source;
    EXPECT_TRUE(assigned.RebootNeeded()) << "by assignment";
    EXPECT_TRUE(assigned.RestartNeeded()) << "by assignment";
}

TEST(ContainerValue, PassesLevelsOnAndAsksItsChildren) {
    ValueCollection collection;
    Int32Value member;
    collection.at(0);
    collection.DeclareValue(member, "A");
    ExpectLevelsAndNeeds(collection, member);
    Notes list{1};
    ExpectLevelsAndNeeds(list, dynamic_cast<Int32Value&>(*list[0]));
    Recordings table{1};
    ExpectLevelsAndNeeds(table, table.Row(0).Minutes);
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

TEST(ContainerValue, LoadsWhatIsWholeInADamagedTreeAndSavesItWithoutDamage) {
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
