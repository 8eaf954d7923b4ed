// The Designer plug-in, loaded as Designer loads it, against the forms: every
// custom class they use is offered, under the header they name, takes every
// property they set and draws their artwork.

#include <QFile>
#include <QImage>
#include <QPluginLoader>
#include <QTest>
#include <QWidget>
#include <QXmlStreamReader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

namespace {

// One instance of a custom class in a form, preferring one with artwork.
struct FormInstance
{
    QString objectName;
    QSize size;
    QStringList propertyNames; // every property the form sets on it
    QVariantMap values;        // those of a plain type, as Designer applies them
    bool hasArtwork = false;
};

bool isArtwork(const QVariant &value)
{
    return value.toString().startsWith(QLatin1String(":/image/"));
}

// The value of the <property> element the reader is in, as text when of a
// plain type (setProperty() converts it as Designer would); a <rect> gives
// its size instead.
QVariant readValue(QXmlStreamReader &xml, QSize *size)
{
    if (!xml.readNextStartElement())
        return QVariant();
    if (xml.name() == QLatin1String("rect")) {
        while (xml.readNextStartElement()) {
            const QStringView part = xml.name();
            const int value = xml.readElementText().toInt();
            *size = part == QLatin1String("width") ? QSize(value, size->height())
                : part == QLatin1String("height")  ? QSize(size->width(), value)
                                                   : *size;
        }
        return QVariant();
    }
    static const QStringList plain { "number", "double", "bool", "string", "set", "enum" };
    if (plain.contains(xml.name().toString()))
        return xml.readElementText();
    xml.skipCurrentElement();
    return QVariant();
}

} // namespace

Q_DECLARE_METATYPE(FormInstance)

class tst_DesignerPlugin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void makesEveryCustomClassOfTheForms_data();
    void makesEveryCustomClassOfTheForms();

private:
    QPluginLoader m_loader { QStringLiteral(ORV_PLUGIN_DIR "/designer/orvchstrip_designer") };
    QDesignerCustomWidgetCollectionInterface *m_collection = nullptr;
};

void tst_DesignerPlugin::initTestCase()
{
    m_collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(m_loader.instance());
    QVERIFY2(m_collection, qPrintable(m_loader.errorString()));
}

void tst_DesignerPlugin::makesEveryCustomClassOfTheForms_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("header");
    QTest::addColumn<FormInstance>("instance");

    for (const char *form : { "ORVChStripEditor", "ORVChStripMorphingPresetList", "ORVChStripPresetConverter",
             "ORVChStripAbout", "ControlsGallery" }) {
        QFile file(QStringLiteral(ORV_FORMS_DIR "/%1.ui").arg(QLatin1String(form)));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        QXmlStreamReader xml(&file);
        QList<QPair<QString, FormInstance>> open; // the <widget> elements around the reader
        QHash<QString, FormInstance> instances;
        QString className;
        int declared = 0;
        while (!xml.atEnd()) {
            xml.readNext();
            const QStringView element = xml.name();
            if (xml.isStartElement() && element == QLatin1String("widget")) {
                FormInstance instance;
                instance.objectName = xml.attributes().value(QLatin1String("name")).toString();
                open.append({ xml.attributes().value(QLatin1String("class")).toString(), instance });
            } else if (xml.isEndElement() && element == QLatin1String("widget")) {
                const auto [widgetClass, instance] = open.takeLast();
                if (!instances.contains(widgetClass)
                    || (!instances[widgetClass].hasArtwork && instance.hasArtwork))
                    instances.insert(widgetClass, instance);
            } else if (xml.isStartElement() && element == QLatin1String("property") && !open.isEmpty()) {
                FormInstance &instance = open.last().second;
                const QString name = xml.attributes().value(QLatin1String("name")).toString();
                // A dynamic property (stdset="0") is the form's own note, not the class's.
                const bool dynamic = xml.attributes().value(QLatin1String("stdset")) == QLatin1String("0");
                const QVariant value = readValue(xml, &instance.size);
                instance.hasArtwork = instance.hasArtwork || isArtwork(value);
                if (!dynamic)
                    instance.propertyNames << name;
                if (!dynamic && value.isValid())
                    instance.values.insert(name, value);
            } else if (xml.isStartElement() && element == QLatin1String("class")) {
                className = xml.readElementText();
            } else if (xml.isStartElement() && element == QLatin1String("header")) {
                ++declared;
                QTest::addRow("%s %s", form, qPrintable(className))
                    << className << xml.readElementText() << instances.value(className);
            }
        }
        QVERIFY2(!xml.hasError(), qPrintable(QStringLiteral("%1: %2").arg(form, xml.errorString())));
        QVERIFY2(declared > 0, form);
    }
}

void tst_DesignerPlugin::makesEveryCustomClassOfTheForms()
{
    QFETCH(QString, className);
    QFETCH(QString, header);
    QFETCH(FormInstance, instance);
    QVERIFY2(!instance.objectName.isEmpty(), "the form declares the class but has no instance of it");

    const QList<QDesignerCustomWidgetInterface *> all = m_collection->customWidgets();
    const auto found
        = std::find_if(all.begin(), all.end(), [&](auto *widgets) { return widgets->name() == className; });
    QVERIFY2(found != all.end(), "not in the collection");
    QDesignerCustomWidgetInterface *widgets = *found;
    QCOMPARE(widgets->includeFile(), header);
    QXmlStreamReader domXml(widgets->domXml());
    QVERIFY(domXml.readNextStartElement() && domXml.readNextStartElement()); // <ui>, its first <widget>
    QCOMPARE(domXml.attributes().value(QLatin1String("class")).toString(), className);
    while (!domXml.atEnd())
        domXml.readNext();
    QVERIFY2(!domXml.hasError(), qPrintable(domXml.errorString()));

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

    // The control set up as the form sets it, without and then with the
    // form's artwork: the difference is what the plug-in's resources draw.
    widget->resize(instance.size);
    QImage drawn[2];
    for (const bool artwork : { false, true }) {
        for (auto it = instance.values.cbegin(); it != instance.values.cend(); ++it) {
            if (isArtwork(it.value()) == artwork)
                QVERIFY2(widget->setProperty(it.key().toLatin1(), it.value()),
                    qPrintable(it.key() + " is refused"));
        }
        drawn[artwork] = widget->grab().toImage();
    }
    QImage uniform(drawn[1].size(), drawn[1].format());
    uniform.fill(drawn[1].pixel(0, 0));
    QVERIFY2(drawn[1] != uniform, qPrintable(instance.objectName + QLatin1String(" draws nothing")));
    QVERIFY2(
        drawn[1] != drawn[0], qPrintable(instance.objectName + QLatin1String(" draws without its artwork")));
}

QTEST_MAIN(tst_DesignerPlugin)
#include "tst_designerplugin.moc"
