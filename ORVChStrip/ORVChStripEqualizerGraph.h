#pragma once

#include <QElapsedTimer>
#include <QPixmap>
#include <QPoint>
#include <QPointF>
#include <QWidget>

#include "Common/ObservedParameters.h"
#include "Common/Widgets/WheelAccumulator.h"
#include "Interfaces/IPrmObserver.h"
#include "ORVChStrip/EqualizerGraphBand.h"
#include "ORVChStrip/EqualizerGraphCurves.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
#include "ORVChStrip/EqualizerGraphPainter.h"
#include "ORVChStrip/EqualizerSpectrumLayer.h"
#include "ORVChStrip/GraphGridCache.h"

class EffectEditor;
class IMemAPI;

// The three-band equalizer's response (low shelf, middle peak, high shelf)
// with a handle per band. Dragging a handle writes its band's frequency and
// gain (with Alt on the middle handle, its Q); the wheel over a handle steps
// its gain. The graph observes the ten equalizer parameters of one channel
// and redraws from the host's values only.
//
// Behind the curves it can show the signal's spectrum (setSpectrum()); a
// new frame repaints the plot only, over the cached grid and curves.
//
// A form creates it with its parent alone; the editor then hands itself over
// with setEditor(), through which the parameter keys are looked up.
class ORVChStripEqualizerGraph : public QWidget, public IPrmObserver
{
    Q_OBJECT

public:
    enum EditTarget { TargetNone = 0, TargetLow = 1, TargetMiddle = 2, TargetHigh = 3 };
    Q_ENUM(EditTarget)

    explicit ORVChStripEqualizerGraph(QWidget *parent = nullptr);
    ~ORVChStripEqualizerGraph() override;

    void setEditor(EffectEditor *editor);
    void setMemAPI(IMemAPI *memAPI);
    void setCh(int ch);
    void setFs(int fs);
    void setEditTarget(EditTarget target);

    IMemAPI *memAPI() const { return m_parameters.memAPI(); }
    int ch() const { return m_parameters.ch(); }
    int fs() const { return m_fs; }
    EditTarget editTarget() const { return m_editTarget; }
    EditTarget hoverTarget() const { return m_hoverTarget; }
    bool isDragging() const { return m_dragging; }
    // Indexed by EqualizerGraphBand::Shape.
    const EqualizerGraphBands &bands() const { return m_bands; }

    int Update(unsigned short prmId, unsigned short ch, int value, const char *text) override;
    int UpdateProperty(unsigned short, unsigned short, int, int, int, bool, const char *) override
    {
        return 0;
    }

    // A frame of SpectrumBands levels in dB; `input` may be null.
    void setSpectrum(const float *output, const float *input, int count);
    void clearSpectrum();
    const EqualizerSpectrumLayer &spectrum() const { return m_spectrum; }

    // The band whose handle is under `point` (a later band wins), or none.
    EditTarget getPointTarget(const QPoint &point) const;
    // The centre of a band's handle; (0, 0) for none.
    QPointF getTargetPoint(EditTarget target) const;

    QSize sizeHint() const override { return QSize(437, 191); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    static int parameterIndex(int band, EqualizerGraphBand::Field field);

    void readAllValues();
    void invalidateAllCurves();

    EqualizerGraphGeometry geometry() const;
    void updatePlot();
    EditTarget shownTarget() const;
    void setHoverTarget(EditTarget target);
    void updateHover(const QPoint &pos);
    void dragTo(const QPoint &pos);
    void dragQualityTo(const QPoint &pos);
    void writeText(int band, EqualizerGraphBand::Field field, double physicalValue);

    void syncPainter();
    // Brings the curves up to date; true if any was computed anew.
    bool ensureCurves(double devicePixelRatio);
    const QPixmap &curveLayer(double devicePixelRatio);

    int m_fs = 44100;
    EqualizerGraphBands m_bands;
    ObservedParameters m_parameters;

    EditTarget m_editTarget = TargetNone;
    EditTarget m_hoverTarget = TargetNone;
    bool m_dragging = false;
    bool m_qualityDrag = false;
    QPointF m_grabOffset;
    QPoint m_lastPos;
    CommonController_MemAPI::WheelAccumulator m_wheel;

    // Each band's response is kept until that band, the rate, the size or
    // the ratio changes. The frame and grid, and the grid with the curves
    // over it, are kept as pixmaps at the device pixel ratio, so that a
    // repaint that changes only the handles is a blit and three circles.
    // The curve layer is keyed by the curves, the emphasised band and the
    // enabled state.
    EqualizerGraphPainter m_painter;
    GraphGridCache m_grid;
    EqualizerGraphCurves m_curves;
    QSize m_curvesSize;
    double m_curvesRatio = 0.0;
    bool m_allCurvesStale = true;
    std::array<bool, EqualizerGraphCurves::BandCount> m_staleBands {};
    QPixmap m_curveLayer;
    bool m_curveLayerValid = false;
    int m_curveLayerBand = EqualizerGraphPainter::NoBand;
    bool m_curveLayerEnabled = true;
    EqualizerSpectrumLayer m_spectrum;
    QElapsedTimer m_spectrumClock;
};
