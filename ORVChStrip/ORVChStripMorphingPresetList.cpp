#include "ORVChStrip/ORVChStripMorphingPresetList.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "Common/EffectEditor.h"
#include "Interfaces/IMemAPI.h"
#include "Interfaces/IORVDMorphHandler.h"
#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"
#include "ORVChStrip/OrvdMorphBatch.h"
#include "ORVChStrip/ORVD/OrvdMorphRecord.h"
#include "ORVChStrip/resources/OrvResources.h"
#include "ui_ORVChStripMorphingPresetList.h"

namespace {

// Row painting measures in design pixels.
constexpr int LayerIndent = 22;
constexpr int IconLeft = 6;
constexpr int IconSize = 20;
constexpr int TextLeft = 34;
constexpr int TextRightMargin = 8;
constexpr int TextPixelSize = 14;
constexpr int ScrollThumbMinimum = 16;
constexpr int DragScrollInterval = 100; // ms

int scaled(double design, double scale)
{
    return int(std::floor(design * scale + 0.5));
}

} // namespace

ORVChStripMorphingPresetList::ORVChStripMorphingPresetList(QWidget *parent)
    : QWidget(parent)
    , m_pUi(std::make_unique<Ui::ORVChStripMorphingPresetList>())
{
    initializeOrvChStripResources();
    m_pUi->setupUi(this);
    m_folderOpenIcon.load(QStringLiteral(":/image/orvchstrip/btn_folder_open.svg"));
    m_folderCloseIcon.load(QStringLiteral(":/image/orvchstrip/btn_folder_close.svg"));
    m_folderOpenSelectIcon.load(QStringLiteral(":/image/orvchstrip/btn_folder_open_select.svg"));
    m_folderCloseSelectIcon.load(QStringLiteral(":/image/orvchstrip/btn_folder_close_select.svg"));

    m_pUi->m_pListView->installEventFilter(this);
    // The editor rescales the area from its design size: the rows follow.
    m_pUi->m_pListArea->viewport()->installEventFilter(this);
    m_pUi->m_pScrollBar->installEventFilter(this);
    m_pUi->m_pOkButton->hide();

    connect(m_pUi->m_pTopButton, &QPushButton::clicked, this, &ORVChStripMorphingPresetList::scrollTop);
    connect(m_pUi->m_pUpButton, &QPushButton::clicked, this, &ORVChStripMorphingPresetList::scrollUp);
    connect(m_pUi->m_pDownButton, &QPushButton::clicked, this, &ORVChStripMorphingPresetList::scrollDown);
    connect(m_pUi->m_pBottomButton, &QPushButton::clicked, this, &ORVChStripMorphingPresetList::scrollBottom);
    connect(m_pUi->m_pOkButton, &QPushButton::clicked, this, &ORVChStripMorphingPresetList::decide);
    connect(m_pUi->m_pCancelButton, &QPushButton::clicked, this, &ORVChStripMorphingPresetList::cancel);

    QScrollBar *bar = verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, m_pUi->m_pScrollBar, qOverload<>(&QWidget::update));
    connect(bar, &QScrollBar::valueChanged, this, [this, bar](int value) {
        if (bar->maximum() > bar->minimum())
            m_viewScroll = double(value - bar->minimum()) / (bar->maximum() - bar->minimum());
        m_pUi->m_pScrollBar->update();
    });
    bar->setSingleStep(rowHeight() + rowGap());
}

ORVChStripMorphingPresetList::~ORVChStripMorphingPresetList() = default;

void ORVChStripMorphingPresetList::setEditor(const EffectEditor *editor)
{
    m_pEditor = editor;
}

void ORVChStripMorphingPresetList::setMemAPI(IMemAPI *memAPI)
{
    m_pMemAPI = memAPI;
}

void ORVChStripMorphingPresetList::setCh(int ch1)
{
    m_ch = ch1;
}

void ORVChStripMorphingPresetList::setORVDManager(ORVD_Manager *manager)
{
    m_pManager = manager;
}

void ORVChStripMorphingPresetList::setScale(double scale)
{
    if (scale == m_scale)
        return;
    m_scale = scale;
    updateList();
    QScrollBar *bar = verticalScrollBar();
    bar->setSingleStep(rowHeight() + rowGap());
    bar->setPageStep(viewportHeight());
}

int ORVChStripMorphingPresetList::rowCount() const
{
    return m_pManager ? int(m_pManager->GetSelectList().size()) : 0;
}

ORVD_Data *ORVChStripMorphingPresetList::rowData(int row) const
{
    if (row < 0 || row >= rowCount())
        return nullptr;
    const ORVD_Select *select = m_pManager->GetSelectList().at(size_t(row));
    return select ? select->GetData() : nullptr;
}

