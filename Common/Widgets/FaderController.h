#pragma once

#include <QPoint>
#include <QTimer>
#include <QWidget>

#include "Common/Widgets/KnobArtworkController.h"
#include "Common/Widgets/WheelAccumulator.h"

namespace CommonController_MemAPI {

// A straight fader: an SVG track, a blurred shadow and an SVG thumb placed by
// the value. How a press off the thumb behaves is the operation type: Touch
// ignores it, Jump moves the thumb there, Ramp walks the thumb towards the
// pointer in steps, Relative drags from wherever it was pressed.
class FaderController : public KnobArtworkController
{
    Q_OBJECT
    Q_PROPERTY(Qt::Orientation orientation READ orientation WRITE setOrientation)
    Q_PROPERTY(bool enableDoubleClick READ enableDoubleClick WRITE setEnableDoubleClick)
    Q_PROPERTY(bool reverse READ reverse WRITE setReverse)
    Q_PROPERTY(OperationType operationType READ operationType WRITE setOperationType)

public:
    enum OperationType { Touch = 0, Jump = 1, Ramp = 2, Relative = 3 };
    Q_ENUM(OperationType)

    static constexpr int RampFirstDelay = 300;
    static constexpr int RampRepeatDelay = 100;

    explicit FaderController(QWidget *parent = nullptr);
    ~FaderController() override;

    Qt::Orientation orientation() const { return m_orientation; }
    void setOrientation(Qt::Orientation orientation);
    bool enableDoubleClick() const { return m_enableDoubleClick; }
    void setEnableDoubleClick(bool enable);
    bool reverse() const { return m_reverse; }
    void setReverse(bool reverse);
    OperationType operationType() const { return m_operationType; }
    void setOperationType(OperationType type);

    // The thumb's rectangle at the current value, in widget coordinates.
    QRectF thumbRect() const;

    QSize sizeHint() const override;

private slots:
    void doubleClickTimeout();
    void ramp(bool repeat);
    void ramp();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QSizeF thumbSize() const;
    bool isOnThumb(const QPoint &position) const;
    // Where a position lies along the track, 0 at the minimum end.
    double trackPosition(const QPoint &position) const;
    void startDrag(const QPoint &position, Qt::KeyboardModifiers modifiers);
    void anchorAt(const QPoint &position) override;
    void endDrag() override;

    Qt::Orientation m_orientation = Qt::Vertical;
    bool m_enableDoubleClick = false;
    bool m_reverse = false;
    OperationType m_operationType = Touch;

    float m_anchorNormalized = 0.0f;
    QPoint m_anchorPosition;
    WheelAccumulator m_wheel;
    bool m_justJumped = false;
    QTimer m_rampTimer;
    QTimer m_doubleClickTimer;
};

} // namespace CommonController_MemAPI
