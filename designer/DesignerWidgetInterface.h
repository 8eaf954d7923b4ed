#pragma once

#include <QIcon>
#include <QObject>
#include <QSize>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

// What Qt Designer needs to know about one class of the forms: the names the
// forms use for it, how large a fresh one is and which properties it starts
// with, and a factory that makes one.
struct DesignerWidgetDescription
{
    using Factory = QWidget *(*)(QWidget *parent);

    QString className; // as the forms spell it, namespace included
    QString extends;   // the Qt class it derives from, as the forms declare it
    QString includeFile;
    QString toolTip;
    QString iconSvg; // artwork shown beside the name in the widget box
    QSize defaultSize;
    // Further <property> elements for a widget dropped from the widget box,
    // so that it shows its artwork at once.
    QString defaultProperties;
    bool isContainer = false;
    Factory create = nullptr;
};

// One class of the collection. The classes differ only in their
// description, so a single interface serves them all.
class DesignerWidgetInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    explicit DesignerWidgetInterface(const DesignerWidgetDescription &description, QObject *parent = nullptr);

    QString name() const override { return m_description.className; }
    QString group() const override;
    QString toolTip() const override { return m_description.toolTip; }
    QString whatsThis() const override { return m_description.toolTip; }
    QString includeFile() const override { return m_description.includeFile; }
    QIcon icon() const override;
    bool isContainer() const override { return m_description.isContainer; }
    QWidget *createWidget(QWidget *parent) override;
    bool isInitialized() const override { return m_initialized; }
    void initialize(QDesignerFormEditorInterface *core) override;
    QString domXml() const override;

private:
    // The class name without its namespace ("KnobController").
    QString unqualifiedName() const;
    // The object name Designer gives a new widget ("knobController").
    QString defaultObjectName() const;

    DesignerWidgetDescription m_description;
    mutable QIcon m_icon; // drawn on first use, once a GUI application runs
    bool m_initialized = false;
};
