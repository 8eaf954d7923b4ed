#pragma once

#include <QGroupBox>
#include <QList>
#include <QSet>

#include "Common/Widgets/AbstractController.h"
#include "Common/Widgets/AccessibleNameFallback.h"

class QAbstractButton;

namespace CommonController_MemAPI {

// A group box whose child buttons select one value: the first button is
// minimum, the next minimum + 1, and so on.
class ButtonGroupController : public QGroupBox, public AbstractController
{
    Q_OBJECT
    Q_PROPERTY(bool enableDefaultSet READ enableDefaultSet WRITE setEnableDefaultSet)

public:
    explicit ButtonGroupController(QWidget *parent = nullptr);
    ~ButtonGroupController() override;

    // Control-click on a button sets the default value.
    bool enableDefaultSet() const { return m_enableDefaultSet; }
    void setEnableDefaultSet(bool enabled) { m_enableDefaultSet = enabled; }

    const QList<QAbstractButton *> &buttons() const { return m_buttons; }

    void setScale(double scale) override;
    // Checks the value's button a moment later, once children settled.
    void valueChanged() override;

signals:
    void valueChanged(int value);
    void modifiersChange(
        CommonController_MemAPI::AbstractController *pController, Qt::KeyboardModifiers modifiers);
    void childAdded(QObject *pObject);

public slots:
    void valueChangedRequest() override;
    void addChild(QObject *pObject);
    void updateChild();
    void updateButton(bool checked);

protected:
    void notifyModifiersChange(Qt::KeyboardModifiers modifiers) override;
    void childEvent(QChildEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool event(QEvent *event) override;

private:
    void updateAccessibility();

    QList<QAbstractButton *> m_buttons;
    // Children announced by a child event whose addChild() is still queued.
    QSet<QObject *> m_pendingChildren;
    bool m_updatePending = false;
    bool m_enableDefaultSet = false;
    AccessibleNameFallback m_accessibleName;
};

} // namespace CommonController_MemAPI
