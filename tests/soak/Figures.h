#pragma once

#include <cstddef>
#include <vector>

namespace soak {

/// One of the things that are read.
struct Figure
{
    const char* name;
    unsigned tolerance; ///< by which it may grow
};

constexpr Figure figures[] = {{"handles", 12}, {"files", 4},   {"GDI", 32},
                              {"USER", 16},    {"threads", 4}, {"MiB", 24}};
constexpr std::size_t figureCount = std::size(figures);

/// The figures of one moment, in their order.
struct Reading
{
    unsigned seconds;
    unsigned actions;
    unsigned values[figureCount];
};

void PrintHeader();
void Print(const Reading& reading);

/// Prints for each figure whether it is flat: the median of its last third is at most by the
/// tolerance above that of the second third. The first third is for what is still made once. The
/// result is the number of figures that are not.
unsigned Judge(const std::vector<Reading>& readings);

} // namespace soak
