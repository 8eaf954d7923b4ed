#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>

#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "MinimalEditor.h"
#include "MorphRecords.h"
#include "ORVChStrip/MorphingListSettings.h"
#include "ORVChStrip/ORVChStripMorphingPresetList.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"
#include "ParameterMemory.h"

namespace {

// A closed folder "Drums" with two entries, then entries e1 to e8: 9 rows.
const QStringList FolderAndEntries { "Drums/kick.ord", "Drums/snare.ord", "e1.ord", "e2.ord", "e3.ord",
    "e4.ord", "e5.ord", "e6.ord", "e7.ord", "e8.ord" };

QStringList manyEntries(int count)
{
    QStringList entries;
    for (int i = 0; i < count; ++i)
        entries << QStringLiteral("entry%1.ord").arg(i, 2, 10, QLatin1Char('0'));
    return entries;
}

// A simulated host, an editor for key lookups, a catalogue over a temporary
// folder (entries as makeMorphFolder takes them, then files of given bytes)
// and the list, shown at its design size.
struct ListFixture
{
    explicit ListFixture(const QStringList &entries, const QMap<QString, QByteArray> &files = {}, int ch = 0)
    {
        QVERIFY(makeMorphFolder(folder.path(), entries));
        for (auto it = files.begin(); it != files.end(); ++it)
            QVERIFY(writeFile(folder.filePath(it.key()), it.value()));
        editor.setModelInfo(&model);
        manager.GetCollection().SetFolder(folder.path());
        manager.Collection();
        list.setEditor(&editor);
        list.setMemAPI(&memory);
        list.setCh(ch);
        list.setORVDManager(&manager);
        list.show();
    }

    int rows() const { return int(manager.GetSelectList().size()); }
    QString rowName(int row) const
    {
        return QString::fromUtf8(manager.GetSelectList().at(size_t(row))->GetData()->GetName());
    }
    QWidget *child(const char *name) const { return list.findChild<QWidget *>(QLatin1String(name)); }
    QScrollBar *scrollBar() const
    {
        return list.findChild<QScrollArea *>(QStringLiteral("m_pListArea"))->verticalScrollBar();
    }
    bool okShown() const
    {
        return child("m_pOkButton")->isVisible() && !child("m_pOkDisableButton")->isVisible();
    }
    void openAllFolders()
    {
        for (int row = 0; row < rows(); ++row) {
            if (manager.GetSelectList().at(size_t(row))->GetData()->IsFolder()) {
                list.selectItem(row);
                list.folderOpen();
            }
        }
    }

    QTemporaryDir folder;
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory { &model };
    MinimalEditor editor;
    ORVD_Manager manager;
    ORVChStripMorphingPresetList list;
};

QPoint rowPoint(int row, int x, double scale)
{
    const int pitch = qRound(ORVChStripMorphingPresetList::RowHeight * scale)
        + qRound(ORVChStripMorphingPresetList::RowGap * scale);
    return QPoint(x, row * pitch + pitch / 2 - 1);
}

} // namespace

class TestMorphingPresetList : public QObject
{
    Q_OBJECT

private slots:
    void keys_data();
    void keys();
    void brokenFilesShownAndRefused_data();
    void brokenFilesShownAndRefused();
    void settingsRestoreSelectionByEntry_data();
    void settingsRestoreSelectionByEntry();
    void sendsRecordAndSweepReproducesPoints();
    void mouseSelectsTogglesAndDecides_data();
    void mouseSelectsTogglesAndDecides();
    void dragBeyondEdgeKeepsScrolling();
    void scaledRowsPaintAndScroll_data();
    void scaledRowsPaintAndScroll();
};

