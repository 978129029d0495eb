// Writes behind a block of the heap where scripts/heap-check runs it, which must be noticed.

#include <cstdio>
#include <cstdlib>

int main() {
    if (!std::getenv("KITBAG_HEAP_CHECK")) return std::puts("The heap is not checked.") < 0;
    char volatile* const block = new char[1];
    block[1] = 0;
    delete[] block;
}
