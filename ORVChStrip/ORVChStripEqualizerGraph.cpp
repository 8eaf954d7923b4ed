#include "ORVChStrip/ORVChStripEqualizerGraph.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>
#include <cstdlib>

#include "Common/EffectEditor.h"
#include "Interfaces/ChannelStripValueTables.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/PixelGridSnap.h"

using namespace ChannelStripTables;

namespace {

const QColor FrameColor(74, 76, 82);
const QColor CenterColor(0, 153, 102);
const QColor TotalBodyColor(255, 255, 255, 40);
const QColor TotalBodyDisableColor(128, 128, 128, 40);
const QColor TotalLineColor(255, 255, 255);
const QColor TotalLineDisableColor(128, 128, 128);
const QColor LowColor(241, 90, 36);
const QColor LowHighlightColor(255, 137, 39);
const QColor LowDisableColor(135, 66, 43);
const QColor MiddleColor(146, 70, 211);
const QColor MiddleHighlightColor(239, 101, 255);
const QColor MiddleDisableColor(74, 44, 120);
const QColor HighColor(5, 146, 224);
const QColor HighHighlightColor(0, 239, 255);
const QColor HighDisableColor(3, 82, 126);

// Fixed shape arguments of the band filters.
constexpr double PeakingWidthExp = 0.7;
constexpr double ShelfSlopeExp = 0.32;
constexpr double ReferenceGain = 18.0;

constexpr int WheelStep = 120;
constexpr int FineWheelStep = 360;

double frequencyValue(int v, double fallback)
{
    return v >= 0 && v < FreqCount ? FreqTable[v] : fallback;
}

double gainValue(int v)
{
    return v >= 0 && v < GainCount ? GainTable[v] : 0.0;
}

double qualityValue(int v)
{
    return v >= 0 && v < QCount ? QTable[v] : 1.0;
}

} // namespace

ORVChStripEqualizerGraph::ORVChStripEqualizerGraph(QWidget *parent, EffectEditor *editor)
    : QWidget(parent)
    , m_pEditor(editor)
    // The keys in the order of ORVChStripEqualizerGraph::Parameter.
    , m_parameters(this,
          { "fx_eq_lsv_onf", "fx_eq_lsvfreq", "fx_eq_lsvgain", "fx_eq_mid_onf", "fx_eq_midqual",
              "fx_eq_midfrq", "fx_eq_midgain", "fx_eq_hsv_onf", "fx_eq_hsvfrq", "fx_eq_hsvgain" })
{
    setAttribute(Qt::WA_MouseTracking);
    m_lowFilter.initializeFilterProc(m_fs);
    m_middleFilter.initializeFilterProc(m_fs);
    m_highFilter.initializeFilterProc(m_fs);
}

ORVChStripEqualizerGraph::~ORVChStripEqualizerGraph()
{
    unregisterParameter();
}

void ORVChStripEqualizerGraph::setMemAPI(IMemAPI *memAPI)
{
    unregisterParameter();
    m_pMemAPI = memAPI;
    registerParameter();
    invalidateCurves();
}

void ORVChStripEqualizerGraph::setCh(int ch)
{
    if (m_ch == ch)
        return;
    unregisterParameter();
    m_ch = ch;
    registerParameter();
    invalidateCurves();
}

void ORVChStripEqualizerGraph::setFs(int fs)
{
    if (m_fs == fs)
        return;
    m_fs = fs;
    m_lowFilter.initializeFilterProc(m_fs);
    updateCoefficients(TargetLow);
    m_middleFilter.initializeFilterProc(m_fs);
    updateCoefficients(TargetMiddle);
    m_highFilter.initializeFilterProc(m_fs);
    updateCoefficients(TargetHigh);
    invalidateCurves();
}

void ORVChStripEqualizerGraph::setEditTarget(EditTarget target)
{
    if (m_editTarget == target)
        return;
    m_editTarget = target;
    update();
}

bool ORVChStripEqualizerGraph::isBandOn(EditTarget band) const
{
    switch (band) {
    case TargetLow: return m_lowOn;
    case TargetMiddle: return m_middleOn;
    case TargetHigh: return m_highOn;
    default: return false;
    }
}

