#include "rules/RuleEditing.h"

#include "context/AppContext.h"
#include "context/PageCalls.h"
#include "platform/Controls.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "platform/ProfileFiles.h"
#include "rules/RuleCheck.h"
#include "rules/RuleFiles.h"
#include "rules/Rules.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");
const QString AllAccounts = QStringLiteral("All Accounts");
const QString Attachment = QStringLiteral("Attachment");

QString RuleButton(const char* key) {
    return Button(ctl::tbrRules, QLatin1String(key));
}
QString UpdateButton(const char* key) {
    return Button(ctl::tbrRuleUpdate, QLatin1String(key));
}
QString MoveButton(const char* key) {
    return Button(ctl::tbrMoveRules, QLatin1String(key));
}

RuleSet& Working(AppContext& ctx) {
    return ctx.rules.WorkingRules;
}

// The rule shown; only called while there is one.
Rule& Current(AppContext& ctx) {
    return ctx.rules.WorkingRules[ctx.rules.CurrentRule];
}

bool HasCurrent(const AppContext& ctx) {
    const int n = ctx.rules.CurrentRule;
    return n >= 1 && n <= ctx.rules.WorkingRules.RuleCount &&
           n < ctx.rules.WorkingRules.rules.size();
}

QString ComboText(const MainView& v, const QString& combo) {
    return v.items(combo).value(v.currentIndex(combo));
}

void SetComboText(MainView& v, const QString& combo, const QString& text) {
    v.setCurrentIndex(combo, int(v.items(combo).indexOf(text)));
}

void ShowEntryCount(AppContext& ctx, int count) {
    ctx.view->setCaption(ctl::lblRuleDescEntries, QStringLiteral("%1 of 10 Entries").arg(count));
}

// The list of names, its check boxes and its selection, from the working set.
void FillRuleList(AppContext& ctx) {
    MainView& v = *ctx.view;
    const RuleSet& w = Working(ctx);
    QStringList names;
    QString enabled;
    for (int n = 1; n <= w.RuleCount; ++n) {
        names.append(w[n].Name);
        enabled += w[n].Enabled == 1 ? QLatin1Char('1') : QLatin1Char('0');
    }
    // A list refilled under the user's click would lose the click: it is
    // refilled only when it shows something else. The boxes go first, as
    // the list shows them when its items come.
    if (v.items(ctl::lstRules) != names || v.text(ctl::lstRulesEnabled) != enabled) {
        v.setText(ctl::lstRulesEnabled, enabled);
        v.setItems(ctl::lstRules, names);
    }
    v.setCurrentIndex(ctl::lstRules, ctx.rules.CurrentRule - 1);
}

// Entry m of the rule shown, split into its parts.
struct EntryParts {
    QString Where, Condition, Criteria, Not, Boolean;
};

EntryParts PartsOf(const QString& text) {
    RuleEntry entry;
    QString conjunction;
    ParseRuleEntry(text, entry, conjunction);
    return {entry.Where, entry.Condition, entry.Criteria, entry.Not, conjunction};
}

// Brings entry m back into the inputs the user builds entries with.
void PutEntryIntoInputs(AppContext& ctx, int m) {
    MainView& v = *ctx.view;
    const EntryParts p = PartsOf(Current(ctx).Description[m]);
    SetComboText(v, ctl::cboWhere, p.Where);
    FillCondition(ctx, p.Where);
    SetComboText(v, ctl::cboCondition, p.Condition);
    v.setText(ctl::txtCriteria, p.Criteria);
    v.setChecked(ctl::chkNot, p.Not == QLatin1String("NOT") ? 1 : 0);
    if (!p.Boolean.isEmpty())
        SetComboText(v, ctl::cboBoolean, p.Boolean);
    else if (v.currentIndex(ctl::cboBoolean) < 0)
        SetComboText(v, ctl::cboBoolean, QStringLiteral("AND"));
}

