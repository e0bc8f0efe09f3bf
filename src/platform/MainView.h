#pragma once

#include <QList>
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

// The controls of the main window as the logic sees them. Controls are named
// as the logic names them: "lblBanner", "fraMain(2)" for element 2 of a
// control array, "tbrEmail/EmailPreview" for the button with that key on a
// toolbar, "mnuTrayShow" for a menu entry. A name the window does not have
// is ignored, so a smaller window (or none) can stand in.
class MainView {
public:
    virtual ~MainView() = default;

    // Named controls.
    virtual void setEnabled(const QString& control, bool enabled) = 0;
    virtual bool isEnabled(const QString& control) const = 0;
    virtual void setVisible(const QString& control, bool visible) = 0;
    virtual bool isVisible(const QString& control) const = 0;
    virtual void setCaption(const QString& control, const QString& caption) = 0;
    virtual QString caption(const QString& control) const = 0;
    virtual void setToolTip(const QString& control, const QString& tip) = 0;
    virtual void setImage(const QString& control, const QString& imageKey) = 0;
    virtual void setFocus(const QString& control) = 0;

    // The five panels of the status bar, numbered from 1.
    virtual void setPanelText(int panel, const QString& text) = 0;
    virtual QString panelText(int panel) const = 0;
    virtual void setPanelPicture(int panel, const QString& imageKey) = 0;

    // Account tab strips; tabs are numbered from 1. Selecting a tab here
    // raises no click: the logic runs its click handling itself.
    virtual void clearTabs(TabStrip strip) = 0;
    virtual void addTab(TabStrip strip, const QString& caption, const QString& imageKey) = 0;
    virtual int tabCount(TabStrip strip) const = 0;
    virtual void setTabCaption(TabStrip strip, int tab, const QString& caption) = 0;
    virtual void setTabImage(TabStrip strip, int tab, const QString& imageKey) = 0;
    virtual QString tabImage(TabStrip strip, int tab) const = 0;
    virtual void selectTab(TabStrip strip, int tab) = 0;
    virtual int selectedTab(TabStrip strip) const = 0;

    // The message list lvwEmail; rows are numbered from 1.
    virtual void clearList() = 0;
    virtual void addListRow(const ListRow& row) = 0;
    virtual int listRowCount() const = 0;
    virtual bool isListRowSelected(int row) const = 0;
    virtual void setListRowSelected(int row, bool selected) = 0;
    virtual int listColumnWidth(int column) const = 0;
    virtual void setListColumnWidth(int column, int width) = 0;
    virtual int listWidth() const = 0;

    // ProgressBar, lying on the status bar.
    virtual void setProgressVisible(bool visible) = 0;
    virtual void setProgress(int minimum, int maximum, int value) = 0;

    // The window itself.
    virtual WindowState windowState() const = 0;
    virtual void setWindowState(WindowState state) = 0;
    // Back to the size the window had when it was built.
    virtual void restoreDesignSize() = 0;
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    virtual bool isWindowVisible() const = 0;
    virtual void setBusyCursor(bool busy) = 0;
    // The form is unloaded: the window goes and the program ends.
    virtual void unloadWindow() = 0;

    // The tray entry. A picture is a stack of tray image numbers drawn one
    // over the other.
    virtual void trayAdd() = 0;
    virtual void trayModify(const QList<int>& picture, const QString& tip) = 0;
    virtual void trayDelete() = 0;
};

} // namespace velmora
