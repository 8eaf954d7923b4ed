#pragma once

#include <QPushButton>

#include "Common/Widgets/AbstractController.h"
#include "Common/Widgets/AccessibleNameFallback.h"
#include "Common/Widgets/ButtonArtwork.h"
#include "Common/Widgets/CheckTriggerRule.h"
#include "Common/Widgets/FocusMark.h"

namespace CommonController_MemAPI {

// An SVG-painted push or toggle button bound to one parameter. A checkable
// button toggles between minimum and maximum at the mouse edge that
// checkTrigger names; a plain button is momentary (maximum while held).
class PushButtonController : public QPushButton, public AbstractController
{
    Q_OBJECT
    Q_PROPERTY(double shadowBlur READ shadowBlur WRITE setShadowBlur)
    Q_PROPERTY(double buttonDisableOpacity READ buttonDisableOpacity WRITE setButtonDisableOpacity)
    Q_PROPERTY(QString buttonSvg READ buttonSvg WRITE setButtonSvg)
    Q_PROPERTY(QString pushButtonSvg READ pushButtonSvg WRITE setPushButtonSvg)
    Q_PROPERTY(QString shadowSvg READ shadowSvg WRITE setShadowSvg)
    Q_PROPERTY(QString pushShadowSvg READ pushShadowSvg WRITE setPushShadowSvg)
    Q_PROPERTY(QString iconSvg READ iconSvg WRITE setIconSvg)
    Q_PROPERTY(QString onIconSvg READ onIconSvg WRITE setOnIconSvg)
    Q_PROPERTY(QString onButtonSvg READ onButtonSvg WRITE setOnButtonSvg)
    Q_PROPERTY(QString onPushButtonSvg READ onPushButtonSvg WRITE setOnPushButtonSvg)
    Q_PROPERTY(int textLeftMargin READ textLeftMargin WRITE setTextLeftMargin)
    Q_PROPERTY(int textRightMargin READ textRightMargin WRITE setTextRightMargin)
    Q_PROPERTY(int textTopMargin READ textTopMargin WRITE setTextTopMargin)
    Q_PROPERTY(int textBottomMargin READ textBottomMargin WRITE setTextBottomMargin)
    Q_PROPERTY(Qt::Alignment svgAlignment READ svgAlignment WRITE setSvgAlignment)
    Q_PROPERTY(Qt::Alignment textAlignment READ textAlignment WRITE setTextAlignment)
    Q_PROPERTY(double opacity READ opacity WRITE setOpacity)
    Q_PROPERTY(CheckTrigger checkTrigger READ checkTrigger WRITE setCheckTrigger)

public:
    enum CheckTriggerFlag {
        Press = CheckTriggerRule::Press,     // a checkable button changes state on the press
        Release = CheckTriggerRule::Release, // ... or on the release
        On = CheckTriggerRule::On,           // a click may switch it on
        Off = CheckTriggerRule::Off,         // a click may switch it off
    };
    Q_DECLARE_FLAGS(CheckTrigger, CheckTriggerFlag)
    Q_FLAG(CheckTrigger)

    explicit PushButtonController(QWidget *parent = nullptr);
    ~PushButtonController() override;

    double shadowBlur() const { return m_artwork.shadowBlur(); }
    void setShadowBlur(double blur);
    double buttonDisableOpacity() const { return m_artwork.disableOpacity(); }
    void setButtonDisableOpacity(double opacity);

    QString buttonSvg() const { return m_artwork.path(ButtonArtwork::Button); }
    void setButtonSvg(const QString &path) { loadSvg(ButtonArtwork::Button, path); }
    QString pushButtonSvg() const { return m_artwork.path(ButtonArtwork::PushButton); }
    void setPushButtonSvg(const QString &path) { loadSvg(ButtonArtwork::PushButton, path); }
    QString shadowSvg() const { return m_artwork.path(ButtonArtwork::Shadow); }
    void setShadowSvg(const QString &path) { loadSvg(ButtonArtwork::Shadow, path); }
    QString pushShadowSvg() const { return m_artwork.path(ButtonArtwork::PushShadow); }
    void setPushShadowSvg(const QString &path) { loadSvg(ButtonArtwork::PushShadow, path); }
    QString iconSvg() const { return m_artwork.path(ButtonArtwork::Icon); }
    void setIconSvg(const QString &path) { loadSvg(ButtonArtwork::Icon, path); }
    QString onIconSvg() const { return m_artwork.path(ButtonArtwork::OnIcon); }
    void setOnIconSvg(const QString &path) { loadSvg(ButtonArtwork::OnIcon, path); }
    QString onButtonSvg() const { return m_artwork.path(ButtonArtwork::OnButton); }
    void setOnButtonSvg(const QString &path) { loadSvg(ButtonArtwork::OnButton, path); }
    QString onPushButtonSvg() const { return m_artwork.path(ButtonArtwork::OnPushButton); }
    void setOnPushButtonSvg(const QString &path) { loadSvg(ButtonArtwork::OnPushButton, path); }

