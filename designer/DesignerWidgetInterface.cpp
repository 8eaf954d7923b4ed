#include "designer/DesignerWidgetInterface.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <QWidget>

namespace {

// Designer's widget box shows only icons that list their sizes, which an SVG
// icon does not: the artwork is drawn into square pixmaps, centred.
QIcon iconFromSvg(const QString &path)
{
    QIcon icon;
    QSvgRenderer renderer(path);
    if (!renderer.isValid())
        return icon;
    for (const int extent : { 16, 24, 32, 64 }) {
        QPixmap pixmap(extent, extent);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        const QSizeF size = QSizeF(renderer.defaultSize()).scaled(extent, extent, Qt::KeepAspectRatio);
        renderer.render(&painter, QRectF(QPointF(extent - size.width(), extent - size.height()) / 2.0, size));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

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
    if (m_icon.isNull() && !m_description.iconSvg.isEmpty())
        m_icon = iconFromSvg(m_description.iconSvg);
    return m_icon;
}

QWidget *DesignerWidgetInterface::createWidget(QWidget *parent)
{
    return m_description.create ? m_description.create(parent) : nullptr;
}

void DesignerWidgetInterface::initialize(QDesignerFormEditorInterface *)
{
    m_initialized = true;
}

QString DesignerWidgetInterface::unqualifiedName() const
{
    return m_description.className.section(QStringLiteral("::"), -1);
}

QString DesignerWidgetInterface::defaultObjectName() const
{
    QString objectName = unqualifiedName();
    if (!objectName.isEmpty())
        objectName[0] = objectName.at(0).toLower();
    return objectName;
}

QString DesignerWidgetInterface::domXml() const
{
    // The widget box names the class without its namespace. The
    // <customwidgets> part tells Designer the Qt base class, which it writes
    // back as <extends> when a form is saved.
    return QStringLiteral(R"(<ui language="c++" displayname="%8">
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
            m_description.extends, m_description.includeFile, unqualifiedName());
}
