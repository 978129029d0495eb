// How the register of a CRC-32 takes in bytes: ways of one result, each at the speed of its kind of
// processor. checksum.cpp chooses between them.
//
// A message is a polynomial with coefficients 0 and 1, bit after bit; its CRC is the remainder that
// a fixed polynomial of degree 32 leaves. This CRC is a reflected one: the lowest bit of a byte is
// its first, and bit 31 of the register is the coefficient of 1, bit 0 that of x^31.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace kitbag {

/// x^32 modulo the polynomial.
inline constexpr DWORD kCrcPolynomial = 0xEDB88320;

/// A remainder times x, modulo the polynomial: what one more bit of 0 makes of a register.
constexpr DWORD TimesX(DWORD remainder) {
    return (remainder >> 1) ^ (remainder & 1 ? kCrcPolynomial : 0);
}

/// By tables, eight bytes a step; on any processor.
DWORD UpdateCrcByTables(DWORD crc, std::span<const BYTE> bytes);

/// By multiplication in lanes of 16 bytes, 64 bytes a step.
DWORD UpdateCrcByFolding(DWORD crc, std::span<const BYTE> bytes);
bool ProcessorCanFold();

/// By multiplication in two lanes at once, 128 bytes a step.
DWORD UpdateCrcByWideFolding(DWORD crc, std::span<const BYTE> bytes);
bool ProcessorCanFoldWide();

/// What a half of a lane is multiplied by so that the product is x^n times as much. It lies in the
/// lower bits of a reflected half, which counts as x^32 already; and the product of two reflected
/// halves ends a bit below the lane's top, which the shift makes good.
constexpr std::int64_t FoldingFactor(std::size_t n) {
    DWORD power = 0x80000000;
    for (std::size_t i = 32; i < n; ++i) power = TimesX(power);
    return std::int64_t{power} << 1;
}

}  // namespace kitbag
