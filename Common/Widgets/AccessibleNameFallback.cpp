#include "Common/Widgets/AccessibleNameFallback.h"

#include <QRegularExpression>
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
    static const QRegularExpression memberPrefix(QStringLiteral("^m_p?"));
    static const QRegularExpression wordStart(QStringLiteral("([a-z0-9])([A-Z])"));
    QString name = objectName;
    name.remove(memberPrefix);
    name.replace(wordStart, QStringLiteral("\\1 \\2"));
    return name.trimmed();
}

} // namespace CommonController_MemAPI
