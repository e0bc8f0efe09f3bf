#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "platform/qt/widgets/MainWindow.h"
#include "support/TestRig.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QTableWidget>
#include <QtTest>

using namespace velmora;

// The message list on screen: a right click on a row and a click on a header
// go through the same logic as everywhere else.
class EmailListWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void rightClickAndHeaderClick();
};

namespace {

QStringList Subjects(QTableWidget* table) {
    QStringList s;
    for (int r = 0; r < table->rowCount(); ++r)
        s.append(table->item(r, 2)->text());
    return s;
}

} // namespace

void EmailListWindowTest::rightClickAndHeaderClick() {
    TestRig rig;
    MainWindow window;
    rig.addAccount(1, "Home");
    rig.settings.set("Settings\\FirstUse", "1");
    rig.settings.set("Settings\\Options\\MessageSort", "1");
    rig.settings.set("Settings\\Options\\SortColumn", "1");
    rig.settings.set("Settings\\Options\\SortOrder", "0");
    rig.mailbox("Home").mail = {"u3", "u1", "u2"};
    window.setTaskbarFallback(false);
    rig.ctx->view = &window;
    frmMainEvents events(*rig.ctx);
    window.setEvents(&events);
    QVERIFY(rig.start());
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    CheckAllAccounts(*rig.ctx);

    auto* table = window.findChild<QTableWidget*>("lvwEmail");
    QCOMPARE(table->rowCount(), 3);
    QWidget* viewport = table->viewport();
    const QPoint onRow2 = table->visualRect(table->model()->index(1, 2)).center();
    QTest::mousePress(viewport, Qt::RightButton, {}, onRow2);
    QTest::mouseRelease(viewport, Qt::RightButton, {}, onRow2);
    QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, onRow2, viewport->mapToGlobal(onRow2));
    QApplication::sendEvent(viewport, &menuEvent);
    QCoreApplication::processEvents();

    auto* menu = window.findChild<QMenu*>("mnuEmailPopMenu");
    QTRY_VERIFY(menu->isVisible());
    for (QAction* entry : menu->actions())
        QVERIFY2(entry->isEnabled(), qPrintable(entry->text()));
    QCOMPARE(rig.ctx->list.SelectedMessage, 2);
    menu->hide();

    QHeaderView* header = table->horizontalHeader();
    const QPoint subject(header->sectionViewportPosition(2) + header->sectionSize(2) / 2,
                         header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, subject);
    QCOMPARE(Subjects(table), QStringList({"Subject u1", "Subject u2", "Subject u3"}));
    QVERIFY(!table->horizontalHeaderItem(2)->icon().isNull());
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, subject);
    QCOMPARE(Subjects(table), QStringList({"Subject u3", "Subject u2", "Subject u1"}));
    // A fill leaves no row selected and the selection's actions off.
    QVERIFY(table->selectionModel()->selectedRows().isEmpty());
    QVERIFY(!window.isEnabled("tbrEmail/EmailDelete"));
}

QTEST_MAIN(EmailListWindowTest)
#include "EmailListWindowTest.moc"
