#pragma once

#include <QList>
#include <QPalette>

#include "Common/ParameterLookup.h"
#include "Common/Widgets/FaderController.h"
#include "Common/Widgets/KnobController.h"
#include "Interfaces/IQXEffectEditor.h"

class EffectStyle;
class QStyle;

// Base widget of every effect editor handed to the host. It prepares a freshly
// built widget tree once (fonts, pixel sizes, style, palette), records every
// widget's design geometry and font size, and rescales the tree from those
// design values on demand, so repeated scaling never accumulates rounding.
class EffectEditor : public IQXEffectEditor2
{
    Q_OBJECT

public:
    struct WidgetInformation
    {
        QWidget *widget = nullptr;
        int left = 0;
        int top = 0;
        int right = 0;  // inclusive
        int bottom = 0; // inclusive
        int pointSize = -1;
        int pixelSize = -1;
    };

    explicit EffectEditor(QWidget *parent = nullptr);
    ~EffectEditor() override;

    void setModelInfo(IModelInfo *modelInfo) override;
    void setStereo(bool) override { }
    void setFs(int) override { }
    void setOn(bool) override { }
    void setDialEditMode(int mode) override;
    void setSliderEditMode(int mode) override;
    void setScale(double scale) override;
    QMap<QString, QVariant> getEditorSettings() const override { return {}; }
    void setEditorSettings(const QMap<QString, QVariant> &) override { }
    double scale() const override { return m_scale; }

    // Fonts, pixel sizes, style, palette and the widget list; once, after
    // the form is built and the model info is set.
    void initialize();
    // The same for widgets built later under `root` (a panel's contents
    // built when it first opens, say), which then take the current scale.
    // Before initialize() it does nothing: initialize() covers them.
    void initializeLateWidgets(QWidget *root);

    IModelInfo *modelInfo() const { return m_lookup.modelInfo(); }
    bool getParameter(const char *key, unsigned short *prmId, unsigned short *second = nullptr) const
    {
        return m_lookup.parameter(key, prmId, second);
    }
    // The key lookup through this editor's model, for helpers that need
    // nothing else of the editor. It lives as long as the editor.
    const ParameterLookup &parameterLookup() const { return m_lookup; }
    // The same lookup for a widget that has a model but is no editor.
    static bool getParameter(
        IModelInfo *modelInfo, const char *key, unsigned short *prmId, unsigned short *second = nullptr);
    const QList<WidgetInformation> &widgetInformationList() const { return m_widgetInformationList; }
    EffectStyle *effectStyle() const { return m_pStyle; }

    static void initializeFontStyle(QWidget *widget);
    static void initializeFontSize(QWidget *widget);
    static void initializeStyle(QWidget *widget, QStyle *style);
    static void initializePalette(QWidget *widget, const QPalette &palette);
    static void getWidgetInformationList(QWidget *widget, QList<WidgetInformation> &list);
    static void setDialEditMode(QWidget *widget, int mode);
    static void setSliderEditMode(QWidget *widget, int mode);
    // The host's edit-mode numbers mapped to the controls' operation types.
    static CommonController_MemAPI::KnobController::OperationType knobOperationType(int dialEditMode);
    static CommonController_MemAPI::FaderController::OperationType faderOperationType(int sliderEditMode);

private:
    static void initializePalette(QWidget *widget, const QPalette &palette, bool top);
    static void applyScale(const WidgetInformation &info, double scale);

    EffectStyle *m_pStyle;
    QList<WidgetInformation> m_widgetInformationList;
    ParameterLookup m_lookup;
    double m_scale = 1.0;
    bool m_initialized = false;
};
