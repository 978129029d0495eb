// What all scalar values do alike, and a scalar class of a program's own.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <kitbag/values/scalar_bodies.h>
#include <tests/support/printing.h>
#include <tests/values/damaged_settings.h>

#include <cstdlib>
#include <memory>

template <>
struct kitbag::Stored<double> {
    static bool Read(const char* section, const char* name, double& datum) {
        TWinString<char> text;
        if (!KB_GetTStringA(section, name, text)) return false;
        datum = std::atof(text.c_str());
        return true;
    }
    static void Write(const char* section, const char* name, double datum) {
        KB_SetTStringA(section, name, std::to_string(datum));
    }
};

/// As in value.h.
class DoubleValue : public kitbag::ScalarValue<DoubleValue, double> {
 public:
    using ScalarValue::ScalarValue;
    using ScalarValue::operator=;
    double GetValue() const { return Initialised(); }
    void SetValue(double value) { Commit(value); }
    TWinString<char> SaveStringDataOnly() const override { return std::to_string(GetValue()); }
};

/// One on a datum that the library stores already.
class Seconds : public kitbag::ScalarValue<Seconds, unsigned long> {
 public:
    using ScalarValue::ScalarValue;
    using ScalarValue::operator=;
    void SetValue(unsigned long value) { Commit(value); }
    TWinString<char> SaveStringDataOnly() const override {
        return std::to_string(Initialised()) + " s";
    }
};

namespace {

using namespace kitbag::test;

TEST(ScalarBase, CarriesClassesOfAProgramsOwn) {
    DoubleValue gain("Audio", "Gain", true);
    EXPECT_EQ(0.0, gain.GetValue());
    gain.SetValue(1.5);
    EXPECT_EQ(L"1.500000", RawKey("Audio").TextOf(L"Gain"));
    EXPECT_EQ(1.5, DoubleValue("Audio", "Gain", true).GetValue());
    EXPECT_EQ("Gain=1.500000", std::unique_ptr<Value>(gain.Copy())->ToString());
    EXPECT_EQ(nullptr, KB_GetAsTStringValue(&gain));

    Seconds delay("Audio", "Delay", true);
    delay.SetValue(3);
    EXPECT_EQ(3u, RawKey("Audio").NumberOf(L"Delay"));
    EXPECT_EQ("Delay=3 s", delay.ToString());
}

TEST(ScalarBase, HasADefaultThatIsNotTheDatum) {
    Int32Value value, untouched;
    value.SetValue(7);
    value.SetDefaultValue(5);
    EXPECT_EQ(7, value.GetValue());
    EXPECT_EQ(5, value.GetDefaultValue());
    EXPECT_FALSE(value.HasDefaultValue());
    value.LoadRegistry();
    EXPECT_EQ(5, value.GetValue()) << "nothing is stored";
    EXPECT_TRUE(value.HasDefaultValue());
    value.SetValue(8);
    EXPECT_TRUE(value.HasDefaultValue()) << "no setter takes it back";
    EXPECT_FALSE(Int32Value(value).HasDefaultValue());
    untouched = value;
    EXPECT_TRUE(untouched.HasDefaultValue());
}

TEST(ScalarBase, IsInitialisedBeforeItIsSaved) {
    UInt32Value fresh;
    fresh.SetValueName("N");
    fresh.SetDefaultValue(5);
    fresh.SaveRegistry("S");
    EXPECT_EQ(5u, RawKey("S").NumberOf(L"N"));
    RawKey("T").Set(L"N", 6u);
    UInt32Value sourced("S", "N", true);
    sourced.SaveRegistry("T");
    EXPECT_EQ(6u, RawKey("T").NumberOf(L"N")) << "read where it is saved";
}

/// Loads the value from S, saves it to T, and expects what stands in S, or else the default.
template <class Class, class Datum, class Read>
void ExpectWhatIsStored(Class&& value, Datum byDefault, Read read, bool exists) {
    SCOPED_TRACE(typeid(Class).name());
    const auto stored = read("S", "N");
    value.SetValueName("N");
    value.SetDefaultValue(byDefault);
    value.LoadRegistry("S");
    EXPECT_EQ(stored.value_or(byDefault), value.GetValue());
    EXPECT_EQ(!stored, value.HasDefaultValue());
    EXPECT_EQ(exists, value.ExistsRegistry());
    value.SaveRegistry("T");
    EXPECT_EQ(read("T", "N"), value.GetValue());
}

void ExpectStoredBytes() {
    ByteArrayValue bytes("S", "N", true);
    *bytes.SetValueSize(1) = 'k';
    const std::string expected = BytesIn("S", "N").value_or("k");
    EXPECT_EQ(expected.size(), bytes.GetValueSize());
    EXPECT_FALSE(bytes.ExistsRegistry());
    EXPECT_FALSE(bytes.HasDefaultValue());
    bytes.SaveRegistry("T");
    EXPECT_EQ(Bytes(expected), Bytes(BytesIn("T", "N", REG_BINARY).value_or("nothing")));
}

TEST(ScalarBase, TakesWhatIsStoredWholeAndElseItsDefault) {
    const RawKey key("S");
    for (int round = 0; round < 300 && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        Store(key, L"N", {L"text", L"it's \u00e9", L"{}"});
        const bool isText = TextIn("S", "N").has_value();
        const bool isNumber = NumberIn("S", "N").has_value();
        ExpectWhatIsStored(BooleanValue(), true, NumberIn<bool>, isNumber);
        EXPECT_GE(1u, NumberIn("T", "N"));
        ExpectWhatIsStored(UInt32Value(), 5ul, NumberIn<DWORD>, isNumber);
        ExpectWhatIsStored(UInt32Enum(), 5ul, NumberIn<DWORD>, isNumber);
        ExpectWhatIsStored(Int32Value(), -5l, NumberIn<long>, false);
        ExpectWhatIsStored(TStringValue(), "default", TextIn, isText);
        ExpectWhatIsStored(IdentValue(), "default", TextIn, isText);
        ExpectWhatIsStored(FilenameValue(), "default", TextIn, isText);
        ExpectStoredBytes();
    }
}

}  // namespace
