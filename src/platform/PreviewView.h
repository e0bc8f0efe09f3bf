#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace velmora {

// frmPreview on screen: the four header fields, two tabs over two texts
// (only the selected tab's text shows), and a row of keyed buttons. Tabs
// count from 1; selecting one here raises no click. Texts are shown as
// plain text, whole, however long.
class PreviewView {
public:
    virtual ~PreviewView() = default;

    virtual void setCaption(const QString& caption) = 0;
    virtual void setFields(const QString& from, const QString& to, const QString& date,
                           const QString& subject) = 0;
    virtual void setTabs(const QStringList& captions) = 0;
    virtual void selectTab(int tab) = 0;
    virtual void setTexts(const QString& body, const QString& raw) = 0;
    // Brings the tab's text to the front and gives it the focus.
    virtual void showSide(int tab) = 0;
    virtual void setButton(const QString& key, const QString& caption, const QString& tip) = 0;
    virtual void setRaisedButtons(bool raised) = 0;
    // Centred on the screen the first time it shows.
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // Above the other windows and active, as far as the window system lets
    // a program take the focus.
    virtual void raiseWindow() = 0;
    // The body's text takes the focus, when it shows.
    virtual void focusBody() = 0;

    struct Handlers {
        std::function<void(int tab)> tabClick;
        // A button, by its caption as shown.
        std::function<void(const QString& caption)> buttonClick;
        // The close box.
        std::function<void()> close;
        // The window became the active one.
        std::function<void()> activated;
    };
    virtual void setHandlers(Handlers handlers) = 0;
};

} // namespace velmora
