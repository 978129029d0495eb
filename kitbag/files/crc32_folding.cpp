// The folding of V. Gopal, E. Ozturk, J. Guilford and others, "Fast CRC Computation for Generic
// Polynomials Using PCLMULQDQ Instruction" (Intel, 2009): 16 bytes that stand n bits before 16
// others of the message may be added to those once they are multiplied by x^n, and the factors may
// be taken modulo the CRC's polynomial. The message grows shorter, its CRC stays the same.

#include <intrin.h>
#include <kitbag/files/crc32.h>
#include <kitbag/frame/compiler.h>

#include <array>

namespace kitbag {

namespace {

constexpr std::size_t kLane = sizeof(__m128i);
constexpr std::size_t kStep = 4 * kLane;

KITBAG_TARGET("pclmul")
__m128i Load(const BYTE* bytes) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)); }

/// A lane, gone forward by so many bytes, where it meets another. Its first half has 64 bits more
/// to go.
template <std::size_t bytes>
KITBAG_TARGET("pclmul")
__m128i Fold(__m128i lane, __m128i other) {
    constexpr std::int64_t first = FoldingFactor(8 * bytes + 64), second = FoldingFactor(8 * bytes);
    const __m128i factors = _mm_set_epi64x(second, first);
    const __m128i folded = _mm_xor_si128(_mm_clmulepi64_si128(lane, factors, 0x00),
                                         _mm_clmulepi64_si128(lane, factors, 0x11));
    return _mm_xor_si128(folded, other);
}

/// Folds a message of whole lanes, a step of them at least, into one, for a register of 0. The
/// lanes of a step have names, since an array of them would be kept in memory.
KITBAG_TARGET("pclmul")
std::array<BYTE, kLane> FoldIntoLane(DWORD crc, std::span<const BYTE> bytes) {
    const BYTE* next = bytes.data();
    const BYTE* const end = next + bytes.size();
    const __m128i start = _mm_cvtsi32_si128(static_cast<int>(crc));
    __m128i a = _mm_xor_si128(Load(next), start);
    __m128i b = Load(next + kLane);
    __m128i c = Load(next + 2 * kLane);
    __m128i d = Load(next + 3 * kLane);
    for (next += kStep; static_cast<std::size_t>(end - next) >= kStep; next += kStep) {
        a = Fold<kStep>(a, Load(next));
        b = Fold<kStep>(b, Load(next + kLane));
        c = Fold<kStep>(c, Load(next + 2 * kLane));
        d = Fold<kStep>(d, Load(next + 3 * kLane));
    }

    b = Fold<kLane>(a, b);
    c = Fold<kLane>(b, c);
    d = Fold<kLane>(c, d);
    for (; next != end; next += kLane) d = Fold<kLane>(d, Load(next));

    std::array<BYTE, kLane> lane;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(lane.data()), d);
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
