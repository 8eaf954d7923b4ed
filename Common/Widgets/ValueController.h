#pragma once

#include <QWidget>

#include "Common/Widgets/AbstractController.h"
#include "Common/Widgets/AccessibleNameFallback.h"
#include "Common/Widgets/FocusMark.h"

namespace CommonController_MemAPI {

// What the knob, the fader and the text field share: the value signal, sent
// once the host confirms a value, the modifiers and drag signals, and an
// accessible description that follows the value, with a name that falls back
// to the object name.
class ValueController : public QWidget, public AbstractController
{
    Q_OBJECT
    Q_PROPERTY(QString valueSuffix READ valueSuffix WRITE setValueSuffix)

public:
    explicit ValueController(QWidget *parent = nullptr);

    bool isDragging() const { return m_dragging; }
    void setScale(double scale) override;

    // The value as the control shows it ("10 ms"), or the number where the
    // parameter has no text; what assistive technology reads as the value.
    QString accessibleValueText() const;
    // The unit a reader hears after the value text where the control shows
    // no unit itself (a knob beside the field that shows it); not drawn.
    QString valueSuffix() const { return m_valueSuffix; }
    void setValueSuffix(const QString &suffix);

signals:
    void valueChanged(int value);
    void modifiersChange(AbstractController *pController, Qt::KeyboardModifiers modifiers);
    void drag(bool dragging);

public slots:
    void valueChangedRequest() override;

protected:
    void valueChanged() override;
    void notifyModifiersChange(Qt::KeyboardModifiers modifiers) override;

    // The text the control shows for its value; the description reads the
    // number where it is empty.
    virtual QString describedText() const { return string(); }
    void updateAccessibleText();

    // Closes the edit bracket of a drag, if one is open.
    virtual void endDrag();
    void mouseReleaseEvent(QMouseEvent *event) override;
    // A drag must not outlive the control's visibility.
    void hideEvent(QHideEvent *event) override;

    const FocusMark &focusMark() const { return *m_pFocusMark; }

    // Whether a mouse move steps the running drag: the left button held, the
    // control enabled and the pointer moved. Such a move is accepted; any
    // other goes on to QWidget.
    bool acceptDragStep(QMouseEvent *event);
    // Where a drag counts its steps from: the pointer and the control's value.
    virtual void anchorAt(const QPoint &position) = 0;
    // Fine mode on or off; a change re-anchors at the last position, so the
    // value does not jump.
    void setFine(bool fine);

    bool m_dragging = false;
    bool m_fine = false;
    // Where the last drag step ended.
    QPoint m_lastPosition;

private:
    AccessibleNameFallback m_accessibleName;
    QString m_valueSuffix;
    FocusMark *m_pFocusMark;
};

} // namespace CommonController_MemAPI
