#include "ConversionScene.h"

#include <algorithm>

Scene RandomScene(Random& random, int type)
{
    Scene s;
    s.probe = {type, random.Int(2, 300), random.Int(100, 600), random.Int(8000, 80000),
               random.Int(10000, 120000)};
    // The fan is less than a full turn, and less than half a turn for a concave face.
    const double turn = static_cast<double>(s.probe.elements) * s.probe.pitch / s.probe.radius;
    if (type == 0 && turn > 6) s.probe.elements = std::max(1, s.probe.elements / 4);
    if (type == 0 && turn < 3 && random.Int(0, 1)) s.probe.radius = -s.probe.radius;
    s.lines = random.Int(1, 512);
    s.samplingFreq = random.Int(1000000, 20000000);
    s.soundSpeed = random.Int(1000, 2000);
    s.steerAngle = random.Int(-30000, 30000);
    if (type == 2) s.scanB = random.Int(0, 1) * random.Int(1, 40000);
    s.lineOffset = random.Int(-20, 20);
    s.width = random.Int(100, 2000);
    s.height = random.Int(100, 2000);
    s.origin = {random.Int(-500, 2000), random.Int(-500, 2000)};
    s.flip = random.Int(0, 3);
    return s;
}

std::string Describe(const Scene& s)
{
    return "type " + std::to_string(s.probe.type) + " elements " +
           std::to_string(s.probe.elements) + " radius " + std::to_string(s.probe.radius) +
           " lines " + std::to_string(s.lines) + " scanA " + std::to_string(s.steerAngle) +
           " scanB " + std::to_string(s.scanB) + " flip " + std::to_string(s.flip);
}
