#include "platform/qt/widgets/WidgetMessageList.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/Pictures.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QHeaderView>
#include <QLayout>
#include <QMenu>
#include <QStyle>
#include <QTableWidget>
#include <QTimer>
#include <QToolTip>

namespace velmora {

namespace {

const int kColumns = int(ListColumns().size());
// The Size column reads best aligned on its units.
const int kSizeColumn = int(ListColumns().indexOf(QStringLiteral("Size")));
constexpr int kPictureRole = Qt::UserRole;
constexpr int kPicture = 16;
constexpr int kTipTime = 5000;

// Lays out a window that has not shown yet, so that the list has the width
// it will show with. Until then a layout hears of no change in its widgets'
// sizes (new captions, say), so each widget tells its layout first.
void Activate(QWidget* widget) {
    if (QLayout* layout = widget->layout())
        layout->activate();
    for (QObject* child : widget->children()) {
        auto* inner = qobject_cast<QWidget*>(child);
        if (inner && !inner->isWindow() && !inner->isHidden())
            Activate(inner);
    }
}

void LayOut(QWidget* window) {
    for (QWidget* widget : window->findChildren<QWidget*>())
        widget->updateGeometry();
    Activate(window);
}

} // namespace

class WidgetMessageList::Table : public QTableWidget {
public:
    explicit Table(const EventReporter& reporter) : reporter(reporter) {}

    // The row under a point of the viewport, from 1; 0 for none.
    int rowUnder(const QPoint& point) const {
        if (point.x() < 0 || point.x() >= viewport()->width())
            return 0;
        return QTableWidget::rowAt(point.y()) + 1;
    }

    // The cell the pointer was last reported over, where a tip shows.
    QPoint lastPointer;

protected:
    void mouseMoveEvent(QMouseEvent* event) override {
        QTableWidget::mouseMoveEvent(event);
        lastPointer = event->position().toPoint();
        // Measured from the first column, scrolled out of sight or not.
        const int x = lastPointer.x() + horizontalOffset();
        const int row = rowUnder(lastPointer);
        reporter([row, x](MainViewEvents& events) { events.ListPointer(row, x); });
    }

    void mouseReleaseEvent(QMouseEvent* event) override {
        QTableWidget::mouseReleaseEvent(event);
        // A double click is one click and the double click, not two clicks.
        const bool second = endingDoubleClick;
        endingDoubleClick = false;
        if (event->button() == Qt::LeftButton && !second)
            report(&MainViewEvents::ListRowClick, rowUnder(event->position().toPoint()));
    }

    void mouseDoubleClickEvent(QMouseEvent* event) override {
        QTableWidget::mouseDoubleClickEvent(event);
        if (event->button() != Qt::LeftButton)
            return;
        endingDoubleClick = true;
        report(&MainViewEvents::ListDoubleClick, rowUnder(event->position().toPoint()));
    }

    void contextMenuEvent(QContextMenuEvent* event) override {
        // From the menu key, the menu is for the row with the focus.
        const int row = event->reason() == QContextMenuEvent::Keyboard
                            ? QTableWidget::currentRow() + 1
                            : rowUnder(event->pos());
        event->accept();
        report(&MainViewEvents::ListContextMenu, row);
    }

    void focusInEvent(QFocusEvent* event) override {
        QTableWidget::focusInEvent(event);
        if (event->reason() == Qt::MouseFocusReason)
            reporter([](MainViewEvents& events) { events.FocusArrived(ctl::lvwEmail); });
    }

    void keyPressEvent(QKeyEvent* event) override {
        const int before = QTableWidget::currentRow();
        if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && before >= 0) {
            // Enter opens the message, as a double click does.
            event->accept();
            report(&MainViewEvents::ListDoubleClick, before + 1);
            return;
        }
        QTableWidget::keyPressEvent(event);
        const int after = QTableWidget::currentRow();
        if (after != before && after >= 0)
            report(&MainViewEvents::ListRowClick, after + 1);
    }

private:
    void report(void (MainViewEvents::*event)(int), int row) {
        reporter([event, row](MainViewEvents& events) { (events.*event)(row); });
    }

    EventReporter reporter;
    bool endingDoubleClick = false;
};

WidgetMessageList::WidgetMessageList(WidgetControls& controls)
    : table(new Table(controls.report())), tipDelay(new QTimer(table)) {
    tipDelay->setSingleShot(true);
    QObject::connect(tipDelay, &QTimer::timeout, table, [this] { showTip(); });
    table->setColumnCount(kColumns);
    table->setHorizontalHeaderLabels(ListColumns());
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSortingEnabled(false);
    table->setShowGrid(false);
    table->setAlternatingRowColors(true);
    table->setWordWrap(false);
    table->setCornerButtonEnabled(false);
    // Tab leaves the list rather than walking its cells.
    table->setTabKeyNavigation(false);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->setIconSize(QSize(kPicture, kPicture));
    table->setAccessibleName(QStringLiteral("Messages"));
    // Moves without a button held are reported too, for the cells' tips.
    table->setMouseTracking(true);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(qMax(table->fontMetrics().height(), kPicture) +
                                                   6);
    controls.add(table, ctl::lvwEmail);

    QHeaderView* header = table->horizontalHeader();
    header->setSectionsMovable(false);
    header->setSectionsClickable(true);
    header->setHighlightSections(false);
    header->setStretchLastSection(false);
    header->setSectionResizeMode(QHeaderView::Interactive);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const auto headerClick = [report = controls.report()](int column) {
        report([column](MainViewEvents& events) { events.ListHeaderClick(column); });
    };
    QObject::connect(header, &QHeaderView::sectionClicked, header,
                     [headerClick](int section) { headerClick(section + 1); });
    // Each header is a named action too, carrying the header's picture.
    for (int column = 0; column < kColumns; ++column) {
        auto* action = new QAction(ListColumns()[column], header);
        header->addAction(action);
        controls.add(action, Button(ctl::lvwEmail, ListColumns()[column]));
        QObject::connect(action, &QAction::triggered, header,
                         [headerClick, column] { headerClick(column + 1); });
        QObject::connect(action, &QAction::changed, header, [list = table, action, column] {
            list->horizontalHeaderItem(column)->setIcon(action->icon());
            list->horizontalHeader()->setSectionHidden(column, !action->isVisible());
        });
    }
    if (kSizeColumn >= 0)
        table->horizontalHeaderItem(kSizeColumn)
            ->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);

    // The entries of the list's popup menu.
    auto* popup = new QMenu(table);
    controls.add(popup, ctl::mnuEmailPopMenu);
    for (const QString& entry : EmailMenuEntries())
        controls.add(popup->addAction(entry), entry);
}

