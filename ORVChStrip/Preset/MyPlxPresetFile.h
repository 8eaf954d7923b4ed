#pragma once

#include <QString>

#include "Interfaces/FUID.h"

class IComponent;

// Loads and saves one component's state as a preset container file. Paths are
// accepted in the local 8-bit encoding or as QString; nothing here throws and
// every failure is reported as false (or -1 from checkID).
class MyPlxPresetFile
{
public:
    explicit MyPlxPresetFile(IComponent *component);

    bool load(const char *path, const FUID &classID);
    bool load(const QString &path, const FUID &classID);

    // An existing file is replaced only by a complete new one: the preset is
    // built in memory and committed through a temporary file in the same
    // folder, so a failed write leaves the old file untouched. error, when
    // given, receives the reason of a failure with the file name.
    bool save(const char *path, const FUID &classID);
    bool save(const QString &path, const FUID &classID, QString *error = nullptr);

    // Writes `state`, a component state as bytes, as a preset of classID (the
    // way older versions saved theirs), making the folder if need be.
    static bool saveState(const QString &path, const FUID &classID, const QByteArray &state);

    // 1: the file is a preset of classID; 0: of another class;
    // -1: the file does not open or its chunk list does not read.
    static int checkID(const char *path, const FUID &classID);
    static int checkID(const QString &path, const FUID &classID);

private:
    IComponent *m_component;
};