int ORVChStripMorphingPresetList::rowLayer(int row) const
{
    const ORVD_Select *select = m_pManager->GetSelectList().at(size_t(row));
    return select ? std::max(0, select->GetLayerNo()) : 0;
}

int ORVChStripMorphingPresetList::rowHeight() const
{
    return scaled(RowHeight, m_scale);
}

int ORVChStripMorphingPresetList::rowGap() const
{
    return scaled(RowGap, m_scale);
}

int ORVChStripMorphingPresetList::rowAt(const QPoint &position) const
{
    const int pitch = rowHeight() + rowGap();
    if (position.y() < 0 || pitch <= 0)
        return -1;
    const int row = position.y() / pitch;
    if (position.y() - row * pitch >= rowHeight() || row >= rowCount())
        return -1;
    return row;
}

bool ORVChStripMorphingPresetList::isInFolderIcon(int row, const QPoint &position) const
{
    const int iconAreaRight = scaled(LayerIndent * rowLayer(row) + TextLeft, m_scale);
    return position.x() < iconAreaRight;
}

QScrollBar *ORVChStripMorphingPresetList::verticalScrollBar() const
{
    return m_pUi->m_pListArea->verticalScrollBar();
}

int ORVChStripMorphingPresetList::viewportHeight() const
{
    return m_pUi->m_pListArea->viewport()->height();
}

void ORVChStripMorphingPresetList::updateList()
{
    if (!isVisible())
        return;
    QWidget *viewport = m_pUi->m_pListArea->viewport();
    if (m_pManager) {
        const int n = rowCount();
        const int content = std::max(0, (n - 1) * rowGap() + n * rowHeight());
        m_pUi->m_pListView->resize(viewport->width(), std::max(viewport->height(), content));
    } else {
        m_pUi->m_pListView->resize(viewport->width(), 0);
    }
    verticalScrollBar()->setPageStep(viewport->height());
    m_pUi->m_pListView->update();
    m_pUi->m_pScrollBar->update();
}

void ORVChStripMorphingPresetList::selectItem(int row)
{
    const ORVD_Data *data = rowData(row);
    if (!data)
        return;
    m_selected = row;
    m_pUi->m_pListView->update();

    QScrollBar *bar = verticalScrollBar();
    const int top = row * (rowHeight() + rowGap());
    bar->setValue(std::max(std::min(bar->value(), top), top + rowHeight() - viewportHeight()));
    showOkFor(data);
}

void ORVChStripMorphingPresetList::showOkFor(const ORVD_Data *data)
{
    const bool canDecide = data && !data->IsFolder();
    m_pUi->m_pOkButton->setVisible(canDecide);
    m_pUi->m_pOkDisableButton->setVisible(!canDecide);
}

void ORVChStripMorphingPresetList::setViewScroll(double position)
{
    m_viewScroll = position;
    QScrollBar *bar = verticalScrollBar();
    if (isVisible() && bar->maximum() > bar->minimum())
        bar->setValue(bar->minimum() + int(std::lround((bar->maximum() - bar->minimum()) * position)));
}

void ORVChStripMorphingPresetList::scrollUp()
{
    verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
}

void ORVChStripMorphingPresetList::scrollDown()
{
    verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
}

void ORVChStripMorphingPresetList::scrollPageUp()
{
    verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
}

void ORVChStripMorphingPresetList::scrollPageDown()
{
    verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
}

void ORVChStripMorphingPresetList::scrollTop()
{
    verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
}

void ORVChStripMorphingPresetList::scrollBottom()
{
    verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
}

void ORVChStripMorphingPresetList::setFolderOpen(bool open)
{
    ORVD_Data *data = rowData(m_selected);
    if (!data || !data->IsFolder() || data->IsFolderOpen() == open)
        return;
    data->SetFolderOpen(open);
    m_pManager->MakeSelectList();
    updateList();
}

void ORVChStripMorphingPresetList::folderOpen()
{
    setFolderOpen(true);
}

void ORVChStripMorphingPresetList::folderClose()
{
    setFolderOpen(false);
}

void ORVChStripMorphingPresetList::folderOpenClose()
{
    const ORVD_Data *data = rowData(m_selected);
    if (data && data->IsFolder())
        setFolderOpen(!data->IsFolderOpen());
}