double ORVChStripEqualizerGraph::bandFrequency(EditTarget band) const
{
    switch (band) {
    case TargetLow: return m_lowFrequency;
    case TargetMiddle: return m_middleFrequency;
    case TargetHigh: return m_highFrequency;
    default: return 0.0;
    }
}

double ORVChStripEqualizerGraph::bandGain(EditTarget band) const
{
    switch (band) {
    case TargetLow: return m_lowGain;
    case TargetMiddle: return m_middleGain;
    case TargetHigh: return m_highGain;
    default: return 0.0;
    }
}

const FILTER2PEQ &ORVChStripEqualizerGraph::filter(EditTarget band) const
{
    switch (band) {
    case TargetMiddle: return m_middleFilter;
    case TargetHigh: return m_highFilter;
    default: return m_lowFilter;
    }
}

void ORVChStripEqualizerGraph::registerParameter()
{
    const auto ch = static_cast<unsigned short>(m_ch);
    m_parameters.attach(m_pEditor, m_pMemAPI, ch);
    for (int i = 0; i < ParameterCount; ++i) {
        int value = 0;
        if (m_parameters.found(i) && m_pMemAPI->getValue(m_parameters.id(i), ch, &value) >= 0)
            applyValue(i, value);
    }
    for (EditTarget band : { TargetLow, TargetMiddle, TargetHigh })
        updateCoefficients(band);
}

void ORVChStripEqualizerGraph::unregisterParameter()
{
    m_parameters.detach();
}

void ORVChStripEqualizerGraph::applyValue(int parameter, int value)
{
    switch (parameter) {
    case LowOn: m_lowOn = value != 0; break;
    case LowFrequency: m_lowFrequency = frequencyValue(value, 100.0); break;
    case LowGain: m_lowGain = gainValue(value); break;
    case MiddleOn: m_middleOn = value != 0; break;
    case MiddleQ: m_middleQ = qualityValue(value); break;
    case MiddleFrequency: m_middleFrequency = frequencyValue(value, 1000.0); break;
    case MiddleGain: m_middleGain = gainValue(value); break;
    case HighOn: m_highOn = value != 0; break;
    case HighFrequency: m_highFrequency = frequencyValue(value, 10000.0); break;
    case HighGain: m_highGain = gainValue(value); break;
    default: break;
    }
}

void ORVChStripEqualizerGraph::updateCoefficients(EditTarget band)
{
    const double fs = m_fs;
    switch (band) {
    case TargetLow:
        m_lowFilter.setCoefLowShelf_C(fs, m_lowFrequency, m_lowGain, ShelfSlopeExp, ReferenceGain);
        break;
    case TargetMiddle:
        m_middleFilter.setCoefPEQ_C(
            fs, m_middleFrequency, m_middleGain, m_middleQ, PeakingWidthExp, ReferenceGain);
        break;
    case TargetHigh:
        m_highFilter.setCoefHiShelf_C(fs, m_highFrequency, m_highGain, ShelfSlopeExp, ReferenceGain);
        break;
    default: break;
    }
}

int ORVChStripEqualizerGraph::Update(unsigned short prmId, unsigned short ch, int value, const char *)
{
    if (ch != static_cast<unsigned short>(m_ch))
        return 0;
    const int i = m_parameters.indexOf(prmId);
    if (i >= 0) {
        applyValue(i, value);
        updateCoefficients(i < MiddleOn ? TargetLow : i < HighOn ? TargetMiddle : TargetHigh);
    }
    invalidateCurves();
    return 0;
}

void ORVChStripEqualizerGraph::invalidateCurves()
{
    m_curvesValid = false;
    update();
}

EqualizerGraphGeometry ORVChStripEqualizerGraph::geometry() const
{
    return EqualizerGraphGeometry(width(), height());
}

EqualizerGraphGeometry ORVChStripEqualizerGraph::dragGeometry() const
{
    return EqualizerGraphGeometry::forDrag(width(), height());
}

