#include "MeterSignalGenerator.h"

#include <QVector>
#include <algorithm>
#include <cmath>

#include "ChannelStripModel.h"
#include "Interfaces/ChannelStripValueTables.h"
#include "ParameterMemory.h"

MeterSignalGenerator::MeterSignalGenerator(ParameterMemory *memory, QObject *parent)
    : QObject(parent)
    , m_pMemory(memory)
{
    m_timer.setInterval(IntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &MeterSignalGenerator::tick);
    m_clock.start();
}

void MeterSignalGenerator::tick()
{
    m_pMemory->publishMeters(levelsAt(m_clock.elapsed() / 1000.0));
}

QVector<unsigned int> MeterSignalGenerator::levelsAt(double t) const
{
    HostModel *model = m_pMemory->model();
    QVector<unsigned int> values(int(model->meterArraySize()), static_cast<unsigned int>(Silence));
    const unsigned short in = model->meterBase("meter_orvcs_in");
    const unsigned short eq = model->meterBase("meter_eq");
    const unsigned short sc = model->meterBase("meter_sc_out");
    const unsigned short gr = model->meterBase("meter_comp");
    auto put = [&](unsigned short base, int position, double dB) {
        const int tenths = std::clamp(int(std::lround(dB * 10.0)), Silence, 60);
        if (base + position < values.size())
            values[base + position] = static_cast<unsigned int>(tenths);
    };

    for (int ch = 0; ch < ChannelStripModel::ChannelCount; ++ch) {
        const double threshold = -20.0 + 0.2 * m_pMemory->value("fx_cmp_trsofst", ch);
        const double drive = 0.2 * m_pMemory->value("fx_cmp_drv", ch);
        const int ratioStep
            = std::clamp(m_pMemory->value("fx_cmp_rto", ch), 0, ChannelStripTables::RatioCount - 1);
        const double ratio = ChannelStripTables::RatioTable[ratioStep];
        const double output = -18.0 + 0.1 * m_pMemory->value("fx_eq_peqgain", ch);
        const bool compressorOn = m_pMemory->value("fx_cmp_byps", ch) == 0;

        for (int side = 0; side < 2; ++side) {
            const double phase = 0.37 * ch + 0.9 * side;
            // A phrase swelling between about -40 and -3 dBFS with a faster flutter.
            const double level
                = -21.5 + 17.0 * std::sin(0.9 * t + phase) + 1.5 * std::sin(7.3 * t + 2 * phase);
            const double driven = level + drive;
            const double over = driven - threshold;
            const double reduction = compressorOn && over > 0 ? over * (1.0 - 1.0 / ratio) : 0.0;
            put(in, 2 * ch + side, level);
            put(sc, 2 * ch + side, driven);
            put(gr, 2 * ch + side, -reduction);
            put(eq, 2 * ch + side, driven - reduction + output);
        }
    }
    return values;
}
