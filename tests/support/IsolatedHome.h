#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

// Points HOME and the XDG data and settings folders into a temporary folder,
// so that the settings and presets the code under test reads and writes are
// never the user's. Make it before anything reads them (a member of the test
// object) and keep it for the whole test.
class IsolatedHome
{
public:
    IsolatedHome()
    {
        qputenv("HOME", QFile::encodeName(m_dir.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(dataPath()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(configPath()));
    }

    bool isValid() const { return m_dir.isValid(); }
    QString path() const { return m_dir.path(); }
    QString dataPath() const { return m_dir.filePath(QStringLiteral(".local/share")); }
    QString configPath() const { return m_dir.filePath(QStringLiteral(".config")); }
    // Forgets every setting written so far.
    bool clearSettings() const { return QDir(configPath()).removeRecursively(); }

private:
    QTemporaryDir m_dir;
};
