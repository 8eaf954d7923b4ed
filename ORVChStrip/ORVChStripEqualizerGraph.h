#pragma once

#include <QPixmap>
#include <QPoint>
#include <QPointF>
#include <QWidget>
#include <array>

#include "Common/ObservedParameters.h"
#include "Common/Widgets/WheelAccumulator.h"
#include "Interfaces/IPrmObserver.h"
#include "ORVChStrip/EqualizerGraphCurves.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
#include "ORVChStrip/Filter/FILTER2PEQ.h"

class EffectEditor;
class IMemAPI;
class QPainter;

// The three-band equalizer's response (low shelf, middle peak, high shelf)
// with a handle per band. Dragging a handle writes its band's frequency and
// gain (with Alt on the middle handle, its Q); the wheel over a handle steps
// its gain. The graph observes the ten equalizer parameters of one channel
// and redraws from the host's values only.
class ORVChStripEqualizerGraph : public QWidget, public IPrmObserver
{
    Q_OBJECT

public:
    enum EditTarget {
        TargetNone = EqualizerGraphGeometry::NoBand,
        TargetLow = EqualizerGraphGeometry::LowBand,
        TargetMiddle = EqualizerGraphGeometry::MiddleBand,
        TargetHigh = EqualizerGraphGeometry::HighBand,
    };
    Q_ENUM(EditTarget)

    explicit ORVChStripEqualizerGraph(QWidget *parent = nullptr, EffectEditor *editor = nullptr);
    // The editor whose parameter lookups the graph uses.
    void setEditor(EffectEditor *editor) { m_pEditor = editor; }
    ~ORVChStripEqualizerGraph() override;

    void setMemAPI(IMemAPI *memAPI);
    void setCh(int ch);
    void setFs(int fs);
    void setEditTarget(EditTarget target);

    IMemAPI *memAPI() const { return m_pMemAPI; }
    int ch() const { return m_ch; }
    int fs() const { return m_fs; }
    EditTarget editTarget() const { return m_editTarget; }
    EditTarget hoverTarget() const { return m_hoverTarget; }
    bool isDragging() const { return m_dragging; }

    bool isBandOn(EditTarget band) const;
    double bandFrequency(EditTarget band) const;
    double bandGain(EditTarget band) const;
    double middleQ() const { return m_middleQ; }
    // The band's filter; the low band's for TargetNone.
    const FILTER2PEQ &filter(EditTarget band) const;

    int Update(unsigned short prmId, unsigned short ch, int value, const char *text) override;
    int UpdateProperty(unsigned short, unsigned short, int, int, int, bool, const char *) override
    {
        return 0;
    }

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
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    // One per observed key, in registration order.
    enum Parameter {
        LowOn,
        LowFrequency,
        LowGain,
        MiddleOn,
        MiddleQ,
        MiddleFrequency,
        MiddleGain,
        HighOn,
        HighFrequency,
        HighGain,
        ParameterCount
    };

    void registerParameter();
    void unregisterParameter();
    void applyValue(int parameter, int value);
    void updateCoefficients(EditTarget band);
    void invalidateCurves();

    EqualizerGraphGeometry geometry() const;
    EqualizerGraphGeometry dragGeometry() const;
    EditTarget shownTarget() const;
    QColor bandColor(EditTarget band) const;
    void setHoverTarget(EditTarget target);
    void updateHover(const QPoint &pos);
    void dragTo(const QPoint &pos);
    void dragQualityTo(const QPoint &pos);
    void writeText(int parameter, double physicalValue);
    void writeValue(int parameter, int value);

    void ensureGridLayer(double devicePixelRatio);
    void ensureCurves(double devicePixelRatio);
    void ensureCurveLayer(double devicePixelRatio);
    void paintCurves(QPainter &painter) const;
    void paintHandles(QPainter &painter) const;

    EffectEditor *m_pEditor;
    IMemAPI *m_pMemAPI = nullptr;
    int m_ch = 0;
    ObservedParameters m_parameters;
    int m_fs = 44100;

    bool m_lowOn = true;
    double m_lowFrequency = 100.0;
    double m_lowGain = 0.0;
    bool m_middleOn = true;
    double m_middleQ = 1.0;
    double m_middleFrequency = 1000.0;
    double m_middleGain = 0.0;
    bool m_highOn = true;
    // A placeholder until the first registration reads the host's value.
    double m_highFrequency = 1.0;
    double m_highGain = 0.0;

    FILTER2PEQ m_lowFilter;
    FILTER2PEQ m_middleFilter;
    FILTER2PEQ m_highFilter;

    EditTarget m_editTarget = TargetNone;
    EditTarget m_hoverTarget = TargetNone;
    bool m_dragging = false;
    bool m_qualityDrag = false;
    QPointF m_grabOffset;
    QPoint m_lastPos;
    CommonController_MemAPI::WheelAccumulator m_wheel;

    // Curves are recomputed only when a value, the rate or the size changes.
    // The frame and grid, and the grid with the curves over it, are kept as
    // pixmaps at the device pixel ratio, so that a repaint that changes only
    // the handles is two blits and three circles.
    EqualizerGraphCurves m_curves;
    bool m_curvesValid = false;
    QSize m_curvesSize;
    double m_curvesRatio = 0.0;
    QPixmap m_gridLayer;
    QPixmap m_curveLayer;
    bool m_curveLayerValid = false;
    EditTarget m_curveLayerTarget = TargetNone;
    bool m_curveLayerEnabled = true;
};
