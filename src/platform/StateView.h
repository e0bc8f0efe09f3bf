#pragma once

#include "platform/Controls.h"
#include "platform/MainView.h"

#include <QHash>
#include <QVector>

namespace velmora {

// The surfaces of the main window without a screen: each keeps the state
// the logic gave it. The command line runs the logic against them, and the
// tests read back what the logic did.
class StateTabStrip : public TabStripView {
public:
    struct Tab {
        QString caption;
        QString image;
    };

    void clear() override;
    void addTab(const QString& caption, const QString& imageKey) override;
    int count() const override { return int(tabs.size()); }
    void setCaption(int tab, const QString& caption) override;
    QString caption(int tab) const override;
    void setImage(int tab, const QString& imageKey) override;
    QString image(int tab) const override;
    void select(int tab) override;
    int selected() const override { return current; }
    void beginDrag() override { draggedTabs.append(current); }

    QVector<Tab> tabs;
    int current = 0;
    // The tab of each drag begun, in order.
    QList<int> draggedTabs;

private:
    Tab* at(int tab);
};

class StateMessageList : public MessageListView {
public:
    void clear() override;
    void addRow(const ListRow& row) override;
    int rowCount() const override { return int(rows.size()); }
    ListRow row(int row) const override;
    bool isRowSelected(int row) const override;
    void setRowSelected(int row, bool selected) override;
    int currentRow() const override { return current; }
    void setCurrentRow(int row) override;
    // Rows of an equal height from the top, as a list without a header.
    int rowAt(const QPoint& point) const override;
    int columnWidth(int column) const override { return columnWidths.value(column, 0); }
    void setColumnWidth(int column, int width) override { columnWidths[column] = width; }
    int width() const override { return pixelWidth; }
    bool hasFocus() const override { return focused; }
    // A fixed width a character, so that tests can tell where a text is cut.
    int textWidth(const QString& text) const override { return CharWidth * int(text.size()); }
    int logicalDpi() const override { return 96; }
    void setTip(const QString& text) override { tipText = text; }
    QString tip() const override { return tipText; }

    static constexpr int CharWidth = 7;

    static constexpr int RowHeight = 18;
    QVector<ListRow> rows;
    QVector<bool> selected;
    int current = 0;
    QHash<int, int> columnWidths;
    int pixelWidth = 900;
    bool focused = false;
    QString tipText;

private:
    bool valid(int row) const;
};

class StateStatusBar : public StatusBarView {
public:
    void setPanelText(int panel, const QString& text) override { panels[index(panel)] = text; }
    QString panelText(int panel) const override { return panels[index(panel)]; }
    void setPanelPicture(int panel, const QString& key) override { pictures[index(panel)] = key; }
    QString panelPicture(int panel) const override { return pictures[index(panel)]; }
    void setToolTip(const QString& tip) override { tipText = tip; }
    QString toolTip() const override { return tipText; }
    void setProgressVisible(bool visible) override { progressVisible = visible; }
    bool isProgressVisible() const override { return progressVisible; }
    void setProgress(int minimum, int maximum, int value) override;
    int progress() const override { return progressValue; }

    QString panels[5];
    QString pictures[5];
    QString tipText;
    bool progressVisible = false;
    int progressMin = 0, progressMax = 0, progressValue = 0;

private:
    static int index(int panel);
};

class StateTray : public TrayView {
public:
    void add() override { present = true; }
    void modify(const QList<int>& p, const QString& t) override;
    void remove() override { present = false; }
    bool isPresent() const override { return present; }
    bool isAvailable() const override { return available; }
    QList<int> picture() const override { return pictureStack; }
    QString tip() const override { return tipText; }

    bool present = false;
    bool available = true;
    QList<int> pictureStack;
    QString tipText;
};

class StateView : public MainView {
public:
    // What a named control holds; a control never touched has the defaults.
    struct Control {
        bool enabled = true;
        bool visible = true;
        QString caption;
        QString toolTip;
        QString image;
        QString text;
        int maxLength = 0;
        int checked = 0;
        int optionIndex = -1;
        QStringList items;
        int currentIndex = -1;
        int minimum = 0, maximum = 0;
        quint32 colour = 0;
    };

    void setEnabled(const QString& control, bool enabled) override;
    bool isEnabled(const QString& control) const override;
    void setVisible(const QString& control, bool visible) override;
    bool isVisible(const QString& control) const override;
    void setCaption(const QString& control, const QString& caption) override;
    QString caption(const QString& control) const override;
    void setToolTip(const QString& control, const QString& tip) override;
    QString toolTip(const QString& control) const override;
    void setImage(const QString& control, const QString& imageKey) override;
    QString image(const QString& control) const override;
    void setFocus(const QString& control) override;

    void setText(const QString& control, const QString& text) override;
    QString text(const QString& control) const override;
    void setMaxLength(const QString& control, int length) override;
    void setChecked(const QString& control, int value) override;
    int checked(const QString& control) const override;
    void setOptionIndex(const QString& array, int index) override;
    int optionIndex(const QString& array) const override;
    void setItems(const QString& control, const QStringList& items) override;
    QStringList items(const QString& control) const override;
    void setCurrentIndex(const QString& control, int index) override;
    int currentIndex(const QString& control) const override;
    void setRange(const QString& control, int minimum, int maximum) override;
    void setColour(const QString& control, quint32 bgr) override;
    quint32 colour(const QString& control) const override;

    TabStripView& tabs(TabStrip strip) override {
        return strip == TabStrip::Email ? emailTabs : acntTabs;
    }
    MessageListView& list() override { return messageList; }
    StatusBarView& status() override { return statusBar; }
    TrayView& tray() override { return trayEntry; }

    WindowState windowState() const override { return state; }
    void setWindowState(WindowState s) override { state = s; }
    void restoreDesignSize() override { ++designSizeRestores; }
    void showWindow() override { windowVisible = true; }
    void hideWindow() override { windowVisible = false; }
    bool isWindowVisible() const override { return windowVisible; }
    void setBusyCursor(bool busy) override { busyCursor = busy; }
    void popUpMenu(const QString& menu) override;
    void unloadWindow() override {
        unloaded = true;
        windowVisible = false;
    }

    // A control's whole state, for reading back; UnknownControl for a name
    // the window lacks.
    Control control(const QString& name) const;
    // The names the logic or a script has touched, in the order first seen.
    const QStringList& touched() const { return touchedNames; }

    StateTabStrip emailTabs;
    StateTabStrip acntTabs;
    StateMessageList messageList;
    StateStatusBar statusBar;
    StateTray trayEntry;
    WindowState state = WindowState::Normal;
    bool windowVisible = false;
    bool busyCursor = false;
    bool unloaded = false;
    int designSizeRestores = 0;
    // The menus popped up, in order.
    QStringList poppedUpMenus;
    QString focus;

private:
    // The control's state after checking that its kind offers the
    // operation; an empty list of kinds admits any.
    Control& edit(const QString& name, std::initializer_list<ControlKind> kinds = {});
    Control read(const QString& name, std::initializer_list<ControlKind> kinds = {}) const;

    QHash<QString, Control> controls;
    QStringList touchedNames;
};

} // namespace velmora
