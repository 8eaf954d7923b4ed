#pragma once

#include <QFont>
#include <QString>

// Maps the font families named in the editor forms ("M+ 1c regular",
// "M+ 1c medium", "M+ 1c bold") to an installed family. "M+ 1c" is preferred;
// where it is missing its successor "M PLUS 1" is used the same way, and the
// default sans family where neither is installed.
class EffectFonts
{
public:
    enum Weight { Regular, Medium, Bold, NoDesignFamily = -1 };

    // Which of the three design families `family` names (case-sensitive).
    static Weight designWeight(const QString &family);
    static QString installedFamily();
    static QString styleName(Weight weight);
    // The installed font for a design weight at the given point size.
    static QFont font(Weight weight, int pointSize);
};
