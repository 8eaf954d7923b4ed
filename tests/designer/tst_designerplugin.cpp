#include <QFile>
#include <QImage>
#include <QPluginLoader>
#include <QTest>
#include <QWidget>
#include <QXmlStreamReader>

#ifdef ORV_HAVE_DESIGNER_PLUGIN
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#endif

namespace {

// The first instance of a custom class in a form, preferring one that
// carries artwork: what the form sets on it, as Designer would apply it.
struct FormInstance
{
    QString objectName;
    QSize size;
    QStringList propertyNames; // every property the form sets
    QVariantMap values;        // those of a plain type, as text, number or flag
    bool hasArtwork = false;
};

struct FormClasses
{
    QList<QPair<QString, QString>> declared; // class and header of each <customwidget>
    QHash<QString, FormInstance> instances;
    QString error;
};

QVariant readValue(QXmlStreamReader &xml, QSize *size)
{
    const QString type = xml.name().toString();
    if (type == QLatin1String("rect")) {
        while (xml.readNextStartElement()) {
            const QString part = xml.name().toString();
            const int value = xml.readElementText().toInt();
            if (part == QLatin1String("width"))
                size->setWidth(value);
            else if (part == QLatin1String("height"))
                size->setHeight(value);
        }
        return QVariant();
    }
    if (type == QLatin1String("string") || type == QLatin1String("set") || type == QLatin1String("enum"))
        return xml.readElementText();
    if (type == QLatin1String("number"))
        return xml.readElementText().toInt();
    if (type == QLatin1String("double"))
        return xml.readElementText().toDouble();
    if (type == QLatin1String("bool"))
        return xml.readElementText() == QLatin1String("true");
    xml.skipCurrentElement();
    return QVariant();
}

FormClasses readFormClasses(const QString &path)
{
    FormClasses form;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        form.error = file.errorString();
        return form;
    }
    QXmlStreamReader xml(&file);
    QList<QPair<QString, FormInstance>> open; // the <widget> elements around the reader
    QString customClass;
    while (!xml.atEnd()) {
        xml.readNext();
        const QString element = xml.name().toString();
        if (xml.isStartElement() && element == QLatin1String("widget")) {
            FormInstance instance;
            instance.objectName = xml.attributes().value(QLatin1String("name")).toString();
            open.append({ xml.attributes().value(QLatin1String("class")).toString(), instance });
        } else if (xml.isEndElement() && element == QLatin1String("widget") && !open.isEmpty()) {
            const auto [className, instance] = open.takeLast();
            const auto known = form.instances.constFind(className);
            if (known == form.instances.cend() || (!known->hasArtwork && instance.hasArtwork))
                form.instances.insert(className, instance);
        } else if (xml.isStartElement() && element == QLatin1String("property") && !open.isEmpty()) {
            FormInstance &instance = open.last().second;
            const QString name = xml.attributes().value(QLatin1String("name")).toString();
            // A dynamic property (stdset="0") is the form's own note, not the class's.
            const bool dynamic = xml.attributes().value(QLatin1String("stdset")) == QLatin1String("0");
            if (!dynamic)
                instance.propertyNames << name;
            if (xml.readNextStartElement()) {
                const QVariant value = readValue(xml, &instance.size);
                if (value.isValid() && !dynamic)
                    instance.values.insert(name, value);
                if (value.toString().startsWith(QLatin1String(":/image/")))
                    instance.hasArtwork = true;
            }
        } else if (xml.isStartElement() && element == QLatin1String("class")) {
            customClass = xml.readElementText();
        } else if (xml.isStartElement() && element == QLatin1String("header")) {
            form.declared.append({ customClass, xml.readElementText() });
        }
    }
    if (xml.hasError())
        form.error = QStringLiteral("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
    return form;
}

#ifdef ORV_HAVE_DESIGNER_PLUGIN
// The class named by the first <widget> element of a domXml() text, empty
// when the text does not parse.
QString domXmlWidgetClass(const QString &domXml)
{
    QXmlStreamReader xml(domXml);
    QString className;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && className.isEmpty()
            && xml.name() == QLatin1String("widget"))
            className = xml.attributes().value(QLatin1String("class")).toString();
    }
    return xml.hasError() ? QString() : className;
}

bool isUniform(const QImage &image)
{
    QImage flat(image.size(), image.format());
    flat.fill(image.pixel(0, 0));
    return image == flat;
}
#endif

} // namespace

Q_DECLARE_METATYPE(FormInstance)

class tst_DesignerPlugin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void shouldMakeEveryCustomClassOfTheForms_data();
    void shouldMakeEveryCustomClassOfTheForms();