    int textLeftMargin() const { return m_textLeftMargin; }
    void setTextLeftMargin(int margin);
    int textRightMargin() const { return m_textRightMargin; }
    void setTextRightMargin(int margin);
    int textTopMargin() const { return m_textTopMargin; }
    void setTextTopMargin(int margin);
    int textBottomMargin() const { return m_textBottomMargin; }
    void setTextBottomMargin(int margin);

    Qt::Alignment svgAlignment() const { return m_svgAlignment; }
    void setSvgAlignment(Qt::Alignment alignment);
    Qt::Alignment textAlignment() const { return m_textAlignment; }
    void setTextAlignment(Qt::Alignment alignment);
    double opacity() const { return m_opacity; }
    void setOpacity(double opacity);
    CheckTrigger checkTrigger() const { return CheckTrigger(m_checkTrigger.flags()); }
    void setCheckTrigger(CheckTrigger trigger);

    // Pointer state: inside the widget, and inside the button while moving.
    bool isHovered() const { return m_hover; }
    bool isInside() const { return m_inside; }

    void setScale(double scale) override;

    void setOn();
    void setOff();

signals:
    void valueChanged(int value);
    void modifiersChange(
        CommonController_MemAPI::AbstractController *pController, Qt::KeyboardModifiers modifiers);
    void sideChanged();

public slots:
    void valueChangedRequest() override;
    virtual void buttonPress();
    virtual void buttonRelease();
    virtual void buttonToggle(bool checked);
    void focusChange();

public:
    // Brings the look (checked state, description) up to the value.
    void valueChanged() override;

protected:
    void notifyModifiersChange(Qt::KeyboardModifiers modifiers) override;

    bool hitButton(const QPoint &pos) const override;
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    // Keyboard and click() toggles obey the check trigger as the mouse does.
    void nextCheckState() override;

    // Draws shadow, body, icon and text; subclasses paint on top.
    void paintButton(QPainter &painter);
    // Drawn last, over whatever the button paints.
    void paintFocusMark(QPainter &painter) const;
    // On: checked, or held down when the button is momentary.
    bool isOn() const;
    Qt::KeyboardModifiers lastModifiers() const { return m_modifiers; }
    // Keeps the accessible name and the value description current.
    virtual void updateAccessibility();
    // Checks or unchecks without running the toggle gesture.
    void setCheckedQuietly(bool checked);

private:
    void loadSvg(ButtonArtwork::Layer layer, const QString &path);
    QRectF svgRect(const SvgLayer &layer) const;
    void setInside(bool inside);
    bool setMargin(int &member, int margin);

    ButtonArtwork m_artwork;
    int m_textLeftMargin = 0;
    int m_textRightMargin = 0;
    int m_textTopMargin = 0;
    int m_textBottomMargin = 0;
    Qt::Alignment m_svgAlignment = Qt::AlignCenter;
    Qt::Alignment m_textAlignment = Qt::AlignCenter;
    double m_opacity = 1.0;
    CheckTriggerRule m_checkTrigger;

    bool m_selfChange = false;
    bool m_hover = false;
    bool m_inside = false;
    AccessibleNameFallback m_accessibleName;
    FocusMark *m_pFocusMark;
    Qt::KeyboardModifiers m_modifiers;
};

} // namespace CommonController_MemAPI

Q_DECLARE_OPERATORS_FOR_FLAGS(CommonController_MemAPI::PushButtonController::CheckTrigger)
