#include "ORVChStrip/ORVChStrip.h"

#include "Interfaces/IModelInfo.h"
#include "ORVChStrip/ControlsGallery.h"
#include "ORVChStrip/ORVChStripEditor.h"
#include "ORVChStrip/resources/OrvResources.h"

ORVChStrip::ORVChStrip(QObject *parent)
    : QObject(parent)
{
    initializeOrvChStripResources();
}

IQXEffectEditor *ORVChStrip::create(QWidget *parent, unsigned short fxId, IModelInfo *modelInfo)
{
    if (!modelInfo)
        return nullptr;
    const unsigned short count = modelInfo->getFxCount();
    bool listed = false;
    for (unsigned int index = 0; index < count && !listed; ++index) {
        unsigned short kind = 0;
        unsigned short id = 0;
        modelInfo->getFxInfo(&kind, &id, index);
        listed = id == fxId;
    }
    if (!listed)
        return nullptr;

    auto *editor = new ORVChStripEditor(parent);
    editor->setModelInfo(modelInfo);
    editor->initialize();
    return editor;
}

QWidget *ORVChStrip::createControlsGallery(QWidget *parent, IModelInfo *modelInfo, IMemAPI *memAPI)
{
    return new ControlsGallery(modelInfo, memAPI, parent);
}
