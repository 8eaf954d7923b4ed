#pragma once

#include <QRgb>
#include <QString>
#include <functional>

#include "Common/Widgets/SvgLayer.h"

class QFont;
class QPainter;
class QPoint;
class QRect;
class QRectF;

// Draws the morphing list's rows and its scroll bar, and answers where the
// rows lie, at a scale and a device pixel ratio. It knows nothing of widgets,
// so the list's event filter hands it a painter and the rows it needs.
class MorphingListPainter
{
public:
    // Row metrics in design pixels; multiplied by the scale.
    static constexpr int RowHeight = 27;
    static constexpr int RowGap = 2;
    static constexpr QRgb ItemBackgroundColor = 0xff01111c;
    static constexpr QRgb SelectedItemBackgroundColor = 0xfff2f2f2;
    static constexpr QRgb ItemFontColor = 0xffb3b3b3;
    static constexpr QRgb SelectedItemFontColor = 0xff01111c;
    static constexpr QRgb ScrollBarColor = 0xff808080;
    // The name of an entry that cannot be sent is drawn this much fainter.
    static constexpr double BrokenTextOpacity = 0.4;

    struct Row
    {
        QString name;
        int layer = 0;
        bool folder = false;
        bool open = false;
        bool selected = false;
        bool broken = false;
    };
    // The row at an index; asked only for the rows that are painted.
    using RowSource = std::function<Row(int)>;

    struct ScrollState
    {
        int minimum = 0;
        int maximum = 0;
        int value = 0;
        int pageStep = 0;
    };

    MorphingListPainter();

    void setScale(double scale) { m_scale = scale; }
    double scale() const { return m_scale; }
    int rowHeight() const;
    int rowGap() const;
    int rowPitch() const { return rowHeight() + rowGap(); }
    // Height of `count` rows with the gaps between them.
    int contentHeight(int count) const;
    // The row under a point of the list, -1 between rows or below them.
    int rowAt(const QPoint &position, int count) const;
    // Whether a point lies in the folder icon's column of a row at `layer`.
    bool isInFolderIcon(int layer, const QPoint &position) const;

    // Fills `exposed` and draws the rows that meet it, `width` wide.
    void paintRows(QPainter &painter, const QRect &exposed, int width, int count, const RowSource &rows,
        const QFont &font, qreal dpr);
    // The thumb of a scroll bar `area` tall, in the middle of its width.
    void paintScrollBar(QPainter &painter, const QRectF &area, const ScrollState &scroll) const;

private:
    CommonController_MemAPI::SvgLayer &folderIcon(bool open, bool selected);

    double m_scale = 1.0;
    CommonController_MemAPI::SvgLayer m_folderOpenIcon;
    CommonController_MemAPI::SvgLayer m_folderCloseIcon;
    CommonController_MemAPI::SvgLayer m_folderOpenSelectIcon;
    CommonController_MemAPI::SvgLayer m_folderCloseSelectIcon;
};
