#include "app/CheckReport.h"

#include "app/StatusBar.h"
#include "context/AppContext.h"
#include "platform/MainView.h"
#include "rules/RuleReport.h"

#include <QTextStream>

namespace velmora {

namespace {

// A JSON text built in order: the keys stand as documented, which a
// QJsonObject would sort. With a sink, what is built goes out in pieces, so
// a large message body is never held a second time as JSON.
class Json {
public:
    explicit Json(QString& out, QTextStream* sink = nullptr) : out(out), sink(sink) {}

    void string(const QString& text) {
        out += QLatin1Char('"');
        for (const QChar c : text) {
            if (sink && out.size() >= 64 * 1024) {
                *sink << out;
                out.truncate(0);
            }
            switch (c.unicode()) {
            case '"':
                out += QLatin1String("\\\"");
                break;
            case '\\':
                out += QLatin1String("\\\\");
                break;
            case '\n':
                out += QLatin1String("\\n");
                break;
            case '\r':
                out += QLatin1String("\\r");
                break;
            case '\t':
                out += QLatin1String("\\t");
                break;
            default:
                if (c.unicode() < 0x20)
                    out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
                else
                    out += c;
            }
        }
        out += QLatin1Char('"');
    }
    void key(const char* name) {
        separate();
        out += QLatin1Char('"') + QLatin1String(name) + QLatin1String("\":");
        fresh = true;
    }
    void value(const QString& text) {
        separate();
        string(text);
    }
    void value(qint64 number) {
        separate();
        out += QString::number(number);
    }
    void value(bool flag) {
        separate();
        out += flag ? QLatin1String("true") : QLatin1String("false");
    }
    // A key and its value.
    template <typename T> void field(const char* name, const T& v) {
        key(name);
        value(v);
    }
    void value(const QStringList& texts) {
        open('[');
        for (const QString& text : texts)
            value(text);
        close(']');
    }
    void null() {
        separate();
        out += QLatin1String("null");
    }
    void open(char bracket) {
        separate();
        out += QLatin1Char(bracket);
        fresh = true;
    }
    void close(char bracket) {
        out += QLatin1Char(bracket);
        fresh = false;
    }

private:
    void separate() {
        if (!fresh)
            out += QLatin1Char(',');
        fresh = false;
    }

