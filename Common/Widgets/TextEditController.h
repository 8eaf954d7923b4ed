#pragma once

#include <QPoint>
#include <QWidget>

#include "Common/Widgets/ValueController.h"
#include "Common/Widgets/WheelAccumulator.h"

namespace CommonController_MemAPI {

namespace TextEditControllerPrivate {
class LineEdit;
}

// A parameter's value shown as text with an optional unit. Dragging, the
// wheel and the arrow keys change it like a linear knob; a double click opens
// an in-place line edit whose text the parameter memory parses.
class TextEditController : public ValueController
{
    Q_OBJECT
    Q_PROPERTY(QString string READ string WRITE setString)
    Q_PROPERTY(QString postfix READ postfix WRITE setPostfix)
    Q_PROPERTY(bool expandUnit READ expandUnit WRITE setExpandUnit)
    Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment)
    Q_PROPERTY(bool textTrim READ textTrim WRITE setTextTrim)
    Q_PROPERTY(int textLeftMargin READ textLeftMargin WRITE setTextLeftMargin)
    Q_PROPERTY(int textRightMargin READ textRightMargin WRITE setTextRightMargin)
    Q_PROPERTY(int textMaxLength READ textMaxLength WRITE setTextMaxLength)

public:
    explicit TextEditController(QWidget *parent = nullptr);
    ~TextEditController() override;

    QString postfix() const { return m_postfix; }
    void setPostfix(const QString &postfix);
    bool expandUnit() const { return m_expandUnit; }
    void setExpandUnit(bool expand);
    Qt::Alignment alignment() const { return m_alignment; }
    void setAlignment(Qt::Alignment alignment);
    bool textTrim() const { return m_textTrim; }
    void setTextTrim(bool trim);
    int textLeftMargin() const { return m_textLeftMargin; }
    void setTextLeftMargin(int margin);
    int textRightMargin() const { return m_textRightMargin; }
    void setTextRightMargin(int margin);
    int textMaxLength() const { return m_textMaxLength; }
    void setTextMaxLength(int length);
    // Value units per coarse step of a drag, the wheel and PageUp/PageDown.
    int stepSize() const { return m_stepSize; }
    void setStepSize(int step);

    // The text as shown: the value's text with the postfix.
    QString shownText() const;
    // The text offered for editing: without the postfix, units expanded.
    QString editText() const;
    bool isEditing() const;
    // The field typed in, built when first needed.
    TextEditControllerPrivate::LineEdit *lineEdit() { return typingField(); }

    QSize sizeHint() const override;

signals:
    void textEdit(bool edit);

public slots:
    void edit();
    void editFinish();
    void editCancel();

protected:
    QString describedText() const override { return shownText(); }

    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QString valueText() const;
    void closeLineEdit();
    void anchorAt(const QPoint &position) override;

    QString m_postfix;
    bool m_expandUnit = false;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignVCenter;
    bool m_textTrim = false;
    int m_textLeftMargin = 0;
    int m_textRightMargin = 0;
    int m_textMaxLength = 10;
    int m_stepSize = 1;

    TextEditControllerPrivate::LineEdit *typingField();

    TextEditControllerPrivate::LineEdit *m_pLineEdit = nullptr;
    int m_anchorValue = 0;
    QPoint m_anchorPosition;
    WheelAccumulator m_wheel;
};

} // namespace CommonController_MemAPI
