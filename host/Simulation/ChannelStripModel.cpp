#include "ChannelStripModel.h"

#include <utility>

namespace ChannelStripModel {

namespace {

ParameterSpec tableParameter(const char *key, ValueKind kind, int maximum, int defaultValue, const char *unit,
    const char *morphColumn = nullptr)
{
    ParameterSpec parameter;
    parameter.key = key;
    parameter.kind = kind;
    parameter.maximum = maximum;
    parameter.defaultValue = defaultValue;
    parameter.unit = QString::fromLatin1(unit);
    parameter.morphColumnKey = morphColumn;
    return parameter;
}

ParameterSpec linearParameter(const char *key, int minimum, int maximum, int defaultValue, double step,
    double offset, int decimals, const char *unit, const char *morphColumn = nullptr,
    bool signedOutput = false)
{
    ParameterSpec parameter
        = tableParameter(key, ValueKind::Linear, maximum, defaultValue, unit, morphColumn);
    parameter.minimum = minimum;
    parameter.step = step;
    parameter.offset = offset;
    parameter.decimals = decimals;
    parameter.signedOutput = signedOutput;
    return parameter;
}

ParameterSpec switchParameter(const char *key, int defaultValue)
{
    return tableParameter(key, ValueKind::Switch, 1, defaultValue, "");
}

ParameterSpec textParameter(const char *key, int length)
{
    ParameterSpec parameter = tableParameter(key, ValueKind::Text, 255, 0, "");
    parameter.decimals = length; // characters held
    return parameter;
}

} // namespace

QList<ParameterSpec> parameters()
{
    QList<ParameterSpec> list = {
        // Compressor
        linearParameter("fx_cmp_drv", 0, 100, 0, 0.2, 0.0, 1, "dB"),
        linearParameter("fx_cmp_atck", 1, 200, 10, 1.0, 0.0, 0, "ms", "fx_mrpcmp_atck"),
        linearParameter("fx_cmp_rls", 10, 2000, 200, 1.0, 0.0, 0, "ms", "fx_mrpcmp_rls"),
        tableParameter("fx_cmp_rto", ValueKind::Ratio, 120, 40, "", "fx_mrpcmp_rto"),
        tableParameter("fx_cmp_kne", ValueKind::Knee, 2, 0, "", "fx_mrpcmp_kne"),
        linearParameter("fx_cmp_trsofst", 0, 200, 100, 0.2, -20.0, 1, "dB", "fx_mrpcmp_trsofst", true),
        linearParameter("fx_cmp_mkupofst", 0, 200, 100, 0.1, -10.0, 1, "dB", "fx_mrpcmp_mkupofst", true),
        tableParameter("fx_cmp_scfrq", ValueKind::Frequency, 124, 72, "Hz", "fx_mrpcmp_scfrq"),
        tableParameter("fx_cmp_scgin", ValueKind::Gain, 360, 180, "dB", "fx_mrpcmp_scgin"),
        tableParameter("fx_cmp_scqal", ValueKind::Quality, 60, 12, "", "fx_mrpcmp_scqal"),
        switchParameter("fx_cmp_sc_onf", 0),
        switchParameter("fx_cmp_byps", 0),
        // Equalizer
        tableParameter("fx_eq_lsvfreq", ValueKind::Frequency, 124, 32, "Hz", "fx_mrpeq_lsvfrq"),
        tableParameter("fx_eq_lsvgain", ValueKind::Gain, 360, 180, "dB", "fx_mrpeq_lsvgain"),
        tableParameter("fx_eq_midfrq", ValueKind::Frequency, 124, 72, "Hz", "fx_mrpeq_mdfrq"),
        tableParameter("fx_eq_midgain", ValueKind::Gain, 360, 180, "dB", "fx_mrpeq_mdgain"),
        tableParameter("fx_eq_midqual", ValueKind::Quality, 60, 12, "", "fx_mrpeq_mdqual"),
        tableParameter("fx_eq_hsvfrq", ValueKind::Frequency, 124, 112, "Hz", "fx_mrpeq_hsvfrq"),
        tableParameter("fx_eq_hsvgain", ValueKind::Gain, 360, 180, "dB", "fx_mrpeq_hsvgain"),
        switchParameter("fx_eq_lsv_onf", 1),
        switchParameter("fx_eq_mid_onf", 1),
        switchParameter("fx_eq_hsv_onf", 1),
        switchParameter("fx_eq_byps", 0),
        // Output level: -18.0 dB to +6.0 dB in 0.1 dB steps.
        linearParameter("fx_eq_peqgain", 0, 240, 180, 0.1, -18.0, 1, "dB", "fx_mrpeq_peqgain", true),
        // Morphing: position 0.0 % to 100.0 % across the nine morph points.
        linearParameter("fx_mrp_vl", 0, 1000, 0, 0.1, 0.0, 1, "%"),
        textParameter("fx_mrp_systmname", 256),
        textParameter("fx_mrp_systmid", 32),
    };

    // One morph-table column per morphing parameter: the same range and
    // texts, stored per morph point on channels ch * 9 to ch * 9 + 8.
    const int count = int(list.size());
    for (int i = 0; i < count; ++i) {
        const ParameterSpec &target = list.at(i);
        if (target.morphColumnKey.isEmpty())
            continue;
        ParameterSpec column = target;
        column.key = target.morphColumnKey;
        column.morphColumnKey.clear();
        column.morphTargetKey = target.key;
        list.append(column);
    }
    return list;
}

QList<MeterSpec> meters()
{
    return {
        { "meter_orvcs_in", ChannelCount, QStringLiteral("input level, dBFS") },
        { "meter_eq", ChannelCount, QStringLiteral("output level after the equalizer, dBFS") },
        { "meter_sc_out", ChannelCount, QStringLiteral("side-chain detector level, dBFS") },
        { "meter_comp", ChannelCount, QStringLiteral("gain reduction, dB (0 = none, negative = reduction)") },
    };
}

QList<FxEntry> effects()
{
    return { { 2, 16 }, { 3, 24 }, { ChannelStripFxKind, ChannelStripFxId } };
}

} // namespace ChannelStripModel
