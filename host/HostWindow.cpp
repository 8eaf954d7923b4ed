#include "HostWindow.h"

#include <QActionGroup>
#include <QFileDialog>
#include <QMenuBar>
#include <QStatusBar>
#include <QTextStream>

#include "Interfaces/IQXEffectEditor.h"
#include "PluginHost.h"
#include "StateFile.h"

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
    fileMenu->addAction(QStringLiteral("Load State..."), this, &HostWindow::loadState);
    fileMenu->addAction(QStringLiteral("Save State..."), this, &HostWindow::saveState);
    fileMenu->addSeparator();
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

void HostWindow::loadState()
{
    const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("Load State"), QString(),
        QStringLiteral("Effect states (*.orvstate);;All files (*)"));
    if (!path.isEmpty())
        loadStateFile(path);
}

void HostWindow::saveState()
{
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Save State"), QString(),
        QStringLiteral("Effect states (*.orvstate);;All files (*)"));
    if (!path.isEmpty())
        saveStateFile(path);
}

bool HostWindow::loadStateFile(const QString &path)
{
    QString error;
    QString warning;
    if (!StateFile::load(m_pEditor->getPlxComponent(), m_pHost->memory(), path, &error, &warning)) {
        reportError(error);
        return false;
    }
    if (!warning.isEmpty())
        reportError(QStringLiteral("Restored the state, but ") + warning);
    else
        statusBar()->showMessage(QStringLiteral("Restored the state from %1").arg(path));
    return true;
}

bool HostWindow::saveStateFile(const QString &path)
{
    QString error;
    if (!StateFile::save(m_pEditor->getPlxComponent(), path, &error)) {
        reportError(error);
        return false;
    }
    statusBar()->showMessage(QStringLiteral("Saved the state to %1").arg(path));
    return true;
}