bool ORVChStripMorphingPresetList::decide()
{
    const ORVD_Data *data = rowData(m_selected);
    if (!data || data->IsFolder() || !m_pMemAPI || !m_pEditor)
        return false;
    OrvdMorphRecord record;
    if (OrvdMorphRecord::read(data->GetDataBuffer(), data->GetDataSize(), &record)
        != OrvdMorphRecord::ReadResult::Ok)
        return false;

    char iid[16];
    ORVDMorphHandlerIID.toBytes(iid);
    void *handler = nullptr;
    if (m_pMemAPI->queryInterface(iid, &handler) != kResultOk || !handler)
        return false;

    const EffectEditor *editor = m_pEditor;
    OrvdMorphBatch batch(
        [editor](const char *key, unsigned short *prmId) { return editor->getParameter(key, prmId); });
    const QByteArray name(data->GetName());
    if (!batch.appendMorphSet(name, record, m_ch))
        return false;
    if (static_cast<IORVDMorphHandler *>(handler)->setMorphData(batch.records().data()) != kResultOk)
        return false;

    m_pManager->SetSelectData(data);
    emit morphSetChosen(QString::fromUtf8(name));
    emit closeRequested();
    return true;
}

void ORVChStripMorphingPresetList::cancel()
{
    emit closeRequested();
}

void ORVChStripMorphingPresetList::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    updateList();
    setViewScroll(m_viewScroll);
    if (rowData(m_selected))
        selectItem(m_selected);
    else
        showOkFor(nullptr);
}

void ORVChStripMorphingPresetList::applyKeySelection(int row)
{
    if (row != m_selected)
        selectItem(row);
}

void ORVChStripMorphingPresetList::keyPressEvent(QKeyEvent *event)
{
    if (!m_pManager) {
        QWidget::keyPressEvent(event);
        return;
    }
    const int last = rowCount() - 1;
    switch (event->key()) {
    case Qt::Key_Escape: emit closeRequested(); break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (const ORVD_Data *data = rowData(m_selected); data && !data->IsFolder())
            decide();
        break;
    case Qt::Key_Left: folderClose(); break;
    case Qt::Key_Right: folderOpen(); break;
    case Qt::Key_Up: applyKeySelection(std::max(m_selected, 1) - 1); break;
    case Qt::Key_Down: applyKeySelection(std::min(m_selected + 1, last)); break;
    case Qt::Key_PageUp: applyKeySelection(std::max(m_selected, PageRows) - PageRows); break;
    case Qt::Key_PageDown: applyKeySelection(std::min(m_selected + PageRows, last)); break;
    default: QWidget::keyPressEvent(event); return;
    }
    event->accept();
}

void ORVChStripMorphingPresetList::keyReleaseEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (m_pManager) {
            event->accept();
            return;
        }
        break;
    default: break;
    }
    QWidget::keyReleaseEvent(event);
}

void ORVChStripMorphingPresetList::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_dragTimer.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    const int next = std::clamp(m_selected + m_dragDirection, 0, rowCount() - 1);
    if (next != m_selected)
        selectItem(next);
}

void ORVChStripMorphingPresetList::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgb(ItemBackgroundColor));
    painter.setPen(QColor::fromRgb(ScrollBarColor));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

