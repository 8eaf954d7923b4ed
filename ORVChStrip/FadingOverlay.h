#pragma once

#include <QWidget>

#include "ORVChStrip/PanelFocus.h"
#include "ORVChStrip/ReversibleProgress.h"

// An overlay that covers the editor panel and fades in and out in steps of
// 0.1 every 30 ms. A request against a running fade reverses it from where it
// stands, one in the same direction is ignored; the overlay hides when a fade
// out ends. Subclasses apply the opacity to their own parts. While open it
// holds the keyboard focus, and Escape closes it.
//
// An overlay inside an editor builds its contents when it first shows: most
// sessions never open it, and the editor opens faster without it. The editor
// then prepares and scales them as it did the rest of its tree.
class FadingOverlay : public QWidget
{
    Q_OBJECT

public:
    static constexpr int FadeIntervalMs = 30;

    explicit FadingOverlay(QWidget *parent = nullptr);

    bool isFading() const { return m_fade.isRunning(); }
    bool hasContents() const { return m_hasContents; }
    void setVisible(bool visible) override;
    // How far the overlay shows: 0 closed, 1 open, in between while fading.
    double visibleFraction() const { return m_fade.visibleFraction(); }

public slots:
    void open();
    // Hides QWidget::close() on purpose: closing an overlay is a fade.
    void close();
    virtual void setOpacity(double opacity) = 0;
    // What Escape does; a panel that is busy may refuse.
    virtual void escape() { close(); }

protected:
    // Called last by a subclass's constructor: builds the contents at once
    // for an overlay outside an editor (a form preview, a test), else when
    // it first shows.
    void buildContentsWhenNeeded();
    // Builds the form and applies opacity 0; called once.
    virtual void buildContents() = 0;

    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;

    // A black veil and white text whose alpha follows the opacity, which is
    // kept within 0 and 1 so that a stray value never gives an invalid colour.
    static QColor veilColor(double opacity);
    static QColor textColor(double opacity);

private:
    void fadeFinished(bool opened);
    void buildContentsNow();

    ReversibleProgress m_fade;
    PanelFocus m_focus;
    bool m_hasContents = false;
};
