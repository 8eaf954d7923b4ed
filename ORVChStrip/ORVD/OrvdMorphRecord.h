#pragma once

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>

// The 512-byte record that a morph data file holds: the set's name, its system
// id and the host parameter values of the seventeen morph columns at each of
// the nine morph points. All numbers are little-endian.
//
//   offset  size  field
//        0     4  magic "ORVD"
//        4     2  version, 1
//        6     2  number of points, 9
//        8     2  number of columns, 17
//       10     2  reserved, 0
//       12   160  name, UTF-8, NUL-padded (at most 159 bytes)
//      172    32  system id, ASCII, NUL-padded (at most 31 bytes)
//      204   306  values: 9 points x 17 columns, signed 16-bit, point by point
//      510     2  reserved, 0
//
// The columns are ORVChStripParameters::OrvaneDataParameterList in order.
class OrvdMorphRecord
{
public:
    static constexpr int Size = 512;
    static constexpr uint16_t Version = 1;
    static constexpr int PointCount = 9;
    static constexpr int ColumnCount = 17;
    static constexpr int NameOffset = 12;
    static constexpr int NameCapacity = 160;
    static constexpr int SystemIdOffset = NameOffset + NameCapacity;
    static constexpr int SystemIdCapacity = 32;
    static constexpr int ValuesOffset = SystemIdOffset + SystemIdCapacity;
    static constexpr char Magic[4] = { 'O', 'R', 'V', 'D' };

    enum class ReadResult { Ok, WrongSize, WrongMagic, UnsupportedVersion, WrongShape };

    using Point = std::array<int16_t, ColumnCount>;

    // Parses `size` bytes; `out` is changed only when the result is Ok.
    static ReadResult read(const unsigned char *data, qsizetype size, OrvdMorphRecord *out);
    static ReadResult read(const QByteArray &bytes, OrvdMorphRecord *out);
    // A sentence for the user ("the record is 511 bytes, not 512").
    static QString describe(ReadResult result, qsizetype size);

    // The record's bytes. The name and id are cut at a character boundary
    // when they are too long for their fields; check fitProblem() first to refuse.
    QByteArray write() const;
    // Empty when name and id fit their fields, else what is wrong.
    QString fitProblem() const;

    QString name;
    QByteArray systemId;
    std::array<Point, PointCount> points {};
};
