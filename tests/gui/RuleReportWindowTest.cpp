#include "platform/qt/widgets/RuleReportWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QtTest>

using namespace velmora;

// The Rule Report as assistive technology reads it: the accessible tree that
// the desktop's accessibility bridge hands to screen readers.
class RuleReportWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readableByScreenReaders();
};

namespace {

struct Node {
    QAccessible::Role role;
    QString name;
    bool invisible;
};

void Walk(QAccessibleInterface* node, QList<Node>& found, int depth = 0) {
    if (!node || depth > 30)
        return;
    const QString text = node->text(QAccessible::Name);
    found.append({node->role(), text, node->state().invisible != 0});
    for (int i = 0; i < node->childCount(); ++i)
        Walk(node->child(i), found, depth + 1);
}

bool Has(const QList<Node>& nodes, QAccessible::Role role, const QString& name) {
    return std::any_of(nodes.begin(), nodes.end(), [&](const Node& n) {
        return n.role == role && n.name == name && !n.invisible;
    });
}

} // namespace

void RuleReportWindowTest::readableByScreenReaders() {
    RuleReportWindow report;
    report.setCaption(QStringLiteral("Velmora - Rule Report"));
    report.setHeading(QStringLiteral("Messages marked by your Rules"));
    report.setTabs({QStringLiteral("Home"), QStringLiteral("Work")});
    const QString deletes = QStringLiteral("2 Messages marked for Deletion");
    const QString spam = QStringLiteral("1 Message marked as Spam");
    report.setTexts(deletes, spam, 1);
    report.setButton(QStringLiteral("Timer"), QStringLiteral("Stop Timer"), QString());
    report.setButton(QStringLiteral("DeleteNow"), QStringLiteral("Delete Now"), QString());
    report.setButton(QStringLiteral("Exit"), QStringLiteral("Exit"), QString());
    report.showSide(1);
    report.showWindow();
    QVERIFY(QTest::qWaitForWindowExposed(report.widget()));

    QList<Node> nodes;
    Walk(QAccessible::queryAccessibleInterface(report.widget()), nodes);
    for (const char* tab : {"Home", "Work"})
        QVERIFY2(Has(nodes, QAccessible::PageTab, tab), tab);
    for (const char* button : {"Stop Timer", "Delete Now", "Exit"})
        QVERIFY2(Has(nodes, QAccessible::Button, button), button);
    QVERIFY(Has(nodes, QAccessible::StaticText, deletes));
    QVERIFY(Has(nodes, QAccessible::StaticText, QStringLiteral("Messages marked by your Rules")));

    // The other side is read once it shows.
    report.showSide(2);
    nodes.clear();
    Walk(QAccessible::queryAccessibleInterface(report.widget()), nodes);
    QVERIFY(Has(nodes, QAccessible::StaticText, spam));
    QVERIFY(!Has(nodes, QAccessible::StaticText, deletes));
}

QTEST_MAIN(RuleReportWindowTest)
#include "RuleReportWindowTest.moc"