    QString& out;
    QTextStream* sink;
    bool fresh = true;
};

} // namespace

QString IconName(BoxIcon icon) {
    return icon == BoxIcon::Critical      ? QStringLiteral("critical")
           : icon == BoxIcon::Information ? QStringLiteral("information")
                                          : QStringLiteral("none");
}

QString ButtonsName(BoxButtons buttons) {
    return buttons == BoxButtons::YesNo         ? QStringLiteral("yesno")
           : buttons == BoxButtons::YesNoCancel ? QStringLiteral("yesnocancel")
                                                : QStringLiteral("ok");
}

QString AnswerName(BoxAnswer answer) {
    return answer == BoxAnswer::Yes      ? QStringLiteral("Yes")
           : answer == BoxAnswer::No     ? QStringLiteral("No")
           : answer == BoxAnswer::Cancel ? QStringLiteral("Cancel")
                                         : QStringLiteral("OK");
}

namespace {

void Dialogs(Json& j, const QList<RecordedBoxes::Box>& dialogs) {
    j.open('[');
    for (const RecordedBoxes::Box& box : dialogs) {
        j.open('{');
        j.field("title", box.title);
        j.field("text", box.text);
        j.field("icon", IconName(box.icon));
        j.field("buttons", ButtonsName(box.buttons));
        j.field("answer", AnswerName(box.answer));
        j.close('}');
    }
    j.close(']');
}

void Message(Json& j, const MailMessage& m, int number) {
    j.open('{');
    j.field("number", qint64(number));
    const std::pair<const char*, const QString*> texts[] = {
        {"From", &m.From}, {"To", &m.To},     {"Subject", &m.Subject}, {"Date", &m.Date},
        {"Size", &m.Size}, {"Body", &m.Body}, {"MsgID", &m.MsgID},     {"Raw", &m.Raw}};
    for (const auto& [name, text] : texts) {
        j.key(name);
        j.value(*text);
    }
    const std::pair<const char*, bool> flags[] = {
        {"New", m.New}, {"Delete", m.Delete}, {"Spam", m.Spam}, {"Attach", m.Attach}};
    for (const auto& [name, flag] : flags) {
        j.key(name);
        j.value(flag);
    }
    j.close('}');
}

void AccountJson(Json& j, const AppContext& ctx, int n) {
    const Account& a = ctx.accounts[n];
    j.open('{');
    j.field("number", qint64(n));
    j.field("AcntName", a.AcntName);
    j.field("AcntEnabled", qint64(a.AcntEnabled));
    j.field("AcntChecked", a.AcntChecked);
    j.field("AcntConnected", a.AcntConnected);
    j.field("AcntStatusText", a.AcntStatusText);
    j.field("AcntLastCheckText", a.AcntLastCheckText);
    const std::pair<const char*, int> counts[] = {{"AcntMsgCount", a.AcntMsgCount},
                                                  {"AcntNewCount", a.AcntNewCount},
                                                  {"AcntPrevCount", a.AcntPrevCount},
                                                  {"AcntSpamCount", a.AcntSpamCount},
                                                  {"AcntDeleteCount", a.AcntDeleteCount}};
    for (const auto& [name, count] : counts) {
        j.key(name);
        j.value(qint64(count));
    }
    j.field("AcntHasMessages", a.AcntHasMessages);
    j.field("AcntHasNew", a.AcntHasNew);
    j.field("tabImage", ctx.view->tabs(TabStrip::Email).image(n));
    j.key("messages");
    j.open('[');
    for (int i = 1; i <= a.AcntMsgCount; ++i)
        Message(j, ctx.messages.at(n, i), i);
    j.close(']');
    j.close('}');
}

// The bar as the window shows it, and the tip each panel would give.
void StatusBarJson(Json& j, const AppContext& ctx) {
    const StatusBarView& bar = ctx.view->status();
    j.open('{');
    j.key("panels");
    j.open('[');
    for (int panel = 1; panel <= 5; ++panel)
        j.value(bar.panelText(panel));
    j.close(']');
    j.field("picture", bar.panelPicture(2));
    j.key("tips");
    j.open('[');
    const PanelTipFacts facts = CurrentPanelFacts(ctx);
    for (int panel = 1; panel <= 5; ++panel)
        j.value(PanelTip(panel, facts, ctx.svc.locale));
    j.close(']');
    j.close('}');
}

// What the Rule Report would show; null when it would not open.
void RuleReportJson(Json& j, const AppContext& ctx, bool opens) {
    if (!opens) {
        j.null();
        return;
    }
    const RuleReportContent c = RuleReportTexts(ctx);
    j.open('{');
    j.field("deleteText", c.deleteText);
    j.field("spamText", c.spamText);
    j.field("tabs", RuleReportTabs());
    j.close('}');
}

// The Email tab strip, and the list's rows as it shows them now.
void TabsJson(Json& j, const AppContext& ctx) {
    const TabStripView& tabs = ctx.view->tabs(TabStrip::Email);
    j.open('[');
    for (int tab = 1; tab <= tabs.count(); ++tab) {
        j.open('{');
        j.field("caption", tabs.caption(tab));
        j.field("picture", tabs.image(tab));
        j.close('}');
    }
    j.close(']');
}

void ListJson(Json& j, const AppContext& ctx) {
    const MessageListView& list = ctx.view->list();
    j.open('[');
    for (int row = 1; row <= list.rowCount(); ++row) {
        const ListRow r = list.row(row);
        j.open('{');
        j.field("picture", r.picture);
        j.field("cells", r.cells);
        j.field("bold", r.bold);
        j.close('}');
    }
    j.close(']');
}

void TrayJson(Json& j, const QList<PassExtras::TrayTick>& ticks) {
    j.open('[');
    for (const PassExtras::TrayTick& tick : ticks) {
        j.open('{');
        j.key("picture");
        j.open('[');
        for (int image : tick.picture)
            j.value(qint64(image));
        j.close(']');
        j.field("tip", tick.tip);
        j.close('}');
    }
    j.close(']');
}

void Pass(Json& j, const AppContext& ctx, int pass, const QList<RecordedBoxes::Box>& dialogs,
          const PassExtras& extras) {
    j.open('{');
    j.field("pass", qint64(pass));
    j.field("TotalMessages", qint64(ctx.check.TotalMessages));
    j.field("TotalNew", qint64(ctx.check.TotalNew));
    if (extras.autoWalk) {
        j.field("AccountInfoText", ctx.check.AccountInfoText);
        j.field("NextCheckText", ctx.check.NextCheckText);
        j.field("NextCheckTime", ctx.check.NextCheckTime);
    }
    j.key("autoCheckMessage");
    if (extras.autoCheckMessage.isNull())
        j.null();
    else
        j.value(extras.autoCheckMessage);
    j.field("sounds", extras.sounds);
    j.field("ruleReport", extras.ruleReport);
    j.key("ruleReportText");
    RuleReportJson(j, ctx, extras.ruleReport);
    j.key("accounts");
    j.open('[');
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n)
        AccountJson(j, ctx, n);
    j.close(']');
    j.key("tabs");
    TabsJson(j, ctx);
    j.field("AcntCurrent", qint64(ctx.accounts.AcntCurrent));
    j.key("list");
    ListJson(j, ctx);
    j.key("dialogs");
    Dialogs(j, dialogs);
    j.key("statusBar");
    StatusBarJson(j, ctx);
    if (!extras.tray.isEmpty()) {
        j.key("tray");
        TrayJson(j, extras.tray);
    }
    j.close('}');
}

} // namespace