void TestMorphingPresetList::keys_data()
{
    QTest::addColumn<int>("start"); // the selected row; -2 for an empty list
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("expected");
    QTest::addColumn<int>("rows"); // afterwards
    QTest::newRow("empty list, Down") << -2 << int(Qt::Key_Down) << -1 << 0;
    QTest::newRow("Down from no selection") << -1 << int(Qt::Key_Down) << 0 << 9;
    QTest::newRow("Up at row 0") << 0 << int(Qt::Key_Up) << 0 << 9;
    QTest::newRow("Down at the last row") << 8 << int(Qt::Key_Down) << 8 << 9;
    QTest::newRow("Page Up from row 3") << 3 << int(Qt::Key_PageUp) << 0 << 9;
    QTest::newRow("Page Up from row 7") << 7 << int(Qt::Key_PageUp) << 2 << 9;
    QTest::newRow("Page Down from row 2") << 2 << int(Qt::Key_PageDown) << 7 << 9;
    QTest::newRow("Page Down near the end") << 6 << int(Qt::Key_PageDown) << 8 << 9;
    QTest::newRow("Return on the folder") << 0 << int(Qt::Key_Return) << 0 << 9;
    QTest::newRow("Right opens the folder") << 0 << int(Qt::Key_Right) << 0 << 11;
    QTest::newRow("Left closes it") << 0 << int(Qt::Key_Left) << 0 << 9;
}

void TestMorphingPresetList::keys()
{
    QFETCH(int, start);
    QFETCH(int, key);
    QFETCH(int, expected);
    QFETCH(int, rows);
    ListFixture f(start == -2 ? QStringList() : FolderAndEntries);
    f.list.selectItem(start);
    if (key == Qt::Key_Left)
        f.list.folderOpen();
    QTest::keyClick(&f.list, Qt::Key(key));
    QCOMPARE(f.list.selectedRow(), expected);
    QCOMPARE(f.rows(), rows);
    // Row 0 is the folder: OK only for entries. Nothing is sent.
    QCOMPARE(f.okShown(), expected > 0);
    QCOMPARE(f.memory.morphBatchCount(), 0);
}

void TestMorphingPresetList::brokenFilesShownAndRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    OrvdMorphRecord kneeTooHigh = knownMorphRecord();
    kneeTooHigh.points[4][3] = 3;
    QTest::newRow("knee above its range") << kneeTooHigh.write() << "point 5, fx_mrpcmp_kne: 3 is outside";
}

void TestMorphingPresetList::brokenFilesShownAndRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    // The broken file sorts first, a good one after it.
    ListFixture f({ "b good.ord" }, { { "a broken.ord", bytes } });
    QSignalSpy closed(&f.list, &ORVChStripMorphingPresetList::closeRequested);
    QVERIFY(f.list.rowProblem(1).isEmpty());
    const QString problem = f.list.rowProblem(0);
    QVERIFY2(problem.contains(reason), qPrintable(problem));

    // Selected, it says why and offers no OK; neither Return, a double click
    // nor decide() sends it, and nothing is clamped into the host.
    f.list.selectItem(0);
    QVERIFY(!f.okShown());
    QVERIFY(f.list.accessibleDescription().contains(problem));
    QVERIFY(f.child("m_pOkDisableButton")->toolTip().contains(problem));
    QWidget *view = f.child("m_pListView");
    QHelpEvent help(QEvent::ToolTip, rowPoint(0, 200, 1.0), view->mapToGlobal(rowPoint(0, 200, 1.0)));
    QApplication::sendEvent(view, &help);
    QTRY_VERIFY(QToolTip::text().contains(problem));
    QTest::keyClick(&f.list, Qt::Key_Return);
    QTest::mouseDClick(view, Qt::LeftButton, {}, rowPoint(0, 200, 1.0));
    QVERIFY(!f.list.decide());
    QCOMPARE(f.memory.morphBatchCount(), 0);
    QCOMPARE(closed.count(), 0);
    QCOMPARE(f.manager.GetSelectData(), nullptr);

    // The good file next to it is still taken.
    QTest::keyClick(&f.list, Qt::Key_Down);
    QVERIFY(f.okShown());
    QVERIFY(f.list.accessibleDescription().isEmpty());
    QVERIFY(f.list.decide());
    QCOMPARE(f.memory.morphBatchCount(), 1);
}

