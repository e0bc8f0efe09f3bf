#pragma once

#include "platform/AutoStart.h"
#include "platform/ColourDialog.h"
#include "platform/DesktopNotifier.h"
#include "platform/FileDialogs.h"
#include "platform/HelpViewer.h"
#include "platform/InstanceGuard.h"
#include "platform/ManualTimer.h"
#include "platform/MessageView.h"
#include "platform/Printer.h"
#include "platform/RecordedBoxes.h"
#include "platform/RecordedSounds.h"
#include "platform/Services.h"
#include "platform/Shell.h"

#include <QHash>
#include <QList>
#include <QStringList>
#include <memory>

namespace velmora {

// Platform parts that nobody sees: each records what the logic asked of it
// and answers from a script, or as a user who cancels. The command line and
// the tests run on them where no screen or desktop takes part.

class RecordedShell : public Shell {
public:
    struct Request {
        QString target;
        QString parameters;
        int windowState;
    };
    bool Open(const QString& target, const QString& parameters, int windowState) override {
        requests.append({target, parameters, windowState});
        return succeeds;
    }
    struct Composition {
        QString recipient;
        QString subject;
        QString body;
    };
    bool Compose(const QString& recipient, const QString& subject, const QString& body) override {
        compositions.append({recipient, subject, body});
        return succeeds;
    }
    QList<Request> requests;
    QList<Composition> compositions;
    bool succeeds = true;
};

class RecordedHelp : public HelpViewer {
public:
    struct Request {
        QString file;
        int context;
    };
    bool ShowTopic(const QString& file, int context) override {
        requests.append({file, context});
        return true;
    }
    QList<Request> requests;
};

class RecordedPrinter : public Printer {
public:
    QString Print(const PrintDocument& document) override {
        documents.append(document);
        if (failure.isEmpty())
            jobs.append(document.title + QLatin1Char('\n') + document.plainText());
        return failure;
    }
    // Title and text of each job printed.
    QStringList jobs;
    QList<PrintDocument> documents;
    // What a print answers: blank prints.
    QString failure;
};

// File and colour dialogs answered in turn from `answers`; a dialog with no
// answer left is cancelled.
class ScriptedDialogs : public FileDialogs, public ColourDialog {
public:
    struct Request {
        QString kind; // "open", "save" or "colour"
        QString title;
        QString filter;
        QString initialPath;
        QString answer; // blank when cancelled
    };
    QString OpenFile(const QString& title, const QString& filter,
                     const QString& initialPath) override;
    QString SaveFile(const QString& title, const QString& filter,
                     const QString& initialPath) override;
    bool PickColour(quint32& colour) override;

