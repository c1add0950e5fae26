#pragma once

/// Names that the signal and slot templates share.
struct cPreProcessor
{
    /// A type without values. A signature with fewer than five arguments fills its last places with
    /// pointers to this type.
    struct unusable;
};
