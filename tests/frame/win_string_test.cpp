#include <gtest/gtest.h>
#include <kitbag/frame/win_string.h>

namespace {

TEST(WinString, FormatsTextsOfAnyLengthUpToItsLimit) {
    // Around the sizes at which a larger buffer is taken.
    for (const int length : {0, 1, 510, 511, 512, 513, 1023, 1024, 32766, 32767}) {
        TWinString<char> text;
        EXPECT_EQ(length, text.Format("%s", std::string(static_cast<size_t>(length), 'x').c_str()));
        EXPECT_EQ(std::string(static_cast<size_t>(length), 'x'), text);
    }
}

TEST(WinString, ReplacesATextOverTheLimitByAMessage) {
    for (const size_t length : {32768u, 32769u, 60000u}) {
        TWinString<char> text("before");
        EXPECT_GT(0, text.Format("%s", std::string(length, 'x').c_str()));
        EXPECT_EQ("ERROR: Output of Format was to big to handle\n", text);
    }
}

TEST(WinString, FormatsItsOwnTextWhenThereIsNoFormat) {
    TWinString<char> text("%d of %d");
    EXPECT_EQ(7, text.Format(nullptr, 3, 10));
    EXPECT_EQ("3 of 10", text);
}

TEST(WinString, TakesArgumentsFromTheObjectItself) {
    TWinString<char> text("inner");
    text.Format("<%s|%s>", text.c_str(), text.c_str());
    EXPECT_EQ("<inner|inner>", text);
}

TEST(WinString, KnowsTheRuntimeLibrarysFormats) {
    TWinString<char> text;
    text.Format("%6I64dus %08x %u", 123456789012LL, 0xaU, 4294967295U);
    EXPECT_EQ("123456789012us 0000000a 4294967295", text);
}

}  // namespace
