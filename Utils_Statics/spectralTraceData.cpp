#include "Utils_Statics/spectralTraceData.h"

#include <cstdint>

spectralTraceData::spectralTraceData() noexcept
{
    close();
}

void spectralTraceData::setData(unsigned char* data, int size, int sets) noexcept
{
    m_data = data;
    m_size = size;
    m_sets = sets;
}

void spectralTraceData::close() noexcept
{
    setData(nullptr, 0, 0);
}

bool spectralTraceData::isEmpty() const noexcept
{
    return m_data == nullptr || m_size == 0;
}

unsigned char* spectralTraceData::getData() const noexcept
{
    return m_data;
}

int spectralTraceData::getSize() const noexcept
{
    return m_size;
}

int spectralTraceData::getSetSize() const noexcept
{
    if (m_sets == 0) return 0;
    // Divided in 64 bits, because the quotient of the least integer and -1 does not fit 32; it
    // wraps.
    return static_cast<int>(std::int64_t{m_size} / m_sets);
}

unsigned char* spectralTraceData::getDataSet(eTraceType type) const noexcept
{
    if (isEmpty()) return nullptr;
    if (type < eTraceEnvelopeReverse || type > eTraceMeanReverse) return m_data;
    // Computed through integers, so that even an address outside the block, which nobody uses, is a
    // defined result.
    const std::int64_t offset = std::int64_t{type} * getSetSize();
    return reinterpret_cast<unsigned char*>(reinterpret_cast<std::uintptr_t>(m_data) +
                                            static_cast<std::uintptr_t>(offset));
}
