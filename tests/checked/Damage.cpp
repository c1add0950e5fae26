#include "Damage.h"

#include <cstdlib>

namespace damage {

void Write(void* block, std::ptrdiff_t offset)
{
    static_cast<volatile char*>(block)[offset] = 1;
}

char Read(const void* block, std::ptrdiff_t offset)
{
    return static_cast<const volatile char*>(block)[offset];
}

void FreeMemory(void* block)
{
    std::free(block);
}

int Add(int left, int right)
{
    return left + right;
}

int ShiftLeft(int value, int bits)
{
    return value << bits;
}

int Divide(int left, int right)
{
    return left / right;
}

} // namespace damage
