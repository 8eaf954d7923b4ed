#include "StockPanel.h"

#include <QDial>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/TextEditController.h"

using namespace CommonController_MemAPI;

namespace {

QWidget *stockCounterpart(const QWidget *model, QWidget *parent)
{
    if (qobject_cast<const KnobController *>(model))
        return new QDial(parent);
    if (qobject_cast<const MeterController *>(model))
        return new QSlider(Qt::Vertical, parent);
    if (qobject_cast<const TextEditController *>(model))
        return new QLineEdit(QStringLiteral("0.0 dB"), parent);
    if (auto *button = qobject_cast<const QAbstractButton *>(model))
        return new QPushButton(button->text(), parent);
    if (auto *label = qobject_cast<const QLabel *>(model))
        return new QLabel(label->text(), parent);
    if (model->metaObject()->className() != QByteArrayLiteral("QWidget"))
        return new QLabel(parent); // the graphs
    return new QWidget(parent);
}

void copyTree(const QWidget *model, QWidget *copy, double scale)
{
    for (const QObject *child : model->children()) {
        const auto *widget = qobject_cast<const QWidget *>(child);
        if (!widget || widget->isWindow())
            continue;
        QWidget *counterpart = stockCounterpart(widget, copy);
        const QRect rect = widget->geometry();
        counterpart->setGeometry(int(rect.x() * scale + 0.5), int(rect.y() * scale + 0.5),
            int(rect.width() * scale + 0.5), int(rect.height() * scale + 0.5));
        counterpart->setVisible(widget->isVisibleTo(model));
        copyTree(widget, counterpart, scale);
    }
}

} // namespace

QWidget *makeStockPanel(const QWidget *model, double scale, QWidget *parent)
{
    auto *panel = new QWidget(parent);
    panel->resize(model->size() * scale);
    panel->setAutoFillBackground(true);
    QFont font = panel->font();
    font.setPixelSize(int(11 * scale));
    panel->setFont(font);
    copyTree(model, panel, scale);
    return panel;
}
