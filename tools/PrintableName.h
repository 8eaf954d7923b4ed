#pragma once

#include <QString>

// A name as one safe line of terminal text, and how many columns it takes.
// Control characters (a newline in a file name, an escape sequence) become
// visible escapes, so a name never breaks the line-per-entry output or
// drives the terminal; U+FFFD, which stands for bytes that did not decode,
// shows as "\ufffd".
class PrintableName
{
public:
    static QString escaped(const QString &name);
    // A file name for a JSON string, which holds only Unicode: the name as it
    // is, or escaped() when it holds bytes that are not UTF-8.
    static QString forJson(const QString &name);
    // Terminal columns: 2 for East Asian wide and full-width characters,
    // 0 for combining marks and other zero-width characters, 1 otherwise.
    static int displayWidth(const QString &text);
    // Pads with spaces to `columns` terminal columns (never cuts).
    static QString padded(const QString &text, int columns);
};