void TestMorphingPresetList::settingsRestoreSelectionByEntry_data()
{
    QTest::addColumn<QStringList>("restoredFiles"); // after saving "y" of A/x.ord and A/y.ord
    QTest::addColumn<bool>("keepEntry");
    QTest::addColumn<QString>("expected");
    QTest::newRow("same catalogue") << QStringList { "A/x.ord", "A/y.ord" } << true << "y";
    QTest::newRow("entry moved down") << QStringList { "A/w.ord", "A/x.ord", "A/y.ord" } << true << "y";
    QTest::newRow("entry gone, another folder's broken file on its row")
        << QStringList { "0/bad.ord:20", "0/bae.ord:20", "A/x.ord" } << true << "";
    QTest::newRow("row only, a good file on it") << QStringList { "A/x.ord", "A/z.ord" } << false << "z";
}

void TestMorphingPresetList::settingsRestoreSelectionByEntry()
{
    QFETCH(QStringList, restoredFiles);
    QFETCH(bool, keepEntry);
    QFETCH(QString, expected);
    QMap<QString, QVariant> settings;
    {
        ListFixture saved({ "A/x.ord", "A/y.ord" });
        saved.openAllFolders();
        saved.list.selectItem(2);
        QCOMPARE(saved.rowName(2), QStringLiteral("y"));
        settings = MorphingListSettings::save(&saved.manager, &saved.list);
    }
    if (!keepEntry)
        settings.remove(QStringLiteral("MorphingListSelectedEntry"));

    ListFixture restored(restoredFiles);
    restored.openAllFolders();
    restored.list.clearSelection();
    MorphingListSettings::restore(settings, &restored.manager, &restored.list);
    const int row = restored.list.selectedRow();
    QCOMPARE(row >= 0 ? restored.rowName(row) : QString(), expected);
}

// A file, through the list and the host's morph handler, into the host: the
// morph knob's nine positions give the record's nine points of 17 values.
void TestMorphingPresetList::sendsRecordAndSweepReproducesPoints()
{
    constexpr int ch = 3;
    const OrvdMorphRecord record = knownMorphRecord();
    ListFixture f({ "Vocal Set.ord" }, {}, ch);
    QSignalSpy closed(&f.list, &ORVChStripMorphingPresetList::closeRequested);
    QSignalSpy chosen(&f.list, &ORVChStripMorphingPresetList::morphSetChosen);

    f.list.selectItem(0);
    QTest::keyClick(&f.list, Qt::Key_Return);
    QCOMPARE(f.memory.morphBatchCount(), 1);
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen.first().first().toString(), QStringLiteral("Vocal Set"));
    QCOMPARE(closed.count(), 1);
    QCOMPARE(f.manager.GetSelectData(), f.manager.GetSelectList().at(0)->GetData());
    // The entry's name and the record's id on the strip's channel only.
    QCOMPARE(f.memory.text(ChannelStripKeys::MorphSystemName, ch), QByteArray("Vocal Set"));
    QCOMPARE(f.memory.text(ChannelStripKeys::MorphSystemId, ch), record.systemId);
    QVERIFY(f.memory.text(ChannelStripKeys::MorphSystemName, ch + 1).isEmpty());

    const ParameterDefinition *position
        = f.model.parameter(f.model.parameterId(ChannelStripKeys::MorphValue));
    QVERIFY(position);
    // Start between two points so that the first point is a move too.
    QVERIFY(f.memory.setValueByKey(ChannelStripKeys::MorphValue, position->maximum / 16, ch));
    for (int point = 0; point < OrvdMorphRecord::PointCount; ++point) {
        const int value = position->minimum + (position->maximum - position->minimum) * point / 8;
        QVERIFY(f.memory.setValueByKey(ChannelStripKeys::MorphValue, value, ch));
        for (int column = 0; column < OrvdMorphRecord::ColumnCount; ++column) {
            const ParameterDefinition *columnSpec = f.model.parameter(
                f.model.parameterId(ORVChStripParameters::OrvaneDataParameterList[column]));
            QVERIFY(columnSpec && !columnSpec->morphTargetKey.isEmpty());
            QCOMPARE(f.memory.value(columnSpec->morphTargetKey.constData(), ch),
                int(record.points[point][column]));
        }
    }
}

