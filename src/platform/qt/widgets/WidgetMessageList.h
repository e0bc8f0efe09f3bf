#pragma once

#include "platform/MainView.h"

class QTableWidget;
class QTimer;

namespace velmora {

class WidgetControls;

// The message list lvwEmail as a table: one whole row a message, no grid,
// no row numbers, a clickable header that never sorts by itself (the logic
// sorts), so that row n is always message n. Clicks, double clicks, header
// clicks and the context menu are reported with the row under the pointer;
// the keyboard reaches the same events (arrows, Enter, the menu key). A row
// number beyond the list is ignored, and reads blank.
class WidgetMessageList : public MessageListView {
public:
    explicit WidgetMessageList(WidgetControls& controls);

    QTableWidget* widget() const;

    void clear() override;
    void addRow(const ListRow& row) override;
    int rowCount() const override;
    ListRow row(int row) const override;
    bool isRowSelected(int row) const override;
    void setRowSelected(int row, bool selected) override;
    int currentRow() const override;
    void setCurrentRow(int row) override;
    int rowAt(const QPoint& point) const override;
    int columnWidth(int column) const override;
    void setColumnWidth(int column, int width) override;
    int width() const override;
    bool hasFocus() const override;
    int textWidth(const QString& text) const override;
    int logicalDpi() const override;
    void setTip(const QString& text) override;
    QString tip() const override;

private:
    class Table;
    // Row `row`, counted from 1, as the table's; -1 when there is none.
    int index(int row) const;
    void showTip();

    Table* table;
    QString tipText;
    // A new tip waits out the desktop's tooltip delay, as any tooltip does.
    QTimer* tipDelay;
};

} // namespace velmora
