#include "ORVChStrip/ORVChStripEqualizerGraph.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>

#include "Common/EffectEditor.h"
#include "ORVChStrip/PixelGridSnap.h"

namespace {

constexpr int WheelStep = 120;
constexpr int FineWheelStep = 360;

// The observed keys: each band's fields in order, the shelves' missing Q
// left unbound.
std::vector<const char *> observedKeys(const EqualizerGraphBands &bands)
{
    std::vector<const char *> keys;
    for (const EqualizerGraphBand &band : bands) {
        for (int field = 0; field < EqualizerGraphBand::FieldCount; ++field)
            keys.push_back(band.key(EqualizerGraphBand::Field(field)));
    }
    return keys;
}

} // namespace

ORVChStripEqualizerGraph::ORVChStripEqualizerGraph(QWidget *parent)
    : QWidget(parent)
    , m_bands { { EqualizerGraphBand(EqualizerGraphBand::LowShelf),
          EqualizerGraphBand(EqualizerGraphBand::Peak), EqualizerGraphBand(EqualizerGraphBand::HighShelf) } }
    , m_parameters(this, observedKeys(m_bands))
    , m_grid(&EqualizerGraphPainter::paintGrid)
{
    setAttribute(Qt::WA_MouseTracking);
}

ORVChStripEqualizerGraph::~ORVChStripEqualizerGraph()
{
    m_parameters.detach();
}

int ORVChStripEqualizerGraph::parameterIndex(int band, EqualizerGraphBand::Field field)
{
    return band * EqualizerGraphBand::FieldCount + field;
}

void ORVChStripEqualizerGraph::setEditor(EffectEditor *editor)
{
    if (m_parameters.setLookup(editor ? &editor->parameterLookup() : nullptr))
        readAllValues();
}

void ORVChStripEqualizerGraph::setMemAPI(IMemAPI *memAPI)
{
    if (m_parameters.setMemAPI(memAPI))
        readAllValues();
}

void ORVChStripEqualizerGraph::setCh(int ch)
{
    if (m_parameters.setCh(static_cast<unsigned short>(ch)))
        readAllValues();
}

void ORVChStripEqualizerGraph::setFs(int fs)
{
    if (m_fs == fs)
        return;
    m_fs = fs;
    for (EqualizerGraphBand &band : m_bands)
        band.setSampleRate(m_fs);
    invalidateAllCurves();
}

void ORVChStripEqualizerGraph::setEditTarget(EditTarget target)
{
    if (m_editTarget == target)
        return;
    m_editTarget = target;
    update();
}

void ORVChStripEqualizerGraph::readAllValues()
{
    if (!m_parameters.memAPI())
        return;
    for (int b = 0; b < int(m_bands.size()); ++b) {
        for (int field = 0; field < EqualizerGraphBand::FieldCount; ++field) {
            int value = 0;
            if (m_parameters.read(parameterIndex(b, EqualizerGraphBand::Field(field)), &value))
                m_bands[b].applyValue(EqualizerGraphBand::Field(field), value);
        }
        m_bands[b].updateCoefficients(m_fs);
    }
    invalidateAllCurves();
}

int ORVChStripEqualizerGraph::Update(unsigned short prmId, unsigned short ch, int value, const char *)
{
    if (ch != m_parameters.ch())
        return 0;
    const int i = m_parameters.indexOf(prmId);
    if (i >= 0) {
        const int b = i / EqualizerGraphBand::FieldCount;
        m_bands[b].applyValue(EqualizerGraphBand::Field(i % EqualizerGraphBand::FieldCount), value);
        m_bands[b].updateCoefficients(m_fs);
        m_staleBands[b] = true;
    }
    update();
    return 0;
}

void ORVChStripEqualizerGraph::invalidateAllCurves()
{
    m_allCurvesStale = true;
    update();
}

EqualizerGraphGeometry ORVChStripEqualizerGraph::geometry() const
{
    return EqualizerGraphGeometry(width(), height());
}

void ORVChStripEqualizerGraph::setSpectrum(const float *output, const float *input, int count)
{
    if (!m_spectrumClock.isValid())
        m_spectrumClock.start();
    m_spectrum.setFrame(output, input, count, m_spectrumClock.elapsed());
    updatePlot();
}

void ORVChStripEqualizerGraph::clearSpectrum()
{
    if (m_spectrum.isEmpty())
        return;
    m_spectrum.clear();
    updatePlot();
}

// The spectrum lies inside the plot: the rest of the widget stays as it is.
void ORVChStripEqualizerGraph::updatePlot()
{
    update(geometry().plotRect().toAlignedRect().adjusted(-1, -1, 1, 1));
}

ORVChStripEqualizerGraph::EditTarget ORVChStripEqualizerGraph::getPointTarget(const QPoint &point) const
{
    const EqualizerGraphGeometry g = geometry();
    EditTarget hit = TargetNone;
    for (int b = 0; b < int(m_bands.size()); ++b) {
        if (!m_bands[b].isOn())
            continue;
        const QPointF d = QPointF(point) - g.handleCentre(m_bands[b].frequency(), m_bands[b].gain());
        if (std::hypot(d.x(), d.y()) < g.hitRadius())
            hit = EditTarget(b + 1);
    }
    return hit;
}

