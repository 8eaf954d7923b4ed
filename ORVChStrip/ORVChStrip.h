#pragma once

#include <QObject>

#include "Interfaces/IORVControlsGallery.h"
#include "Interfaces/IQXEffect.h"

// The plug-in object the host loads. It says which kind of effect it edits
// and makes an editor for one effect of one hardware model; it also offers
// the gallery of its controls.
class ORVChStrip : public QObject, public IQXEffect, public IQXEffectChFx, public IORVControlsGallery
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.quenmark.orvane.ChannelStrip/2.0" FILE "ORVChStrip.json")
    Q_INTERFACES(IQXEffect IQXEffectChFx IORVControlsGallery)

public:
    // The channel-strip effect type in the host's numbering.
    static constexpr int ChannelStripFxType = 1;

    // Registers the artwork that the editor and the gallery draw with.
    explicit ORVChStrip(QObject *parent = nullptr);

    IQXEffectEditor *create(QWidget *parent, unsigned short fxId, IModelInfo *modelInfo) override;
    int fxType() override { return ChannelStripFxType; }
    QWidget *createControlsGallery(QWidget *parent, IModelInfo *modelInfo, IMemAPI *memAPI) override;
};
