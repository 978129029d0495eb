// Writes behind a block of the heap: scripts/heap-check makes sure with it that this would be seen.

int main() {
    char volatile* const block = new char[1];
    block[1] = 0;
    delete[] block;
}
