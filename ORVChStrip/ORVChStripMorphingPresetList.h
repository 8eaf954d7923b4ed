#pragma once

#include <QAbstractSlider>
#include <QBasicTimer>
#include <QRgb>
#include <QWidget>
#include <memory>

#include "ORVChStrip/MorphSetCheck.h"
#include "ORVChStrip/MorphingListPainter.h"

class EffectEditor;
class IMemAPI;
class ORVD_Data;
class ORVD_Manager;
class QHelpEvent;
class QScrollBar;
namespace Ui {
class ORVChStripMorphingPresetList;
}

// The panel in which the user picks a morph set for the morphing knob: the
// visible rows of the morph catalogue as a list of folders and entries, with
// scroll buttons, a scroll bar, keys and mouse. Confirming an entry sends its
// record to the host's morph handler as one batch; a file that cannot be sent
// is shown dimmed, with the reason as its tooltip, and cannot be confirmed.
class ORVChStripMorphingPresetList : public QWidget
{
    Q_OBJECT

public:
    // Row metrics in design pixels; multiplied by the scale.
    static constexpr int RowHeight = MorphingListPainter::RowHeight;
    static constexpr int RowGap = MorphingListPainter::RowGap;
    // Page Up and Page Down move the selection by this many rows.
    static constexpr int PageRows = 5;
    static constexpr QRgb ItemBackgroundColor = MorphingListPainter::ItemBackgroundColor;
    static constexpr QRgb SelectedItemBackgroundColor = MorphingListPainter::SelectedItemBackgroundColor;
    static constexpr QRgb ItemFontColor = MorphingListPainter::ItemFontColor;
    static constexpr QRgb SelectedItemFontColor = MorphingListPainter::SelectedItemFontColor;
    static constexpr QRgb ScrollBarColor = MorphingListPainter::ScrollBarColor;

    explicit ORVChStripMorphingPresetList(QWidget *parent = nullptr);
    ~ORVChStripMorphingPresetList() override;

    // Key lookups (getParameter) only; not owned.
    void setEditor(const EffectEditor *editor)
    {
        m_pEditor = editor;
        m_check.clearRanges();
    }
    // The morph handler is queried from it when a set is confirmed.
    void setMemAPI(IMemAPI *memAPI)
    {
        m_pMemAPI = memAPI;
        m_check.clearRanges();
    }
    // Rows of the morph table are tagged for this channel.
    void setCh(int ch1)
    {
        m_ch = ch1;
        m_check.clearRanges();
    }
    // Not owned; the editor owns the catalogue.
    void setORVDManager(ORVD_Manager *manager) { m_pManager = manager; }
    void setScale(double scale);
    double scale() const { return m_scale; }

    int selectedRow() const { return m_selected; }
    // Why the entry of a row cannot be sent; empty for folders and good files.
    QString rowProblem(int row) const;
    // 0 at the top, 1 at the bottom.
    double viewScroll() const { return m_viewScroll; }

public slots:
    void updateList();
    void selectItem(int row);
    void clearSelection();
    void setViewScroll(double position);
    void scrollUp() { scroll(QAbstractSlider::SliderSingleStepSub); }
    void scrollDown() { scroll(QAbstractSlider::SliderSingleStepAdd); }
    void scrollPageUp() { scroll(QAbstractSlider::SliderPageStepSub); }
    void scrollPageDown() { scroll(QAbstractSlider::SliderPageStepAdd); }
    void scrollTop() { scroll(QAbstractSlider::SliderToMinimum); }
    void scrollBottom() { scroll(QAbstractSlider::SliderToMaximum); }
    void folderOpen() { setFolderOpen(true); }
    void folderClose() { setFolderOpen(false); }
    void folderOpenClose();
    // Sends the selected entry to the host; true when the host took it.
    bool decide();
    void cancel();

signals:
    // Escape, Cancel, and after a successful decide().
    void closeRequested();
    // After the host accepted the batch of the set named `name`.
    void morphSetChosen(const QString &name);

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    // The list keeps the keyboard while it is open; its keys cover its buttons.
    bool focusNextPrevChild(bool) override { return true; }
    void keyReleaseEvent(QKeyEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int rowCount() const;
    ORVD_Data *rowData(int row) const;
    int rowLayer(int row) const;
    QScrollBar *verticalScrollBar() const;
    int viewportHeight() const;
    // OK for a file that can be sent; the disabled look, with the reason as
    // its tooltip, for a folder, a broken file or no selection.
    void showOkFor(int row);
    void applyKeySelection(int row);
    void setFolderOpen(bool open);
    void scroll(QAbstractSlider::SliderAction action);
    // Asks the host for the column ranges the first time it is needed after
    // the host, the channel or the key lookup changed.
    const MorphSetCheck &check() const;
    // The sentence shown for a row that cannot be sent, else empty.
    QString rowRefusal(int row) const;

    void paintList(QWidget *view, const QRect &exposed);
    void paintScrollBar(QWidget *bar);
    bool showRowToolTip(QHelpEvent *event);
    void listMousePress(QMouseEvent *event);
    void listMouseDoubleClick(QMouseEvent *event);
    void listMouseMove(QMouseEvent *event);
    void scrollBarMouse(QMouseEvent *event);

    std::unique_ptr<Ui::ORVChStripMorphingPresetList> m_pUi;
    const EffectEditor *m_pEditor = nullptr;
    IMemAPI *m_pMemAPI = nullptr;
    ORVD_Manager *m_pManager = nullptr;
    int m_ch = 0;
    double m_scale = 1.0;
    int m_selected = -1;
    double m_viewScroll = 0.0;
    // Drag scrolling: while the pointer is held beyond the view's top (-1)
    // or bottom (+1) edge the timer keeps moving the selection.
    QBasicTimer m_dragTimer;
    int m_dragDirection = 0;
    MorphingListPainter m_painter;
    // Ranges are asked lazily, so the check is refreshed from const paths.
    mutable MorphSetCheck m_check;
};
