#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QVector>

#include "ORVChStrip/Chunk/SavedStateReader.h"
#include "ParameterDefinition.h"
#include "tools/StoredValueText.h"

class QTextStream;

// Describes a saved plug-in state or a bare channel-strip chunk file: the
// layout, every chunk and marker with its offset and size, the version, the
// morph system name and table, and the stored values by key. It reads them
// with the state component's own reader, so what it rejects is what a
// restore rejects, and says why in the words of this tool.
//
// With the host's parameter table the stored values also read as the host's
// value texts ("10 ms" beside 0.0452261306).
class StateInspector
{
public:
    struct Entry
    {
        QString name;
        qint64 offset = 0;
        qint64 size = 0;
        int depth = 0; // 0 top level, 1 inside a form
        QString note;
    };
    struct Value
    {
        QString key;        // empty for the generic block's unused slot
        float value = 0.0f; // as stored: normalised to the parameter's range
        QString text;       // the host's value text and unit, if the model knows the key
    };

    explicit StateInspector(QList<ParameterDefinition> parameters = {});

    bool inspectState(const QByteArray &bytes);
    bool inspectChunk(const QByteArray &bytes);

    bool isValid() const { return m_error.isEmpty(); }
    // What was expected at errorOffset() and what was found.
    QString error() const { return m_error; }
    qint64 errorOffset() const { return m_errorOffset; }

    QString kind() const { return m_kind; }               // "state" or "chunk"
    QString stateLayout() const { return m_stateLayout; } // "newer" or "older"
    QString chunkLayout() const { return m_chunkLayout; } // "32-bit" or "64-bit"
    QByteArray version() const { return m_version; }
    int versionNumber() const { return m_versionNumber; }
    const QList<Entry> &entries() const { return m_entries; }
    // False when the chunk has no "ORD " chunk: no name and no table.
    bool hasMorphData() const { return m_hasMorphData; }
    QByteArray morphSystemName() const { return m_systemName; }
    const QVector<QVector<short>> &morphTable() const { return m_table; }
    // The value text of one morph-table cell (empty for the end mark row).
    QString morphCellText(int row, int column) const;
    const QVector<Value> &genericValues() const { return m_generic; }
    const QVector<Value> &extendedValues() const { return m_extended; }
    // The values of the chunk that a restore uses.
    const QVector<Value> &chunkValues() const { return m_chunkValues; }

    QJsonObject toJson() const;
    void writeText(QTextStream &out) const;

private:
    void reset(const QString &kind);
    bool fail(qint64 offset, const QString &message);
    bool failWith(SavedStateReader &reader);
    void describe(SavedStateReader &reader, const QByteArray &bytes);
    void listForm(SavedStateReader &reader, const SavedStateReader::Item &form);
    void takeContents(const SavedStateReader &reader, const YChannelStripChunk::Contents &contents);
    QVector<Value> bigEndianFloats(
        const QByteArray &bytes, qint64 offset, int count, const char *const *keys, int keyCount) const;

    StoredValueText m_texts;
    QString m_kind;
    QString m_error;
    qint64 m_errorOffset = -1;
    QString m_stateLayout;
    QString m_chunkLayout;
    QByteArray m_version;
    int m_versionNumber = 0;
    QList<Entry> m_entries;
    bool m_hasMorphData = false;
    QByteArray m_systemName;
    QVector<QVector<short>> m_table;
    QVector<Value> m_generic;
    QVector<Value> m_extended;
    QVector<Value> m_chunkValues;
};
