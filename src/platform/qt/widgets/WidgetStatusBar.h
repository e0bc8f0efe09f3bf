#pragma once

#include "platform/MainView.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QObject>

class QLabel;
class QProgressBar;
class QStatusBar;

namespace velmora {

// The window's status bar: five panels of text, each with room for a
// picture, and the progress bar between the first two.
class WidgetStatusBar : public QObject, public StatusBarView {
public:
    // Pointer moves over the bar are reported with the panel under them.
    WidgetStatusBar(QStatusBar* bar, EventReporter report);

    void setPanelText(int panel, const QString& text) override;
    QString panelText(int panel) const override;
    void setPanelPicture(int panel, const QString& imageKey) override;
    QString panelPicture(int panel) const override;
    void setToolTip(const QString& tip) override;
    QString toolTip() const override;
    void setProgressVisible(bool visible) override;
    bool isProgressVisible() const override;
    void setProgress(int minimum, int maximum, int value) override;
    int progress() const override;

    // The panel at a point of the bar, 1 to 5; 0 right of the last.
    int panelAt(const QPoint& point) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Panel {
        QLabel* picture = nullptr;
        QLabel* text = nullptr;
    };
    const Panel& at(int panel) const;

    QStatusBar* bar;
    EventReporter report;
    QWidget* frames[5] = {};
    Panel panels[5];
    QProgressBar* progressBar = nullptr;
};

} // namespace velmora
