// How the register of a CRC-32 takes in bytes: two ways of one result, each at the speed of its
// kind of processor. checksum.cpp chooses between them.
//
// A message is a polynomial with coefficients 0 and 1, bit after bit; its CRC is the remainder that
// a fixed polynomial of degree 32 leaves. This CRC is a reflected one: the lowest bit of a byte is
// its first, and bit 31 of the register is the coefficient of 1, bit 0 that of x^31.
#pragma once

#include <windows.h>

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

/// By multiplication, 64 bytes a step; only where the processor can fold.
DWORD UpdateCrcByFolding(DWORD crc, std::span<const BYTE> bytes);
bool ProcessorCanFold();

}  // namespace kitbag
