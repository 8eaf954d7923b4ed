#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <functional>

class QWidget;

// Says in words what a graph draws: the names and values of the controls
// that shape its curve ("Compressor ratio 3.00:1, Compressor knee Soft
// knee"), after what the graph itself reads out, if it has a "readout"
// property. It lives as a child of the graph and reads the controls each
// time it is asked, so it is never stale and costs nothing while nobody asks.
class GraphDescription : public QObject
{
    Q_OBJECT

public:
    explicit GraphDescription(QWidget *graph);

    void addControl(QWidget *control);
    // A further part in words, asked for each time; an empty text is left out.
    void addText(std::function<QString()> part);
    QString text() const;

    // The description a graph was given, or null.
    static GraphDescription *of(const QWidget *graph);

private:
    QList<QPointer<QWidget>> m_controls;
    QList<std::function<QString()>> m_texts;
};
