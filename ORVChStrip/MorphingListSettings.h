#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

class ORVD_Manager;
class ORVChStripMorphingPresetList;

// The morphing list's part of the editor settings that a host keeps: the
// open state of each visible folder (numbered 1, 2, 3 ... down the visible
// rows), the selected row, the selected entry by its folder and name, and
// the scroll position. The selection comes back by entry, so a catalogue that
// changed meanwhile never gets another file selected in its place.
namespace MorphingListSettings {

QMap<QString, QVariant> save(const ORVD_Manager *manager, const ORVChStripMorphingPresetList *list);
// Folders are numbered over the rows visible before any is opened here, so a
// folder inside a folder that only now opens keeps the state it had.
void restore(
    const QMap<QString, QVariant> &settings, ORVD_Manager *manager, ORVChStripMorphingPresetList *list);

} // namespace MorphingListSettings