QPointF ORVChStripEqualizerGraph::getTargetPoint(EditTarget target) const
{
    if (target == TargetNone)
        return QPointF(0.0, 0.0);
    const EqualizerGraphBand &band = m_bands[target - 1];
    return geometry().handleCentre(band.frequency(), band.gain());
}

ORVChStripEqualizerGraph::EditTarget ORVChStripEqualizerGraph::shownTarget() const
{
    return m_editTarget != TargetNone ? m_editTarget : m_hoverTarget;
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

void ORVChStripEqualizerGraph::syncPainter()
{
    m_painter.setEnabled(isEnabled());
    // TargetLow..TargetHigh are the bands 0..2; TargetNone is NoBand.
    m_painter.setShownBand(shownTarget() - 1);
}

bool ORVChStripEqualizerGraph::ensureCurves(double ratio)
{
    if (m_allCurvesStale || m_curvesSize != size() || m_curvesRatio != ratio) {
        m_curves.compute(geometry(), m_fs, m_bands, ratio);
        m_curvesSize = size();
        m_curvesRatio = ratio;
        m_allCurvesStale = false;
        m_staleBands.fill(false);
        return true;
    }
    bool changed = false;
    for (int b = 0; b < int(m_staleBands.size()); ++b) {
        if (!m_staleBands[b])
            continue;
        m_curves.recomputeBand(b, m_bands);
        m_staleBands[b] = false;
        changed = true;
    }
    return changed;
}

void ORVChStripEqualizerGraph::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const double ratio = PixelGridSnap::devicePixelRatio(painter);
    syncPainter();
    // Under the grid and curves, which the cached layer draws over it.
    m_spectrum.paint(painter, size(), isEnabled());
    if (ensureCurves(ratio)) {
        // New curves are usually followed by more new curves (a drag, a
        // knob turned): draw grid and curves straight onto the widget, and
        // keep a layer only for curves that are shown a second time. The
        // grid's few lines cost no more than blending the whole cached
        // pixmap and touch far less memory, which is what a drag feels.
        m_curveLayerValid = false;
        EqualizerGraphPainter::paintGrid(painter, size());
        m_painter.paintCurves(painter, size(), m_curves);
    } else {
        painter.drawPixmap(0, 0, curveLayer(ratio));
    }
    m_painter.paintHandles(painter, size(), m_bands);
}

const QPixmap &ORVChStripEqualizerGraph::curveLayer(double ratio)
{
    if (m_curveLayerValid && m_curveLayerBand == m_painter.shownBand()
        && m_curveLayerEnabled == m_painter.isEnabled())
        return m_curveLayer;
    m_curveLayer = m_grid.pixmap(size(), ratio);
    m_curveLayerValid = true;
    m_curveLayerBand = m_painter.shownBand();
    m_curveLayerEnabled = m_painter.isEnabled();
    if (!m_curveLayer.isNull()) {
        QPainter painter(&m_curveLayer);
        m_painter.paintCurves(painter, size(), m_curves);
    }
    return m_curveLayer;
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
    if (m_hoverTarget == TargetNone)
        return;
    const int b = m_hoverTarget - 1;
    // The drag maps with its own unit (height/181 instead of height/191), so
    // the handle lands slightly off the pointer; that is intended.
    const EqualizerGraphGeometry g = EqualizerGraphGeometry::forDrag(width(), height());
    writeText(b, EqualizerGraphBand::Frequency,
        m_bands[b].clampFrequency(g.frequencyForX(pos.x() - m_grabOffset.x())));
    writeText(b, EqualizerGraphBand::Gain,
        EqualizerGraphGeometry::clampGain(g.gainForY(pos.y() - m_grabOffset.y())));
}

void ORVChStripEqualizerGraph::dragQualityTo(const QPoint &pos)
{
    const int quality = parameterIndex(EqualizerGraphBand::Peak, EqualizerGraphBand::Quality);
    // One Q step per drag unit; upwards raises the Q.
    const double unit = EqualizerGraphGeometry::forDrag(width(), height()).unit();
    const int steps = static_cast<int>(std::floor((m_lastPos.y() - pos.y()) / unit + 0.5));
    int value = 0;
    if (steps != 0 && m_parameters.read(quality, &value))
        m_parameters.write(quality, value + steps);
}

void ORVChStripEqualizerGraph::writeText(int band, EqualizerGraphBand::Field field, double physicalValue)
{
    m_parameters.writeText(
        parameterIndex(band, field), QByteArray::number(physicalValue, 'g', 6).constData());
}

void ORVChStripEqualizerGraph::wheelEvent(QWheelEvent *event)
{
    event->accept();
    if (!isEnabled() || m_dragging)
        return;
    updateHover(event->position().toPoint());
    if (m_hoverTarget == TargetNone)
        return;
    const int gain = parameterIndex(m_hoverTarget - 1, EqualizerGraphBand::Gain);
    if (!m_parameters.found(gain))
        return;

    const int divisor = event->modifiers().testFlag(Qt::ShiftModifier) ? FineWheelStep : WheelStep;
    const int steps = m_wheel.take(
        CommonController_MemAPI::WheelAccumulator::dominantDelta(event->angleDelta()), divisor);
    int value = 0;
    if (steps != 0 && m_parameters.read(gain, &value))
        m_parameters.write(gain, value + steps);
}

void ORVChStripEqualizerGraph::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    if (!m_dragging && m_hoverTarget != TargetNone)
        setHoverTarget(TargetNone);
}
