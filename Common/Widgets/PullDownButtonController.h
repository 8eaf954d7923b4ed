#pragma once

#include <QList>
#include <QPointer>
#include <QStringList>

#include "Common/Widgets/PushButtonController.h"

class QAction;

namespace CommonController_MemAPI {

namespace PullDownButtonControllerPrivate {
class Menu;
}

// A button that shows the text of its value and opens a menu of all texts;
// choosing an entry sets the value to its position.
class PullDownButtonController : public PushButtonController
{
    Q_OBJECT
    Q_PROPERTY(QStringList textList READ textList WRITE setTextList)
    Q_PROPERTY(QString emptyText READ emptyText WRITE setEmptyText)
    Q_PROPERTY(QString invisibleText READ invisibleText WRITE setInvisibleText)
    Q_PROPERTY(bool autoPullDown READ autoPullDown WRITE setAutoPullDown)
    Q_PROPERTY(int indexWidth READ indexWidth WRITE setIndexWidth)
    Q_PROPERTY(int indexMargin READ indexMargin WRITE setIndexMargin)
    Q_PROPERTY(int indexOrigin READ indexOrigin WRITE setIndexOrigin)

public:
    explicit PullDownButtonController(QWidget *parent = nullptr);
    ~PullDownButtonController() override;

    QStringList textList() const { return m_textList; }
    void setTextList(const QStringList &list);
    QString emptyText() const { return m_emptyText; }
    void setEmptyText(const QString &text);
    QString invisibleText() const { return m_invisibleText; }
    void setInvisibleText(const QString &text);
    bool autoPullDown() const { return m_autoPullDown; }
    void setAutoPullDown(bool enabled);
    int indexWidth() const { return m_indexWidth; }
    void setIndexWidth(int width);
    int indexMargin() const { return m_indexMargin; }
    void setIndexMargin(int margin);
    int indexOrigin() const { return m_indexOrigin; }
    void setIndexOrigin(int origin);

    QList<bool> visibleList() const { return m_visibleList; }
    // An entry false hides that text in the menu.
    void setVisibleList(const QList<bool> &list);

    // The text the button shows for its current value.
    QString displayText() const;

    // Runs the menu modally below the button.
    void openPullDown();

    using PushButtonController::valueChanged;
    void valueChanged() override;

signals:
    void selected();
    void changed();

public slots:
    void buttonPress() override;
    void buttonRelease() override;
    void buttonToggle(bool checked) override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void updateAccessibility() override;

private:
    int position() const { return value() - minimumValue(); }
    bool isHidden(int position) const;
    void moveActiveAction(int direction, int steps);
    void setIntProperty(int &member, int value);

    QStringList m_textList;
    QString m_emptyText;
    QString m_invisibleText;
    bool m_autoPullDown = true;
    int m_indexWidth = 0;
    int m_indexMargin = 0;
    int m_indexOrigin = 1;
    QList<bool> m_visibleList;
    QPointer<PullDownButtonControllerPrivate::Menu> m_pMenu;
    QList<QAction *> m_actions;
};

} // namespace CommonController_MemAPI
