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
// paint reads ratio, knee, threshold offset and drive from the host.
//
// A form creates it with its parent alone; the editor then hands itself over
// with setEditor(), through which the parameter keys are looked up.
class ORVChStripCompressorGraph : public QWidget, public IPrmObserver
{
    Q_OBJECT

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
    void paintEvent(QPaintEvent *event) override;

private:
    enum Parameter { Ratio, Knee, ThresholdOffset, Drive, ParameterCount };

    // The curve over a transparent background, kept while settings, size,
    // ratio and enabled state stay: the operating point moves over it at
    // the meters' rate.
    const QPixmap &curveLayer(const CompressorCurve::Settings &settings, double devicePixelRatio);
    QRect operatingPointRect() const;

    ObservedParameters m_parameters;
    CompressorGraphPainter m_painter;
    GraphGridCache m_grid;
    QPixmap m_curveLayer;
    CompressorCurve::Settings m_curveSettings;
    bool m_curveEnabled = false;
    QPointF m_operatingPoint;
    bool m_hasOperatingPoint = false;
};
