#include "HostWindow.h"

#include <QActionGroup>
#include <QFileDialog>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
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
    // Larger than the screen, the panel scrolls.
    m_pScrollArea = new QScrollArea(this);
    m_pScrollArea->setFrameShape(QFrame::NoFrame);
    m_pScrollArea->setWidgetResizable(false);
    m_pScrollArea->setAlignment(Qt::AlignCenter);
    // Tab goes round the editor's controls only; the area still scrolls to
    // the control that takes the focus.
    m_pScrollArea->setFocusPolicy(Qt::NoFocus);
    QPalette surround = m_pScrollArea->palette();
    surround.setColor(QPalette::Window, QColor(0x0b, 0x0d, 0x10));
    m_pScrollArea->setPalette(surround);
    editor->setParent(m_pScrollArea);
    m_pScrollArea->setWidget(editor);
    setCentralWidget(m_pScrollArea);

    QMenu *fileMenu = menuBar()->addMenu(QStringLiteral("&File"));
    fileMenu->setObjectName(QStringLiteral("fileMenu"));
    fileMenu->addAction(QStringLiteral("Load State..."), this, &HostWindow::loadState);
    fileMenu->addAction(QStringLiteral("Save State..."), this, &HostWindow::saveState);
    fileMenu->addSeparator();
    fileMenu->addAction(QStringLiteral("&Quit"), QKeySequence::Quit, this, &QWidget::close);

    QMenu *viewMenu = menuBar()->addMenu(QStringLiteral("&View"));
    auto *scales = new QActionGroup(this);
    for (double scale : { 0.5, 0.75, 1.0, 1.25, 1.5, 2.0, 3.0, 4.0 }) {
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
    // The window takes the panel's size, as far as the screen allows.
    QSize wanted
        = m_pEditor->size() + QSize(0, menuBar()->sizeHint().height() + statusBar()->sizeHint().height());
    if (const QScreen *screen = this->screen())
        wanted = wanted.boundedTo(screen->availableGeometry().size() - QSize(40, 80));
    resize(wanted);
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
    // A bare name typed by the user gets the state files' extension.
    QFileDialog dialog(this, QStringLiteral("Save State"), QString(),
        QStringLiteral("Effect states (*.orvstate);;All files (*)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("orvstate"));
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        saveStateFile(dialog.selectedFiles().constFirst());
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
