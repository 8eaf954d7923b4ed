#pragma once

#include <QByteArray>

class QString;

namespace ORVD {

// A file or folder name as a catalogue entry name: Unicode NFC in UTF-8, cut
// so that it fits ORVD_Data::MaxNameLength bytes. The cut falls on a
// grapheme boundary where possible and never inside a character.
QByteArray ToEntryName(const QString &name);

} // namespace ORVD
