#pragma once

#include "Common/EffectComponent.h"
#include "ORVChStrip/Chunk/SavedStateLayout.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"
#include "ORVChStrip/ORVChStripParameters.h"

// The channel strip's state component. After the generic block it writes the
// channel-strip chunk twice: once with the 22 generic floats (what older
// readers stop at) and once, after the "prms" block and the "chnk" marker,
// with the 26 extended floats, the morph system name and the morph table.
class ORVChStripComponent : public EffectComponent
{
public:
    // The markers and version of the saved state; the whole layout is
    // SavedStateLayout's.
    static constexpr const auto &DataVersion = SavedStateLayout::DataVersion;
    static constexpr const auto &ParameterMarker = SavedStateLayout::ParameterMarker;
    static constexpr const auto &ChunkMarker = SavedStateLayout::ChunkMarker;

    int32_t setState(IBStream *state) override;
    int32_t getState(IBStream *state) override;
    const char *getDataVersion() const override { return DataVersion; }
    QList<const char *> getParameterList(const unsigned char *version) const override;

private:
    using Snapshot = YChannelStripChunk::Contents;
    void gather(Snapshot &snapshot) const;
    int32_t readSnapshot(IBStream *state, Snapshot &snapshot) const;
    void gatherMorphSet(Snapshot &snapshot) const;
    int32_t sendMorphData(const char *systemName, const short (*table)[17]) const;
    void writeParameters(const float *values) const;
};