private:
#ifdef ORV_HAVE_DESIGNER_PLUGIN
    QDesignerCustomWidgetInterface *widgetInterface(const QString &className) const;
    QPluginLoader m_loader { QStringLiteral(ORV_PLUGIN_DIR "/designer/orvchstrip_designer") };
    QDesignerCustomWidgetCollectionInterface *m_collection = nullptr;
#endif
};

void tst_DesignerPlugin::initTestCase()
{
#ifdef ORV_HAVE_DESIGNER_PLUGIN
    m_collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(m_loader.instance());
    QVERIFY2(m_collection, qPrintable(m_loader.errorString()));
#else
    QFAIL(
        "Qt Designer's development files (qt6-tools-dev) were not found: the Designer plug-in is not built");
#endif
}

void tst_DesignerPlugin::shouldMakeEveryCustomClassOfTheForms_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("header");
    QTest::addColumn<FormInstance>("instance");

    const QStringList forms { QStringLiteral("ORVChStripEditor"),
        QStringLiteral("ORVChStripMorphingPresetList"), QStringLiteral("ORVChStripPresetConverter"),
        QStringLiteral("ORVChStripAbout"), QStringLiteral("ControlsGallery") };
    for (const QString &name : forms) {
        const FormClasses form = readFormClasses(QStringLiteral(ORV_FORMS_DIR "/%1.ui").arg(name));
        QVERIFY2(form.error.isEmpty(), qPrintable(name + QLatin1String(": ") + form.error));
        QVERIFY2(!form.declared.isEmpty(), qPrintable(name + QLatin1String(" declares no custom class")));
        for (const auto &[className, header] : form.declared) {
            QTest::addRow("%s %s", qPrintable(name), qPrintable(className))
                << className << header << form.instances.value(className);
        }
    }
}

void tst_DesignerPlugin::shouldMakeEveryCustomClassOfTheForms()
{
#ifdef ORV_HAVE_DESIGNER_PLUGIN
    QFETCH(QString, className);
    QFETCH(QString, header);
    QFETCH(FormInstance, instance);
    QVERIFY2(!instance.objectName.isEmpty(), "the form declares the class but has no instance of it");

    QDesignerCustomWidgetInterface *widgets = widgetInterface(className);
    QVERIFY2(widgets, "not in the collection");
    QCOMPARE(widgets->includeFile(), header);
    QCOMPARE(domXmlWidgetClass(widgets->domXml()), className);

    QWidget parent;
    QWidget *widget = widgets->createWidget(&parent);
    QVERIFY(widget);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);

    // Designer shows and saves only properties the class declares: one the
    // form sets that the widget lacks would be lost on the first save.
    for (const QString &name : std::as_const(instance.propertyNames)) {
        QVERIFY2(widget->metaObject()->indexOfProperty(name.toLatin1()) >= 0,
            qPrintable(
                QStringLiteral("%1 sets \"%2\", which the widget lacks").arg(instance.objectName, name)));
    }

    if (!instance.hasArtwork)
        return;
    // The same control with and without the form's artwork, set up as the
    // form sets it otherwise: the difference is what the plug-in's
    // resources put on the screen.
    const auto isArtwork
        = [](const QVariant &value) { return value.toString().startsWith(QLatin1String(":/image/")); };
    // Sets the form's values of one kind; returns the first the widget refuses.
    const auto apply = [&](bool artwork) {
        for (auto it = instance.values.cbegin(); it != instance.values.cend(); ++it) {
            if (isArtwork(it.value()) == artwork && !widget->setProperty(it.key().toLatin1(), it.value()))
                return it.key();
        }
        return QString();
    };
    widget->resize(instance.size);
    QString refused = apply(false);
    QVERIFY2(refused.isEmpty(), qPrintable(refused + QLatin1String(" is refused")));
    const QImage bare = widget->grab().toImage();
    refused = apply(true);
    QVERIFY2(refused.isEmpty(), qPrintable(refused + QLatin1String(" is refused")));
    const QImage drawn = widget->grab().toImage();
    QVERIFY2(!isUniform(drawn), qPrintable(instance.objectName + QLatin1String(" draws nothing")));
    QVERIFY2(drawn != bare, qPrintable(instance.objectName + QLatin1String(" draws without its artwork")));
#endif
}

#ifdef ORV_HAVE_DESIGNER_PLUGIN
QDesignerCustomWidgetInterface *tst_DesignerPlugin::widgetInterface(const QString &className) const
{
    const QList<QDesignerCustomWidgetInterface *> all = m_collection->customWidgets();
    for (QDesignerCustomWidgetInterface *widgets : all) {
        if (widgets->name() == className)
            return widgets;
    }
    return nullptr;
}
#endif

QTEST_MAIN(tst_DesignerPlugin)
#include "tst_designerplugin.moc"
