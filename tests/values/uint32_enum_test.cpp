#include <gtest/gtest.h>
#include <kitbag/kitbag.h>

namespace {

class Quality : public UInt32Enum {
 public:
    Quality() { Quality::InitialiseElements(); }
    Value* Copy() const override { return new Quality(*this); }
    using UInt32Enum::operator=;
    void InitialiseElements() override {
        AddElement(1, "Low");
        AddElement(2, "High");
        AddElement(1, "Poor");
    }
};

TEST(UInt32Enum, NamesItsValues) {
    Quality quality;
    EXPECT_EQ(3, quality.size());
    const std::pair<unsigned long, const char*> names[] = {{1, "Low"}, {2, "High"}, {3, ""}};
    for (const auto& [value, name] : names) EXPECT_EQ(name, quality.Lookup(value)) << value;
    const std::pair<int, unsigned long> values[] = {{0, 1}, {1, 2}, {2, 1}, {3, 0}, {-1, 0}};
    for (const auto& [index, value] : values) {
        EXPECT_EQ(value, quality.at(index)) << index;
        EXPECT_EQ(value, quality[index]) << index;
    }
}

TEST(UInt32Enum, ShowsTheNameAndSavesTheNumber) {
    Quality quality, assigned;
    quality.SetValue(2);
    assigned = quality;
    EXPECT_EQ("High", quality.ToString());
    EXPECT_EQ("=2", quality.SaveString());
    EXPECT_EQ("High", Quality(quality).ToString());
    EXPECT_EQ("High", assigned.ToString());
}

TEST(UInt32Enum, HasNoElementsOfItsOwn) {
    UInt32Enum plain;
    plain.InitialiseElements();
    EXPECT_EQ(0, plain.size());
    EXPECT_EQ("", plain.ToString());
}

}  // namespace
