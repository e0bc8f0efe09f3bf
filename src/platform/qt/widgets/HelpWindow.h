#pragma once

#include "platform/HelpViewer.h"

#include <QPointer>
#include <QWidget>

class QTextBrowser;

namespace velmora {

// The program's help in a window of its own, beside the main window and not
// blocking it. One window serves every topic; it is made on first use.
class HelpWindow : public HelpViewer {
public:
    HelpWindow() = default;
    ~HelpWindow() override;

    bool ShowTopic(const QString& file, int context) override;

    // Null until the first topic is shown.
    QWidget* widget() const { return window; }
    QTextBrowser* browser() const { return view; }

    // The anchor of topic `context`.
    static QString Anchor(int context);

private:
    void make();

    QPointer<QWidget> window;
    QTextBrowser* view = nullptr;
};

} // namespace velmora
