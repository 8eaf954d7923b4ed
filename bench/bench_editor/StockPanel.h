#pragma once

class QWidget;

// A panel of stock Qt widgets with the same count, nesting and geometry as
// the widget tree it is given: knobs become QDial, meters QSlider, text
// fields QLineEdit, buttons QPushButton, labels and graphs QLabel. The model
// is taken at scale 1; `scale` multiplies every rectangle and the font.
QWidget *makeStockPanel(const QWidget *model, double scale, QWidget *parent = nullptr);
