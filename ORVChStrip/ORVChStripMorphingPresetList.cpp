#include "ORVChStrip/ORVChStripMorphingPresetList.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "Common/EffectEditor.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"
#include "ORVChStrip/ORVD/OrvdMorphRecord.h"
#include "ORVChStrip/OrvdMorphBatch.h"
#include "ORVChStrip/resources/OrvResources.h"
#include "ui_ORVChStripMorphingPresetList.h"

using ORVChStripParameters::MorphPointCount;

namespace {

constexpr int DragScrollInterval = 100; // ms

} // namespace

ORVChStripMorphingPresetList::ORVChStripMorphingPresetList(QWidget *parent)
    : QWidget(parent)
    , m_pUi(std::make_unique<Ui::ORVChStripMorphingPresetList>())
{
    initializeOrvChStripResources();
    m_pUi->setupUi(this);

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
    bar->setSingleStep(m_painter.rowPitch());
}

ORVChStripMorphingPresetList::~ORVChStripMorphingPresetList() = default;

void ORVChStripMorphingPresetList::setScale(double scale)
{
    if (scale == m_scale)
        return;
    m_scale = scale;
    m_painter.setScale(scale);
    updateList();
    QScrollBar *bar = verticalScrollBar();
    bar->setSingleStep(m_painter.rowPitch());
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

const MorphSetCheck &ORVChStripMorphingPresetList::check() const
{
    if (!m_check.hasRanges() && m_pEditor && m_pMemAPI) {
        const auto ch = static_cast<unsigned short>(std::max(0, m_ch) * MorphPointCount);
        m_check.setRanges([this, ch](const char *key, MorphSetCheck::Range *range) {
            unsigned short prmId = 0;
            return m_pEditor->getParameter(key, &prmId)
                && m_pMemAPI->getRange(prmId, ch, &range->minimum, &range->maximum) >= 0;
        });
    }
    return m_check;
}

QString ORVChStripMorphingPresetList::rowProblem(int row) const
{
    return check().problem(rowData(row));
}

QString ORVChStripMorphingPresetList::rowRefusal(int row) const
{
    const QString problem = rowProblem(row);
    return problem.isEmpty() ? QString() : tr("Cannot be used: %1").arg(problem);
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
        const int content = m_painter.contentHeight(rowCount());
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
    const int top = row * m_painter.rowPitch();
    bar->setValue(std::max(std::min(bar->value(), top), top + m_painter.rowHeight() - viewportHeight()));
    showOkFor(row);
}

void ORVChStripMorphingPresetList::clearSelection()
{
    m_selected = -1;
    m_pUi->m_pListView->update();
    showOkFor(-1);
}

void ORVChStripMorphingPresetList::showOkFor(int row)
{
    const ORVD_Data *data = rowData(row);
    const QString reason = rowRefusal(row);
    const bool canDecide = data && !data->IsFolder() && reason.isEmpty();
    m_pUi->m_pOkButton->setVisible(canDecide);
    m_pUi->m_pOkDisableButton->setVisible(!canDecide);
    m_pUi->m_pOkDisableButton->setToolTip(reason);
    // The list holds the focus: a screen reader reads why OK does nothing.
    setAccessibleDescription(reason);
}

void ORVChStripMorphingPresetList::setViewScroll(double position)
{
    m_viewScroll = position;
    QScrollBar *bar = verticalScrollBar();
    if (isVisible() && bar->maximum() > bar->minimum())
        bar->setValue(bar->minimum() + int(std::lround((bar->maximum() - bar->minimum()) * position)));
}

void ORVChStripMorphingPresetList::scroll(QAbstractSlider::SliderAction action)
{
    verticalScrollBar()->triggerAction(action);
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
    // Fresh ranges: the host may have changed since the list was drawn.
    m_check.clearRanges();
    if (!rowProblem(m_selected).isEmpty())
        return false;
    OrvdMorphRecord record;
    if (OrvdMorphRecord::read(data->GetDataBuffer(), data->GetDataSize(), &record)
        != OrvdMorphRecord::ReadResult::Ok)
        return false;
    const EffectEditor *editor = m_pEditor;
    OrvdMorphBatch batch(
        [editor](const char *key, unsigned short *prmId) { return editor->getParameter(key, prmId); });
    const QByteArray name(data->GetName());
    if (!batch.appendMorphSet(name, record, m_ch) || batch.send(m_pMemAPI) != kResultOk)
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
    m_check.clearRanges();
    updateList();
    setViewScroll(m_viewScroll);
    if (rowData(m_selected))
        selectItem(m_selected);
    else
        showOkFor(-1);
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
    static const QList<int> listKeys { Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Left,
        Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown };
    if (m_pManager && listKeys.contains(event->key()))
        event->accept();
    else
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
        case QEvent::ToolTip: return showRowToolTip(static_cast<QHelpEvent *>(event));
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
    const auto rows = [this](int index) {
        MorphingListPainter::Row row;
        const ORVD_Data *data = rowData(index);
        if (!data)
            return row;
        row.name = QString::fromUtf8(data->GetName());
        row.layer = rowLayer(index);
        row.folder = data->IsFolder();
        row.open = data->IsFolderOpen();
        row.selected = index == m_selected;
        row.broken = !rowProblem(index).isEmpty();
        return row;
    };
    m_painter.paintRows(painter, exposed, view->width(), rowCount(), rows, font(), view->devicePixelRatioF());
}

void ORVChStripMorphingPresetList::paintScrollBar(QWidget *bar)
{
    QPainter painter(bar);
    const QScrollBar *scroll = verticalScrollBar();
    m_painter.paintScrollBar(painter, QRectF(bar->rect()),
        { scroll->minimum(), scroll->maximum(), scroll->value(), scroll->pageStep() });
}

bool ORVChStripMorphingPresetList::showRowToolTip(QHelpEvent *event)
{
    const QString reason = rowRefusal(m_painter.rowAt(event->pos(), rowCount()));
    if (reason.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(event->globalPos(), reason, m_pUi->m_pListView);
    return true;
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
    const int row = m_painter.rowAt(position, rowCount());
    if (row < 0)
        return;
    selectItem(row);
    const ORVD_Data *data = rowData(row);
    if (data && data->IsFolder() && m_painter.isInFolderIcon(rowLayer(row), position))
        folderOpenClose();
}

void ORVChStripMorphingPresetList::listMouseDoubleClick(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const int row = m_painter.rowAt(event->position().toPoint(), rowCount());
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
    const int row = m_painter.rowAt(event->position().toPoint(), rowCount());
    if (row >= 0 && row != m_selected)
        selectItem(row);
}
