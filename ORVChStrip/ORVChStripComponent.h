#pragma once

#include "Common/EffectComponent.h"

// The channel strip's state component. After the generic block it writes the
// channel-strip chunk twice: once with the 22 generic floats (what older
// readers stop at) and once, after the "prms" block and the "chnk" marker,
// with the 26 extended floats, the morph system name and the morph table.
class ORVChStripComponent : public EffectComponent
{
public:
    static constexpr char DataVersion[] = "3690";
    static constexpr char ParameterMarker[] = "prms";
    static constexpr char ChunkMarker[] = "chnk";
    // Versions below this ("2621" read as raw character codes) carry the
    // chunk right after the generic block.
    static constexpr int FirstDoubleChunkVersion = 55949;

    int32_t setState(IBStream *state) override;
    int32_t getState(IBStream *state) override;
    const char *getDataVersion() const override { return DataVersion; }
    QList<const char *> getParameterList(const unsigned char *version) const override;

    // b0 * 1000 + b1 * 100 + b2 * 10 + b3 over the raw byte values.
    static int versionNumber(const unsigned char *version);

private:
    struct Snapshot;
    void gather(Snapshot &snapshot) const;
    void gatherMorphSet(Snapshot &snapshot) const;
    int32_t sendMorphData(const char *systemName, const short (*table)[17]) const;
    void writeParameters(const float *values) const;
};
