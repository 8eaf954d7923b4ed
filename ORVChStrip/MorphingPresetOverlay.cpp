#include "ORVChStrip/MorphingPresetOverlay.h"

#include <QWidget>

#include "ORVChStrip/ReversibleProgress.h"

namespace {

int scaled(int length, double scale)
{
    return int(length * scale + 0.5);
}

} // namespace

MorphingPresetOverlay::MorphingPresetOverlay(QWidget *list)
    : QObject(list)
    , m_pList(list)
    // The slide gains a step when it reverses, so a reversal always moves.
    , m_pSlide(new ReversibleProgress(SlideIntervalMs, 0.1, this))
    , m_focus(list)
{
    m_pList->setGeometry(DesignRect);
    m_pList->hide();
    connect(m_pSlide, &ReversibleProgress::changed, this, &MorphingPresetOverlay::place);
    connect(m_pSlide, &ReversibleProgress::finished, this, &MorphingPresetOverlay::finish);
}

bool MorphingPresetOverlay::isSliding() const
{
    return m_pSlide->isRunning();
}

QRect MorphingPresetOverlay::fullGeometry() const
{
    const QRect &design = DesignRect;
    return QRect(scaled(design.left(), m_scale), scaled(design.top(), m_scale),
        scaled(design.width(), m_scale), scaled(design.height(), m_scale));
}

void MorphingPresetOverlay::setScale(double scale)
{
    m_scale = scale;
    if (m_pSlide->isRunning())
        place(m_pSlide->visibleFraction());
}

void MorphingPresetOverlay::open()
{
    if (m_open)
        return;
    m_open = true;
    m_pList->raise();
    m_pList->show();
    // Before the controls behind the list are disabled, which moves the focus.
    m_focus.enter();
    emit coverChanged(true);
    m_pSlide->open();
}

void MorphingPresetOverlay::close()
{
    if (!m_open)
        return;
    m_open = false;
    emit coverChanged(false);
    m_focus.leave();
    m_pSlide->close();
}

// The list grows upwards from its bottom edge.
void MorphingPresetOverlay::place(double openFraction)
{
    const QRect full = fullGeometry();
    const int bottom = full.bottom() + 1;
    const int top = bottom - int((bottom - full.top()) * openFraction + 0.5);
    m_pList->setGeometry(full.left(), top, full.width(), bottom - top);
}

void MorphingPresetOverlay::finish(bool opened)
{
    if (opened) {
        m_pList->setGeometry(fullGeometry());
        m_pList->setFocus();
    } else {
        m_pList->hide();
    }
}
