#pragma once

namespace exam {

/// The values of ZelProbe::type and uDataDesc::probeType; any other number is an unknown probe.
enum ProbeType : int
{
    curvedProbe = 0,
    linearProbe = 1,
    phasedProbe = 2
};

} // namespace exam