ORVChStripEqualizerGraph::EditTarget ORVChStripEqualizerGraph::getPointTarget(const QPoint &point) const
{
    const EqualizerGraphGeometry g = geometry();
    EditTarget hit = TargetNone;
    for (EditTarget band : { TargetLow, TargetMiddle, TargetHigh }) {
        if (!isBandOn(band))
            continue;
        const QPointF d = QPointF(point) - g.handleCentre(bandFrequency(band), bandGain(band));
        if (std::hypot(d.x(), d.y()) < g.hitRadius())
            hit = band;
    }
    return hit;
}

QPointF ORVChStripEqualizerGraph::getTargetPoint(EditTarget target) const
{
    if (target == TargetNone)
        return QPointF(0.0, 0.0);
    return geometry().handleCentre(bandFrequency(target), bandGain(target));
}

ORVChStripEqualizerGraph::EditTarget ORVChStripEqualizerGraph::shownTarget() const
{
    return m_editTarget != TargetNone ? m_editTarget : m_hoverTarget;
}

QColor ORVChStripEqualizerGraph::bandColor(EditTarget band) const
{
    const bool enabled = isEnabled();
    const bool shown = enabled && band == shownTarget();
    switch (band) {
    case TargetLow: return !enabled ? LowDisableColor : shown ? LowHighlightColor : LowColor;
    case TargetMiddle: return !enabled ? MiddleDisableColor : shown ? MiddleHighlightColor : MiddleColor;
    default: return !enabled ? HighDisableColor : shown ? HighHighlightColor : HighColor;
    }
}

void ORVChStripEqualizerGraph::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_curvesValid = false;
}

void ORVChStripEqualizerGraph::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // A disabled widget gets no mouse events, so it lets go of the pointer now.
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        m_dragging = false;
        m_qualityDrag = false;
        if (m_hoverTarget != TargetNone)
            setHoverTarget(TargetNone);
    }
}

