#include "HostWindow.h"

#include <QActionGroup>
#include <QMenuBar>
#include <QStatusBar>
#include <QTextStream>

#include "Interfaces/IQXEffectEditor.h"
#include "PluginHost.h"

HostWindow::HostWindow(PluginHost *host, IQXEffectEditor *editor, QWidget *parent)
    : QMainWindow(parent)
    , m_pHost(host)
    , m_pEditor(editor)
{
    setWindowTitle(QStringLiteral("Orvane Channel Strip - reference host"));
    auto *container = new QWidget(this);
    editor->setParent(container);
    editor->move(0, 0);
    setCentralWidget(container);

    QMenu *fileMenu = menuBar()->addMenu(QStringLiteral("&File"));
    fileMenu->setObjectName(QStringLiteral("fileMenu"));
    fileMenu->addAction(QStringLiteral("&Quit"), QKeySequence::Quit, this, &QWidget::close);

    QMenu *viewMenu = menuBar()->addMenu(QStringLiteral("&View"));
    auto *scales = new QActionGroup(this);
    for (double scale : { 1.0, 1.25, 1.5, 2.0 }) {
        QAction *action = viewMenu->addAction(QStringLiteral("Scale %1 %").arg(scale * 100.0));
        action->setCheckable(true);
        action->setChecked(qFuzzyCompare(scale, editor->scale()));
        scales->addAction(action);
        connect(action, &QAction::triggered, this, [this, scale] { setEditorScale(scale); });
    }
    statusBar()->showMessage(QStringLiteral("Simulated channel strip, %1").arg(editor->objectName()));
    fitToEditor();
}

void HostWindow::setEditorScale(double scale)
{
    m_pEditor->setScale(scale);
    fitToEditor();
}

void HostWindow::fitToEditor()
{
    centralWidget()->setFixedSize(m_pEditor->size());
    adjustSize();
}

void HostWindow::reportError(const QString &message)
{
    statusBar()->showMessage(message);
    QTextStream(stderr) << "orvchstrip-host: " << message << '\n';
}
