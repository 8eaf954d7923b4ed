#pragma once

#include <QtPlugin>

class QWidget;
class IModelInfo;
class IQXEffectEditor;

// The plug-in object's interfaces, asked for by their Qt interface ids.
class IQXEffect
{
public:
    virtual ~IQXEffect() = default;
    // Returns the editor for effect `fxId`, owned by `parent`, or null when
    // the model does not list that effect.
    virtual IQXEffectEditor *create(QWidget *parent, unsigned short fxId, IModelInfo *modelInfo) = 0;
};

class IQXEffectChFx
{
public:
    virtual int fxType() = 0;

protected:
    ~IQXEffectChFx() = default;
};

#define IQXEffect_iid "IQXEffect/1.0"
#define IQXEffectChFx_iid "IQXEffectChFx/1.0"
Q_DECLARE_INTERFACE(IQXEffect, IQXEffect_iid)
Q_DECLARE_INTERFACE(IQXEffectChFx, IQXEffectChFx_iid)
