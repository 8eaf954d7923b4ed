#pragma once

#include <QLabel>

#include "Common/Widgets/SvgLayer.h"

// A label that shows fixed SVG artwork stretched to its size, with ordinary
// label text on top. A second SVG may stand in while the label is disabled,
// and the artwork can be faded by an opacity.
class SvgLabel : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(QString svg READ svg WRITE setSvg)
    Q_PROPERTY(QString disableSvgRenderer READ disableSvg WRITE setDisableSvg)
    Q_PROPERTY(double opacity READ opacity WRITE setOpacity)

public:
    explicit SvgLabel(QWidget *parent = nullptr);
    ~SvgLabel() override;

    QString svg() const { return m_svg; }
    void setSvg(const QString &path);
    QString disableSvg() const { return m_disableSvg; }
    void setDisableSvg(const QString &path);
    // Affects the artwork only; the label text keeps its own colour.
    double opacity() const { return m_opacity; }
    void setOpacity(double opacity);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_svg;
    QString m_disableSvg;
    double m_opacity = 1.0;
    CommonController_MemAPI::SvgLayer m_svgRenderer;
    CommonController_MemAPI::SvgLayer m_disableSvgRenderer;
};
