#pragma once

#include <QObject>
#include <QRect>

#include "ORVChStrip/PanelFocus.h"

class ReversibleProgress;
class QWidget;

// Slides the morphing preset list up over the equalizer and morphing sections
// and back down, in steps of 0.1 every 20 ms, growing from its bottom edge. A
// request against a slide under way reverses it from where it stands. While
// open, the list keeps the keyboard; on closing, the focus returns.
class MorphingPresetOverlay : public QObject
{
    Q_OBJECT

public:
    // Where the list sits when fully open, in design pixels.
    static constexpr QRect DesignRect { 408, 40, 505, 532 };
    static constexpr int SlideIntervalMs = 20;

    // `list` is placed and shown or hidden here; it starts hidden.
    explicit MorphingPresetOverlay(QWidget *list);

    bool isOpen() const { return m_open; }
    bool isSliding() const;
    // DesignRect at the current scale.
    QRect fullGeometry() const;
    // Rescaling puts the list at its full size; a slide continues from there.
    void setScale(double scale);

public slots:
    void open();
    void close();

signals:
    // The list now covers the sections (true) or no longer does: the moment
    // the controls behind it change state, before the slide starts.
    void coverChanged(bool covered);

private:
    void place(double openFraction);
    void finish(bool opened);

    QWidget *m_pList;
    ReversibleProgress *m_pSlide;
    PanelFocus m_focus;
    double m_scale = 1.0;
    bool m_open = false;
};
