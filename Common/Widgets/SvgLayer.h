#pragma once

#include <QColor>
#include <QPixmap>
#include <memory>

class QPainter;
class QSvgRenderer;

namespace CommonController_MemAPI {

// One SVG artwork layer of a control. The controls repaint the same artwork
// over and over (a knob during a drag, a meter 30 times a second), so the
// layer keeps what it rendered (plain, blurred into a shadow, or tinted) and
// renders again only when the size, the device pixel ratio, the blur radius
// or the tint changes. Every layer that shows one artwork file shares one
// parsed document: the editor draws a few dozen files on some hundred
// layers, and parsing is most of what a layer costs to set up.
class SvgLayer
{
public:
    SvgLayer();

    SvgLayer(const SvgLayer &) = delete;
    SvgLayer &operator=(const SvgLayer &) = delete;

    // Loads a resource path; an empty or broken path leaves the layer invalid.
    bool load(const QString &path);
    const QString &path() const { return m_path; }
    bool isValid() const;
    QSize defaultSize() const;

    // The artwork at `size` logical pixels for a device pixel ratio.
    QPixmap pixmap(const QSize &size, qreal dpr);
    // The artwork at `size`, blurred with `radius` logical pixels through a
    // one-item graphics scene. The canvas keeps the artwork's size; blur that
    // falls outside it is cut, as the artwork's own margins intend.
    QPixmap blurred(const QSize &size, qreal dpr, qreal radius);
    // The artwork's alpha filled with one colour (for icons).
    QPixmap tinted(const QSize &size, qreal dpr, const QColor &color);

    // Draws the cached artwork into `target` (logical coordinates).
    void paint(QPainter *painter, const QRectF &target, qreal dpr);

    void invalidate();

    // The blur itself, shared with callers that blur a composed picture.
    static QPixmap blur(const QPixmap &source, qreal radius);

private:
    QPixmap render(const QSize &size, qreal dpr);

    struct Entry
    {
        QPixmap pixmap;
        QSize size;
        qreal dpr = 0;
        qreal radius = -1;
        QColor color;
    };

    std::shared_ptr<QSvgRenderer> m_renderer;
    QString m_path;
    Entry m_plain;
    Entry m_blurred;
    Entry m_tinted;
};

} // namespace CommonController_MemAPI
