#include "app/UiScript.h"

#include "app/Preview.h"
#include "context/AppContext.h"
#include "options/OptionsEditing.h"
#include "platform/Controls.h"
#include "platform/Headless.h"
#include "platform/MainViewEvents.h"
#include "platform/StateView.h"

#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTextStream>
#include <QTimer>

namespace velmora {

namespace {

// A line the script cannot run.
struct ScriptError {
    QString why;
};

using K = ControlKind;

// The frames and bars a control lies in: a click needs them all on.
QStringList Containers(const QString& control) {
    if (control.startsWith(ctl::tbrMainButtons + '/'))
        return {ctl::fraMainButtons};
    if (control.startsWith(ctl::tbrEmail + '/'))
        return {ctl::tbrEmail, ctl::fraEmailToolBar, Element(ctl::fraMain, 0)};
    if (control.startsWith(ctl::tbrAcnts + '/'))
        return {ctl::tbrAcnts, ctl::fraAcntToolBar, Element(ctl::fraMain, 1)};
    if (control.startsWith(ctl::tbrRules + '/'))
        return {ctl::tbrRules, ctl::fraRulesToolbar, Element(ctl::fraMain, 2)};
    if (control.startsWith(ctl::tbrButtons + '(')) {
        const int index = control.mid(ctl::tbrButtons.size() + 1).chopped(1).toInt();
        for (const PageButton& b : PageButtonTable()) {
            if (b.index == index)
                return {Element(ctl::fraMain, b.page)};
        }
    }
    if (control.startsWith(ctl::tbrOptAbout + '/'))
        return {ctl::tbrOptAbout, Element(ctl::fraMain, 3)};
    if (control == ctl::lblAboutWebSite || control == ctl::lblAboutEmail)
        return {Element(ctl::fraMain, 3)};
    if (control.startsWith(ctl::lvwEmail) || control == ctl::TabStripEmail)
        return {Element(ctl::fraMain, 0)};
    if (control == ctl::TabStripAcnts)
        return {Element(ctl::fraMain, 1)};
    if (control.startsWith(ctl::tbrMoveAccounts + '/'))
        return {ctl::tbrMoveAccounts, Element(ctl::fraMain, 1)};
    if (control.startsWith(ctl::tbrColour + '/'))
        return {ctl::tbrColour, Element(ctl::fraMain, 1)};
    if (control.startsWith(ctl::lblColourBox + '('))
        return {ctl::fraColourBox, Element(ctl::fraMain, 1)};
    // The Rules page: each input lies in its frame.
    if (control.startsWith(ctl::tbrRuleUpdate + '/'))
        return {ctl::tbrRuleUpdate, ctl::fraRule, Element(ctl::fraMain, 2)};
    if (control.startsWith(ctl::tbrMoveRules + '/'))
        return {ctl::tbrMoveRules, ctl::fraRules, Element(ctl::fraMain, 2)};
    if (control == ctl::lstRules || control == ctl::lstRulesEnabled)
        return {ctl::fraRules, Element(ctl::fraMain, 2)};
    if (control.startsWith(ctl::optRuleAction + '('))
        return {ctl::fraAction, Element(ctl::fraMain, 2)};
    if (control == ctl::chkRuleNotify || control == ctl::chkRuleNotifyNew ||
        control == ctl::txtRuleNotifyTime)
        return {ctl::fraNotify, Element(ctl::fraMain, 2)};
    if (QStringList{ctl::txtRuleName, ctl::cboRuleAccount, ctl::cboBoolean, ctl::cboWhere,
                    ctl::cboCondition, ctl::chkNot, ctl::txtCriteria}
            .contains(control))
        return {ctl::fraRule, Element(ctl::fraMain, 2)};
    if (const QStringList options = OptionsContainers(control); !options.isEmpty())
        return options;
    if (control.startsWith(QLatin1String("txtAcnt")) ||
        control.startsWith(QLatin1String("chkAcnt")))
        return {Element(ctl::fraMain, 1)};
    return {};
}

// frmPreview's buttons, by key without its blanks ("tbrPreview/ExitPreview"),
// and its tab strip "TabStrip"; only while the window shows. Null when the
// control is reached, else why not.
const char* PreviewRefusal(const AppContext& ctx, const StatePreviewView& preview) {
    if (!ctx.shell.PreviewOpen)
        return "frmPreview is not open";
    return preview.shown ? nullptr : "frmPreview is hidden";
}

void PreviewButton(UiScriptRun& r, const QString& control, int line, QJsonArray& refused) {
    StatePreviewView& preview = r.headless.windows.preview;
    QString key;
    for (const QString& k : PreviewButtonKeys()) {
        if (QString(k).remove(QLatin1Char(' ')) == control.section(QLatin1Char('/'), 1))
            key = k;
    }
    if (key.isEmpty())
        throw ScriptError{QStringLiteral("no control named '%1'").arg(control)};
    if (const char* why = PreviewRefusal(r.ctx, preview)) {
        refused.append(QJsonObject{{"line", line}, {"control", control}, {"why", why}});
        return;
    }
    preview.handlers.buttonClick(preview.captions.value(key));
}

void PreviewTab(UiScriptRun& r, int tab, int line, QJsonArray& refused) {
    StatePreviewView& preview = r.headless.windows.preview;
    if (const char* why = PreviewRefusal(r.ctx, preview)) {
        refused.append(QJsonObject{{"line", line}, {"control", "TabStrip"}, {"why", why}});
        return;
    }
    if (tab < 1 || tab > preview.tabs.size())
        throw ScriptError{QStringLiteral("TabStrip has no tab %1").arg(tab)};
    preview.selectTab(tab);
    preview.handlers.tabClick(tab);
}

class Runner {
public:
    Runner(UiScriptRun run, bool trace, QTextStream& out) : r(run), trace(trace), out(out) {}

