#include <gtest/gtest.h>
#include <kitbag/frame/win_string.h>

namespace {

TEST(WinString, FormatsTextsOfAnyLengthUpToItsLimit) {
    // Around the sizes at which a larger buffer is taken, and around the largest.
    for (const int length : {0, 511, 512, 513, 1023, 1024, 32766, 32767, 32768, 32769, 60000}) {
        const std::string wanted(static_cast<std::size_t>(length), 'x');
        const bool fits = length < 32768;
        TWinString<char> text("before");
        const int result = text.Format("%s", wanted.c_str());
        EXPECT_TRUE(fits ? result == length : result < 0) << result;
        EXPECT_EQ(fits ? wanted : "ERROR: Output of Format was to big to handle\n", text);
    }
}

TEST(WinString, TakesFormatAndArgumentsFromItself) {
    TWinString<char> text("%d of %d");
    EXPECT_EQ(7, text.Format(nullptr, 3, 10));
    text.Format("<%s|%6I64dus %08x>", text.c_str(), 123456789012LL, 0xaU);
    EXPECT_EQ("<3 of 10|123456789012us 0000000a>", text);
}

}  // namespace