void ResetInputs(AppContext& ctx) {
    MainView& v = *ctx.view;
    SetComboText(v, ctl::cboWhere, QStringLiteral("From"));
    FillCondition(ctx, QStringLiteral("From"));
    SetComboText(v, ctl::cboCondition, QStringLiteral("Contains"));
    SetComboText(v, ctl::cboBoolean, QStringLiteral("AND"));
    v.setText(ctl::txtCriteria, QString());
    v.setChecked(ctl::chkNot, 0);
}

// Slot 0 from the entries up to DescCount, shown.
void ShowJoined(AppContext& ctx) {
    Rule& r = Current(ctx);
    r.JoinDescription();
    ctx.view->setText(ctl::txtRuleDescription, r.Description[0]);
}

// All entries take the rule's one conjunction. The swap is a plain
// replace over the whole entry, criteria included.
void ApplyConjunction(AppContext& ctx) {
    Rule& r = Current(ctx);
    const bool isAnd = ComboText(*ctx.view, ctl::cboBoolean) == QLatin1String("AND");
    for (int m = 1; m <= r.DescCount; ++m) {
        if (isAnd)
            r.Description[m].replace(QLatin1String("OR"), QLatin1String("AND"));
        else
            r.Description[m].replace(QLatin1String("AND"), QLatin1String("OR"));
    }
    ShowJoined(ctx);
    CheckRulesDirty(ctx);
}

void SetMoveButtons(AppContext& ctx) {
    MainView& v = *ctx.view;
    const int count = Working(ctx).RuleCount;
    const int n = ctx.rules.CurrentRule;
    v.setEnabled(MoveButton("Up"), count >= 2 && n > 1);
    v.setEnabled(MoveButton("Down"), count >= 2 && n < count);
}

// Redo reaches up to RedoCount, but never a slot a clear has emptied.
bool CanRedo(const Rule& r) {
    return r.DescCount < r.RedoCount && r.DescCount < MaxRuleEntries &&
           !r.Description[r.DescCount + 1].isEmpty();
}

bool SameRule(const Rule& a, const Rule& b, int entries) {
    if (a.Enabled != b.Enabled || a.Name != b.Name || a.Account != b.Account ||
        a.DescCount != b.DescCount || a.Action != b.Action)
        return false;
    for (int m = 1; m <= entries && m <= MaxRuleEntries; ++m) {
        if (a.Description[m] != b.Description[m])
            return false;
    }
    return true;
}

// The profile files the context uses, watched for the outcome of the
// whole-file write a save makes.
class WatchedProfiles : public ProfileFiles {
public:
    explicit WatchedProfiles(ProfileFiles& inner) : inner(inner) {}
    int GetPrivateProfileSection(const QString& s, QString& b, int n, const QString& f) override {
        return inner.GetPrivateProfileSection(s, b, n, f);
    }
    int GetPrivateProfileString(const QString& s, const QString& k, const QString& d, QString& b,
                                int n, const QString& f) override {
        return inner.GetPrivateProfileString(s, k, d, b, n, f);
    }
    bool WritePrivateProfileString(const QString& s, const QString& k, const QString& value,
                                   const QString& f, QString* reason) override {
        const bool ok = inner.WritePrivateProfileString(s, k, value, f, reason);
        written = written && ok;
        return ok;
    }
    bool WriteProfileFile(const QString& f, const QString& text, QString* reason) override {
        const bool ok = inner.WriteProfileFile(f, text, reason);
        written = written && ok;
        return ok;
    }
    bool PutAsideIfUnreadable(const QString& f, const QString& r, QString* why,
                              QString* keptAs) override {
        return inner.PutAsideIfUnreadable(f, r, why, keptAs);
    }
    bool written = true;

private:
    ProfileFiles& inner;
};

void ShowSelectedRule(AppContext& ctx) {
    const int index = ctx.view->currentIndex(ctl::lstRules);
    if (index < 0 || index >= Working(ctx).RuleCount)
        return;
    ctx.rules.CurrentRule = index + 1;
    ShowRule(ctx, ctx.rules.CurrentRule);
}

