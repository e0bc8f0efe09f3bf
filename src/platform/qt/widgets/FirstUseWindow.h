#pragma once

#include "platform/FirstUseView.h"

#include <QPointer>
#include <QWidget>

class QLabel;
class QToolButton;
class QVBoxLayout;

namespace velmora {

// frmFirstUse on screen.
class FirstUseWindow : public FirstUseView {
public:
    FirstUseWindow();
    // The widget goes once control is back in the event loop: the window
    // may be closed from inside one of its own clicks.
    ~FirstUseWindow() override;

    void setCaption(const QString& caption) override;
    void setVersion(const QString& version) override;
    void setCopyright(const QString& notice) override;
    void setWelcome(const QString& welcome) override;
    void setParagraphs(const QStringList& paragraphs) override;
    void setRaisedButtons(bool raised) override;
    void showWindow() override;
    void hideWindow() override;
    void setOnClose(std::function<void()> handler) override;

    QWidget* widget() const { return window; }

private:
    QPointer<QWidget> window;
    QLabel* lblVersion = nullptr;
    QLabel* lblCopyright = nullptr;
    QLabel* lblWelcome = nullptr;
    QVBoxLayout* paragraphs = nullptr;
    QToolButton* close = nullptr;
    std::function<void()> onClose;
};

} // namespace velmora