    void line(const QString& text);
    QJsonObject result() const { return UiStateJson(r.ctx, r.view, r.headless, touched, refused); }

    int lineNumber = 0;

private:
    void click(const QString& control);
    void setText(const QString& control, const QString& text);
    void check(const QString& control, const QString& value);
    void option(const QString& array, const QString& index);
    void choose(const QString& control, const QString& entry);
    void tab(const QString& strip, const QString& number);
    void rightClick(const QString& control, const QString& number);
    void press(const QString& strip, const QString& number);
    void drag(const QString& strip, const QString& from, const QString& to);
    void rows(const QStringList& numbers);
    void doubleClick(const QString& list, const QString& number);
    void answer(const QString& word);
    void tick(const QString& timer, const QString& count);
    static void wait(const QString& ms);

    // False, with the reason noted, when the user could not reach it now.
    bool reachable(const QString& control);
    void touch(const QString& control) {
        if (!touched.contains(control))
            touched.append(control);
    }
    static int Number(const QString& text, const char* what);

    UiScriptRun r;
    bool trace;
    QTextStream& out;
    QStringList touched;
    QJsonArray refused;
};

int Runner::Number(const QString& text, const char* what) {
    bool ok = false;
    const int n = text.toInt(&ok);
    if (!ok)
        throw ScriptError{
            QStringLiteral("%1 must be a whole number, not '%2'").arg(QLatin1String(what), text)};
    return n;
}

bool Runner::reachable(const QString& control) {
    QStringList chain = Containers(control);
    chain.prepend(control);
    for (const QString& c : chain) {
        const char* why = !r.view.isEnabled(c) ? "disabled" : !r.view.isVisible(c) ? "hidden" : "";
        if (*why) {
            refused.append(QJsonObject{{"line", lineNumber},
                                       {"control", control},
                                       {"why", QStringLiteral("%1 is %2").arg(c, why)}});
            return false;
        }
    }
    return true;
}

void Runner::click(const QString& control) {
    if (control.startsWith(QLatin1String("tbrPreview/"))) {
        PreviewButton(r, control, lineNumber, refused);
        return;
    }
    const ControlKind kind = KindOf(control);
    touch(control);
    // The tray and its menu are there whatever the window shows.
    const bool inTray = kind == K::Tray || TrayMenuEntries().contains(control);
    if (!inTray && !reachable(control))
        return;
    if (inTray && !r.view.isEnabled(control)) {
        refused.append(
            QJsonObject{{"line", lineNumber}, {"control", control}, {"why", "disabled"}});
        return;
    }
    switch (kind) {
    case K::TabStrip:
        r.events.TabClick(control);
        return;
    case K::Header:
        r.events.ListHeaderClick(int(ListColumns().indexOf(control.section('/', 1))) + 1);
        return;
    default:
        DeliverClick(r.events, control);
    }
}

void Runner::setText(const QString& control, const QString& text) {
    Expect(control, {K::Text, K::Spin});
    touch(control);
    if (!reachable(control))
        return;
    r.view.setText(control, text);
    r.events.ValueChanged(control);
}

void Runner::check(const QString& control, const QString& value) {
    Expect(control, {K::Check});
    if (value != QLatin1String("0") && value != QLatin1String("1"))
        throw ScriptError{QStringLiteral("a check box takes 0 or 1, not '%1'").arg(value)};
    touch(control);
    if (!reachable(control))
        return;
    r.view.setChecked(control, value.toInt());
    r.events.ValueChanged(control);
}

void Runner::option(const QString& array, const QString& index) {
    const int n = Number(index, "an option index");
    const QString element = Element(array, n);
    Expect(element, {K::Option});
    touch(Element(array, 0));
    if (!reachable(element))
        return;
    r.view.setOptionIndex(array, n);
    r.events.ValueChanged(element);
}

void Runner::choose(const QString& control, const QString& entry) {
    Expect(control, {K::Combo});
    touch(control);
    if (!reachable(control))
        return;
    const QStringList items = r.view.items(control);
    bool isNumber = false;
    int index = entry.toInt(&isNumber);
    if (!isNumber)
        index = int(items.indexOf(entry));
    if (index < 0 || index >= items.size())
        throw ScriptError{QStringLiteral("%1 has no entry '%2'").arg(control, entry)};
    r.view.setCurrentIndex(control, index);
    r.events.ValueChanged(control);
}

void Runner::tab(const QString& strip, const QString& number) {
    const int n = Number(number, "a tab number");
    if (strip == QLatin1String("TabStrip")) {
        PreviewTab(r, n, lineNumber, refused);
        return;
    }
    Expect(strip, {K::TabStrip});
    TabStripView& tabs =
        r.view.tabs(strip == ctl::TabStripEmail ? TabStrip::Email : TabStrip::Accounts);
    if (n < 1 || n > tabs.count())
        throw ScriptError{QStringLiteral("%1 has no tab %2").arg(strip).arg(n)};
    touch(strip);
    if (!reachable(strip))
        return;
    tabs.select(n);
    r.events.TabClick(strip);
}

void Runner::rightClick(const QString& control, const QString& number) {
    if (control == ctl::TrayIcon) {
        touch(control);
        r.events.TrayClick(MouseButton::Right);
        return;
    }
    if (control != ctl::lvwEmail)
        throw ScriptError{QStringLiteral("only TrayIcon and lvwEmail take a right click")};
    rows({number});
    if (r.view.isEnabled(ctl::lvwEmail))
        r.events.ListContextMenu(number.toInt());
}

void Runner::press(const QString& strip, const QString& number) {
    // The strip selects the tab under a press at once.
    tab(strip, number);
    if (reachable(strip))
        r.events.TabPress(strip, number.toInt());
}

void Runner::drag(const QString& strip, const QString& from, const QString& to) {
    // A held press on FROM, the tick that makes it a drag, the drop on TO.
    const int target = Number(to, "a tab number");
    press(strip, from);
    if (!reachable(strip))
        return;
    tick(QStringLiteral("tmrDragTab"), QString());
    const TabStripView& tabs =
        r.view.tabs(strip == ctl::TabStripEmail ? TabStrip::Email : TabStrip::Accounts);
    r.events.TabDrop(strip, from.toInt(), target >= 1 && target <= tabs.count() ? target : 0);
}

void Runner::rows(const QStringList& numbers) {
    if (numbers.isEmpty())
        throw ScriptError{QStringLiteral("row needs at least one row number")};
    MessageListView& list = r.view.list();
    QList<int> chosen;
    for (const QString& text : numbers) {
        const int n = Number(text, "a row number");
        if (n < 1 || n > list.rowCount())
            throw ScriptError{QStringLiteral("the list has no row %1").arg(n)};
        chosen.append(n);
    }
    touch(ctl::lvwEmail);
    if (!reachable(ctl::lvwEmail))
        return;
    for (int row = 1; row <= list.rowCount(); ++row)
        list.setRowSelected(row, chosen.contains(row));
    list.setCurrentRow(chosen.first());
    r.events.ListRowClick(chosen.first());
}

void Runner::doubleClick(const QString& control, const QString& number) {
    if (control != ctl::lvwEmail)
        throw ScriptError{QStringLiteral("only lvwEmail takes a double click")};
    rows({number});
    if (r.view.isEnabled(ctl::lvwEmail))
        r.events.ListDoubleClick(number.toInt());
}

void Runner::answer(const QString& word) {
    static const QHash<QString, BoxAnswer> answers = {{"Yes", BoxAnswer::Yes},
                                                      {"No", BoxAnswer::No},
                                                      {"Cancel", BoxAnswer::Cancel},
                                                      {"OK", BoxAnswer::Ok}};
    if (!answers.contains(word))
        throw ScriptError{QStringLiteral("answer takes Yes, No, Cancel or OK, not '%1'").arg(word)};
    r.headless.boxes.answers.append(answers.value(word));
}

void Runner::tick(const QString& name, const QString& count) {
    const QHash<QString, Timer*> timers = {
        {"tmrStatusBar", r.ctx.shell.tmrStatusBar.get()},
        {"tmrMailTime", r.ctx.check.tmrMailTime.get()},
        {"tmrMailStartUp", r.ctx.check.tmrMailStartUp.get()},
        {"tmrRetrieveMessage", r.ctx.check.tmrRetrieveMessage.get()},
        {"tmrMessage", r.ctx.check.frmMessage.timer.get()},
        {"tmrDragTab", r.ctx.shell.tmrDragTab.get()},
    };
    if (!timers.contains(name))
        throw ScriptError{QStringLiteral("no timer named '%1'").arg(name)};
    const int times = count.isEmpty() ? 1 : Number(count, "a tick count");
    for (int i = 0; i < times; ++i) {
        // Looked up each time: a tick may close the window that owns it.
        auto* timer = dynamic_cast<ManualTimer*>(name == QLatin1String("tmrMessage")
                                                     ? r.ctx.check.frmMessage.timer.get()
                                                     : timers.value(name));
        if (timer)
            timer->fire();
    }
}

void Runner::wait(const QString& ms) {
    const int milliseconds = Number(ms, "a wait");
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void Runner::line(const QString& raw) {
    const QString text = raw.trimmed();
    if (text.isEmpty() || text.startsWith(QLatin1Char('#')))
        return;
    const QString verb = text.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
    QStringList args = text.split(QLatin1Char(' '), Qt::SkipEmptyParts).mid(1);
    const auto need = [&](int count) {
        if (args.size() < count)
            throw ScriptError{QStringLiteral("%1 needs %2 argument(s)").arg(verb).arg(count)};
    };
    const qsizetype before = r.headless.boxes.boxes.size();
    if (verb == QLatin1String("click")) {
        need(1);
        click(args[0]);
    } else if (verb == QLatin1String("set")) {
        need(1);
        // The rest of the line after the control and one blank, verbatim.
        static const QRegularExpression form(QStringLiteral("^\\s*set\\s+(\\S+) ?(.*)$"));
        setText(args[0], form.match(raw).captured(2));
    } else if (verb == QLatin1String("check")) {
        need(2);
        check(args[0], args[1]);
    } else if (verb == QLatin1String("option")) {
        need(2);
        option(args[0], args[1]);
    } else if (verb == QLatin1String("choose")) {
        need(2);
        choose(args[0], text.section(' ', 2, -1, QString::SectionSkipEmpty));
    } else if (verb == QLatin1String("tab")) {
        need(2);
        tab(args[0], args[1]);
    } else if (verb == QLatin1String("rclick")) {
        need(1);
        rightClick(args[0], args.value(1));
    } else if (verb == QLatin1String("press")) {
        need(2);
        press(args[0], args[1]);
    } else if (verb == QLatin1String("drag")) {
        need(3);
        drag(args[0], args[1], args[2]);
    } else if (verb == QLatin1String("release")) {
        need(1);
        Expect(args[0], {K::TabStrip});
        r.events.TabRelease(args[0]);
    } else if (verb == QLatin1String("row")) {
        rows(args);
    } else if (verb == QLatin1String("dblclick")) {
        need(2);
        doubleClick(args[0], args[1]);
    } else if (verb == QLatin1String("answer")) {
        need(1);
        answer(args[0]);
    } else if (verb == QLatin1String("file")) {
        need(1);
        r.headless.dialogs.fileAnswers.append(text.section(' ', 1, -1, QString::SectionSkipEmpty));
    } else if (verb == QLatin1String("rulefile")) {
        // frmRuleFile's answer, given before the click that opens it: the
        // text to save under, or "cancel".
        need(1);
        r.headless.windows.ruleFile->answers.append(
            text.section(' ', 1, -1, QString::SectionSkipEmpty));
    } else if (verb == QLatin1String("colour")) {
        need(1);
        r.headless.dialogs.colourAnswers.append(args[0]);
    } else if (verb == QLatin1String("tick")) {
        need(1);
        tick(args[0], args.value(1));
    } else if (verb == QLatin1String("wait")) {
        need(1);
        wait(args[0]);
    } else if (verb == QLatin1String("hover") && args.value(0) == ctl::fraAcnt) {
        r.events.FramePointer(ctl::fraAcnt);
    } else if (verb == QLatin1String("focus")) {
        need(1);
        if (args[0] != ctl::lvwEmail && args[0] != ctl::TabStripEmail &&
            args[0] != ctl::TabStripAcnts)
            throw ScriptError{QStringLiteral("%1 takes no focus by itself").arg(args[0])};
        r.view.setFocus(args[0]);
        r.events.FocusArrived(args[0]);
    } else if (verb == QLatin1String("hover")) {
        need(3);
        if (args[0] != ctl::lvwEmail)
            throw ScriptError{QStringLiteral("only lvwEmail and fraAcnt take hover")};
        const int row = Number(args[1], "a row number");
        if (row < 0 || row > r.view.list().rowCount())
            throw ScriptError{QStringLiteral("the list has no row %1").arg(row)};
        touch(ctl::lvwEmail);
        r.events.ListPointer(row, Number(args[2], "a position"));
    } else if (verb == QLatin1String("point")) {
        need(1);
        const int panel = Number(args[0], "a status panel");
        if (panel > 5)
            throw ScriptError{QStringLiteral("the status bar has no panel %1").arg(panel)};
        r.events.StatusBarPointer(panel);
    } else {
        throw ScriptError{QStringLiteral("unknown verb '%1'").arg(verb)};
    }
    if (trace) {
        QJsonArray boxes;
        for (qsizetype i = before; i < r.headless.boxes.boxes.size(); ++i)
            boxes.append(r.headless.boxes.boxes[i].title);
        const QJsonObject step{{"line", lineNumber},
                               {"action", text},
                               {"page", r.ctx.shell.PageBanners.value(r.ctx.shell.CurrentPage)},
                               {"boxes", boxes}};
        out << QJsonDocument(step).toJson(QJsonDocument::Compact) << '\n';
        out.flush();
    }
}

} // namespace

int RunUiScript(UiScriptRun run, const QString& script, bool trace, QTextStream& out,
                QTextStream& err) {
    QFile file;
    bool opened = false;
    if (script == QLatin1String("-"))
        opened = file.open(stdin, QIODevice::ReadOnly | QIODevice::Text);
    else {
        file.setFileName(script);
        opened = file.open(QIODevice::ReadOnly | QIODevice::Text);
    }
    if (!opened) {
        err << "velmora-cli: cannot read the script " << script << ": " << file.errorString()
            << "\n";
        return 2;
    }
    Runner runner(run, trace, out);
    QTextStream in(&file);
    in.setEncoding(QStringConverter::Utf8);
    try {
        while (!in.atEnd()) {
            const QString text = in.readLine();
            ++runner.lineNumber;
            runner.line(text);
        }
    } catch (const ScriptError& e) {
        err << "velmora-cli: line " << runner.lineNumber << ": " << e.why << "\n";
        return 2;
    } catch (const UnknownControl& e) {
        err << "velmora-cli: line " << runner.lineNumber << ": " << e.what() << "\n";
        return 2;
    }
    out << QJsonDocument(runner.result()).toJson(QJsonDocument::Indented);
    return 0;
}

} // namespace velmora
