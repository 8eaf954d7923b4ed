#pragma once

#include <QMap>
#include <QString>
#include <QVariant>
#include <QWidget>
#include <vector>

#include "FUID.h"

class IComponent;
class IMemAPI;
class IModelInfo;

// The editor widget that IQXEffect::create returns. The host drives it in
// this order: setMemAPI and setCh, setStereo, setFs, setOn, setScale, the
// edit modes, then setEditorSettings.
class IQXEffectEditor : public QWidget
{
public:
    using QWidget::QWidget;

    virtual FUID uid() const = 0;
    virtual void loadUids(std::vector<FUID> &uids) const = 0;
    virtual IComponent *getPlxComponent() const = 0;
    virtual void setMemAPI(IMemAPI *memAPI) = 0;
    virtual void setModelInfo(IModelInfo *modelInfo) = 0;
    // ch2 is negative for a mono strip.
    virtual void setCh(int ch1, int ch2) = 0;
    virtual void setStereo(bool stereo) = 0;
    virtual void setFs(int fs) = 0;
    virtual void setOn(bool on) = 0;
    virtual void setDialEditMode(int mode) = 0;
    virtual void setSliderEditMode(int mode) = 0;
    virtual void setScale(double scale) = 0;
    virtual QMap<QString, QVariant> getEditorSettings() const = 0;
    virtual void setEditorSettings(const QMap<QString, QVariant> &settings) = 0;
    virtual double scale() const = 0;
};

class IQXEffectEditor2 : public IQXEffectEditor
{
public:
    using IQXEffectEditor::IQXEffectEditor;
};
