// The folding of crc32_folding.cpp in registers of two lanes, where the processor has VPCLMULQDQ.

#include <intrin.h>
#include <kitbag/files/crc32.h>
#include <kitbag/frame/compiler.h>

#include <array>

namespace kitbag {

namespace {

constexpr std::size_t kPair = sizeof(__m256i);
constexpr std::size_t kStep = 4 * kPair;

KITBAG_TARGET("avx2,vpclmulqdq")
__m256i Load(const BYTE* bytes) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}
KITBAG_TARGET("avx2,vpclmulqdq")
void Store(__m256i lanes, BYTE* bytes) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), lanes);
}

/// Both lanes, gone forward by a step, where they meet two others.
KITBAG_TARGET("avx2,vpclmulqdq")
__m256i Fold(__m256i lanes, __m256i others) {
    constexpr std::int64_t first = FoldingFactor(8 * kStep + 64), second = FoldingFactor(8 * kStep);
    const __m256i factors = _mm256_set_epi64x(second, first, second, first);
    const __m256i folded = _mm256_xor_si256(_mm256_clmulepi64_epi128(lanes, factors, 0x00),
                                            _mm256_clmulepi64_epi128(lanes, factors, 0x11));
    return _mm256_xor_si256(folded, others);
}

/// Folds a message of whole steps into one, for a register of 0.
KITBAG_TARGET("avx2,vpclmulqdq")
std::array<BYTE, kStep> FoldIntoStep(DWORD crc, std::span<const BYTE> bytes) {
    const BYTE* next = bytes.data();
    const BYTE* const end = next + bytes.size();
    const __m256i start = _mm256_set_epi32(0, 0, 0, 0, 0, 0, 0, static_cast<int>(crc));
    __m256i a = _mm256_xor_si256(Load(next), start);
    __m256i b = Load(next + kPair);
    __m256i c = Load(next + 2 * kPair);
    __m256i d = Load(next + 3 * kPair);
    for (next += kStep; next != end; next += kStep) {
        a = Fold(a, Load(next));
        b = Fold(b, Load(next + kPair));
        c = Fold(c, Load(next + 2 * kPair));
        d = Fold(d, Load(next + 3 * kPair));
    }

    std::array<BYTE, kStep> step;
    Store(a, step.data());
    Store(b, step.data() + kPair);
    Store(c, step.data() + 2 * kPair);
    Store(d, step.data() + 3 * kPair);
    return step;
}

/// True where the system keeps the wide registers when it goes from thread to thread.
KITBAG_TARGET("xsave")
bool SystemKeepsWideRegisters() {
    int registers[4];
    __cpuid(registers, 1);
    constexpr int kOsxsaveAndAvx = 1 << 27 | 1 << 28;
    if ((registers[2] & kOsxsaveAndAvx) != kOsxsaveAndAvx) return false;
    constexpr int kXmmAndYmm = 1 << 1 | 1 << 2;
    return (static_cast<int>(_xgetbv(0)) & kXmmAndYmm) == kXmmAndYmm;
}

}  // namespace

DWORD UpdateCrcByWideFolding(DWORD crc, std::span<const BYTE> bytes) {
    if (bytes.size() < kStep) return UpdateCrcByFolding(crc, bytes);
    const std::size_t whole = bytes.size() - bytes.size() % kStep;
    crc = UpdateCrcByFolding(0, FoldIntoStep(crc, bytes.first(whole)));
    return UpdateCrcByFolding(crc, bytes.subspan(whole));
}

bool ProcessorCanFoldWide() {
    int registers[4];
    __cpuid(registers, 0);
    if (registers[0] < 7 || !ProcessorCanFold() || !SystemKeepsWideRegisters()) return false;
    __cpuidex(registers, 7, 0);
    constexpr int kAvx2 = 1 << 5, kVpclmulqdq = 1 << 10;
    return (registers[1] & kAvx2) && (registers[2] & kVpclmulqdq);
}

}  // namespace kitbag
