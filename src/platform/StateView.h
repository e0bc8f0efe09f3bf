#pragma once

#include "platform/MainView.h"

#include <QHash>
#include <QVector>

namespace velmora {

// A main window without a screen: it keeps the state of every control the
// logic touches. The command-line program runs the logic against it, and the
// tests read back what the logic did.
class StateView : public MainView {
public:
    struct Control {
        bool enabled = true;
        bool visible = true;
        QString caption;
        QString toolTip;
        QString image;
    };
    struct Tab {
        QString caption;
        QString image;
    };

    void setEnabled(const QString& control, bool enabled) override;
    bool isEnabled(const QString& control) const override;
    void setVisible(const QString& control, bool visible) override;
    bool isVisible(const QString& control) const override;
    void setCaption(const QString& control, const QString& caption) override;
    QString caption(const QString& control) const override;
    void setToolTip(const QString& control, const QString& tip) override;
    void setImage(const QString& control, const QString& imageKey) override;
    void setFocus(const QString& name) override { focus = name; }

    void setPanelText(int panel, const QString& text) override;
    QString panelText(int panel) const override;
    void setPanelPicture(int panel, const QString& imageKey) override;

    void clearTabs(TabStrip strip) override;
    void addTab(TabStrip strip, const QString& caption, const QString& imageKey) override;
    int tabCount(TabStrip strip) const override;
    void setTabCaption(TabStrip strip, int tab, const QString& caption) override;
    void setTabImage(TabStrip strip, int tab, const QString& imageKey) override;
    QString tabImage(TabStrip strip, int tab) const override;
    void selectTab(TabStrip strip, int tab) override;
    int selectedTab(TabStrip strip) const override;

    void clearList() override;
    void addListRow(const ListRow& row) override;
    int listRowCount() const override { return int(rows.size()); }
    bool isListRowSelected(int row) const override;
    void setListRowSelected(int row, bool selected) override;
    int listColumnWidth(int column) const override;
    void setListColumnWidth(int column, int width) override;
    int listWidth() const override { return listPixelWidth; }

    void setProgressVisible(bool visible) override { progressVisible = visible; }
    void setProgress(int minimum, int maximum, int value) override;

    WindowState windowState() const override { return state; }
    void setWindowState(WindowState s) override { state = s; }
    void restoreDesignSize() override { ++designSizeRestores; }
    void showWindow() override { windowVisible = true; }
    void hideWindow() override { windowVisible = false; }
    bool isWindowVisible() const override { return windowVisible; }
    void setBusyCursor(bool busy) override { busyCursor = busy; }
    void unloadWindow() override {
        unloaded = true;
        windowVisible = false;
    }

    void trayAdd() override { trayPresent = true; }
    void trayModify(const QList<int>& picture, const QString& tip) override;
    void trayDelete() override { trayPresent = false; }

    // What a control holds; a control never touched has the defaults.
    Control control(const QString& name) const { return controls.value(name); }

    QHash<QString, Control> controls;
    QString panels[6];
    QString panelPictures[6];
    QVector<Tab> tabs[2];
    int selected[2] = {0, 0};
    QVector<ListRow> rows;
    QVector<bool> rowSelected;
    QHash<int, int> columnWidths;
    int listPixelWidth = 900;
    bool progressVisible = false;
    int progressMin = 0, progressMax = 0, progressValue = 0;
    WindowState state = WindowState::Normal;
    bool windowVisible = false;
    bool busyCursor = false;
    bool unloaded = false;
    int designSizeRestores = 0;
    bool trayPresent = false;
    QList<int> trayPicture;
    QString trayTip;
    QString focus;
};

} // namespace velmora
