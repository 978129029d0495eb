#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/import_patch.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>

#include <cstring>

namespace {

using namespace kitbag::test;

void SetBytes(ByteArrayValue& value, std::string_view bytes) {
    std::memcpy(value.SetValueSize(static_cast<unsigned long>(bytes.size())), bytes.data(),
                bytes.size());
    value.SetValue();
}

std::string BytesOf(const ByteArrayValue& value) {
    unsigned long size = 0;
    const unsigned char* bytes = value.GetValue(&size);
    return {bytes, bytes + size};
}

TEST(ByteArrayValue, IsEditedInPlace) {
    ByteArrayValue value("S", "N", true);
    EXPECT_EQ(nullptr, value.GetValue());
    EXPECT_EQ(0u, value.GetValueSize());
    SetBytes(value, "abc");
    EXPECT_EQ(3u, value.GetValueSize());
    EXPECT_EQ("abc", BytesOf(value));
    EXPECT_EQ(value.GetValue(), value.SetValueSize(3)) << "the bytes themselves";
    EXPECT_EQ(Bytes("abc"), Bytes(BytesOf(ByteArrayValue("S", "N", false))));
    EXPECT_EQ("\7\7\7", value.SaveStringDataOnly());
    unsigned long size = 99;
    EXPECT_EQ(nullptr, value.GetDefaultValue(size));
    EXPECT_EQ(0u, size);
    value.LoadRegistry("Empty");
    EXPECT_EQ("abc", BytesOf(value)) << "nothing is stored";
    EXPECT_FALSE(value.HasDefaultValue());
    RawKey("Empty").Set(L"N", REG_BINARY, "", 0);
    value.LoadRegistry("Empty");
    EXPECT_EQ(0u, value.GetValueSize()) << "no bytes are stored";
}

TEST(ByteArrayValue, IsCopiedIntoABufferThatIsLargeEnough) {
    ByteArrayValue value;
    SetBytes(value, "abc");
    const struct {
        unsigned long room;
        bool fits;
        const char* content;
    } rows[] = {{4, true, "abc##"}, {3, true, "abc##"}, {2, false, "#####"}, {0, false, "#####"}};
    for (const auto& [room, fits, content] : rows) {
        SCOPED_TRACE(room);
        unsigned char buffer[] = {'#', '#', '#', '#', '#'};
        unsigned long size = room;
        EXPECT_EQ(fits, value.GetValue(buffer, &size));
        EXPECT_EQ(3u, size);
        EXPECT_EQ(Bytes(content), Bytes(buffer, sizeof buffer));
    }
}

TEST(ByteArrayValue, IsComparedByItsBytes) {
    ByteArrayValue value, other;
    SetBytes(value, "abc");
    SetBytes(other, "abd");
    EXPECT_TRUE(value == ByteArrayValue(value));
    EXPECT_FALSE(value != ByteArrayValue(value));
    EXPECT_FALSE(value == other);
    EXPECT_TRUE(value != other);
}

/// The stored value grows before each of the next reads of its bytes.
int readsThatGrow = 0;

LONG WINAPI GrowingQuery(HKEY key, LPCSTR name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size) {
    if (data && readsThatGrow > 0) {
        const std::string longer(*size + 10, 'x');
        RawKey("S").Set(L"N", REG_BINARY, longer.data(), static_cast<DWORD>(longer.size()));
        --readsThatGrow;
    }
    return ::RegQueryValueExA(key, name, reserved, type, data, size);
}

TEST(ByteArrayValue, IsReadAgainWhereItGrewMeanwhile) {
    const RawKey key("S");
    const ImportPatch patch("RegQueryValueExA", GrowingQuery);
    ByteArrayValue value("S", "N", false);
    for (const std::size_t reads : {1u, 3u}) {
        readsThatGrow = static_cast<int>(reads);
        key.Set(L"N", REG_BINARY, "abc", 3);
        EXPECT_EQ(std::string(3 + 10 * reads, 'x'), BytesOf(value)) << reads << " times";
    }
    readsThatGrow = 1000;
    EXPECT_LT(0u, value.GetValueSize()) << "it ends where the value grows all the time";
}

}  // namespace
