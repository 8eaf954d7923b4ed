#pragma once

#include "Common/EffectComponent.h"
#include "ORVChStrip/ORVChStripParameters.h"

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

    // The saved state's layout. The generic block is the version and one
    // big-endian float per entry of ParameterList; the first chunk follows
    // it. In the newer layout each chunk is a "CHST" form (4-byte magic and
    // a 4-byte size in host order, counted after the header), and the
    // "prms" block holds a 4-byte count and that many big-endian floats.
    static constexpr int MarkerSize = 4;
    static constexpr int GenericBlockOffset = DataVersionSize;
    static constexpr int GenericBlockSize = 4 * ORVChStripParameters::ParameterListCount;
    static constexpr int FirstChunkOffset = GenericBlockOffset + GenericBlockSize;
    static constexpr char FormMagic[] = "CHST";
    static constexpr int FormHeaderSize = MarkerSize + 4;
    static constexpr int CountSize = 4;

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
