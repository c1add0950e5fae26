#include "damage.h"

#include <cstdlib>

namespace damage {

void write(void* block, std::ptrdiff_t offset)
{
    static_cast<volatile char*>(block)[offset] = 1;
}

char read(const void* block, std::ptrdiff_t offset)
{
    return static_cast<const volatile char*>(block)[offset];
}

void freeMemory(void* block)
{
    std::free(block);
}

int add(int left, int right)
{
    return left + right;
}

int shiftLeft(int value, int bits)
{
    return value << bits;
}

int divide(int left, int right)
{
    return left / right;
}

} // namespace damage
