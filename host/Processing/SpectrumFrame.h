#pragma once

#include <QByteArray>
#include <QMetaType>
#include <array>

#include "Interfaces/ISpectrumSource.h"

// One frame of the strip's spectrum as the editors receive it: the band
// levels in dB of the strip's output and of its input (SpectrumBands).
struct SpectrumFrame
{
    using Levels = std::array<float, SpectrumBands::Count>;

    Levels output = silence();
    Levels input = silence();

    static Levels silence();
    // The output as "frequency_hz db" lines, lowest band first, for scripts.
    QByteArray outputText() const;
};

Q_DECLARE_METATYPE(SpectrumFrame)