bool ORVChStripMorphingPresetList::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_pUi->m_pListView) {
        switch (event->type()) {
        case QEvent::Paint:
            paintList(m_pUi->m_pListView, static_cast<QPaintEvent *>(event)->rect());
            return true;
        case QEvent::MouseButtonPress: listMousePress(static_cast<QMouseEvent *>(event)); return true;
        case QEvent::MouseButtonDblClick:
            listMouseDoubleClick(static_cast<QMouseEvent *>(event));
            return true;
        case QEvent::MouseMove: listMouseMove(static_cast<QMouseEvent *>(event)); return true;
        case QEvent::MouseButtonRelease:
            m_dragTimer.stop();
            m_dragDirection = 0;
            return true;
        default: break;
        }
    } else if (watched == m_pUi->m_pListArea->viewport()) {
        if (event->type() == QEvent::Resize)
            updateList();
    } else if (watched == m_pUi->m_pScrollBar) {
        switch (event->type()) {
        case QEvent::Paint: paintScrollBar(m_pUi->m_pScrollBar); return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseMove: scrollBarMouse(static_cast<QMouseEvent *>(event)); return true;
        default: break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ORVChStripMorphingPresetList::paintList(QWidget *view, const QRect &exposed)
{
    QPainter painter(view);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.fillRect(exposed, QColor::fromRgb(ItemBackgroundColor));
    const int n = rowCount();
    if (n == 0)
        return;

    const qreal dpr = view->devicePixelRatioF();
    const int h = rowHeight();
    const int pitch = h + rowGap();
    QFont font = this->font();
    font.setPixelSize(std::max(1, scaled(TextPixelSize, m_scale)));
    painter.setFont(font);
    const int iconSize = scaled(IconSize, m_scale);

    const int first = std::max(0, exposed.top() / std::max(1, pitch));
    const int last = std::min(n - 1, exposed.bottom() / std::max(1, pitch));
    for (int row = first; row <= last; ++row) {
        const ORVD_Data *data = rowData(row);
        if (!data)
            continue;
        const bool selected = row == m_selected;
        const QRect rowRect(0, row * pitch, view->width(), h);
        painter.fillRect(
            rowRect, QColor::fromRgb(selected ? SelectedItemBackgroundColor : ItemBackgroundColor));

        const int indent = LayerIndent * rowLayer(row);
        if (data->IsFolder()) {
            CommonController_MemAPI::SvgLayer &icon = data->IsFolderOpen()
                ? (selected ? m_folderOpenSelectIcon : m_folderOpenIcon)
                : (selected ? m_folderCloseSelectIcon : m_folderCloseIcon);
            const QRectF iconRect(
                scaled(IconLeft + indent, m_scale), rowRect.top() + (h - iconSize) / 2, iconSize, iconSize);
            icon.paint(&painter, iconRect, dpr);
        }

        const int textLeft = scaled(TextLeft + indent, m_scale);
        const QRect textRect(textLeft, rowRect.top(),
            std::max(0, rowRect.width() - textLeft - scaled(TextRightMargin, m_scale)), h);
        painter.setPen(QColor::fromRgb(selected ? SelectedItemFontColor : ItemFontColor));
        const QString name = painter.fontMetrics().elidedText(
            QString::fromUtf8(data->GetName()), Qt::ElideRight, textRect.width());
        painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter, name);
    }
}

void ORVChStripMorphingPresetList::paintScrollBar(QWidget *bar)
{
    QPainter painter(bar);
    painter.setRenderHint(QPainter::Antialiasing);
    const QScrollBar *scroll = verticalScrollBar();
    const int range = scroll->maximum() - scroll->minimum();
    const QRectF track = QRectF(bar->rect()).adjusted(bar->width() * 0.3, 0, -bar->width() * 0.3, 0);
    if (range <= 0 || track.height() <= 0)
        return;
    const double visible = double(scroll->pageStep()) / (range + scroll->pageStep());
    const double thumbHeight = std::max(ScrollThumbMinimum * m_scale, track.height() * visible);
    const double top
        = track.top() + (track.height() - thumbHeight) * double(scroll->value() - scroll->minimum()) / range;
    const double radius = track.width() / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgb(ScrollBarColor));
    painter.drawRoundedRect(QRectF(track.left(), top, track.width(), thumbHeight), radius, radius);
}

void ORVChStripMorphingPresetList::scrollBarMouse(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    // The thumb's centre follows the pointer.
    QScrollBar *scroll = verticalScrollBar();
    const int height = m_pUi->m_pScrollBar->height();
    if (height <= 0)
        return;
    const double position = std::clamp(event->position().y() / height, 0.0, 1.0);
    scroll->setValue(
        scroll->minimum() + int(std::lround((scroll->maximum() - scroll->minimum()) * position)));
}

void ORVChStripMorphingPresetList::listMousePress(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    setFocus(Qt::MouseFocusReason);
    const QPoint position = event->position().toPoint();
    const int row = rowAt(position);
    if (row < 0)
        return;
    selectItem(row);
    const ORVD_Data *data = rowData(row);
    if (data && data->IsFolder() && isInFolderIcon(row, position))
        folderOpenClose();
}

void ORVChStripMorphingPresetList::listMouseDoubleClick(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const int row = rowAt(event->position().toPoint());
    const ORVD_Data *data = rowData(row);
    if (!data)
        return;
    selectItem(row);
    if (data->IsFolder())
        folderOpenClose();
    else
        decide();
}

void ORVChStripMorphingPresetList::listMouseMove(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    // Beyond the visible part of the list the timer takes over.
    QWidget *viewport = m_pUi->m_pListArea->viewport();
    const QPoint inViewport = m_pUi->m_pListView->mapTo(viewport, event->position().toPoint());
    m_dragDirection = inViewport.y() < 0 ? -1 : inViewport.y() >= viewport->height() ? 1 : 0;
    if (m_dragDirection != 0) {
        if (!m_dragTimer.isActive())
            m_dragTimer.start(DragScrollInterval, this);
        return;
    }
    m_dragTimer.stop();
    const int row = rowAt(event->position().toPoint());
    if (row >= 0 && row != m_selected)
        selectItem(row);
}
