#pragma once

// The keys under which the host's model names the channel strip's parameters
// and meters. Plug-in and host both spell them through these constants, so a
// typo is a compile error instead of a control that silently stays unbound.
namespace ChannelStripKeys {

// Compressor
inline constexpr char CompressorDrive[] = "fx_cmp_drv";
inline constexpr char CompressorAttack[] = "fx_cmp_atck";
inline constexpr char CompressorRelease[] = "fx_cmp_rls";
inline constexpr char CompressorRatio[] = "fx_cmp_rto";
inline constexpr char CompressorKnee[] = "fx_cmp_kne";
inline constexpr char CompressorThresholdOffset[] = "fx_cmp_trsofst";
inline constexpr char CompressorMakeUpOffset[] = "fx_cmp_mkupofst";
inline constexpr char SideChainFrequency[] = "fx_cmp_scfrq";
inline constexpr char SideChainGain[] = "fx_cmp_scgin";
inline constexpr char SideChainQuality[] = "fx_cmp_scqal";
inline constexpr char SideChainOn[] = "fx_cmp_sc_onf";
inline constexpr char CompressorBypass[] = "fx_cmp_byps";

// Equalizer ("lsvfreq" and "midfrq" are spelled differently from the morph columns)
inline constexpr char EqualizerLowFrequency[] = "fx_eq_lsvfreq";
inline constexpr char EqualizerLowGain[] = "fx_eq_lsvgain";
inline constexpr char EqualizerLowOn[] = "fx_eq_lsv_onf";
inline constexpr char EqualizerMiddleFrequency[] = "fx_eq_midfrq";
inline constexpr char EqualizerMiddleGain[] = "fx_eq_midgain";
inline constexpr char EqualizerMiddleQuality[] = "fx_eq_midqual";
inline constexpr char EqualizerMiddleOn[] = "fx_eq_mid_onf";
inline constexpr char EqualizerHighFrequency[] = "fx_eq_hsvfrq";
inline constexpr char EqualizerHighGain[] = "fx_eq_hsvgain";
inline constexpr char EqualizerHighOn[] = "fx_eq_hsv_onf";
inline constexpr char EqualizerBypass[] = "fx_eq_byps";
inline constexpr char OutputLevel[] = "fx_eq_peqgain";

// Morphing
inline constexpr char MorphValue[] = "fx_mrp_vl";
inline constexpr char MorphSystemName[] = "fx_mrp_systmname";
inline constexpr char MorphSystemId[] = "fx_mrp_systmid";

// The morph table's seventeen columns, in the order of a morph record's row.
inline constexpr char MorphCompressorAttack[] = "fx_mrpcmp_atck";
inline constexpr char MorphCompressorRelease[] = "fx_mrpcmp_rls";
inline constexpr char MorphCompressorRatio[] = "fx_mrpcmp_rto";
inline constexpr char MorphCompressorKnee[] = "fx_mrpcmp_kne";
inline constexpr char MorphCompressorThresholdOffset[] = "fx_mrpcmp_trsofst";
inline constexpr char MorphCompressorMakeUpOffset[] = "fx_mrpcmp_mkupofst";
inline constexpr char MorphSideChainFrequency[] = "fx_mrpcmp_scfrq";
inline constexpr char MorphSideChainGain[] = "fx_mrpcmp_scgin";
inline constexpr char MorphSideChainQuality[] = "fx_mrpcmp_scqal";
inline constexpr char MorphEqualizerHighFrequency[] = "fx_mrpeq_hsvfrq";
inline constexpr char MorphEqualizerHighGain[] = "fx_mrpeq_hsvgain";
inline constexpr char MorphEqualizerMiddleFrequency[] = "fx_mrpeq_mdfrq";
inline constexpr char MorphEqualizerMiddleGain[] = "fx_mrpeq_mdgain";
inline constexpr char MorphEqualizerMiddleQuality[] = "fx_mrpeq_mdqual";
inline constexpr char MorphEqualizerLowFrequency[] = "fx_mrpeq_lsvfrq";
inline constexpr char MorphEqualizerLowGain[] = "fx_mrpeq_lsvgain";
inline constexpr char MorphOutputLevel[] = "fx_mrpeq_peqgain";

// Meters
inline constexpr char InputMeter[] = "meter_orvcs_in";
inline constexpr char OutputMeter[] = "meter_eq";
inline constexpr char SideChainMeter[] = "meter_sc_out";
inline constexpr char GainReductionMeter[] = "meter_comp";

} // namespace ChannelStripKeys
