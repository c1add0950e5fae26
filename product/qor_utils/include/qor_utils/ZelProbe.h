#pragma once

namespace qor_utils {

/// The values of ZelProbe::type; any other number is an unknown probe.
enum ProbeType : int
{
    curvedProbe = 0,
    linearProbe = 1,
    phasedProbe = 2,
};

} // namespace qor_utils

/// The description of an ultrasound probe's array. It is passed by constant pointer and never kept.
struct ZelProbe
{
    int type = 0;        ///< a ProbeType
    int elements = 0;    ///< number of transducer elements
    int pitch = 0;       ///< distance of neighbouring elements, microns
    int radius = 0;      ///< radius of curvature of the probe's face, microns; its sign chooses the
                         /// direction of arcs
    int sectorAngle = 0; ///< full angle of a phased probe's sector, thousandths of a degree
};
