#include "Figures.h"

#include <algorithm>
#include <cstdio>
#include <span>

namespace soak {

namespace {

unsigned Median(std::span<const Reading> readings, std::size_t figure)
{
    std::vector<unsigned> values;
    for (const Reading& reading : readings)
        values.push_back(reading.values[figure]);
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

void PrintHeader()
{
    std::printf("%8s %8s", "seconds", "actions");
    for (const Figure& figure : figures)
        std::printf(" %8s", figure.name);
    std::printf("\n");
}

void Print(const Reading& reading)
{
    std::printf("%8u %8u", reading.seconds, reading.actions);
    for (const unsigned value : reading.values)
        std::printf(" %8u", value);
    std::printf("\n");
    std::fflush(stdout);
}

unsigned Judge(const std::vector<Reading>& readings)
{
    const std::size_t third = readings.size() / 3;
    if (third == 0) {
        std::printf("fault: there are only %u readings\n", static_cast<unsigned>(readings.size()));
        return 1;
    }
    const std::span<const Reading> all(readings);
    unsigned faults = 0;
    for (std::size_t i = 0; i < figureCount; ++i) {
        const unsigned second = Median(all.subspan(third, third), i);
        const unsigned last = Median(all.last(third), i);
        const bool isFlat = last <= second + figures[i].tolerance;
        std::printf("%s%-8s %6u in the second third, %6u in the last; it may grow by %u\n",
                    isFlat ? "" : "fault: not flat: ", figures[i].name, second, last,
                    figures[i].tolerance);
        faults += !isFlat;
    }
    return faults;
}

} // namespace soak
