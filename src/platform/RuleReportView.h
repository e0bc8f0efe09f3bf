#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace velmora {

// The Rule Report on screen: two tabs, a text and a picture for each (only
// the selected tab's pair shows), a heading, a caution line, a countdown
// and a toolbar of three keyed buttons. Tabs count from 1; selecting one
// here raises no click.
class RuleReportView {
public:
    virtual ~RuleReportView() = default;

    virtual void setCaption(const QString& caption) = 0;
    virtual void setHeading(const QString& heading) = 0;
    virtual void setCaution(const QString& caution) = 0;
    virtual void setTabs(const QStringList& captions) = 0;
    virtual void selectTab(int tab) = 0;
    // The texts of the two tabs; the labels are sized for `lines` lines.
    virtual void setTexts(const QString& deleteText, const QString& spamText, int lines) = 0;
    virtual void showSide(int tab) = 0;
    virtual void setCountdown(int seconds) = 0;
    virtual void setButton(const QString& key, const QString& caption, const QString& tip) = 0;
    virtual void setButtonEnabled(const QString& key, bool enabled) = 0;
    // Above the other windows where the window system allows; raised where
    // it does not.
    virtual void setStayOnTop(bool onTop) = 0;
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;

    struct Handlers {
        std::function<void(int tab)> tabClick;
        std::function<void(const QString& key)> buttonClick;
        // The close box.
        std::function<void()> close;
    };
    virtual void setHandlers(Handlers handlers) = 0;
};

} // namespace velmora
