// Doppler: a spectral display knows its acquisition, turns heights into velocities, and holds its
// traces in one block of bytes. A line is fitted through a trace by least squares.
#include <Utils_Statics/CDopplerScaling.h>
#include <Utils_Statics/MatrixRoutines.h>
#include <Utils_Statics/spectralTraceData.h>

#include <cstdio>
#include <vector>

int main()
{
    CDopplerScaling::SetPWPRP(200);           // microseconds from pulse to pulse
    CDopplerScaling::SetPWFreq(3'000'000);    // Hz
    CDopplerScaling::SetPWFFT(256);           // bins
    CDopplerScaling::SetPWDisplayHeight(200); // pixels
    CDopplerScaling::SetPWVesselAngle(60'000);
    const double perPixel = CDopplerScaling::GetVelPerPixel();
    std::printf("%.4f m/s a pixel\n", perPixel);

    // Four traces of eight columns each, one behind the other.
    std::vector<unsigned char> bins(4 * 8);
    spectralTraceData traces;
    traces.setData(bins.data(), static_cast<int>(bins.size()), 4);
    unsigned char* const envelope = traces.getDataSet(eTraceEnvelopeForward);
    for (int column = 0; column < traces.getSetSize(); ++column)
        envelope[column] = static_cast<unsigned char>(40 + 3 * column);

    // velocity = slope * column + start
    std::vector<double> columns, velocities;
    for (int column = 0; column < traces.getSetSize(); ++column) {
        columns.insert(columns.end(), {static_cast<double>(column), 1.0});
        velocities.push_back(CDopplerScaling::GetPixelBaseline(envelope[column]) * perPixel);
    }
    double line[2] = {};
    MAT_LeastSquares(columns.data(), traces.getSetSize(), 2, velocities.data(), line);
    std::printf("the envelope starts at %.3f m/s and gains %.4f m/s a column\n", line[1], line[0]);
}