// A tick changed in the list: the first item whose box differs from its
// rule is the one the user ticked.
void RuleTicked(AppContext& ctx) {
    const QString ticks = ctx.view->text(ctl::lstRulesEnabled);
    RuleSet& w = Working(ctx);
    for (int n = 1; n <= w.RuleCount && n <= ticks.size(); ++n) {
        const int enabled = ticks[n - 1] == QLatin1Char('1') ? 1 : 0;
        if (enabled == (w[n].Enabled == 1 ? 1 : 0))
            continue;
        ctx.rules.CurrentRule = n;
        w[n].Enabled = enabled;
        ShowRuleEnabled(ctx, enabled);
        ShowRule(ctx, n);
        return;
    }
    // Nothing of the set changed: the boxes show the set again.
    FillRuleList(ctx);
}

void NotifyTimeChanged(AppContext& ctx) {
    MainView& v = *ctx.view;
    const QString text = v.text(ctl::txtRuleNotifyTime).trimmed();
    RuleSet& w = Working(ctx);
    if (text.isEmpty()) {
        w.Time = 1;
        v.setText(ctl::txtRuleNotifyTime, QStringLiteral("1"));
        return;
    }
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < 0) {
        // Only digits belong here; the last good value comes back.
        v.setText(ctl::txtRuleNotifyTime, QString::number(w.Time));
        return;
    }
    w.Time = std::min(value, 59);
    if (value > 59)
        v.setText(ctl::txtRuleNotifyTime, QStringLiteral("59"));
}

} // namespace

void ArrangeRulePage(AppContext& ctx) {
    MainView& v = *ctx.view;
    v.setItems(ctl::cboWhere, {"From", "To", "Subject", "Body", "Attachment", "Size"});
    v.setItems(ctl::cboBoolean, {"AND", "OR"});
    v.setCaption(ctl::fraAction, QStringLiteral("Action"));
    v.setCaption(Element(ctl::optRuleAction, 1), QStringLiteral("Delete from Server"));
    v.setCaption(Element(ctl::optRuleAction, 2), QStringLiteral("Mark as Spam   (Delete Later)"));
    v.setCaption(Element(ctl::optRuleAction, 3), QStringLiteral("Ignore"));
    v.setVisible(Element(ctl::optRuleAction, 0), false);
    v.setCaption(ctl::fraNotify, QStringLiteral("Notification - Applies to All Rules"));
    v.setCaption(ctl::chkRuleNotify, QStringLiteral("Show Rule Report Summary"));
    v.setCaption(ctl::chkRuleNotifyNew, QStringLiteral("New Messages Only"));
    v.setCaption(ctl::lblRuleNotifyTime, QStringLiteral("Show for"));
    v.setCaption(ctl::lblRuleName, QStringLiteral("Rule Name:"));
    v.setCaption(ctl::lblRuleAccount, QStringLiteral("Account:"));
    v.setCaption(ctl::lblRuleDescription, QStringLiteral("Rule Description:"));
    v.setCaption(ctl::chkNot, QStringLiteral("NOT"));
    v.setMaxLength(ctl::txtRuleNotifyTime, 2);
    for (const ToolbarButton& b : RulePageButtons()) {
        v.setCaption(Button(b.toolbar, b.key), b.caption);
        v.setToolTip(Button(b.toolbar, b.key), b.tip);
    }
    FillRuleAccounts(ctx);
}

void LoadRulePage(AppContext& ctx) {
    MainView& v = *ctx.view;
    if (v.items(ctl::cboWhere).isEmpty())
        ArrangeRulePage(ctx);
    CopyRulesToWorking(ctx);
    RuleSet& w = Working(ctx);
    SetRulePageEnabled(ctx, w.RuleCount);
    if (w.RuleCount < 1) {
        v.setEnabled(RuleButton("RulesDelete"), false);
        ctx.rules.CurrentRule = 0;
    } else {
        if (ctx.rules.CurrentRule < 1)
            ctx.rules.CurrentRule = 1;
        FillRuleList(ctx);
        v.setEnabled(RuleButton("RulesDelete"), true);
    }
    ShowRule(ctx, ctx.rules.CurrentRule);
    v.setEnabled(Element(ctl::tbrButtons, ctl::SaveRules), false);
    v.setEnabled(Element(ctl::tbrButtons, ctl::CancelRules), false);
    CheckRulesDirty(ctx);
}

