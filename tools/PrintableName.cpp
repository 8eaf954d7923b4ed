#include "tools/PrintableName.h"

#include <QList>

#include "ORVChStrip/Chunk/NativeFileName.h"

namespace {

constexpr char32_t ReplacementCharacter = 0xFFFD;

bool isWide(char32_t c)
{
    return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0x303E) || (c >= 0x3041 && c <= 0x33FF)
        || (c >= 0x3400 && c <= 0x4DBF) || (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0xA000 && c <= 0xA4CF)
        || (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFE30 && c <= 0xFE4F)
        || (c >= 0xFF00 && c <= 0xFF60) || (c >= 0xFFE0 && c <= 0xFFE6) || (c >= 0x1F300 && c <= 0x1F64F)
        || (c >= 0x1F900 && c <= 0x1F9FF) || (c >= 0x20000 && c <= 0x3FFFD);
}

bool isZeroWidth(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format: return true;
    default: return false;
    }
}

} // namespace

QString PrintableName::escaped(const QString &name)
{
    QString text;
    text.reserve(name.size());
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (const int byte = NativeFileName::undecodedByte(name, i); byte >= 0) {
            text += QStringLiteral("\\x%1").arg(byte, 2, 16, QLatin1Char('0'));
            continue;
        }
        char32_t c = name.at(i).unicode();
        if (name.at(i).isHighSurrogate() && i + 1 < name.size() && name.at(i + 1).isLowSurrogate()) {
            c = QChar::surrogateToUcs4(name.at(i), name.at(i + 1));
            ++i;
        }
        switch (c) {
        case '\\': text += QStringLiteral("\\\\"); continue;
        case '\n': text += QStringLiteral("\\n"); continue;
        case '\r': text += QStringLiteral("\\r"); continue;
        case '\t': text += QStringLiteral("\\t"); continue;
        default: break;
        }
        const QChar::Category category = QChar::category(c);
        if (c == ReplacementCharacter || QChar::isSurrogate(c) || category == QChar::Other_Control
            || category == QChar::Separator_Line || category == QChar::Separator_Paragraph
            || (category == QChar::Other_Format && c != 0x200D)) {
            text += c <= 0xFF ? QStringLiteral("\\x%1").arg(uint(c), 2, 16, QLatin1Char('0'))
                              : QStringLiteral("\\u%1").arg(uint(c), 4, 16, QLatin1Char('0'));
            continue;
        }
        text += QString::fromUcs4(&c, 1);
    }
    return text;
}

QString PrintableName::forJson(const QString &name)
{
    return NativeFileName::hasUndecodedBytes(name) ? escaped(name) : name;
}

int PrintableName::displayWidth(const QString &text)
{
    int width = 0;
    for (const char32_t c : text.toUcs4())
        width += isZeroWidth(c) ? 0 : isWide(c) ? 2 : 1;
    return width;
}

QString PrintableName::padded(const QString &text, int columns)
{
    const int width = displayWidth(text);
    return width >= columns ? text : text + QString(columns - width, QLatin1Char(' '));
}
