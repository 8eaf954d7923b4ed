#pragma once

#include <QMetaType>

// What the processing model shows at one meter update, in dB: the peak
// meters after their ballistics, and where the compressor's detector sits on
// the static curve. The compressor graph can mark its operating point at
// (detectorLevelDb, detectorLevelDb - gainReductionDb) while
// compressorActive; the side-chain meter shows detectorLevelDb.
struct MeterReading
{
    static constexpr double SilenceDb = -127.0;

    int channelCount = 2;
    double inputDb[2] = { SilenceDb, SilenceDb };
    double outputDb[2] = { SilenceDb, SilenceDb };
    double detectorLevelDb = SilenceDb;
    double gainReductionDb = 0.0; // >= 0
    bool compressorActive = true; // false while the compressor is bypassed
};

Q_DECLARE_METATYPE(MeterReading)