void ClearRulePage(AppContext& ctx) {
    MainView& v = *ctx.view;
    v.setItems(ctl::lstRules, {});
    v.setText(ctl::lstRulesEnabled, QString());
    v.setCaption(ctl::fraRule, QStringLiteral("Rule: None"));
    v.setText(ctl::txtRuleName, QString());
    SetComboText(v, ctl::cboRuleAccount, AllAccounts);
    ResetInputs(ctx);
    v.setText(ctl::txtRuleDescription, QString());
    ShowEntryCount(ctx, 0);
    for (const char* key : {"Update", "Clear", "Undo", "Redo"})
        v.setEnabled(UpdateButton(key), false);
    v.setChecked(ctl::chkRuleNotify, 0);
    v.setChecked(ctl::chkRuleNotifyNew, 0);
    v.setText(ctl::txtRuleNotifyTime, QStringLiteral("30"));
    SetMoveButtons(ctx);
}

void SetRulePageEnabled(AppContext& ctx, int count) {
    MainView& v = *ctx.view;
    const bool on = count >= 1;
    for (const auto& name :
         {ctl::fraRule, ctl::fraAction, ctl::fraNotify, ctl::lstRules, ctl::lblRuleName,
          ctl::txtRuleName, ctl::lblRuleAccount, ctl::cboRuleAccount, ctl::cboBoolean,
          ctl::cboWhere, ctl::cboCondition, ctl::chkNot, ctl::lblCriteria, ctl::txtCriteria,
          ctl::lblRuleDescription, ctl::txtRuleDescription, ctl::lblRuleDescEntries,
          ctl::tbrRuleUpdate, ctl::tbrMoveRules})
        v.setEnabled(name, on);
}

void ShowRuleEnabled(AppContext& ctx, int enabled) {
    // The page shows a rule that is not enabled in dark red by this caption.
    ctx.view->setCaption(ctl::fraRule, enabled == 1 ? QStringLiteral("Rule: Enabled")
                                                    : QStringLiteral("Rule: Not Enabled"));
}

void ShowRule(AppContext& ctx, int number) {
    if (number == 0 || number > Working(ctx).RuleCount) {
        ClearRulePage(ctx);
        return;
    }
    MainView& v = *ctx.view;
    ctx.rules.CurrentRule = number;
    RuleSet& w = Working(ctx);
    Rule& r = w[number];
    ShowRuleEnabled(ctx, r.Enabled);
    v.setText(ctl::txtRuleName, r.Name);
    SetComboText(v, ctl::cboRuleAccount, r.Account);
    r.JoinDescription();
    v.setText(ctl::txtRuleDescription, r.Description[0]);
    if (r.Action >= 1 && r.Action <= 3)
        v.setOptionIndex(ctl::optRuleAction, r.Action);
    else
        v.setOptionIndex(ctl::optRuleAction, 0);
    v.setChecked(ctl::chkRuleNotify, w.Show == 1 ? 1 : 0);
    v.setChecked(ctl::chkRuleNotifyNew, w.ShowNew == 1 ? 1 : 0);
    v.setText(ctl::txtRuleNotifyTime, QString::number(w.Time));

    const int entries = r.DescCount;
    ShowEntryCount(ctx, entries);
    r.RedoCount = entries;
    if (entries >= 1)
        PutEntryIntoInputs(ctx, entries);
    else
        ResetInputs(ctx);

    const bool attachment = ComboText(v, ctl::cboWhere) == Attachment;
    v.setEnabled(UpdateButton("Update"),
                 attachment || !v.text(ctl::txtCriteria).trimmed().isEmpty());
    v.setEnabled(UpdateButton("Clear"), !r.Description[0].isEmpty());
    v.setEnabled(UpdateButton("Undo"), entries >= 1);
    v.setEnabled(UpdateButton("Redo"), false);
    v.setEnabled(ctl::cboBoolean, entries >= 1);
    v.setEnabled(ctl::fraRules, w.RuleCount >= 1 && ctx.accounts.AcntNum >= 1);
    v.setEnabled(RuleButton("RulesDelete"), w.RuleCount >= 1);
    FillRuleList(ctx);
    SetMoveButtons(ctx);
}

