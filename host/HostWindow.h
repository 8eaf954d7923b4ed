#pragma once

#include <QMainWindow>

class IQXEffectEditor;
class PluginHost;
class QScrollArea;

// The reference host's window: the editor at its own size, a menu with the
// editor scale, and a status line naming the strip that is edited.
class HostWindow : public QMainWindow
{
    Q_OBJECT

public:
    HostWindow(PluginHost *host, IQXEffectEditor *editor, QWidget *parent = nullptr);

    IQXEffectEditor *editor() const { return m_pEditor; }
    // Reports a problem in the status bar and on standard error.
    void reportError(const QString &message);

    // Restore or save the effect's state; false (reported) when it fails.
    bool loadStateFile(const QString &path);
    bool saveStateFile(const QString &path);

public slots:
    void setEditorScale(double scale);
    void loadState();
    void saveState();

private:
    void fitToEditor();

    PluginHost *m_pHost;
    QScrollArea *m_pScrollArea;
    IQXEffectEditor *m_pEditor;
};
