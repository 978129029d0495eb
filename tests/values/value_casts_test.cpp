#include <gtest/gtest.h>
#include <kitbag/kitbag.h>

#include <memory>

namespace {

/// Each cast knows its own class alone, also by a copy of the value.
template <class... T>
void ExpectExactCasts(T* (*... casts)(const Value*)) {
    const auto expect = [&](const Value& value, auto* cast) {
        SCOPED_TRACE(typeid(value).name());
        const std::unique_ptr<Value> copy(value.Copy());
        EXPECT_EQ(&value, cast(&value));
        EXPECT_EQ(copy.get(), cast(copy.get()));
        EXPECT_EQ(nullptr, cast(nullptr));
        const int casting = ((casts(&value) != nullptr) + ...);
        EXPECT_EQ(1, casting) << "casts take it";
    };
    (expect(T(), casts), ...);
}

TEST(ValueCasts, KnowTheExactClass) {
    ExpectExactCasts(KB_GetAsValueTableEntry, KB_GetAsValueCollection, KB_GetAsBooleanValue,
                     KB_GetAsByteArrayValue, KB_GetAsGuidValue, KB_GetAsInt32Value,
                     KB_GetAsUInt32Value, KB_GetAsUInt32Enum, KB_GetAsTStringValue,
                     KB_GetAsFilenameValue, KB_GetAsIdentValue,
                     KB_GetAsExternalProgramValueTableEntry, KB_GetAsMediaLocationValueTableEntry);
}

TEST(ValueCasts, TakeTheApplicationsTablesForPlainTables) {
    const ExternalProgramValueTable programs("Tools");
    const MediaLocationValueTable folders(MediaLocationValueTable::DvdRead);
    EXPECT_EQ(&programs, KB_GetAsValueTable(&programs));
    EXPECT_EQ(&folders, KB_GetAsValueTable(&folders));
    EXPECT_EQ(nullptr, KB_GetAsExternalProgramValueTable(&programs));
    EXPECT_EQ(nullptr, KB_GetAsMediaLocationValueTable(&folders));
    EXPECT_EQ(nullptr, KB_GetAsValueList(&programs));
}

/// Counts what reaches two of its operations.
struct Counter : CValueVisitor {
    using CValueVisitor::Visit;
    void Visit(const IdentValue&) override { ++idents; }
    void Visit(const Value&) override { ++others; }
    int idents = 0;
    int others = 0;
};

TEST(ValueCasts, VisitorsSeeTheExactClassToo) {
    Counter counter;
    IdentValue().Accept(counter);
    TStringValue().Accept(counter);
    EXPECT_EQ(1, counter.idents);
    EXPECT_EQ(0, counter.others) << "neither is a plain value";
}

}  // namespace
