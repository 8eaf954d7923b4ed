#pragma once

#include <QPoint>
#include <QWidget>

#include "Common/Widgets/KnobArtworkController.h"
#include "Common/Widgets/WheelAccumulator.h"

namespace CommonController_MemAPI {

// A rotary knob drawn from SVG layers: a scale behind it, a blurred shadow and
// the knob face, either rotated with the value or standing still with an index
// line drawn over it. Dragging, the wheel and the keys change the value
// through the value protocol of AbstractController.
class KnobController : public KnobArtworkController
{
    Q_OBJECT
    Q_PROPERTY(double startAngle READ startAngle WRITE setStartAngle)
    Q_PROPERTY(double spanAngle READ spanAngle WRITE setSpanAngle)
    Q_PROPERTY(double inside READ inside WRITE setInside)
    Q_PROPERTY(double outside READ outside WRITE setOutside)
    Q_PROPERTY(double thick READ thick WRITE setThick)
    Q_PROPERTY(KnobType knobType READ knobType WRITE setKnobType)
    Q_PROPERTY(OperationType operationType READ operationType WRITE setOperationType)
    Q_PROPERTY(int valueChangeStep READ valueChangeStep WRITE setValueChangeStep)

public:
    enum KnobType { LineIndex = 0, RotateKnob = 1 };
    Q_ENUM(KnobType)
    enum OperationType { Circular = 0, Linear = 1, RelativeCircular = 2 };
    Q_ENUM(OperationType)

    explicit KnobController(QWidget *parent = nullptr);
    ~KnobController() override;

    double startAngle() const { return m_startAngle; }
    void setStartAngle(double degrees);
    double spanAngle() const { return m_spanAngle; }
    void setSpanAngle(double degrees);
    double inside() const { return m_inside; }
    void setInside(double radius);
    double outside() const { return m_outside; }
    void setOutside(double radius);
    double thick() const { return m_thick; }
    void setThick(double width);
    KnobType knobType() const { return m_knobType; }
    void setKnobType(KnobType type);
    OperationType operationType() const { return m_operationType; }
    void setOperationType(OperationType type);
    int valueChangeStep() const { return m_valueChangeStep; }
    void setValueChangeStep(int step);

    QSize sizeHint() const override;

    // The normalised value of a pointer angle (radians, clockwise from
    // 3 o'clock); the dead zone below the knob splits at its middle.
    float angleToNormalized(double angle) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    double pointerAngle(const QPoint &position) const;
    void anchorAt(const QPoint &position) override;
    void jumpToAngle(const QPoint &position, Qt::KeyboardModifiers modifiers);
    QRectF centredRect(const SvgLayer &layer) const;

    double m_startAngle = 210.0;
    double m_spanAngle = 300.0;
    double m_inside = 4.0;
    double m_outside = 14.0;
    double m_thick = 2.0;
    KnobType m_knobType = LineIndex;
    OperationType m_operationType = Circular;
    int m_valueChangeStep = 1;

    int m_anchorValue = 0;
    float m_anchorNormalized = 0.0f;
    QPoint m_anchorPosition;
    double m_rotation = 0.0;
    WheelAccumulator m_wheel;
};

} // namespace CommonController_MemAPI
