#include "ORVChStrip/FadingOverlay.h"

#include <QKeyEvent>
#include <QShowEvent>
#include <algorithm>
#include <cmath>

#include "Common/EffectEditor.h"

namespace {

int alpha(double opacity, int full)
{
    const double fraction = std::isnan(opacity) ? 0.0 : std::clamp(opacity, 0.0, 1.0);
    return int(std::lround(full * fraction));
}

// The editor the overlay lies in, if any.
EffectEditor *editorAbove(const QWidget *widget)
{
    for (QWidget *ancestor = widget->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        if (auto *editor = qobject_cast<EffectEditor *>(ancestor))
            return editor;
    }
    return nullptr;
}

} // namespace

FadingOverlay::FadingOverlay(QWidget *parent)
    : QWidget(parent)
    , m_fade(FadeIntervalMs, 0.0)
    , m_focus(this)
{
    connect(&m_fade, &ReversibleProgress::changed, this, &FadingOverlay::setOpacity);
    connect(&m_fade, &ReversibleProgress::finished, this, &FadingOverlay::fadeFinished);
    hide(); // closed until opened
}

void FadingOverlay::buildContentsWhenNeeded()
{
    if (!editorAbove(this))
        buildContentsNow();
}

void FadingOverlay::buildContentsNow()
{
    m_hasContents = true;
    buildContents();
    if (EffectEditor *editor = editorAbove(this))
        editor->initializeLateWidgets(this);
    // A fade may have begun before there was anything to fade.
    setOpacity(m_fade.visibleFraction());
}

void FadingOverlay::setVisible(bool visible)
{
    if (visible && !m_hasContents)
        buildContentsNow();
    QWidget::setVisible(visible);
}

void FadingOverlay::open()
{
    // The first step's opacity is applied before the overlay appears, so it
    // never flashes at the opacity it was left with.
    m_fade.open();
    if (m_fade.isRunning() && m_fade.isOpening()) {
        show();
        m_focus.enter();
    }
}

void FadingOverlay::close()
{
    m_fade.close();
    if (!m_fade.isOpening())
        m_focus.leave();
}

void FadingOverlay::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        event->accept();
        escape();
        return;
    }
    QWidget::keyPressEvent(event);
}

bool FadingOverlay::focusNextPrevChild(bool next)
{
    return m_focus.cycle(next) || QWidget::focusNextPrevChild(next);
}

void FadingOverlay::fadeFinished(bool opened)
{
    if (!opened)
        hide();
}

void FadingOverlay::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Shown directly rather than through open(): show it whole, not at the
    // transparent opacity that the last fade out left behind.
    if (!event->spontaneous() && !m_fade.isRunning() && m_fade.visibleFraction() == 0.0) {
        m_fade.settle(true);
        setOpacity(1.0);
    }
}

void FadingOverlay::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    // Hidden directly (not merely with the editor): the next open() fades in.
    if (isHidden() && m_fade.visibleFraction() > 0.0)
        m_fade.settle(false);
}

QColor FadingOverlay::veilColor(double opacity)
{
    return QColor(0, 0, 0, alpha(opacity, 224));
}

QColor FadingOverlay::textColor(double opacity)
{
    return QColor(255, 255, 255, alpha(opacity, 255));
}
