#include <gtest/gtest.h>
#include <kitbag/frame/win_string.h>

namespace {

TEST(WinString, FormatsTextsOfUpTo32767Characters) {
    // Around the sizes at which a larger buffer is taken.
    for (const int length : {0, 1, 510, 511, 512, 1023, 1024, 16384, 32766, 32767}) {
        const std::string wanted(static_cast<std::size_t>(length), 'x');
        TWinString<char> text("before");
        EXPECT_EQ(length, text.Format("%s", wanted.c_str()));
        EXPECT_TRUE(wanted == text) << length << " characters became " << text.size();
    }
}

TEST(WinString, RefusesLongerTexts) {
    for (const std::size_t length : {32768u, 32769u, 60000u}) {
        const std::string wanted(length, 'x');
        TWinString<char> text("before");
        EXPECT_GT(0, text.Format("%s", wanted.c_str())) << length;
        EXPECT_EQ("ERROR: Output of Format was to big to handle\n", text) << length;
    }
}

TEST(WinString, FormatsAsTheSystemsRuntimeDoes) {
    TWinString<char> text;
    EXPECT_EQ(31, text.Format("%6I64dus %08x %-5s|%%", 123456789012LL, 0xaU, "ab"));
    EXPECT_EQ("123456789012us 0000000a ab   |%", text);
}

TEST(WinString, TakesTheFormatFromItselfWhereNoneIsGiven) {
    TWinString<char> text("%d of %d");
    EXPECT_EQ(7, text.Format(nullptr, 3, 10));
    EXPECT_EQ("3 of 10", text);
}

TEST(WinString, TakesArgumentsThatPointIntoItself) {
    // Behind the first buffer too, where the text is formatted more than once.
    for (const std::size_t length : {7u, 600u}) {
        TWinString<char> text(std::string(length, 'x'));
        text.Format("<%s|%s>", text.c_str(), text.c_str());
        EXPECT_EQ('<' + std::string(length, 'x') + '|' + std::string(length, 'x') + '>', text);
    }
}

TEST(WinString, IsInterchangeableWithTheStandardString) {
    static_assert(sizeof(TWinString<char>) == sizeof(std::string));
    const std::string standard = "standard";
    TWinString<char> text = standard;
    EXPECT_EQ(standard, text);
    text = std::string("moved in");
    std::string& reference = text;
    reference += '!';
    EXPECT_EQ("moved in!", text);
}

}  // namespace
