#pragma once

#include <QBasicTimer>
#include <QRgb>
#include <QWidget>
#include <memory>

#include "Common/Widgets/SvgLayer.h"

class EffectEditor;
class IMemAPI;
class ORVD_Data;
class ORVD_Manager;
class QScrollBar;
namespace Ui {
class ORVChStripMorphingPresetList;
}

// The panel in which the user picks a morph set for the morphing knob: the
// visible rows of the morph catalogue as a list of folders and entries, with
// scroll buttons, a scroll bar, keys and mouse. Confirming an entry sends its
// record to the host's morph handler as one batch.
class ORVChStripMorphingPresetList : public QWidget
{
    Q_OBJECT

public:
    // Row metrics in design pixels; multiplied by the scale.
    static constexpr int RowHeight = 27;
    static constexpr int RowGap = 2;
    // Page Up and Page Down move the selection by this many rows.
    static constexpr int PageRows = 5;
    static constexpr QRgb ItemBackgroundColor = 0xff01111c;
    static constexpr QRgb SelectedItemBackgroundColor = 0xfff2f2f2;
    static constexpr QRgb ItemFontColor = 0xffb3b3b3;
    static constexpr QRgb SelectedItemFontColor = 0xff01111c;
    static constexpr QRgb ScrollBarColor = 0xff808080;

    explicit ORVChStripMorphingPresetList(QWidget *parent = nullptr);
    ~ORVChStripMorphingPresetList() override;

    // Key lookups (getParameter) only; not owned.
    void setEditor(const EffectEditor *editor);
    // The morph handler is queried from it when a set is confirmed.
    void setMemAPI(IMemAPI *memAPI);
    // Rows of the morph table are tagged for this channel.
    void setCh(int ch1);
    // Not owned; the editor owns the catalogue.
    void setORVDManager(ORVD_Manager *manager);
    void setScale(double scale);
    double scale() const { return m_scale; }

    int selectedRow() const { return m_selected; }
    // 0 at the top, 1 at the bottom.
    double viewScroll() const { return m_viewScroll; }

public slots:
    void updateList();
    void selectItem(int row);
    void setViewScroll(double position);
    void scrollUp();
    void scrollDown();
    void scrollPageUp();
    void scrollPageDown();
    void scrollTop();
    void scrollBottom();
    void folderOpen();
    void folderClose();
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
    int rowHeight() const;
    int rowGap() const;
    // The row under a point of the list view, -1 between rows or below them.
    int rowAt(const QPoint &position) const;
    bool isInFolderIcon(int row, const QPoint &position) const;
    QScrollBar *verticalScrollBar() const;
    int viewportHeight() const;
    void showOkFor(const ORVD_Data *data);
    void applyKeySelection(int row);
    void setFolderOpen(bool open);

    void paintList(QWidget *view, const QRect &exposed);
    void paintScrollBar(QWidget *bar);
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
    CommonController_MemAPI::SvgLayer m_folderOpenIcon;
    CommonController_MemAPI::SvgLayer m_folderCloseIcon;
    CommonController_MemAPI::SvgLayer m_folderOpenSelectIcon;
    CommonController_MemAPI::SvgLayer m_folderCloseSelectIcon;
};