void FillCondition(AppContext& ctx, const QString& where) {
    MainView& v = *ctx.view;
    const QString kept = ComboText(v, ctl::cboCondition);
    QStringList conditions;
    QString fallback, prompt;
    if (where == QLatin1String("From") || where == QLatin1String("To")) {
        conditions = {"Contains", "Equals"};
        prompt = QStringLiteral("Enter Names or Addresses...");
    } else if (where == QLatin1String("Subject") || where == QLatin1String("Body")) {
        conditions = {"Contains", "Equals"};
        prompt = QStringLiteral("Enter Text...");
    } else if (where == Attachment) {
        conditions = {"IsPresent"};
        prompt = QStringLiteral("Attachment Requires No Text...");
    } else if (where == QLatin1String("Size")) {
        conditions = {"Equals", "GreaterThan", "LessThan"};
        prompt = QStringLiteral("Enter Number in KB...");
    } else {
        return;
    }
    v.setItems(ctl::cboCondition, conditions);
    SetComboText(v, ctl::cboCondition, conditions.contains(kept) ? kept : conditions.first());
    v.setCaption(ctl::lblCriteria, prompt);
    const bool attachment = where == Attachment;
    if (attachment)
        v.setText(ctl::txtCriteria, QString());
    const bool on = !attachment && Working(ctx).RuleCount >= 1;
    for (const auto& name : {ctl::cboCondition, ctl::lblCriteria, ctl::txtCriteria})
        v.setEnabled(name, on);
}

bool RulesDirty(const AppContext& ctx) {
    const RuleSet& w = ctx.rules.WorkingRules;
    const RuleSet& live = ctx.rules.LiveRules;
    if (w.RuleCount != live.RuleCount)
        return true;
    for (int n = 1; n <= w.RuleCount; ++n) {
        if (n >= w.rules.size() || n >= live.rules.size())
            return true;
        if (!SameRule(w[n], live[n], w[n].DescCount))
            return true;
    }
    return w.Show != live.Show || w.ShowNew != live.ShowNew || w.Time != live.Time;
}

void CheckRulesDirty(AppContext& ctx) {
    MainView& v = *ctx.view;
    const bool dirty = RulesDirty(ctx);
    const bool show = Working(ctx).Show == 1;
    for (const auto& name : {ctl::chkRuleNotifyNew, ctl::lblRuleNotifyTime, ctl::txtRuleNotifyTime})
        v.setEnabled(name, show);
    v.setEnabled(Element(ctl::tbrButtons, ctl::SaveRules), dirty);
    v.setEnabled(Element(ctl::tbrButtons, ctl::CancelRules), dirty);
    // A dirty page can be left only by saving or cancelling.
    v.setEnabled(ctl::fraMainButtons, !dirty);
}

void UpdateDescription(AppContext& ctx) {
    if (!HasCurrent(ctx))
        return;
    MainView& v = *ctx.view;
    Rule& r = Current(ctx);
    if (r.DescCount >= MaxRuleEntries) {
        ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Maximum Entries"),
                            QStringLiteral("Maximum Reached!") + CRLF + CRLF +
                                QStringLiteral("The Maximum number of entries is") +
                                QString(10, QLatin1Char(' ')) + CRLF +
                                QStringLiteral("limited to 10.") + CRLF + CRLF +
                                QStringLiteral("Please try adding another Rule") + CRLF +
                                QStringLiteral("using the same conditions.") + CRLF,
                            BoxIcon::Information, BoxButtons::Ok);
        return;
    }
    v.setEnabled(UpdateButton("Undo"), true);
    v.setEnabled(UpdateButton("Clear"), true);
    v.setEnabled(ctl::cboBoolean, true);
    const int m = r.DescCount + 1;
    r.DescCount = m;
    r.RedoCount = std::max(r.RedoCount, m);
    ShowEntryCount(ctx, m);
    if (m == r.RedoCount)
        v.setEnabled(UpdateButton("Redo"), false);

    const QString where = ComboText(v, ctl::cboWhere);
    const QString condition = ComboText(v, ctl::cboCondition);
    const QString criteria = v.text(ctl::txtCriteria).trimmed();
    const QString boolean = ComboText(v, ctl::cboBoolean);
    QString entry;
    if (m > 1 && !boolean.isEmpty() && boolean != QLatin1String(" "))
        entry = boolean + QLatin1Char(' ');
    entry += where + QLatin1Char(' ') + condition +
             (v.checked(ctl::chkNot) == 1 ? QStringLiteral(" NOT ") : QStringLiteral(" ")) +
             criteria + QLatin1Char(' ');
    r.Description[m] = entry;
    ApplyConjunction(ctx);
}

