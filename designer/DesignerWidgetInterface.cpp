#include "designer/DesignerWidgetInterface.h"

#include <QIcon>
#include <QWidget>

DesignerWidgetInterface::DesignerWidgetInterface(
    const DesignerWidgetDescription &description, QObject *parent)
    : QObject(parent)
    , m_description(description)
{ }

QString DesignerWidgetInterface::group() const
{
    return QStringLiteral("Orvane Channel Strip");
}

QIcon DesignerWidgetInterface::icon() const
{
    return m_description.iconSvg.isEmpty() ? QIcon() : QIcon(m_description.iconSvg);
}

QWidget *DesignerWidgetInterface::createWidget(QWidget *parent)
{
    return m_description.create ? m_description.create(parent) : nullptr;
}

void DesignerWidgetInterface::initialize(QDesignerFormEditorInterface *)
{
    m_initialized = true;
}

QString DesignerWidgetInterface::defaultObjectName() const
{
    QString objectName = m_description.className.section(QStringLiteral("::"), -1);
    if (!objectName.isEmpty())
        objectName[0] = objectName.at(0).toLower();
    return objectName;
}

QString DesignerWidgetInterface::domXml() const
{
    // The <customwidgets> part tells Designer the Qt base class, which it
    // writes back as <extends> when a form is saved.
    return QStringLiteral(R"(<ui language="c++">
 <widget class="%1" name="%2">
  <property name="geometry"><rect><x>0</x><y>0</y><width>%3</width><height>%4</height></rect></property>
%5 </widget>
 <customwidgets>
  <customwidget>
   <class>%1</class>
   <extends>%6</extends>
   <header>%7</header>
  </customwidget>
 </customwidgets>
</ui>
)")
        .arg(m_description.className, defaultObjectName(), QString::number(m_description.defaultSize.width()),
            QString::number(m_description.defaultSize.height()), m_description.defaultProperties,
            m_description.extends, m_description.includeFile);
}
