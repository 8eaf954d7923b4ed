#include "ORVChStrip/ORVD/OrvdEntryName.h"

#include <QString>
#include <QTextBoundaryFinder>

#include "ORVChStrip/ORVD/ORVD_Data.h"

namespace {

constexpr qsizetype MaxBytes = ORVD_Data::MaxNameLength;

qsizetype utf8Length(QStringView text)
{
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (unit < 0x80)
            bytes += 1;
        else if (unit < 0x800)
            bytes += 2;
        else if (QChar::isHighSurrogate(unit) && i + 1 < text.size()
            && QChar::isLowSurrogate(text[i + 1].unicode())) {
            bytes += 4;
            ++i;
        } else
            bytes += 3;
    }
    return bytes;
}

// Length in UTF-16 units of the longest prefix of `text` that ends on a
// boundary of `type` and fits MaxBytes of UTF-8.
qsizetype fittingPrefix(const QString &text, QTextBoundaryFinder::BoundaryType type)
{
    QTextBoundaryFinder finder(type, text);
    qsizetype fitting = 0;
    qsizetype bytes = 0;
    for (qsizetype next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary()) {
        bytes += utf8Length(QStringView(text).sliced(fitting, next - fitting));
        if (bytes > MaxBytes)
            break;
        fitting = next;
    }
    return fitting;
}

// Longest prefix ending on a code point that fits MaxBytes of UTF-8; for a
// single grapheme too long to fit (a base with hundreds of marks).
qsizetype fittingCodePoints(const QString &text)
{
    qsizetype fitting = 0;
    qsizetype bytes = 0;
    while (fitting < text.size()) {
        const qsizetype width = (text[fitting].isHighSurrogate() && fitting + 1 < text.size()
                                    && text[fitting + 1].isLowSurrogate())
            ? 2
            : 1;
        bytes += utf8Length(QStringView(text).sliced(fitting, width));
        if (bytes > MaxBytes)
            break;
        fitting += width;
    }
    return fitting;
}

} // namespace

QByteArray ORVD::ToEntryName(const QString &name)
{
    const QString composed = name.normalized(QString::NormalizationForm_C);
    if (utf8Length(composed) <= MaxBytes)
        return composed.toUtf8();

    qsizetype length = fittingPrefix(composed, QTextBoundaryFinder::Grapheme);
    if (length == 0)
        length = fittingCodePoints(composed);
    return composed.left(length).toUtf8();
}
