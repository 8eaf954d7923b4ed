#include "Common/Widgets/SvgLayer.h"

#include <QGraphicsBlurEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QHash>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace CommonController_MemAPI {

namespace {

// Many controls show the same artwork at the same size (fourteen knob
// shadows, a dozen switches), so renders are shared through the
// application's pixmap cache, keyed by everything that shapes them.
QString sharedKey(const char *kind, const QString &path, const QSize &size, qreal dpr, qreal extra = 0)
{
    // Built for every layer of every control a panel opens with: plain
    // concatenation, and the ratio and radius in hundredths.
    return QLatin1String("orv:") + QLatin1String(kind) + QLatin1Char(':') + path + QLatin1Char(':')
        + QString::number(size.width()) + QLatin1Char('x') + QString::number(size.height()) + QLatin1Char('@')
        + QString::number(qRound64(dpr * 100)) + QLatin1Char(':') + QString::number(qRound64(extra * 100));
}

// The parsed artwork files, one renderer per path for the life of the
// process (a broken path keeps its invalid renderer, so it is tried once).
// The artwork is static: no layer reloads a shared renderer.
std::shared_ptr<QSvgRenderer> sharedRenderer(const QString &path)
{
    static QHash<QString, std::shared_ptr<QSvgRenderer>> renderers;
    std::shared_ptr<QSvgRenderer> &renderer = renderers[path];
    if (!renderer)
        renderer = std::make_shared<QSvgRenderer>(path);
    return renderer;
}

} // namespace

SvgLayer::SvgLayer() = default;

bool SvgLayer::load(const QString &path)
{
    m_path = path;
    invalidate();
    m_renderer = path.isEmpty() ? nullptr : sharedRenderer(path);
    return isValid();
}

bool SvgLayer::isValid() const
{
    return m_renderer && m_renderer->isValid();
}

QSize SvgLayer::defaultSize() const
{
    return m_renderer ? m_renderer->defaultSize() : QSize();
}

void SvgLayer::invalidate()
{
    m_plain = Entry();
    m_blurred = Entry();
    m_tinted = Entry();
}

QPixmap SvgLayer::render(const QSize &size, qreal dpr)
{
    QPixmap pixmap(size * dpr);
    pixmap.setDevicePixelRatio(dpr);
    pixmap.fill(Qt::transparent);
    if (isValid() && !size.isEmpty()) {
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        m_renderer->render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    }
    return pixmap;
}

QPixmap SvgLayer::pixmap(const QSize &size, qreal dpr)
{
    if (m_plain.pixmap.isNull() || m_plain.size != size || m_plain.dpr != dpr) {
        const QString key = sharedKey("plain", m_path, size, dpr);
        if (m_path.isEmpty() || !QPixmapCache::find(key, &m_plain.pixmap)) {
            m_plain.pixmap = render(size, dpr);
            if (!m_path.isEmpty())
                QPixmapCache::insert(key, m_plain.pixmap);
        }
        m_plain.size = size;
        m_plain.dpr = dpr;
    }
    return m_plain.pixmap;
}

QPixmap SvgLayer::blurred(const QSize &size, qreal dpr, qreal radius)
{
    if (m_blurred.pixmap.isNull() || m_blurred.size != size || m_blurred.dpr != dpr
        || m_blurred.radius != radius) {
        const QString key = sharedKey("blurred", m_path, size, dpr, radius);
        if (m_path.isEmpty() || !QPixmapCache::find(key, &m_blurred.pixmap)) {
            m_blurred.pixmap = blur(pixmap(size, dpr), radius * dpr);
            if (!m_path.isEmpty())
                QPixmapCache::insert(key, m_blurred.pixmap);
        }
        m_blurred.size = size;
        m_blurred.dpr = dpr;
        m_blurred.radius = radius;
    }
    return m_blurred.pixmap;
}

QPixmap SvgLayer::tinted(const QSize &size, qreal dpr, const QColor &color)
{
    if (m_tinted.pixmap.isNull() || m_tinted.size != size || m_tinted.dpr != dpr || m_tinted.color != color) {
        QPixmap result = pixmap(size, dpr);
        QPainter painter(&result);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(QRectF(QPointF(0, 0), QSizeF(size)), color);
        painter.end();
        m_tinted.pixmap = result;
        m_tinted.size = size;
        m_tinted.dpr = dpr;
        m_tinted.color = color;
    }
    return m_tinted.pixmap;
}

void SvgLayer::paint(QPainter *painter, const QRectF &target, qreal dpr)
{
    if (!isValid() || target.isEmpty())
        return;
    const QSize size = target.size().toSize();
    painter->drawPixmap(target.topLeft(), pixmap(size, dpr));
}

QPixmap SvgLayer::blur(const QPixmap &source, qreal radius)
{
    if (source.isNull() || radius <= 0)
        return source;
    // The blur works in device pixels; the scene holds the pixmap unscaled.
    QPixmap device = source;
    device.setDevicePixelRatio(1.0);

    QGraphicsScene scene;
    auto *item = new QGraphicsPixmapItem(device);
    auto *effect = new QGraphicsBlurEffect;
    effect->setBlurRadius(radius);
    effect->setBlurHints(QGraphicsBlurEffect::QualityHint);
    item->setGraphicsEffect(effect);
    scene.addItem(item);

    QPixmap result(device.size());
    result.fill(Qt::transparent);
    QPainter painter(&result);
    const QRectF rect(QPointF(0, 0), QSizeF(device.size()));
    scene.render(&painter, rect, rect);
    painter.end();
    result.setDevicePixelRatio(source.devicePixelRatio());
    return result;
}

} // namespace CommonController_MemAPI
