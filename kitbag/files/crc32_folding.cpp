// The folding of V. Gopal, E. Ozturk, J. Guilford and others, "Fast CRC Computation for Generic
// Polynomials Using PCLMULQDQ Instruction" (Intel, 2009): 16 bytes that stand n bits before 16
// others of the message may be added to those once they are multiplied by x^n, and the factors may
// be taken modulo the CRC's polynomial. The message grows shorter, its CRC stays the same.

#include <intrin.h>
#include <kitbag/files/crc32.h>
#include <kitbag/frame/compiler.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace kitbag {

namespace {

constexpr std::size_t kLane = sizeof(__m128i);
constexpr std::size_t kStep = 4 * kLane;

/// What a reflected half of a lane is multiplied by so that the product, reflected too, is x^n
/// times as much. It lies in the half's lower bits, which counts as x^32 already; and the product
/// of two halves ends a bit below the lane's top, which the shift makes good.
consteval std::int64_t Factor(std::size_t n) {
    DWORD power = 0x80000000;
    for (std::size_t i = 32; i < n; ++i) power = TimesX(power);
    return std::int64_t{power} << 1;
}

/// The factors of a lane that goes forward by so many bytes. Its first half has 64 bits more to go.
template <std::size_t bytes>
KITBAG_TARGET("pclmul")
__m128i Factors() {
    return _mm_set_epi64x(Factor(8 * bytes), Factor(8 * bytes + 64));
}

KITBAG_TARGET("pclmul")
__m128i Load(const BYTE* bytes) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)); }

/// The lane, gone forward by the bytes of the factors, where it meets another.
KITBAG_TARGET("pclmul")
__m128i Fold(__m128i lane, __m128i factors, __m128i other) {
    const __m128i first = _mm_clmulepi64_si128(lane, factors, 0x00);
    const __m128i second = _mm_clmulepi64_si128(lane, factors, 0x11);
    return _mm_xor_si128(_mm_xor_si128(first, second), other);
}

/// Folds a message of whole lanes, a step of them at least, into one. The lanes of a step have
/// names, since an array of them would be kept in memory.
KITBAG_TARGET("pclmul")
std::array<BYTE, kLane> FoldIntoLane(DWORD crc, std::span<const BYTE> bytes) {
    const BYTE* next = bytes.data();
    const BYTE* const end = next + bytes.size();
    __m128i a = _mm_xor_si128(Load(next), _mm_cvtsi32_si128(static_cast<int>(crc)));
    __m128i b = Load(next + kLane);
    __m128i c = Load(next + 2 * kLane);
    __m128i d = Load(next + 3 * kLane);
    next += kStep;

    const __m128i byStep = Factors<kStep>();
    for (; static_cast<std::size_t>(end - next) >= kStep; next += kStep) {
        a = Fold(a, byStep, Load(next));
        b = Fold(b, byStep, Load(next + kLane));
        c = Fold(c, byStep, Load(next + 2 * kLane));
        d = Fold(d, byStep, Load(next + 3 * kLane));
    }

    const __m128i byLane = Factors<kLane>();
    a = Fold(Fold(Fold(a, byLane, b), byLane, c), byLane, d);
    for (; next != end; next += kLane) a = Fold(a, byLane, Load(next));

    std::array<BYTE, kLane> lane;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(lane.data()), a);
    return lane;
}

}  // namespace

DWORD UpdateCrcByFolding(DWORD crc, std::span<const BYTE> bytes) {
    if (bytes.size() < kStep) return UpdateCrcByTables(crc, bytes);
    const std::size_t whole = bytes.size() - bytes.size() % kLane;
    crc = UpdateCrcByTables(0, FoldIntoLane(crc, bytes.first(whole)));
    return UpdateCrcByTables(crc, bytes.subspan(whole));
}

bool ProcessorCanFold() {
    int registers[4];
    __cpuid(registers, 1);
    constexpr int kPclmulqdq = 1 << 1;
    return (registers[2] & kPclmulqdq) != 0;
}

}  // namespace kitbag
