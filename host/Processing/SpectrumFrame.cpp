#include "SpectrumFrame.h"

SpectrumFrame::Levels SpectrumFrame::silence()
{
    Levels levels;
    levels.fill(SpectrumBands::SilenceDb);
    return levels;
}

QByteArray SpectrumFrame::outputText() const
{
    QByteArray text;
    for (int b = 0; b < SpectrumBands::Count; ++b) {
        text += QByteArray::number(SpectrumBands::frequency(b), 'f', 1) + ' '
            + QByteArray::number(double(output[b]), 'f', 2) + '\n';
    }
    return text;
}