    // Paths for file dialogs, and colour values as text for the colour
    // dialog; "cancel" cancels.
    QStringList fileAnswers;
    QStringList colourAnswers;
    QList<Request> requests;

private:
    QString file(const QString& kind, const QString& title, const QString& filter,
                 const QString& initialPath);
};

class RecordedNotifier : public DesktopNotifier {
public:
    bool available() override { return false; }
    void notify(const QString& title, const QString& body) override {
        notices.append(title + QLatin1Char('\n') + body);
    }
    QStringList notices;
};

class RecordedAutoStart : public AutoStart {
public:
    FileProblem SetRunAtStartUp() override {
        ++sets;
        return failure;
    }
    void ClearRunAtStartUp() override { ++clears; }
    int sets = 0;
    int clears = 0;
    // What a write of the entry answers.
    FileProblem failure;
};

class SoleInstance : public InstanceGuard {
public:
    bool claim() override { return !otherInstanceRuns; }
    bool otherInstanceRuns = false;
};

// The Auto Check Message without a screen; the factory keeps the state of
// the last one made, alive or not.
class StateMessageView : public MessageView {
public:
    struct State {
        QString caption, headline, lines, nextCheck;
        int lineCount = 0;
        int countdown = -1;
        bool countdownVisible = false;
        bool onTop = false;
        bool shown = false;
        bool destroyed = false;
        std::function<void()> onClose;
    };
    explicit StateMessageView(std::shared_ptr<State> state) : s(std::move(state)) {}
    ~StateMessageView() override { s->destroyed = true; }
    void setCaption(const QString& caption) override { s->caption = caption; }
    void setHeadline(const QString& headline) override { s->headline = headline; }
    void setAccountLines(const QString& text, int lines) override {
        s->lines = text;
        s->lineCount = lines;
    }
    void setCountdownVisible(bool visible) override { s->countdownVisible = visible; }
    void setCountdown(int seconds) override { s->countdown = seconds; }
    void setNextCheck(const QString& text) override { s->nextCheck = text; }
    void setStayOnTop(bool onTop) override { s->onTop = onTop; }
    void showWindow() override { s->shown = true; }
    void hideWindow() override { s->shown = false; }
    void setOnClose(std::function<void()> handler) override { s->onClose = std::move(handler); }

private:
    std::shared_ptr<State> s;
};

// The welcome window without a screen, kept like the Auto Check Message.
class StateFirstUseView : public FirstUseView {
public:
    struct State {
        QString caption, version, copyright, welcome;
        QStringList paragraphs;
        bool raisedButtons = false;
        bool shown = false;
        int showings = 0;
        bool destroyed = false;
        std::function<void()> onClose;
    };
    explicit StateFirstUseView(std::shared_ptr<State> state) : s(std::move(state)) {}
    ~StateFirstUseView() override { s->destroyed = true; }
    void setCaption(const QString& caption) override { s->caption = caption; }
    void setVersion(const QString& version) override { s->version = version; }
    void setCopyright(const QString& notice) override { s->copyright = notice; }
    void setWelcome(const QString& welcome) override { s->welcome = welcome; }
    void setParagraphs(const QStringList& paragraphs) override { s->paragraphs = paragraphs; }
    void setRaisedButtons(bool raised) override { s->raisedButtons = raised; }
    void showWindow() override {
        s->shown = true;
        ++s->showings;
    }
    void hideWindow() override { s->shown = false; }
    void setOnClose(std::function<void()> handler) override { s->onClose = std::move(handler); }

private:
    std::shared_ptr<State> s;
};

// The Rule Report without a screen, kept like the Auto Check Message.
class StateRuleReportView : public RuleReportView {
public:
    struct State {
        QString caption, heading, caution, deleteText, spamText;
        QStringList tabs;
        int selectedTab = 0;
        int side = 0;
        int lines = 0;
        int countdown = -1;
        QHash<QString, QString> captions;
        QHash<QString, bool> enabled;
        bool onTop = false;
        bool shown = false;
        bool destroyed = false;
        Handlers handlers;
    };
    explicit StateRuleReportView(std::shared_ptr<State> state) : s(std::move(state)) {}
    ~StateRuleReportView() override { s->destroyed = true; }
    void setCaption(const QString& caption) override { s->caption = caption; }
    void setHeading(const QString& heading) override { s->heading = heading; }
    void setCaution(const QString& caution) override { s->caution = caution; }
    void setTabs(const QStringList& captions) override { s->tabs = captions; }
    void selectTab(int tab) override { s->selectedTab = tab; }
    void setTexts(const QString& deleteText, const QString& spamText, int lines) override {
        s->deleteText = deleteText;
        s->spamText = spamText;
        s->lines = lines;
    }
    void showSide(int tab) override { s->side = tab; }
    void setCountdown(int seconds) override { s->countdown = seconds; }
    void setButton(const QString& key, const QString& caption, const QString&) override {
        s->captions[key] = caption;
    }
    void setButtonEnabled(const QString& key, bool on) override { s->enabled[key] = on; }
    void setStayOnTop(bool onTop) override { s->onTop = onTop; }
    void showWindow() override { s->shown = true; }
    void hideWindow() override { s->shown = false; }
    void setHandlers(Handlers handlers) override { s->handlers = std::move(handlers); }

private:
    std::shared_ptr<State> s;
};

// The preview without a screen. It lives as long as its factory, as the
// window does.
class StatePreviewView : public PreviewView {
public:
    QString caption, from, to, date, subject, body, raw;
    QStringList tabs;
    int selectedTab = 0;
    int side = 0;
    QHash<QString, QString> captions;
    QHash<QString, QString> tips;
    bool raisedButtons = false;
    bool shown = false;
    int raises = 0;
    bool bodyFocused = false;
    Handlers handlers;

