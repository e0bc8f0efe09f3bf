#pragma once

#include <QList>
#include <QPoint>
#include <QString>
#include <QStringList>

namespace velmora {

enum class WindowState { Normal, Minimized, Maximized };
enum class TabStrip { Email, Accounts };

// One row of the message list as the logic fills it.
struct ListRow {
    QString picture;   // key in the list's picture set: "Normal", "New", ...
    QStringList cells; // From, To, Subject, Date, Size
    bool bold = false;
};

// The named controls of the main window's pages, toolbars and menus, as
// values. Every name is one of ControlTable(); any other name, or an
// operation the control's kind lacks, raises UnknownControl.
class ControlsView {
public:
    virtual ~ControlsView() = default;

    virtual void setEnabled(const QString& control, bool enabled) = 0;
    virtual bool isEnabled(const QString& control) const = 0;
    virtual void setVisible(const QString& control, bool visible) = 0;
    virtual bool isVisible(const QString& control) const = 0;
    // Buttons, labels and menu entries; a menu caption carries "|#" and the
    // key of its picture.
    virtual void setCaption(const QString& control, const QString& caption) = 0;
    virtual QString caption(const QString& control) const = 0;
    virtual void setToolTip(const QString& control, const QString& tip) = 0;
    virtual QString toolTip(const QString& control) const = 0;
    virtual void setImage(const QString& control, const QString& imageKey) = 0;
    virtual QString image(const QString& control) const = 0;
    virtual void setFocus(const QString& control) = 0;

    // Editing controls. Setting a value here raises no change event: the
    // logic runs its own handling.
    virtual void setText(const QString& control, const QString& text) = 0;
    virtual QString text(const QString& control) const = 0;
    virtual void setMaxLength(const QString& control, int length) = 0;
    // Check boxes hold 0 or 1.
    virtual void setChecked(const QString& control, int value) = 0;
    virtual int checked(const QString& control) const = 0;
    // An option array by its name without index: the element that is set.
    virtual void setOptionIndex(const QString& array, int index) = 0;
    virtual int optionIndex(const QString& array) const = 0;
    // Combo and list boxes; the index counts from 0, -1 for none.
    virtual void setItems(const QString& control, const QStringList& items) = 0;
    virtual QStringList items(const QString& control) const = 0;
    virtual void setCurrentIndex(const QString& control, int index) = 0;
    virtual int currentIndex(const QString& control) const = 0;
    // Spin boxes: the range; the value is the text of the box.
    virtual void setRange(const QString& control, int minimum, int maximum) = 0;
    // Colours as stored, 0x00BBGGRR.
    virtual void setColour(const QString& control, quint32 bgr) = 0;
    virtual quint32 colour(const QString& control) const = 0;
};

// An account tab strip; tabs count from 1. Selecting a tab here raises no
// click: the logic runs its click handling itself. A tab or row number
// outside the strip or list is passed over, as the logic asks for the
// current one where there may be none.
class TabStripView {
public:
    virtual ~TabStripView() = default;

    virtual void clear() = 0;
    virtual void addTab(const QString& caption, const QString& imageKey) = 0;
    virtual int count() const = 0;
    virtual void setCaption(int tab, const QString& caption) = 0;
    virtual QString caption(int tab) const = 0;
    virtual void setImage(int tab, const QString& imageKey) = 0;
    virtual QString image(int tab) const = 0;
    virtual void select(int tab) = 0;
    virtual int selected() const = 0;
    // The selected tab starts a drag, as when the user holds a press on it.
    virtual void beginDrag() = 0;
};

// The message list lvwEmail; rows count from 1 and are message numbers.
class MessageListView {
public:
    virtual ~MessageListView() = default;

    virtual void clear() = 0;
    virtual void addRow(const ListRow& row) = 0;
    virtual int rowCount() const = 0;
    virtual ListRow row(int row) const = 0;
    virtual bool isRowSelected(int row) const = 0;
    virtual void setRowSelected(int row, bool selected) = 0;
    // The row with the focus rectangle; 0 for none.
    virtual int currentRow() const = 0;
    virtual void setCurrentRow(int row) = 0;
    // The row under a point of the list's area; 0 for none.
    virtual int rowAt(const QPoint& point) const = 0;
    // Columns count from 1.
    virtual int columnWidth(int column) const = 0;
    virtual void setColumnWidth(int column, int width) = 0;
    virtual int width() const = 0;
    virtual bool hasFocus() const = 0;
    // The width of a text in the list's font, in pixels, and the pixels an
    // inch the list's screen has.
    virtual int textWidth(const QString& text) const = 0;
    virtual int logicalDpi() const = 0;
    // The list's tip, plain text shown for 5000 ms over the cell under the
    // pointer; blank for none.
    virtual void setTip(const QString& text) = 0;
    virtual QString tip() const = 0;
};

// The status bar: five panels counting from 1, its tip and the progress bar
// lying on it.
class StatusBarView {
public:
    virtual ~StatusBarView() = default;

    virtual void setPanelText(int panel, const QString& text) = 0;
    virtual QString panelText(int panel) const = 0;
    virtual void setPanelPicture(int panel, const QString& imageKey) = 0;
    virtual QString panelPicture(int panel) const = 0;
    virtual void setToolTip(const QString& tip) = 0;
    virtual QString toolTip() const = 0;
    virtual void setProgressVisible(bool visible) = 0;
    virtual bool isProgressVisible() const = 0;
    virtual void setProgress(int minimum, int maximum, int value) = 0;
    virtual int progress() const = 0;
};

// The tray entry. A picture is a stack of tray image numbers drawn one over
// the other.
class TrayView {
public:
    virtual ~TrayView() = default;

    virtual void add() = 0;
    virtual void modify(const QList<int>& picture, const QString& tip) = 0;
    virtual void remove() = 0;
    virtual bool isPresent() const = 0;
    // Whether the desktop has a tray at all; without one a hidden window
    // could not be brought back.
    virtual bool isAvailable() const = 0;
    virtual QList<int> picture() const = 0;
    virtual QString tip() const = 0;
};

// The main window as the logic drives it: its named controls, its surfaces
// and the window itself.
class MainView : public ControlsView {
public:
    virtual TabStripView& tabs(TabStrip strip) = 0;
    virtual MessageListView& list() = 0;
    virtual StatusBarView& status() = 0;
    virtual TrayView& tray() = 0;

    virtual WindowState windowState() const = 0;
    virtual void setWindowState(WindowState state) = 0;
    // Back to the size the window had when it was built.
    virtual void restoreDesignSize() = 0;
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    virtual bool isWindowVisible() const = 0;
    virtual void setBusyCursor(bool busy) = 0;
    // Pops up a menu (kind Menu) at the pointer; its entries report clicks.
    virtual void popUpMenu(const QString& menu) = 0;
    // The form is unloaded: the window goes and the program ends.
    virtual void unloadWindow() = 0;
};

} // namespace velmora