QTableWidget* WidgetMessageList::widget() const {
    return table;
}

int WidgetMessageList::index(int row) const {
    return row >= 1 && row <= table->rowCount() ? row - 1 : -1;
}

void WidgetMessageList::clear() {
    table->setRowCount(0);
}

void WidgetMessageList::addRow(const ListRow& row) {
    const int r = table->rowCount();
    table->insertRow(r);
    QFont bold = table->font();
    bold.setBold(true);
    for (int column = 0; column < kColumns; ++column) {
        auto* item = new QTableWidgetItem(row.cells.value(column));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        if (row.bold)
            item->setFont(bold);
        if (column == kSizeColumn)
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        table->setItem(r, column, item);
    }
    QTableWidgetItem* first = table->item(r, 0);
    first->setIcon(Pictures::Keyed(row.picture));
    first->setData(kPictureRole, row.picture);
    // The picture says new, spam, deleted or attached: screen readers hear it.
    first->setData(Qt::AccessibleDescriptionRole, row.picture);
}

int WidgetMessageList::rowCount() const {
    return table->rowCount();
}

ListRow WidgetMessageList::row(int row) const {
    const int r = index(row);
    ListRow result;
    if (r < 0)
        return result;
    for (int column = 0; column < kColumns; ++column)
        result.cells.append(table->item(r, column)->text());
    result.picture = table->item(r, 0)->data(kPictureRole).toString();
    result.bold = table->item(r, 0)->font().bold();
    return result;
}

bool WidgetMessageList::isRowSelected(int row) const {
    const int r = index(row);
    return r >= 0 && table->selectionModel()->isRowSelected(r, QModelIndex());
}

void WidgetMessageList::setRowSelected(int row, bool selected) {
    const int r = index(row);
    if (r < 0)
        return;
    table->selectionModel()->select(
        table->model()->index(r, 0),
        (selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect) |
            QItemSelectionModel::Rows);
}

int WidgetMessageList::currentRow() const {
    return table->currentRow() + 1;
}

void WidgetMessageList::setCurrentRow(int row) {
    // The focus rectangle only: the selection is the logic's to set.
    const int r = index(row);
    const QModelIndex cell = r < 0 ? QModelIndex() : table->model()->index(r, 0);
    table->selectionModel()->setCurrentIndex(cell, QItemSelectionModel::NoUpdate);
}

int WidgetMessageList::rowAt(const QPoint& point) const {
    return table->rowUnder(point);
}

int WidgetMessageList::columnWidth(int column) const {
    return column >= 1 && column <= kColumns ? table->columnWidth(column - 1) : 0;
}

void WidgetMessageList::setColumnWidth(int column, int width) {
    if (column >= 1 && column <= kColumns)
        table->setColumnWidth(column - 1, width);
}

int WidgetMessageList::width() const {
    // Until the window first shows, the viewport has no size of its own;
    // the list's laid-out width less its frame is what it will have.
    if (table->isVisible())
        return table->viewport()->width();
    LayOut(table->window());
    return table->width() - 2 * table->frameWidth();
}

bool WidgetMessageList::hasFocus() const {
    return table->hasFocus();
}

int WidgetMessageList::textWidth(const QString& text) const {
    return table->fontMetrics().horizontalAdvance(text);
}

int WidgetMessageList::logicalDpi() const {
    return table->logicalDpiX();
}

void WidgetMessageList::setTip(const QString& text) {
    tipText = text;
    tipDelay->stop();
    if (text.isEmpty()) {
        QToolTip::hideText();
        return;
    }
    // From one tip to the next there is no wait, as with other tooltips.
    if (QToolTip::isVisible())
        showTip();
    else
        tipDelay->start(table->style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay));
}

void WidgetMessageList::showTip() {
    if (tipText.isEmpty())
        return;
    const QString text = tipText;
    const QModelIndex cell = table->indexAt(table->lastPointer);
    const QRect area = cell.isValid() ? table->visualRect(cell) : QRect();
    const QPoint at = table->viewport()->mapToGlobal(table->lastPointer);
    // Escaped and wrapped in <p style='white-space:pre'> so that a subject
    // reading "<b>" shows those characters and the line breaks hold.
    QString plain = text.toHtmlEscaped();
    plain.replace(QLatin1String("\r\n"), QLatin1String("<br>"));
    QToolTip::showText(at, QStringLiteral("<p style='white-space:pre'>%1</p>").arg(plain),
                       table->viewport(), area, kTipTime);
}

QString WidgetMessageList::tip() const {
    return tipText;
}

} // namespace velmora
