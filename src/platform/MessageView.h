#pragma once

#include "platform/FirstUseView.h"
#include "platform/PreviewView.h"
#include "platform/RuleFileView.h"
#include "platform/RuleReportView.h"

#include <QString>
#include <functional>
#include <memory>

namespace velmora {

// The Auto Check Message on screen: a small window above all others with a
// headline, the accounts' lines, a countdown and one button that closes it.
class MessageView {
public:
    virtual ~MessageView() = default;

    virtual void setCaption(const QString& caption) = 0;
    virtual void setHeadline(const QString& headline) = 0;
    // The account lines, heading first, and the number of accounts; the
    // window sizes itself to the text.
    virtual void setAccountLines(const QString& text, int lines) = 0;
    virtual void setCountdownVisible(bool visible) = 0;
    virtual void setCountdown(int seconds) = 0;
    virtual void setNextCheck(const QString& text) = 0;
    virtual void setStayOnTop(bool onTop) = 0;
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // Called when the user closes it, by its button or its close box.
    virtual void setOnClose(std::function<void()> handler) = 0;
};

// Makes the program's secondary windows.
class WindowFactory {
public:
    virtual ~WindowFactory() = default;
    virtual std::unique_ptr<MessageView> createMessageView() = 0;
    virtual std::unique_ptr<FirstUseView> createFirstUseView() = 0;
    virtual std::unique_ptr<RuleReportView> createRuleReportView() = 0;
    // The message preview, one for the run and kept here, so that a second
    // preview finds the first one open.
    virtual PreviewView* previewView() = 0;
    virtual std::unique_ptr<RuleFileView> createRuleFileView() = 0;
};

} // namespace velmora
