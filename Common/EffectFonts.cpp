#include "Common/EffectFonts.h"

#include <QFontDatabase>
#include <QHash>
#include <QPair>
#include <QStringList>

namespace {

enum class FamilyKind { MPlus1c, MPlus1, Fallback };

struct InstalledFamily
{
    FamilyKind kind;
    QString name;
};

const InstalledFamily &installed()
{
    static const InstalledFamily family = [] {
        const QStringList families = QFontDatabase::families();
        if (families.contains(QStringLiteral("M+ 1c")))
            return InstalledFamily { FamilyKind::MPlus1c, QStringLiteral("M+ 1c") };
        if (families.contains(QStringLiteral("M PLUS 1")))
            return InstalledFamily { FamilyKind::MPlus1, QStringLiteral("M PLUS 1") };
        return InstalledFamily { FamilyKind::Fallback,
            QFontDatabase::systemFont(QFontDatabase::GeneralFont).family() };
    }();
    return family;
}

} // namespace

EffectFonts::Weight EffectFonts::designWeight(const QString &family)
{
    if (family == QLatin1String("M+ 1c regular"))
        return Regular;
    if (family == QLatin1String("M+ 1c medium"))
        return Medium;
    if (family == QLatin1String("M+ 1c bold"))
        return Bold;
    return NoDesignFamily;
}

QString EffectFonts::installedFamily()
{
    return installed().name;
}

QString EffectFonts::styleName(Weight weight)
{
    switch (weight) {
    case Medium: return QStringLiteral("Medium");
    case Bold: return QStringLiteral("Bold");
    default: break;
    }
    return installed().kind == FamilyKind::MPlus1c ? QStringLiteral("Normal") : QStringLiteral("Regular");
}

QFont EffectFonts::font(Weight weight, int pointSize)
{
    const InstalledFamily &family = installed();
    if (family.kind == FamilyKind::Fallback) {
        QFont font(family.name, pointSize);
        font.setWeight(weight == Bold ? QFont::Bold : weight == Medium ? QFont::Medium : QFont::Normal);
        return font;
    }
    // Every label of a panel asks for one of a few faces and sizes; the
    // font database's matching is the costly part of building a panel.
    static QHash<QPair<int, int>, QFont> matched;
    const QPair<int, int> key(weight, pointSize);
    auto found = matched.constFind(key);
    if (found == matched.constEnd()) {
        QFont font = QFontDatabase::font(family.name, styleName(weight), pointSize);
        font.setStyleName(styleName(weight));
        found = matched.insert(key, font);
    }
    return *found;
}
