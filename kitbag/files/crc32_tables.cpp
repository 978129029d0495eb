// "Slicing-by-8" of M. E. Kounavis and F. L. Berry, "A Systematic Approach to Building High
// Performance Software-based CRC Generators" (10th IEEE Symposium on Computers and Communications,
// 2005): what each of eight bytes leaves in the register after the last of them does not depend on
// the others, so that the eight look-ups need not wait for one another.

#include <kitbag/files/crc32.h>

#include <array>
#include <cstddef>
#include <cstring>

namespace kitbag {

namespace {

constexpr std::size_t kSlices = 8;
using Table = std::array<DWORD, 256>;

/// In table n, what a byte leaves in the register after n further bytes of 0.
constexpr std::array<Table, kSlices> MakeTables() {
    std::array<Table, kSlices> tables{};
    for (DWORD byte = 0; byte < 256; ++byte) {
        DWORD crc = byte;
        for (Table& table : tables) {
            for (int bit = 0; bit < 8; ++bit) crc = TimesX(crc);
            table[byte] = crc;
        }
    }
    return tables;
}
constexpr std::array<Table, kSlices> kTables = MakeTables();

/// The same for four bytes, the first of which is the word's lowest.
DWORD AfterZeros(DWORD word, std::size_t zeros) {
    return kTables[zeros + 3][word & 0xFF] ^ kTables[zeros + 2][(word >> 8) & 0xFF] ^
           kTables[zeros + 1][(word >> 16) & 0xFF] ^ kTables[zeros][word >> 24];
}

}  // namespace

DWORD UpdateCrcByTables(DWORD crc, std::span<const BYTE> bytes) {
    for (; bytes.size() >= kSlices; bytes = bytes.subspan(kSlices)) {
        DWORD words[2];
        static_assert(sizeof words == kSlices);
        std::memcpy(words, bytes.data(), sizeof words);
        crc = AfterZeros(words[0] ^ crc, 4) ^ AfterZeros(words[1], 0);
    }
    for (const BYTE byte : bytes) crc = (crc >> 8) ^ kTables[0][(crc ^ byte) & 0xFF];
    return crc;
}

}  // namespace kitbag
