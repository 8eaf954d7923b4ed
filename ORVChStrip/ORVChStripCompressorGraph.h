#pragma once

#include <QPixmap>
#include <QWidget>

#include "Common/ObservedParameters.h"
#include "Interfaces/IPrmObserver.h"
#include "ORVChStrip/CompressorGraphPainter.h"
#include "ORVChStrip/Filter/CompressorCurve.h"
#include "ORVChStrip/GraphGridCache.h"

class EffectEditor;
class IMemAPI;

// The compressor's static transfer curve (output against input level, -60 to
// 0 dB on both axes) for one channel. It keeps no values of its own: every
// paint reads ratio, knee, threshold offset and drive from the host. A
// readout in its corner, and its tool tip, give the threshold and make-up
// offsets, which the morph knob moves and no control on the panel shows; their
// texts are asked for again when an observed parameter changes.
//
// A form creates it with its parent alone; the editor then hands itself over
// with setEditor(), through which the parameter keys are looked up.
class ORVChStripCompressorGraph : public QWidget, public IPrmObserver
{
    Q_OBJECT
    // "Threshold offset +2.0 dB, make-up offset -1.5 dB": what the readout shows.
    Q_PROPERTY(QString readout READ readoutText)

public:
    explicit ORVChStripCompressorGraph(QWidget *parent = nullptr);
    ~ORVChStripCompressorGraph() override;

    void setEditor(EffectEditor *editor);
    void setMemAPI(IMemAPI *memAPI);
    void setCh(int ch);

    IMemAPI *memAPI() const { return m_parameters.memAPI(); }
    int ch() const { return m_parameters.ch(); }
    // The host's current values; defaults without a memory.
    CompressorCurve::Settings currentSettings() const;
    // The offsets as the host words them, with their unit; empty without a memory.
    CompressorGraphPainter::Readout currentReadout() const;
    QString readoutText() const;
    QString toolTipText() const;

    int Update(unsigned short prmId, unsigned short ch, int value, const char *text) override;
    int UpdateProperty(unsigned short, unsigned short, int, int, int, bool, const char *) override
    {
        return 0;
    }

    QSize sizeHint() const override { return QSize(191, 191); }

    // Where the signal sits on the curve now: the detected input level and
    // the level after the gain change, in dB. The editor feeds it from the
    // meters and clears it when they stop.
    void setOperatingPoint(double inputDb, double outputDb);
    void clearOperatingPoint();
    bool hasOperatingPoint() const { return m_hasOperatingPoint; }
    QPointF operatingPoint() const { return m_operatingPoint; }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    enum Parameter { Ratio, Knee, ThresholdOffset, Drive, MakeUpOffset, ParameterCount };

    void parametersChanged();

    // A parameter's value text with " dB" where the host leaves the unit
    // out; `fallback` words the value where the host has no text for it.
    QString decibelText(Parameter parameter, double (*fallback)(int)) const;

    // The curve and readout for these settings. Painted again unchanged
    // (the operating point moves over it at the meters' rate), they come
    // from a layer kept while settings, readout, size and enabled state stay.
    void paintCurve(QPainter &painter, const CompressorCurve::Settings &settings, double devicePixelRatio);
    QRect operatingPointRect() const;

    ObservedParameters m_parameters;
    CompressorGraphPainter m_painter;
    GraphGridCache m_grid;
    QPixmap m_curveLayer;
    CompressorCurve::Settings m_curveSettings;
    CompressorGraphPainter::Readout m_curveReadout;
    CompressorGraphPainter::Readout m_readout;
    bool m_readoutStale = true;
    bool m_curveEnabled = false;
    QSize m_curvePixels;
    double m_curveRatio = 0.0;
    QPixmap m_pointSprite;
    QSize m_pointSpriteSize;
    QPointF m_operatingPoint;
    bool m_hasOperatingPoint = false;
};