void ORVChStripEqualizerGraph::ensureGridLayer(double ratio)
{
    const QSize deviceSize = (QSizeF(size()) * ratio).toSize();
    if (!m_gridLayer.isNull() && m_gridLayer.size() == deviceSize && m_gridLayer.devicePixelRatio() == ratio)
        return;
    m_gridLayer = QPixmap(deviceSize);
    m_gridLayer.setDevicePixelRatio(ratio);
    m_gridLayer.fill(Qt::transparent);
    if (deviceSize.isEmpty())
        return;

    const EqualizerGraphGeometry g = geometry();
    const PixelGridSnap snap(ratio);
    const QRectF plot = snap.rect(g.plotRect());
    const double w = snap.lineWidth(g.unit());

    QPainter painter(&m_gridLayer);
    painter.setClipRect(plot);
    QPen pen(FrameColor, w);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    // The frame lies just inside the plot, so that the clip keeps all of it.
    painter.drawRect(plot.adjusted(w / 2, w / 2, -w / 2, -w / 2));
    for (int k : { 1, 2, 3, 5, 6, 7 }) {
        const double y = snap.lineCentre(g.margin() + g.plotHeight() * k / 8.0, w);
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
    }
    for (double ratioOfMax : EqualizerGraphGeometry::GridFrequencyRatios) {
        const double x = snap.lineCentre(g.gridX(ratioOfMax), w);
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
    pen.setColor(CenterColor);
    painter.setPen(pen);
    const double y0 = snap.lineCentre(g.zeroDbY(), w);
    painter.drawLine(QPointF(plot.left(), y0), QPointF(plot.right(), y0));
}

void ORVChStripEqualizerGraph::ensureCurves(double ratio)
{
    if (m_curvesValid && m_curvesSize == size() && m_curvesRatio == ratio)
        return;
    const std::array<EqualizerGraphCurves::Band, EqualizerGraphCurves::BandCount> bands { {
        { &m_lowFilter, m_lowOn },
        { &m_middleFilter, m_middleOn },
        { &m_highFilter, m_highOn },
    } };
    m_curves.compute(geometry(), m_fs, bands, ratio);
    m_curvesValid = true;
    m_curvesSize = size();
    m_curvesRatio = ratio;
    m_curveLayerValid = false;
}

void ORVChStripEqualizerGraph::ensureCurveLayer(double ratio)
{
    ensureGridLayer(ratio);
    ensureCurves(ratio);
    if (m_curveLayerValid && m_curveLayer.size() == m_gridLayer.size()
        && m_curveLayer.devicePixelRatio() == ratio && m_curveLayerTarget == shownTarget()
        && m_curveLayerEnabled == isEnabled())
        return;
    m_curveLayer = m_gridLayer;
    m_curveLayerValid = true;
    m_curveLayerTarget = shownTarget();
    m_curveLayerEnabled = isEnabled();
    if (m_curveLayer.isNull())
        return;
    QPainter painter(&m_curveLayer);
    painter.setClipRect(PixelGridSnap(ratio).rect(geometry().plotRect()));
    paintCurves(painter);
}

void ORVChStripEqualizerGraph::paintCurves(QPainter &painter) const
{
    const EqualizerGraphGeometry g = geometry();
    const bool enabled = isEnabled();
    const EditTarget shown = shownTarget();
    painter.setRenderHint(QPainter::Antialiasing);

    painter.setPen(Qt::NoPen);
    painter.setBrush(enabled ? TotalBodyColor : TotalBodyDisableColor);
    painter.drawPolygon(m_curves.totalPoints());

    painter.setBrush(Qt::NoBrush);
    for (EditTarget band : { TargetLow, TargetMiddle, TargetHigh }) {
        const QPolygonF &points = m_curves.bandPoints(band - 1);
        if (!isBandOn(band) || points.isEmpty())
            continue;
        const bool emphasised = enabled && band == shown;
        painter.setPen(QPen(
            bandColor(band), (emphasised ? 1.5 : 1.0) * g.unit(), Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
        painter.drawPolyline(points);
    }
    // The total's ends lie on the 0 dB line and are left open, so its stroke
    // never draws over the centre line.
    const QPolygonF &total = m_curves.totalPoints();
    painter.setPen(QPen(enabled ? TotalLineColor : TotalLineDisableColor, 2.0 * g.unit(), Qt::SolidLine,
        Qt::FlatCap, Qt::BevelJoin));
    if (total.size() > 2)
        painter.drawPolyline(total.constData() + 1, int(total.size()) - 2);
}

void ORVChStripEqualizerGraph::paintHandles(QPainter &painter) const
{
    const EqualizerGraphGeometry g = geometry();
    const bool enabled = isEnabled();
    const EditTarget shown = shownTarget();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (EditTarget band : { TargetLow, TargetMiddle, TargetHigh }) {
        if (!isBandOn(band))
            continue;
        const double r = g.handleRadius(enabled && band == shown);
        painter.setBrush(bandColor(band));
        painter.drawEllipse(getTargetPoint(band), r, r);
    }
}

void ORVChStripEqualizerGraph::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    ensureCurveLayer(PixelGridSnap::devicePixelRatio(painter));
    painter.drawPixmap(0, 0, m_curveLayer);
    // Handles are clipped to the whole widget, not to the plot.
    paintHandles(painter);
}

void ORVChStripEqualizerGraph::setHoverTarget(EditTarget target)
{
    m_hoverTarget = target;
    if (target != TargetNone)
        setCursor(Qt::PointingHandCursor);
    else
        unsetCursor();
    update();
}

void ORVChStripEqualizerGraph::updateHover(const QPoint &pos)
{
    if (!isEnabled()) {
        if (m_hoverTarget != TargetNone)
            setHoverTarget(TargetNone);
        return;
    }
    const EditTarget target = getPointTarget(pos);
    if (target != m_hoverTarget)
        setHoverTarget(target);
}

void ORVChStripEqualizerGraph::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !isEnabled() || m_dragging) {
        QWidget::mousePressEvent(event);
        return;
    }
    const QPoint pos = event->position().toPoint();
    const EditTarget target = getPointTarget(pos);
    m_hoverTarget = target;
    if (target == TargetNone) {
        unsetCursor();
        update();
        return;
    }
    setCursor(Qt::ClosedHandCursor);
    m_grabOffset = QPointF(pos) - getTargetPoint(target);
    m_dragging = true;
    m_lastPos = pos;
    m_qualityDrag = target == TargetMiddle && event->modifiers().testFlag(Qt::AltModifier);
    update();
}

