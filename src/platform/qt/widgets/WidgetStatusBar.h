#pragma once

#include "platform/MainView.h"

class QLabel;
class QProgressBar;
class QStatusBar;

namespace velmora {

// The window's status bar: five panels of text, each with room for a
// picture, and the progress bar between the first two.
class WidgetStatusBar : public StatusBarView {
public:
    explicit WidgetStatusBar(QStatusBar* bar);

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

private:
    struct Panel {
        QLabel* picture = nullptr;
        QLabel* text = nullptr;
    };
    const Panel& at(int panel) const;

    QStatusBar* bar;
    Panel panels[5];
    QProgressBar* progressBar = nullptr;
};

} // namespace velmora
