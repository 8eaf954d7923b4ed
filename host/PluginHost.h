#pragma once

#include <QMap>
#include <QPluginLoader>
#include <QString>
#include <QVariant>

#include "HostModel.h"
#include "ParameterMemory.h"

class IQXEffect;
class IQXEffectEditor;

// Loads the plug-in file through QPluginLoader, asks for its interfaces by
// their ids and creates the editor, then drives it in the host's calling
// order. This is all a host needs: the loader and the interface headers.
class PluginHost
{
public:
    struct Options
    {
        QString pluginPath;
        double scale = 1.0;
        bool stereo = true;
        int fs = 48000;
        int channel = 0;
        int dialEditMode = 0;
        int sliderEditMode = 0;
        // What the editor handed back when it last closed.
        QMap<QString, QVariant> editorSettings;
    };

    PluginHost();
    ~PluginHost();

    // The plug-in installed with the host, or the one built beside it.
    static QString defaultPluginPath();

    bool load(const QString &path, QString *error);
    // Creates the editor under `parent`; null (with a message) on failure.
    IQXEffectEditor *createEditor(QWidget *parent, const Options &options, QString *error);

    HostModel &model() { return m_model; }
    ParameterMemory &memory() { return m_memory; }
    QObject *pluginInstance() const { return m_pInstance; }

private:
    HostModel m_model;
    ParameterMemory m_memory;
    QPluginLoader m_loader;
    QObject *m_pInstance = nullptr;
};