void ORVChStripEqualizerGraph::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint pos = event->position().toPoint();
    if (!m_dragging) {
        updateHover(pos);
        return;
    }
    if (m_qualityDrag)
        dragQualityTo(pos);
    else
        dragTo(pos);
    m_lastPos = pos;
}

void ORVChStripEqualizerGraph::mouseReleaseEvent(QMouseEvent *event)
{
    const bool endsDrag = event->button() == Qt::LeftButton && m_dragging;
    const bool clearsDisabled = !isEnabled() && m_hoverTarget != TargetNone;
    if (!endsDrag && !clearsDisabled) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_dragging = false;
    m_qualityDrag = false;
    setHoverTarget(isEnabled() ? getPointTarget(event->position().toPoint()) : TargetNone);
}

void ORVChStripEqualizerGraph::dragTo(const QPoint &pos)
{
    const EditTarget band = m_hoverTarget;
    if (band == TargetNone)
        return;
    const EqualizerGraphGeometry g = dragGeometry();
    const double f
        = EqualizerGraphGeometry::clampFrequency(band, g.frequencyForX(pos.x() - m_grabOffset.x()));
    const double gain = EqualizerGraphGeometry::clampGain(g.gainForY(pos.y() - m_grabOffset.y()));
    switch (band) {
    case TargetLow:
        writeText(LowFrequency, f);
        writeText(LowGain, gain);
        break;
    case TargetMiddle:
        writeText(MiddleFrequency, f);
        writeText(MiddleGain, gain);
        break;
    default:
        writeText(HighFrequency, f);
        writeText(HighGain, gain);
        break;
    }
}

void ORVChStripEqualizerGraph::dragQualityTo(const QPoint &pos)
{
    if (!m_pMemAPI || !m_parameters.found(MiddleQ))
        return;
    // One Q step per drag unit; upwards raises the Q.
    const double unit = dragGeometry().unit();
    const int steps = static_cast<int>(std::floor((m_lastPos.y() - pos.y()) / unit + 0.5));
    if (steps == 0)
        return;
    int value = 0;
    if (m_pMemAPI->getValue(m_parameters.id(MiddleQ), static_cast<unsigned short>(m_ch), &value) < 0)
        return;
    writeValue(MiddleQ, value + steps);
}

void ORVChStripEqualizerGraph::writeText(int parameter, double physicalValue)
{
    if (!m_pMemAPI || !m_parameters.found(parameter))
        return;
    const QByteArray text = QByteArray::number(physicalValue, 'g', 6);
    int value = 0;
    if (m_pMemAPI->setValueString(
            m_parameters.id(parameter), static_cast<unsigned short>(m_ch), text.constData(), &value)
        >= 0)
        writeValue(parameter, value);
}

void ORVChStripEqualizerGraph::writeValue(int parameter, int value)
{
    m_pMemAPI->setValue(m_parameters.id(parameter), static_cast<unsigned short>(m_ch), value, 0, 0, 1);
}

void ORVChStripEqualizerGraph::wheelEvent(QWheelEvent *event)
{
    event->accept();
    if (!isEnabled() || m_dragging)
        return;
    updateHover(event->position().toPoint());
    const EditTarget band = m_hoverTarget;
    if (band == TargetNone || !m_pMemAPI)
        return;
    const Parameter gain = band == TargetLow ? LowGain : band == TargetMiddle ? MiddleGain : HighGain;
    if (!m_parameters.found(gain))
        return;

    const int divisor = event->modifiers().testFlag(Qt::ShiftModifier) ? FineWheelStep : WheelStep;
    const int steps = m_wheel.take(
        CommonController_MemAPI::WheelAccumulator::dominantDelta(event->angleDelta()), divisor);
    if (steps == 0)
        return;
    int value = 0;
    if (m_pMemAPI->getValue(m_parameters.id(gain), static_cast<unsigned short>(m_ch), &value) >= 0)
        writeValue(gain, value + steps);
}

void ORVChStripEqualizerGraph::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    if (!m_dragging && m_hoverTarget != TargetNone)
        setHoverTarget(TargetNone);
}
