#pragma once

#include <QString>

namespace velmora {

enum class MouseButton { Left, Right };

// What the main window reports to the logic, one call per kind of event.
// Controls are named as in ControlTable().
class MainViewEvents {
public:
    virtual ~MainViewEvents() = default;

    // tbrMainButtons, by the button's key.
    virtual void MainButtonClick(const QString& key) = 0;
    // An element of tbrButtons.
    virtual void PageButtonClick(int index) = 0;
    // A button of tbrEmail, tbrAcnts or tbrRules.
    virtual void ToolbarButtonClick(const QString& toolbar, const QString& key) = 0;
    // An entry of the tray menu or of the list's popup menu.
    virtual void MenuClick(const QString& entry) = 0;
    // A click on the tray picture; the right button opens the tray menu.
    virtual void TrayClick(MouseButton button) = 0;

    // A tab strip after the user selected a tab.
    virtual void TabClick(const QString& strip) = 0;
    // The mouse button went down on tab `tab` of a strip, and up again.
    virtual void TabPress(const QString& strip, int tab) = 0;
    virtual void TabRelease(const QString& strip) = 0;
    // A dragged tab was let go over tab `toTab` of the strip it came from;
    // 0 for a place beside the tabs.
    virtual void TabDrop(const QString& strip, int fromTab, int toTab) = 0;
    // A label of kind Link.
    virtual void LinkClick(const QString& label) = 0;

    // The message list; rows count from 1, 0 for the empty area.
    virtual void ListRowClick(int row) = 0;
    virtual void ListDoubleClick(int row) = 0;
    virtual void ListHeaderClick(int column) = 0;
    virtual void ListContextMenu(int row) = 0;
    // The pointer moved over the list: the row under it, 0 for none, and its
    // distance in pixels from the left of the first column.
    virtual void ListPointer(int row, int x) = 0;

    // The list or a tab strip took the focus from the pointer. Focus brought
    // by the keyboard is not reported: keyboard users keep it where they put
    // it.
    virtual void FocusArrived(const QString& control) = 0;
    // The pointer moved over a page's frame, away from the controls on it.
    virtual void FramePointer(const QString& frame) = 0;

    // An editing control changed its value by the user's hand.
    virtual void ValueChanged(const QString& control) = 0;

    // The pointer moved on the status bar: the panel under it, 1 to 5, or
    // 0 right of the last.
    virtual void StatusBarPointer(int panel) = 0;

    virtual void Resize() = 0;
    // The window is asked to close; setting cancel keeps it loaded.
    virtual void Unload(bool& cancel) = 0;
};

// Delivers a click on a named control as its typed event: a button, a menu
// entry, the tray picture. UnknownControl for a name that cannot be clicked.
void DeliverClick(MainViewEvents& events, const QString& control);

} // namespace velmora
