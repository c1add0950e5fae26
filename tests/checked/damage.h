#pragma once

#include <cstddef>

// Programming mistakes, in a source of their own so that the optimiser sees none of them coming.
namespace damage {

void write(void* block, std::ptrdiff_t offset);
char read(const void* block, std::ptrdiff_t offset);
void freeMemory(void* block);
int add(int left, int right);
int shiftLeft(int value, int bits);
int divide(int left, int right);

} // namespace damage
