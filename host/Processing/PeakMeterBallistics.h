#pragma once

// The fall-back of a peak meter: a new peak shows at once, and the display
// falls at 20 dB per 1.7 s, the return time of digital peak programme meters,
// so that short transients stay readable.
class PeakMeterBallistics
{
public:
    static constexpr double FallDbPerSecond = 20.0 / 1.7;
    static constexpr double FloorDb = -127.0;

    // The display after `seconds` of audio whose highest peak was `peakDb`.
    double update(double peakDb, double seconds);
    double level() const { return m_levelDb; }
    void reset() { m_levelDb = FloorDb; }

private:
    double m_levelDb = FloorDb;
};
