#include "ORVChStrip/ORVChStripCompressorGraph.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <cmath>

#include "Common/EffectEditor.h"
#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/PixelGridSnap.h"

using namespace ChannelStripKeys;

ORVChStripCompressorGraph::ORVChStripCompressorGraph(QWidget *parent)
    : QWidget(parent)
    // The keys in the order of ORVChStripCompressorGraph::Parameter.
    , m_parameters(this,
          { CompressorRatio, CompressorKnee, CompressorThresholdOffset, CompressorDrive,
              CompressorMakeUpOffset })
    , m_grid(&CompressorGraphPainter::paintGrid)
{ }

ORVChStripCompressorGraph::~ORVChStripCompressorGraph()
{
    m_parameters.detach();
}

void ORVChStripCompressorGraph::setEditor(EffectEditor *editor)
{
    if (m_parameters.setLookup(editor ? &editor->parameterLookup() : nullptr))
        parametersChanged();
}

void ORVChStripCompressorGraph::setMemAPI(IMemAPI *memAPI)
{
    if (m_parameters.setMemAPI(memAPI))
        parametersChanged();
}

void ORVChStripCompressorGraph::setCh(int ch)
{
    if (m_parameters.setCh(static_cast<unsigned short>(ch)))
        parametersChanged();
}

int ORVChStripCompressorGraph::Update(unsigned short, unsigned short, int, const char *)
{
    parametersChanged();
    return 0;
}

void ORVChStripCompressorGraph::parametersChanged()
{
    m_readoutStale = true;
    update();
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

QString ORVChStripCompressorGraph::decibelText(Parameter parameter, double (*fallback)(int)) const
{
    int value = 0;
    if (!m_parameters.read(parameter, &value))
        return QString();
    char buffer[256] = {};
    QString text;
    if (m_parameters.memAPI()->getValueString(
            m_parameters.id(parameter), m_parameters.ch(), value, buffer, int(sizeof buffer))
        >= 0) {
        buffer[sizeof buffer - 1] = '\0';
        text = QString::fromLocal8Bit(buffer).trimmed();
    }
    if (text.isEmpty())
        text = QString::asprintf("%+.1f", fallback(value));
    return text.endsWith(QLatin1String("dB")) ? text : text + QStringLiteral(" dB");
}

CompressorGraphPainter::Readout ORVChStripCompressorGraph::currentReadout() const
{
    return { decibelText(ThresholdOffset, [](int value) { return CompressorCurve::threshold(value); }),
        decibelText(MakeUpOffset, [](int value) { return -10.0 + 0.1 * value; }) };
}

QString ORVChStripCompressorGraph::readoutText() const
{
    const CompressorGraphPainter::Readout readout = currentReadout();
    QStringList parts;
    if (!readout.thresholdOffset.isEmpty())
        parts << tr("Threshold offset %1").arg(readout.thresholdOffset);
    if (!readout.makeUpOffset.isEmpty())
        parts << tr("make-up offset %1").arg(readout.makeUpOffset);
    return parts.join(QStringLiteral(", "));
}

QString ORVChStripCompressorGraph::toolTipText() const
{
    const CompressorGraphPainter::Readout readout = currentReadout();
    if (readout.thresholdOffset.isEmpty() && readout.makeUpOffset.isEmpty())
        return QString();
    const CompressorCurve::Settings settings = currentSettings();
    const double effective = CompressorCurve::effectiveThreshold(
        CompressorCurve::threshold(settings.thresholdOffset), CompressorCurve::drive(settings.drive));
    QStringList lines;
    if (!readout.thresholdOffset.isEmpty()) {
        lines << tr("Threshold offset %1").arg(readout.thresholdOffset);
        lines << tr("Effective threshold %1 dB (offset and drive together)").arg(effective, 0, 'f', 1);
    }
    if (!readout.makeUpOffset.isEmpty())
        lines << tr("Make-up offset %1, added after the curve").arg(readout.makeUpOffset);
    return lines.join(QLatin1Char('\n'));
}

bool ORVChStripCompressorGraph::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        // Worded when asked, so the tip shows the values of that moment.
        const QString text = toolTipText();
        if (text.isEmpty()) {
            QToolTip::hideText();
            event->ignore();
        } else {
            QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), text, this, rect());
        }
        return true;
    }
    return QWidget::event(event);
}

void ORVChStripCompressorGraph::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_grid.pixmap(size(), PixelGridSnap::devicePixelRatio(painter)));
    if (!m_parameters.memAPI())
        return;
    // The offsets' texts are worded when they change, not at the meters'
    // rate at which the operating point repaints its spot.
    if (m_readoutStale) {
        m_readout = currentReadout();
        m_readoutStale = false;
    }
    const double ratio = PixelGridSnap::devicePixelRatio(painter);
    paintCurve(painter, currentSettings(), ratio);
    if (m_hasOperatingPoint && isEnabled()) {
        if (m_pointSprite.isNull() || m_pointSpriteSize != size()
            || m_pointSprite.devicePixelRatio() != ratio) {
            m_pointSprite = CompressorGraphPainter::operatingPointSprite(size(), ratio);
            m_pointSpriteSize = size();
        }
        CompressorGraphPainter::paintOperatingPoint(painter, size(), m_operatingPoint, m_pointSprite);
    }
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

void ORVChStripCompressorGraph::paintCurve(
    QPainter &painter, const CompressorCurve::Settings &settings, double devicePixelRatio)
{
    const QSize pixels = size() * devicePixelRatio;
    const CompressorCurve::Settings &last = m_curveSettings;
    const bool same = m_curvePixels == pixels && m_curveRatio == devicePixelRatio
        && m_curveEnabled == isEnabled() && last.ratioIndex == settings.ratioIndex
        && last.knee == settings.knee && last.thresholdOffset == settings.thresholdOffset
        && last.drive == settings.drive && m_curveReadout == m_readout;
    if (same && !m_curveLayer.isNull()) {
        painter.drawPixmap(0, 0, m_curveLayer);
        return;
    }
    m_painter.setEnabled(isEnabled());
    if (!same) {
        // A new curve (an open, a morph step) is drawn straight onto the
        // widget; only one painted again (under the moving operating point)
        // is worth a layer.
        m_curveLayer = QPixmap();
        m_curveSettings = settings;
        m_curveReadout = m_readout;
        m_curveEnabled = isEnabled();
        m_curvePixels = pixels;
        m_curveRatio = devicePixelRatio;
        m_painter.paintCurve(painter, size(), settings);
        m_painter.paintReadout(painter, size(), font(), m_readout);
        return;
    }
    m_curveLayer = QPixmap(pixels);
    m_curveLayer.setDevicePixelRatio(devicePixelRatio);
    m_curveLayer.fill(Qt::transparent);
    QPainter layer(&m_curveLayer);
    m_painter.paintCurve(layer, size(), settings);
    m_painter.paintReadout(layer, size(), font(), m_readout);
    layer.end();
    painter.drawPixmap(0, 0, m_curveLayer);
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
