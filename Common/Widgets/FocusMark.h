#pragma once

#include <QColor>
#include <QObject>

class QPainter;
class QPalette;
class QRectF;
class QWidget;

namespace CommonController_MemAPI {

// The visible mark of a control that has the keyboard focus. It shows when the
// keyboard brought the focus there or has been used on the control since, and
// stays hidden after a click or a wheel turn, so that mouse users never see
// rings appear on the knobs they touch.
class FocusMark : public QObject
{
public:
    enum Shape { Rounded, Round };

    explicit FocusMark(QWidget *widget);

    bool isShown() const;
    // The mark's colour: the bright text colour of the palette, so that it
    // stands out from every control's artwork on a dark panel.
    static QColor color(const QPalette &palette);
    // Draws the mark just inside `area` when it is shown; `scale` sizes the line.
    void paint(QPainter &painter, const QRectF &area, Shape shape, double scale) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setByKeyboard(bool byKeyboard);

    QWidget *m_pWidget;
    bool m_byKeyboard = false;
};

} // namespace CommonController_MemAPI
