#pragma once

#include <QObject>

class QWidget;

// Dresses the tool tips of one panel in that panel's colours and font. Qt
// gives every tool tip the application's tool-tip palette, a light one by
// default, which a plug-in must not change for its host. This filter lets
// each tip inside the panel be shown as usual and then re-colours it with the
// panel's ToolTipBase and ToolTipText; tips elsewhere in the host are left as
// they were. It lives as a child of the panel and watches the application
// only for tool-tip requests.
class PanelToolTips : public QObject
{
    Q_OBJECT

public:
    explicit PanelToolTips(QWidget *panel);

    // The tool tip on screen now, or null.
    static QWidget *shownTip();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isInPanel(QObject *object) const;
    void dress(QWidget *tip) const;

    QWidget *m_pPanel;
    bool m_forwarding = false;
};
