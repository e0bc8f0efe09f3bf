#pragma once

#include "platform/MessageView.h"

#include <QPointer>
#include <QWidget>
#include <memory>

class QGroupBox;
class QLabel;
class QSpacerItem;
class QVBoxLayout;

namespace velmora {

// frmMessage on screen.
class MessageWindow : public MessageView {
public:
    MessageWindow();
    // The widget goes once control is back in the event loop: the window
    // may be closed from inside one of its own clicks.
    ~MessageWindow() override;

    void setCaption(const QString& caption) override;
    void setHeadline(const QString& headline) override;
    void setAccountLines(const QString& text, int lines) override;
    void setCountdownVisible(bool visible) override;
    void setCountdown(int seconds) override;
    void setNextCheck(const QString& text) override;
    void setStayOnTop(bool onTop) override;
    void showWindow() override;
    void hideWindow() override;
    void setOnClose(std::function<void()> handler) override;

    QWidget* widget() const { return window; }

private:
    // Sizes the window to its texts and its title.
    void fit();

    QPointer<QWidget> window;
    QVBoxLayout* layout = nullptr;
    QSpacerItem* titleStrut = nullptr;
    QGroupBox* fraMsg = nullptr;
    QLabel* lblMsg = nullptr;
    QLabel* lblAutoCheck = nullptr;
    QLabel* lblMsgCountDown = nullptr;
    QLabel* imgHourGlass = nullptr;
    std::function<void()> onClose;
};

class WidgetWindowFactory : public WindowFactory {
public:
    WidgetWindowFactory();
    ~WidgetWindowFactory() override;
    std::unique_ptr<MessageView> createMessageView() override;
    std::unique_ptr<FirstUseView> createFirstUseView() override;
    std::unique_ptr<RuleReportView> createRuleReportView() override;
    PreviewView* previewView() override;
    std::unique_ptr<RuleFileView> createRuleFileView() override;

private:
    std::unique_ptr<PreviewView> preview;
};

} // namespace velmora