void TestMorphingPresetList::mouseSelectsTogglesAndDecides_data()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("scale 1") << 1.0;
    QTest::newRow("scale 2") << 2.0;
}

void TestMorphingPresetList::mouseSelectsTogglesAndDecides()
{
    QFETCH(double, scale);
    ListFixture f(FolderAndEntries);
    f.list.setScale(scale);
    QWidget *view = f.child("m_pListView");
    QSignalSpy chosen(&f.list, &ORVChStripMorphingPresetList::morphSetChosen);
    const auto at = [scale](int row, int x) { return rowPoint(row, qRound(x * scale), scale); };

    // On the folder's name: selects, leaves it closed.
    QTest::mouseClick(view, Qt::LeftButton, {}, at(0, 200));
    QCOMPARE(f.list.selectedRow(), 0);
    QCOMPARE(f.rows(), 9);
    // On its icon: opens it.
    QTest::mouseClick(view, Qt::LeftButton, {}, at(0, 12));
    QCOMPARE(f.rows(), 11);
    // In the gap above row 2: nothing changes.
    const int pitch = at(1, 0).y() - at(0, 0).y();
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(qRound(200 * scale), 2 * pitch - 1));
    QCOMPARE(f.list.selectedRow(), 0);
    // A double click on an entry confirms it.
    QTest::mouseDClick(view, Qt::LeftButton, {}, at(2, 200));
    QCOMPARE(f.list.selectedRow(), 2);
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen.first().first().toString(), QStringLiteral("snare"));
    // A double click on the folder closes it again.
    QTest::mouseDClick(view, Qt::LeftButton, {}, at(0, 200));
    QCOMPARE(f.rows(), 9);
    QCOMPARE(chosen.count(), 1);
}

void TestMorphingPresetList::dragBeyondEdgeKeepsScrolling()
{
    ListFixture f(manyEntries(40));
    QWidget *view = f.child("m_pListView");
    // Row 14 is the last one fully in view.
    QTest::mousePress(view, Qt::LeftButton, {}, rowPoint(14, 100, 1.0));
    QCOMPARE(f.list.selectedRow(), 14);

    const QPointF below(100, f.scrollBar()->pageStep() + 20);
    QMouseEvent move(QEvent::MouseMove, below, view->mapToGlobal(below), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(view, &move);
    QTRY_VERIFY_WITH_TIMEOUT(f.list.selectedRow() >= 17, 2000);
    QVERIFY(f.scrollBar()->value() > 0);

    QTest::mouseRelease(view, Qt::LeftButton, {}, below.toPoint());
    const int released = f.list.selectedRow();
    QTest::qWait(350);
    QCOMPARE(f.list.selectedRow(), released);
}

void TestMorphingPresetList::scaledRowsPaintAndScroll_data()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("scale 1") << 1.0;
    QTest::newRow("scale 2") << 2.0;
}

void TestMorphingPresetList::scaledRowsPaintAndScroll()
{
    QFETCH(double, scale);
    ListFixture f(manyEntries(39));
    f.list.setScale(scale);
    f.list.selectItem(2);

    // The list view draws through the painter at the list's scale.
    QWidget *view = f.child("m_pListView");
    const QImage image = view->grab().toImage();
    const QPoint selected = rowPoint(2, view->width() - 3, scale) * image.devicePixelRatio();
    QCOMPARE(image.pixel(selected), ORVChStripMorphingPresetList::SelectedItemBackgroundColor);

    // The view holds every row; selecting one scrolls it fully into view.
    QScrollBar *bar = f.scrollBar();
    const int height = qRound(27 * scale), pitch = height + qRound(2 * scale);
    QCOMPARE(bar->maximum(), 39 * pitch - qRound(2 * scale) - bar->pageStep());
    for (const int row : { 38, 20, 0, 25 }) {
        f.list.selectItem(row);
        const int top = row * pitch - bar->value();
        QVERIFY2(top >= 0 && top + height <= bar->pageStep(), qPrintable(QString::number(row)));
    }
}

QTEST_MAIN(TestMorphingPresetList)
#include "tst_morphingpresetlist.moc"