void ClearDescription(AppContext& ctx) {
    if (!HasCurrent(ctx))
        return;
    MainView& v = *ctx.view;
    Rule& r = Current(ctx);
    // Undone entries go too: after a clear, Redo has nothing to bring back,
    // though RedoCount keeps the highest count reached.
    for (int m = 0; m <= MaxRuleEntries; ++m)
        r.Description[m].clear();
    r.DescCount = 0;
    for (const char* key : {"Update", "Clear", "Undo", "Redo"})
        v.setEnabled(UpdateButton(key), false);
    ShowEntryCount(ctx, 0);
    v.setText(ctl::txtRuleDescription, QString());
    ResetInputs(ctx);
    CheckRulesDirty(ctx);
}

void UndoDescription(AppContext& ctx) {
    if (!HasCurrent(ctx) || Current(ctx).DescCount < 1)
        return;
    MainView& v = *ctx.view;
    Rule& r = Current(ctx);
    // The entry stays in its slot for Redo; only the count shrinks.
    r.DescCount -= 1;
    ShowEntryCount(ctx, r.DescCount);
    const bool any = r.DescCount > 0;
    v.setEnabled(ctl::cboBoolean, any);
    v.setEnabled(UpdateButton("Clear"), any);
    v.setEnabled(UpdateButton("Undo"), any);
    if (any)
        PutEntryIntoInputs(ctx, r.DescCount);
    v.setEnabled(UpdateButton("Redo"), true);
    ShowJoined(ctx);
    CheckRulesDirty(ctx);
}

void RedoDescription(AppContext& ctx) {
    if (!HasCurrent(ctx))
        return;
    Rule& r = Current(ctx);
    MainView& v = *ctx.view;
    if (!CanRedo(r)) {
        v.setEnabled(UpdateButton("Redo"), false);
        return;
    }
    r.DescCount += 1;
    ShowEntryCount(ctx, r.DescCount);
    v.setEnabled(UpdateButton("Undo"), true);
    v.setEnabled(UpdateButton("Clear"), true);
    v.setEnabled(ctl::cboBoolean, true);
    v.setEnabled(UpdateButton("Redo"), CanRedo(r));
    PutEntryIntoInputs(ctx, r.DescCount);
    ShowJoined(ctx);
    CheckRulesDirty(ctx);
}

void AddRule(AppContext& ctx) {
    MainView& v = *ctx.view;
    if (v.items(ctl::cboWhere).isEmpty())
        ArrangeRulePage(ctx);
    RuleSet& w = Working(ctx);
    // The other rules keep their unsaved edits: only room is made.
    const int n = w.RuleCount + 1;
    if (w.rules.size() <= n)
        w.rules.resize(n + 1);
    w.RuleCount = n;
    Rule& r = w[n];
    r = Rule();
    r.Enabled = 1;
    r.Name = QStringLiteral("Rule%1").arg(n);
    r.Account = AllAccounts;
    r.Action = 2;
    ctx.rules.CurrentRule = n;
    SetRulePageEnabled(ctx, n);
    ShowRule(ctx, n);
    v.setFocus(ctl::txtRuleName);
    CheckRulesDirty(ctx);
}

