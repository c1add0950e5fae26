#pragma once

#include <Utils_Statics/export.h>

/// The traces of a block, in the order in which they lie there.
enum eTraceType : int
{
    eTraceEnvelopeForward = 0,
    eTraceEnvelopeReverse = 1,
    eTraceMeanForward = 2,
    eTraceMeanReverse = 3
};

/// A view of one block of spectral trace bytes that holds several traces of equal length back to
/// back. The block belongs to its owner, who keeps it alive while a view is used; copies view the
/// same block.
class UTILS_STATICS_API spectralTraceData
{
public:
    /// An empty view.
    spectralTraceData() noexcept;

    /// Views size bytes at data that hold sets traces. Checks and copies nothing.
    void setData(unsigned char* data, int size, int sets) noexcept;

    /// Empties the view; frees nothing.
    void close() noexcept;

    /// True when there is no block or its size is 0.
    bool isEmpty() const noexcept;

    /// The block and its size in bytes, as they were set.
    unsigned char* getData() const noexcept;
    int getSize() const noexcept;

    /// The bytes of one trace, rounded toward zero; 0 when there are no traces.
    int getSetSize() const noexcept;

    /// The start of a trace, or null for an empty view. A type outside the enumeration means the
    /// first trace. The caller has to know that the block has that many traces.
    unsigned char* getDataSet(eTraceType type) const noexcept;

private:
    unsigned char* m_data;
    int m_size;
    int m_sets;
};