QString PassJson(const AppContext& ctx, int pass, const QList<RecordedBoxes::Box>& dialogs,
                 const PassExtras& extras) {
    QString out;
    Json j(out);
    Pass(j, ctx, pass, dialogs, extras);
    return out;
}

void WritePassJson(QTextStream& stream, const AppContext& ctx, int pass,
                   const QList<RecordedBoxes::Box>& dialogs, const PassExtras& extras) {
    QString out;
    Json j(out, &stream);
    Pass(j, ctx, pass, dialogs, extras);
    stream << out << '\n';
}

QString DialogsJson(const QList<RecordedBoxes::Box>& dialogs) {
    QString out;
    Json j(out);
    j.open('{');
    j.key("dialogs");
    Dialogs(j, dialogs);
    j.close('}');
    return out;
}

QString DialogsSummary(const QList<RecordedBoxes::Box>& dialogs) {
    QString out;
    for (const RecordedBoxes::Box& box : dialogs)
        out += QLatin1Char('[') + box.title + QLatin1String("]\n") +
               QString(box.text).replace(QLatin1String("\r\n"), QLatin1String("\n")).trimmed() +
               QLatin1String("\n\n");
    return out;
}

QString PassSummary(const AppContext& ctx, int pass, const QList<RecordedBoxes::Box>& dialogs,
                    const PassExtras& extras) {
    QString out = QStringLiteral("Pass %1: %2 messages, %3 new\n")
                      .arg(pass)
                      .arg(ctx.check.TotalMessages)
                      .arg(ctx.check.TotalNew);
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n) {
        const Account& a = ctx.accounts[n];
        out += QStringLiteral("  %1. %2 [%3]  %4 new, %5 spam, %6 to delete\n")
                   .arg(n)
                   .arg(a.AcntStatusText, a.AcntLastCheckText)
                   .arg(a.AcntNewCount)
                   .arg(a.AcntSpamCount)
                   .arg(a.AcntDeleteCount);
        for (int i = 1; i <= a.AcntMsgCount; ++i) {
            const MailMessage& m = ctx.messages.at(n, i);
            const QString marks = QString(m.New ? "N" : "-") + (m.Spam ? "S" : "-") +
                                  (m.Delete ? "D" : "-") + (m.Attach ? "A" : "-");
            out += QStringLiteral("     %1 %2 | %3 | %4 | %5 KB\n")
                       .arg(marks, m.Date, m.From, m.Subject, m.Size);
        }
    }
    if (!extras.autoCheckMessage.isNull())
        out += QStringLiteral("  Auto Check Message: ") + extras.autoCheckMessage + '\n';
    for (const QString& sound : extras.sounds)
        out += QStringLiteral("  Sound: ") + sound + '\n';
    if (extras.ruleReport)
        out += QStringLiteral("  The Rule Report would open.\n");
    out += DialogsSummary(dialogs);
    return out;
}

} // namespace velmora
