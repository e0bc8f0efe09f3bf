#pragma once

#include "platform/PreviewView.h"
#include "platform/qt/widgets/MessageWindow.h"

#include <QHash>
#include <QPointer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTabWidget;
class QToolButton;

namespace velmora {

// frmPreview on screen: a window of its own with the header fields, the
// message's two texts on tabs and a row of buttons.
class PreviewWindow : public PreviewView {
public:
    PreviewWindow();
    ~PreviewWindow() override;

    void setCaption(const QString& caption) override;
    void setFields(const QString& from, const QString& to, const QString& date,
                   const QString& subject) override;
    void setTabs(const QStringList& captions) override;
    void selectTab(int tab) override;
    void setTexts(const QString& body, const QString& raw) override;
    void showSide(int tab) override;
    void setButton(const QString& key, const QString& caption, const QString& tip) override;
    void setRaisedButtons(bool raised) override;
    void showWindow() override;
    void hideWindow() override;
    void raiseWindow() override;
    void focusBody() override;
    void setHandlers(Handlers handlers) override;

    QWidget* widget() const { return window; }

private:
    QPointer<QWidget> window;
    QLineEdit* txtPrvFrom = nullptr;
    QLineEdit* txtPrvTo = nullptr;
    QLineEdit* txtPrvDate = nullptr;
    QLineEdit* txtPrvSubject = nullptr;
    QTabWidget* TabStrip = nullptr;
    QPlainTextEdit* rtbBody = nullptr;
    QPlainTextEdit* rtbRawMsg = nullptr;
    QHash<QString, QToolButton*> buttons;
    Handlers handlers;
    std::function<void()> onClose;
    std::function<void()> onActivate;
    bool filling = false;
    bool placed = false;
};

} // namespace velmora
