#include "ORVChStrip/ORVChStripCompressorGraph.h"

#include <QPainter>
#include <cmath>

#include "Common/EffectEditor.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/PixelGridSnap.h"

using namespace ChannelStripKeys;

ORVChStripCompressorGraph::ORVChStripCompressorGraph(QWidget *parent)
    : QWidget(parent)
    // The keys in the order of ORVChStripCompressorGraph::Parameter.
    , m_parameters(this, { CompressorRatio, CompressorKnee, CompressorThresholdOffset, CompressorDrive })
    , m_grid(&CompressorGraphPainter::paintGrid)
{ }

ORVChStripCompressorGraph::~ORVChStripCompressorGraph()
{
    m_parameters.detach();
}

void ORVChStripCompressorGraph::setEditor(EffectEditor *editor)
{
    if (m_parameters.setLookup(editor ? &editor->parameterLookup() : nullptr))
        update();
}

void ORVChStripCompressorGraph::setMemAPI(IMemAPI *memAPI)
{
    if (m_parameters.setMemAPI(memAPI))
        update();
}

void ORVChStripCompressorGraph::setCh(int ch)
{
    if (m_parameters.setCh(static_cast<unsigned short>(ch)))
        update();
}

int ORVChStripCompressorGraph::Update(unsigned short, unsigned short, int, const char *)
{
    update();
    return 0;
}

CompressorCurve::Settings ORVChStripCompressorGraph::currentSettings() const
{
    // A parameter that cannot be read keeps its default.
    CompressorCurve::Settings settings;
    m_parameters.read(ThresholdOffset, &settings.thresholdOffset);
    m_parameters.read(Drive, &settings.drive);
    m_parameters.read(Ratio, &settings.ratioIndex);
    m_parameters.read(Knee, &settings.knee);
    return settings;
}

void ORVChStripCompressorGraph::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_grid.pixmap(size(), PixelGridSnap::devicePixelRatio(painter)));
    if (!m_parameters.memAPI())
        return;
    painter.drawPixmap(0, 0, curveLayer(currentSettings(), PixelGridSnap::devicePixelRatio(painter)));
    if (m_hasOperatingPoint && isEnabled())
        CompressorGraphPainter::paintOperatingPoint(painter, size(), m_operatingPoint);
}

void ORVChStripCompressorGraph::setOperatingPoint(double inputDb, double outputDb)
{
    // Below the graph's floor the point has nothing to show.
    if (inputDb < CompressorCurve::MinLevelDb) {
        clearOperatingPoint();
        return;
    }
    // Steps finer than a tenth of a dB move it by less than a pixel.
    const QPointF point(std::round(inputDb * 10.0) / 10.0, std::round(outputDb * 10.0) / 10.0);
    if (m_hasOperatingPoint && point == m_operatingPoint)
        return;
    const QRect before = operatingPointRect();
    m_operatingPoint = point;
    m_hasOperatingPoint = true;
    update(before | operatingPointRect());
}

const QPixmap &ORVChStripCompressorGraph::curveLayer(
    const CompressorCurve::Settings &settings, double devicePixelRatio)
{
    const QSize pixels = size() * devicePixelRatio;
    const CompressorCurve::Settings &cached = m_curveSettings;
    if (m_curveLayer.size() == pixels && m_curveLayer.devicePixelRatio() == devicePixelRatio
        && m_curveEnabled == isEnabled() && cached.ratioIndex == settings.ratioIndex
        && cached.knee == settings.knee && cached.thresholdOffset == settings.thresholdOffset
        && cached.drive == settings.drive)
        return m_curveLayer;
    m_curveLayer = QPixmap(pixels);
    m_curveLayer.setDevicePixelRatio(devicePixelRatio);
    m_curveLayer.fill(Qt::transparent);
    QPainter painter(&m_curveLayer);
    m_painter.setEnabled(isEnabled());
    m_painter.paintCurve(painter, size(), settings);
    m_curveSettings = settings;
    m_curveEnabled = isEnabled();
    return m_curveLayer;
}

QRect ORVChStripCompressorGraph::operatingPointRect() const
{
    if (!m_hasOperatingPoint)
        return QRect();
    return CompressorGraphPainter::operatingPointBounds(size(), m_operatingPoint)
        .toAlignedRect()
        .adjusted(-1, -1, 1, 1);
}

void ORVChStripCompressorGraph::clearOperatingPoint()
{
    if (!m_hasOperatingPoint)
        return;
    const QRect before = operatingPointRect();
    m_hasOperatingPoint = false;
    update(before);
}