    void setCaption(const QString& text) override { caption = text; }
    void setFields(const QString& f, const QString& t, const QString& d,
                   const QString& s) override {
        from = f;
        to = t;
        date = d;
        subject = s;
    }
    void setTabs(const QStringList& list) override { tabs = list; }
    void selectTab(int tab) override { selectedTab = tab; }
    void setTexts(const QString& b, const QString& r) override {
        body = b;
        raw = r;
    }
    void showSide(int tab) override { side = tab; }
    void setButton(const QString& key, const QString& text, const QString& tip) override {
        captions[key] = text;
        tips[key] = tip;
    }
    void setRaisedButtons(bool raised) override { raisedButtons = raised; }
    void showWindow() override { shown = true; }
    void hideWindow() override { shown = false; }
    void raiseWindow() override { ++raises; }
    void focusBody() override { bodyFocused = side != 2; }
    void setHandlers(Handlers h) override { handlers = std::move(h); }
};

// frmRuleFile without a screen: it answers from `answers` in turn, a name
// for Save or "cancel"; with none left it is cancelled.
class StateRuleFileView : public RuleFileView {
public:
    struct State {
        QString caption, intro, folder, currentName, newName;
        QStringList answers;
        int showings = 0;
        bool destroyed = false;
    };
    explicit StateRuleFileView(std::shared_ptr<State> state) : s(std::move(state)) {}
    ~StateRuleFileView() override { s->destroyed = true; }
    void setCaption(const QString& caption) override { s->caption = caption; }
    void setIntro(const QString& intro) override { s->intro = intro; }
    void setFolder(const QString& folder) override { s->folder = folder; }
    void setCurrentName(const QString& name) override { s->currentName = name; }
    void setNewName(const QString& name) override { s->newName = name; }
    bool exec(QString& newName) override {
        ++s->showings;
        const QString answer =
            s->answers.isEmpty() ? QStringLiteral("cancel") : s->answers.takeFirst();
        if (answer == QLatin1String("cancel"))
            return false;
        newName = s->newName = answer;
        return true;
    }

private:
    std::shared_ptr<State> s;
};

class StateWindowFactory : public WindowFactory {
public:
    std::unique_ptr<MessageView> createMessageView() override {
        last = std::make_shared<StateMessageView::State>();
        return std::make_unique<StateMessageView>(last);
    }
    std::unique_ptr<FirstUseView> createFirstUseView() override {
        firstUse = std::make_shared<StateFirstUseView::State>();
        return std::make_unique<StateFirstUseView>(firstUse);
    }
    std::unique_ptr<RuleReportView> createRuleReportView() override {
        ruleReport = std::make_shared<StateRuleReportView::State>();
        return std::make_unique<StateRuleReportView>(ruleReport);
    }
    PreviewView* previewView() override { return &preview; }
    StatePreviewView preview;
    std::unique_ptr<RuleFileView> createRuleFileView() override {
        ruleFile->destroyed = false;
        return std::make_unique<StateRuleFileView>(ruleFile);
    }
    // Answers for frmRuleFile are queued here before it opens.
    std::shared_ptr<StateRuleFileView::State> ruleFile =
        std::make_shared<StateRuleFileView::State>();
    std::shared_ptr<StateMessageView::State> last;
    // Null until a Rule Report has been made.
    std::shared_ptr<StateRuleReportView::State> ruleReport;
    // Null until a welcome window has been made.
    std::shared_ptr<StateFirstUseView::State> firstUse;
};

// One of each, to fill every service a program does not bring itself, so
// that the logic never meets a missing one.
struct Headless {
    RecordedBoxes boxes;
    RecordedSounds sounds;
    RecordedShell shell;
    RecordedHelp help;
    RecordedPrinter printer;
    ScriptedDialogs dialogs;
    RecordedNotifier notifier;
    RecordedAutoStart autoStart;
    SoleInstance instance;
    StateWindowFactory windows;
    ManualTimerFactory timers;

    // Sets every member of `services` that is still null.
    void fillBlanks(Services& services);
};

} // namespace velmora
