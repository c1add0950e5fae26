#pragma once

// The description of an ultrasound probe's array. Passed by constant pointer and never kept.
struct ZelProbe
{
    int type = 0;        // 0 curved, 1 linear, 2 phased; anything else is unknown
    int elements = 0;    // number of transducer elements
    int pitch = 0;       // distance of neighbouring elements, microns
    int radius = 0;      // radius of curvature of the probe's face, microns; its sign chooses the
                         // direction of arcs
    int sectorAngle = 0; // full angle of a phased probe's sector, thousandths of a degree
};