void DeleteRule(AppContext& ctx) {
    if (!HasCurrent(ctx))
        return;
    const QString name = Current(ctx).Name;
    const BoxAnswer answer = ctx.svc.boxes->show(
        QStringLiteral("Delete Rule - Proceed With Caution"),
        QStringLiteral("You are about to delete the following Rule...") +
            QString(10, QLatin1Char(' ')) + CRLF + QStringLiteral("Rule Name:  '") + name +
            QStringLiteral("'") + CRLF + CRLF +
            QStringLiteral("Please proceed with caution since this action") + CRLF +
            QStringLiteral("is NOT reversible!") + CRLF + CRLF +
            QStringLiteral("Would you like to proceed?") + CRLF,
        BoxIcon::Critical, BoxButtons::YesNo);
    if (answer != BoxAnswer::Yes)
        return;
    RuleSet& w = Working(ctx);
    for (int n = ctx.rules.CurrentRule; n < w.RuleCount; ++n)
        w[n] = std::move(w[n + 1]);
    w.RuleCount -= 1;
    w.rules.resize(w.RuleCount + 1);
    int& current = ctx.rules.CurrentRule;
    current = std::min(current, w.RuleCount);
    if (current == 0 && w.RuleCount > 0)
        current = 1;
    // The delete saves every other unsaved edit of the page with it.
    if (!WriteWorkingRules(ctx, RulesFilePath(ctx))) {
        FillRuleList(ctx);
        SetRulePageEnabled(ctx, w.RuleCount);
        ShowRule(ctx, current);
        CheckRulesDirty(ctx);
        return;
    }
    LoadRulePage(ctx);
}

bool StoreRules(AppContext& ctx) {
    MainView& v = *ctx.view;
    if (HasCurrent(ctx)) {
        const Rule& r = Current(ctx);
        if (r.Name.isEmpty()) {
            ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Rule Name Error"),
                                QStringLiteral("Rule Name Error...") + CRLF + CRLF +
                                    QStringLiteral("The Rule Name can not be blank.") +
                                    QString(20, QLatin1Char(' ')) + CRLF + CRLF +
                                    QStringLiteral("Please re-enter an appropriate Rule Name.") +
                                    CRLF + CRLF,
                                BoxIcon::Critical, BoxButtons::Ok);
            v.setFocus(ctl::txtRuleName);
            return false;
        }
        if (r.DescCount < 1) {
            ctx.svc.boxes->show(
                ctx.shell.AppTitle + QStringLiteral(" - Rule Description Error"),
                QStringLiteral("Rule Description Error...") + CRLF + CRLF +
                    QStringLiteral("The Rule Description can not be blank.") +
                    QString(10, QLatin1Char(' ')) + CRLF + CRLF +
                    QStringLiteral("Please enter the appropriate search text") + CRLF +
                    QStringLiteral("in the Criteria textbox and click 'Update") + CRLF +
                    QStringLiteral("Description' to finish defining the Rule.") + CRLF + CRLF,
                BoxIcon::Critical, BoxButtons::Ok);
            v.setFocus(ctl::txtCriteria);
            return false;
        }
    }
    if (!WriteWorkingRules(ctx, RulesFilePath(ctx))) {
        CheckRulesDirty(ctx);
        return false;
    }
    LoadRulePage(ctx);
    CheckRulesDirty(ctx);
    return true;
}

void MoveRule(AppContext& ctx, bool up) {
    if (!HasCurrent(ctx))
        return;
    RuleSet& w = Working(ctx);
    const int n = ctx.rules.CurrentRule;
    const int other = up ? n - 1 : n + 1;
    if (other < 1 || other > w.RuleCount)
        return;
    std::swap(w[n], w[other]);
    ctx.rules.CurrentRule = other;
    FillRuleList(ctx);
    ShowRule(ctx, other);
    CheckRulesDirty(ctx);
}

bool WriteWorkingRules(AppContext& ctx, const QString& path) {
    const RuleSet before = ctx.rules.LiveRules;
    WatchedProfiles watched(*ctx.svc.profiles);
    ProfileFiles* const profiles = std::exchange(ctx.svc.profiles, &watched);
    WriteRules(ctx, path);
    ctx.svc.profiles = profiles;
    if (watched.written)
        return true;
    // The box has said which file and why; what is in force is what the
    // file still holds, and the page keeps the edits.
    ctx.rules.LiveRules = before;
    return false;
}

