#pragma once

#include <QObject>

#include "Interfaces/IQXEffect.h"

// The plug-in object the host loads. It says which kind of effect it edits
// and makes an editor for one effect of one hardware model.
class ORVChStrip : public QObject, public IQXEffect, public IQXEffectChFx {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.quenmark.orvane.ChannelStrip/2.0" FILE "ORVChStrip.json")
    Q_INTERFACES(IQXEffect IQXEffectChFx)

public:
    // The channel-strip effect type in the host's numbering.
    static constexpr int ChannelStripFxType = 1;

    IQXEffectEditor *create(QWidget *parent, unsigned short fxId, IModelInfo *modelInfo) override;
    int fxType() override { return ChannelStripFxType; }
};
