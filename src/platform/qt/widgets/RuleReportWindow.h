#pragma once

#include "platform/RuleReportView.h"

#include <QHash>
#include <QPointer>
#include <QWidget>

class QLabel;
class QTabBar;
class QToolButton;

namespace velmora {

// frmRuleReport on screen: a small tool window above the others.
class RuleReportWindow : public RuleReportView {
public:
    RuleReportWindow();
    // The widget goes once control is back in the event loop: the window
    // may be closed from inside one of its own clicks.
    ~RuleReportWindow() override;

    void setCaption(const QString& caption) override;
    void setHeading(const QString& heading) override;
    void setCaution(const QString& caution) override;
    void setTabs(const QStringList& captions) override;
    void selectTab(int tab) override;
    void setTexts(const QString& deleteText, const QString& spamText, int lines) override;
    void showSide(int tab) override;
    void setCountdown(int seconds) override;
    void setButton(const QString& key, const QString& caption, const QString& tip) override;
    void setButtonEnabled(const QString& key, bool enabled) override;
    void setStayOnTop(bool onTop) override;
    void showWindow() override;
    void hideWindow() override;
    void setHandlers(Handlers handlers) override;

    QWidget* widget() const { return window; }

private:
    QPointer<QWidget> window;
    QTabBar* tabs = nullptr;
    QLabel* lblRuleReport = nullptr;
    QLabel* lblRuleDelete = nullptr;
    QLabel* imgRuleDelete = nullptr;
    QLabel* lblRuleSpam = nullptr;
    QLabel* imgRuleSpam = nullptr;
    QLabel* lblRuleReportCountDown = nullptr;
    QLabel* lblRuleReportCaution = nullptr;
    QHash<QString, QToolButton*> buttons;
    Handlers handlers;
    std::function<void()> onClose;
    bool filling = false;
};

} // namespace velmora