bool RulesToolbarClick(AppContext& ctx, const QString& toolbar, const QString& key) {
    if (toolbar == ctl::tbrRules) {
        if (key == QLatin1String("RulesAdd"))
            AddRule(ctx);
        else if (key == QLatin1String("RulesDelete"))
            DeleteRule(ctx);
        else if (key == QLatin1String("RulesImport"))
            ImportRules(ctx);
        else if (key == QLatin1String("RulesRename"))
            RenameRuleFile(ctx);
        return true;
    }
    if (toolbar == ctl::tbrRuleUpdate) {
        if (key == QLatin1String("Update"))
            UpdateDescription(ctx);
        else if (key == QLatin1String("Clear"))
            ClearDescription(ctx);
        else if (key == QLatin1String("Undo"))
            UndoDescription(ctx);
        else if (key == QLatin1String("Redo"))
            RedoDescription(ctx);
        return true;
    }
    if (toolbar == ctl::tbrMoveRules) {
        MoveRule(ctx, key == QLatin1String("Up"));
        return true;
    }
    return false;
}

bool RuleControlChanged(AppContext& ctx, const QString& control) {
    static const QStringList page = {
        ctl::lstRules,    ctl::lstRulesEnabled, ctl::txtRuleName,      ctl::cboRuleAccount,
        ctl::cboBoolean,  ctl::cboWhere,        ctl::cboCondition,     ctl::chkNot,
        ctl::txtCriteria, ctl::chkRuleNotify,   ctl::chkRuleNotifyNew, ctl::txtRuleNotifyTime};
    const bool option = control.startsWith(ctl::optRuleAction + QLatin1Char('('));
    if (!option && !page.contains(control))
        return false;
    MainView& v = *ctx.view;
    RuleSet& w = Working(ctx);
    if (control == ctl::chkRuleNotify) {
        w.Show = v.checked(control);
    } else if (control == ctl::chkRuleNotifyNew) {
        w.ShowNew = v.checked(control);
    } else if (control == ctl::txtRuleNotifyTime) {
        NotifyTimeChanged(ctx);
    } else if (control == ctl::cboWhere) {
        const QString where = ComboText(v, ctl::cboWhere);
        FillCondition(ctx, where);
        if (where == Attachment)
            v.setEnabled(UpdateButton("Update"), true);
    } else if (control == ctl::txtCriteria) {
        v.setEnabled(UpdateButton("Update"), ComboText(v, ctl::cboWhere) == Attachment ||
                                                 !v.text(ctl::txtCriteria).trimmed().isEmpty());
    } else if (control == ctl::lstRules) {
        ShowSelectedRule(ctx);
    } else if (control == ctl::lstRulesEnabled) {
        RuleTicked(ctx);
    } else if (!HasCurrent(ctx)) {
        // The rest edit the rule shown.
    } else if (control == ctl::txtRuleName) {
        Current(ctx).Name = v.text(control);
        FillRuleList(ctx);
    } else if (control == ctl::cboRuleAccount) {
        const QString account = ComboText(v, control);
        if (!account.isEmpty())
            Current(ctx).Account = account;
    } else if (option) {
        const int action = v.optionIndex(ctl::optRuleAction);
        if (action >= 1 && action <= 3)
            Current(ctx).Action = action;
    } else if (control == ctl::cboBoolean) {
        ApplyConjunction(ctx);
        return true;
    }
    CheckRulesDirty(ctx);
    return true;
}

void SaveRules(AppContext& ctx) {
    StoreRules(ctx);
}

void ShowCurrentRule(AppContext& ctx) {
    LoadRulePage(ctx);
}

void FillRuleAccounts(AppContext& ctx) {
    MainView& v = *ctx.view;
    QStringList names = {AllAccounts};
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n)
        names.append(ctx.accounts[n].AcntName);
    v.setItems(ctl::cboRuleAccount, names);
    SetComboText(v, ctl::cboRuleAccount,
                 HasCurrent(ctx) ? Current(ctx).Account : QString(AllAccounts));
    v.setEnabled(ctl::fraRules, Working(ctx).RuleCount >= 1 && ctx.accounts.AcntNum >= 1);
}

} // namespace velmora
