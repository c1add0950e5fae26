#pragma once

#include <cstddef>

// Programming mistakes, in a source of their own so that the optimiser cannot see them.
namespace damage {

void Write(void* block, std::ptrdiff_t offset);
char Read(const void* block, std::ptrdiff_t offset);
void FreeMemory(void* block);
int Add(int left, int right);
int ShiftLeft(int value, int bits);
int Divide(int left, int right);

} // namespace damage
