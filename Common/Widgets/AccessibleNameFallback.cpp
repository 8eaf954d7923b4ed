#include "Common/Widgets/AccessibleNameFallback.h"

#include <QWidget>

namespace CommonController_MemAPI {

void AccessibleNameFallback::refresh(const QString &text)
{
    QString name = text;
    name.remove(QLatin1Char('&'));
    name = name.trimmed();
    apply(name.isEmpty() ? readable(m_pWidget->objectName()) : name);
}

void AccessibleNameFallback::apply(const QString &name)
{
    const QString current = m_pWidget->accessibleName();
    if (!current.isEmpty() && current != m_automatic)
        return;
    m_automatic = name;
    if (name != current)
        m_pWidget->setAccessibleName(name);
}

QString AccessibleNameFallback::readable(const QString &objectName)
{
    // "m_pCompressorRatioKnob" reads "Compressor Ratio Knob": the member
    // prefix goes, and a space comes before each capital that follows a small
    // letter or a digit. By hand rather than by pattern: every control asks
    // while a panel is being built.
    QStringView rest(objectName);
    if (rest.startsWith(u"m_p"))
        rest = rest.mid(3);
    else if (rest.startsWith(u"m_"))
        rest = rest.mid(2);
    const auto smallOrDigit = [](QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9'); };
    QString name;
    name.reserve(rest.size() + 8);
    for (qsizetype i = 0; i < rest.size(); ++i) {
        if (i > 0 && rest[i] >= u'A' && rest[i] <= u'Z' && smallOrDigit(rest[i - 1]))
            name += QLatin1Char(' ');
        name += rest[i];
    }
    return name.trimmed();
}

} // namespace CommonController_MemAPI
