#include "ORVChStrip/MorphingListPainter.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ORVChStrip/resources/OrvResources.h"

namespace {

// Row painting measures in design pixels.
constexpr int LayerIndent = 22;
constexpr int IconLeft = 6;
constexpr int IconSize = 20;
constexpr int TextLeft = 34;
constexpr int TextRightMargin = 8;
constexpr int TextPixelSize = 14;
constexpr int ScrollThumbMinimum = 16;

int scaled(double design, double scale)
{
    return int(std::floor(design * scale + 0.5));
}

} // namespace

MorphingListPainter::MorphingListPainter()
{
    initializeOrvChStripResources();
    m_folderOpenIcon.load(QStringLiteral(":/image/orvchstrip/btn_folder_open.svg"));
    m_folderCloseIcon.load(QStringLiteral(":/image/orvchstrip/btn_folder_close.svg"));
    m_folderOpenSelectIcon.load(QStringLiteral(":/image/orvchstrip/btn_folder_open_select.svg"));
    m_folderCloseSelectIcon.load(QStringLiteral(":/image/orvchstrip/btn_folder_close_select.svg"));
}

int MorphingListPainter::rowHeight() const
{
    return scaled(RowHeight, m_scale);
}

int MorphingListPainter::rowGap() const
{
    return scaled(RowGap, m_scale);
}

int MorphingListPainter::contentHeight(int count) const
{
    return std::max(0, (count - 1) * rowGap() + count * rowHeight());
}

int MorphingListPainter::rowAt(const QPoint &position, int count) const
{
    const int pitch = rowPitch();
    if (position.y() < 0 || pitch <= 0)
        return -1;
    const int row = position.y() / pitch;
    if (position.y() - row * pitch >= rowHeight() || row >= count)
        return -1;
    return row;
}

bool MorphingListPainter::isInFolderIcon(int layer, const QPoint &position) const
{
    return position.x() < scaled(LayerIndent * std::max(0, layer) + TextLeft, m_scale);
}

CommonController_MemAPI::SvgLayer &MorphingListPainter::folderIcon(bool open, bool selected)
{
    if (open)
        return selected ? m_folderOpenSelectIcon : m_folderOpenIcon;
    return selected ? m_folderCloseSelectIcon : m_folderCloseIcon;
}

void MorphingListPainter::paintRows(QPainter &painter, const QRect &exposed, int width, int count,
    const RowSource &rows, const QFont &font, qreal dpr)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.fillRect(exposed, QColor::fromRgb(ItemBackgroundColor));
    if (count <= 0 || !rows)
        return;

    const int h = rowHeight();
    const int pitch = std::max(1, rowPitch());
    QFont rowFont = font;
    rowFont.setPixelSize(std::max(1, scaled(TextPixelSize, m_scale)));
    painter.setFont(rowFont);
    const int iconSize = scaled(IconSize, m_scale);

    const int first = std::max(0, exposed.top() / pitch);
    const int last = std::min(count - 1, exposed.bottom() / pitch);
    for (int index = first; index <= last; ++index) {
        const Row row = rows(index);
        const QRect rowRect(0, index * pitch, width, h);
        painter.fillRect(
            rowRect, QColor::fromRgb(row.selected ? SelectedItemBackgroundColor : ItemBackgroundColor));

        const int indent = LayerIndent * std::max(0, row.layer);
        if (row.folder) {
            const QRectF iconRect(
                scaled(IconLeft + indent, m_scale), rowRect.top() + (h - iconSize) / 2, iconSize, iconSize);
            folderIcon(row.open, row.selected).paint(&painter, iconRect, dpr);
        }

        const int textLeft = scaled(TextLeft + indent, m_scale);
        const QRect textRect(
            textLeft, rowRect.top(), std::max(0, width - textLeft - scaled(TextRightMargin, m_scale)), h);
        painter.setPen(QColor::fromRgb(row.selected ? SelectedItemFontColor : ItemFontColor));
        painter.setOpacity(row.broken ? BrokenTextOpacity : 1.0);
        const QString name = painter.fontMetrics().elidedText(row.name, Qt::ElideRight, textRect.width());
        painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter, name);
        painter.setOpacity(1.0);
    }
}

void MorphingListPainter::paintScrollBar(
    QPainter &painter, const QRectF &area, const ScrollState &scroll) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    const int range = scroll.maximum - scroll.minimum;
    const QRectF track = area.adjusted(area.width() * 0.3, 0, -area.width() * 0.3, 0);
    if (range <= 0 || track.height() <= 0)
        return;
    const double visible = double(scroll.pageStep) / (range + scroll.pageStep);
    const double thumbHeight
        = std::min(track.height(), std::max(ScrollThumbMinimum * m_scale, track.height() * visible));
    const double top
        = track.top() + (track.height() - thumbHeight) * double(scroll.value - scroll.minimum) / range;
    const double radius = track.width() / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgb(ScrollBarColor));
    painter.drawRoundedRect(QRectF(track.left(), top, track.width(), thumbHeight), radius, radius);
}
