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
    if (m_parameters.setEditor(editor))
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
    m_painter.setEnabled(isEnabled());
    m_painter.paintCurve(painter, size(), currentSettings());
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
    m_operatingPoint = point;
    m_hasOperatingPoint = true;
    update();
}

void ORVChStripCompressorGraph::clearOperatingPoint()
{
    if (!m_hasOperatingPoint)
        return;
    m_hasOperatingPoint = false;
    update();
}
