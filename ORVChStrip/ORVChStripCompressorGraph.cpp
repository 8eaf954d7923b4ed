#include "ORVChStrip/ORVChStripCompressorGraph.h"

#include <QPainter>

#include "Common/EffectEditor.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/PixelGridSnap.h"
#include "ORVChStrip/PolylineSimplify.h"

namespace {

const QColor FrameColor(74, 76, 82);
const QColor CurveLineColor(247, 147, 30);
const QColor CurveDisbaleLineColor(128, 128, 128);
const QColor CurveBodyColor(247, 147, 30, 40);
const QColor CurveDisbaleBodyColor(128, 128, 128, 40);

// The observed keys, in the order of ORVChStripCompressorGraph::Parameter.

constexpr double DesignHeight = 191.0;

struct PlotGeometry
{
    double unit;
    QRectF plot;
};

PlotGeometry plotGeometry(const QSize &size)
{
    const double u = size.height() / DesignHeight;
    const double margin = 5.0 * u + 0.5 * u;
    return { u, QRectF(margin, margin, size.width() - 11.0 * u, size.height() - 11.0 * u) };
}

} // namespace

ORVChStripCompressorGraph::ORVChStripCompressorGraph(QWidget *parent, EffectEditor *editor)
    : QWidget(parent)
    , m_pEditor(editor)
    , m_parameters(this, { "fx_cmp_rto", "fx_cmp_kne", "fx_cmp_trsofst", "fx_cmp_drv" })
{ }

ORVChStripCompressorGraph::~ORVChStripCompressorGraph()
{
    removeObservers();
}

void ORVChStripCompressorGraph::setMemAPI(IMemAPI *memAPI)
{
    removeObservers();
    m_pMemAPI = memAPI;
    addObservers();
    update();
}

void ORVChStripCompressorGraph::setCh(int ch)
{
    if (m_ch == ch)
        return;
    removeObservers();
    m_ch = ch;
    addObservers();
    update();
}

void ORVChStripCompressorGraph::addObservers()
{
    m_parameters.attach(m_pEditor, m_pMemAPI, static_cast<unsigned short>(m_ch));
}

void ORVChStripCompressorGraph::removeObservers()
{
    m_parameters.detach();
}

int ORVChStripCompressorGraph::Update(unsigned short, unsigned short, int, const char *)
{
    update();
    return 0;
}

bool ORVChStripCompressorGraph::readValue(Parameter parameter, int *value) const
{
    return m_parameters.found(parameter)
        && m_pMemAPI->getValue(m_parameters.id(parameter), static_cast<unsigned short>(m_ch), value) >= 0;
}

CompressorCurve::Settings ORVChStripCompressorGraph::currentSettings() const
{
    CompressorCurve::Settings settings;
    if (!m_pMemAPI)
        return settings;
    readValue(ThresholdOffset, &settings.thresholdOffset);
    readValue(Drive, &settings.drive);
    readValue(Ratio, &settings.ratioIndex);
    readValue(Knee, &settings.knee);
    return settings;
}

void ORVChStripCompressorGraph::ensureGridLayer(double ratio)
{
    const QSize deviceSize = (QSizeF(size()) * ratio).toSize();
    if (!m_gridLayer.isNull() && m_gridLayer.size() == deviceSize && m_gridLayer.devicePixelRatio() == ratio)
        return;
    m_gridLayer = QPixmap(deviceSize);
    m_gridLayer.setDevicePixelRatio(ratio);
    m_gridLayer.fill(Qt::transparent);
    if (deviceSize.isEmpty())
        return;

    const PlotGeometry g = plotGeometry(size());
    const PixelGridSnap snap(ratio);
    const QRectF plot = snap.rect(g.plot);
    const double w = snap.lineWidth(g.unit);

    QPainter painter(&m_gridLayer);
    painter.setClipRect(plot);
    QPen pen(FrameColor, w);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    // The frame lies just inside the plot, so that the clip keeps all of it.
    painter.drawRect(plot.adjusted(w / 2, w / 2, -w / 2, -w / 2));
    for (int k : { 1, 2 }) {
        const double y = snap.lineCentre(g.plot.top() + g.plot.height() * k / 3.0, w);
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        const double x = snap.lineCentre(g.plot.left() + g.plot.width() * k / 3.0, w);
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
}

void ORVChStripCompressorGraph::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const double ratio = PixelGridSnap::devicePixelRatio(painter);
    ensureGridLayer(ratio);
    painter.drawPixmap(0, 0, m_gridLayer);
    if (!m_pMemAPI)
        return;

    const PlotGeometry g = plotGeometry(size());
    // The device pixel ratio in whole pixels (the scaled metric over 65536).
    const int p = static_cast<int>(ratio);
    const QPolygonF outline
        = simplifiedPolyline(CompressorCurve::outline(QSizeF(size()), p, currentSettings()), 0.1 / ratio);

    const bool enabled = isEnabled();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(PixelGridSnap(ratio).rect(g.plot));
    painter.setPen(QPen(enabled ? CurveLineColor : CurveDisbaleLineColor, 2.0 * g.unit, Qt::SolidLine,
        Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(enabled ? CurveBodyColor : CurveDisbaleBodyColor);
    painter.drawPolygon(outline);
}
