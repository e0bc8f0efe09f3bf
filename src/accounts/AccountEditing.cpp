#include "accounts/AccountEditing.h"

#include "app/Pages.h"
#include "context/AppContext.h"
#include "context/PageCalls.h"
#include "context/ShellCalls.h"
#include "messages/MessageList.h"
#include "options/ClientChoice.h"
#include "options/Setting.h"
#include "platform/Controls.h"
#include "platform/MessageBoxes.h"
#include "platform/SettingsStore.h"

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");
const QString DefaultClientText = QStringLiteral("Using Default Email Client");
const QString DefaultSoundText = QStringLiteral("Using Default Sound File");

constexpr quint32 BoxColours[ctl::ColourBoxes] = {0xFF0000, 0xFFFF00, 0x00FF00,
                                                  0xFF00FF, 0x0000FF, 0x000000};
const char* const BoxNames[ctl::ColourBoxes] = {"Blue", "Cyan", "Green", "Magenta", "Red", "Black"};

QString Blanks(int count) {
    return QString(count, QLatin1Char(' '));
}

// What follows the last separator of a path.
QString FileNamePart(const QString& path) {
    const qsizetype cut = std::max(path.lastIndexOf(QLatin1Char('\\')), path.lastIndexOf('/'));
    return path.mid(cut + 1);
}

QString Backward() {
    return Button(ctl::tbrMoveAccounts, QStringLiteral("Backward"));
}

QString Forward() {
    return Button(ctl::tbrMoveAccounts, QStringLiteral("Forward"));
}

// A caption or status text carries the name and what a check added to it:
// without the name (any case), the rest stays.
QString Remainder(const QString& text, const QString& name) {
    if (name.isEmpty())
        return text;
    return QString(text).remove(name, Qt::CaseInsensitive);
}

void SetDirtyButtons(AppContext& ctx, bool dirty) {
    MainView& v = *ctx.view;
    v.setEnabled(Element(ctl::tbrButtons, ctl::SaveAccount), dirty);
    v.setEnabled(Element(ctl::tbrButtons, ctl::CancelAccount), dirty);
    v.setEnabled(ctl::tbrAcnts, !dirty);
    v.setEnabled(ctl::tbrMainButtons, !dirty);
    if (dirty) {
        v.setEnabled(Backward(), false);
        v.setEnabled(Forward(), false);
    } else {
        SetMoveButtons(ctx);
    }
}

void ShowClient(AppContext& ctx, int n) {
    MainView& v = *ctx.view;
    const QString browse = Button(Element(ctl::tbrClient, 1), QStringLiteral("Browse"));
    const Account& a = ctx.accounts[n];
    if (ctx.shell.DefaultClientValid) {
        v.setText(ctl::txtAcntClient, DefaultClientText);
        v.setEnabled(ctl::txtAcntClient, false);
        v.setEnabled(browse, false);
        v.setCaption(ctl::lblClientName, FileNamePart(ctx.options.DefaultClient));
        ShowClientIcon(ctx, 0);
    } else {
        v.setText(ctl::txtAcntClient, a.AcntClient);
        v.setEnabled(ctl::txtAcntClient, true);
        v.setEnabled(browse, true);
        v.setCaption(ctl::lblClientName,
                     a.AcntClientValid ? FileNamePart(a.AcntClient) : QString());
        if (a.AcntClientValid && n >= 1) {
            ExtractClientIcon(ctx, a.AcntClient, n);
            ShowClientIcon(ctx, n);
        } else {
            ShowClientIcon(ctx, -1);
        }
    }
}

void ShowSound(AppContext& ctx, int n) {
    MainView& v = *ctx.view;
    const Account& a = ctx.accounts[n];
    if (ctx.shell.DefaultSoundValid) {
        v.setText(ctl::txtAcntSound, DefaultSoundText);
        v.setEnabled(ctl::txtAcntSound, false);
        v.setCaption(ctl::lblSoundName, FileNamePart(ctx.options.DefaultSound));
        v.setEnabled(Button(Element(ctl::tbrSound, 1), QStringLiteral("Browse")), false);
        v.setVisible(ctl::chkAcntSoundOn, false);
        v.setVisible(ctl::lblAcntPlaySound, true);
    } else {
        v.setText(ctl::txtAcntSound, a.AcntSound);
        v.setEnabled(ctl::txtAcntSound, true);
        v.setCaption(ctl::lblSoundName, a.AcntSoundValid ? FileNamePart(a.AcntSound) : QString());
        v.setEnabled(Button(Element(ctl::tbrSound, 1), QStringLiteral("Browse")), true);
        v.setVisible(ctl::chkAcntSoundOn, a.AcntSoundValid);
        v.setVisible(ctl::lblAcntPlaySound, false);
    }
    v.setCaption(ctl::lblAcntRunSize,
                 QStringLiteral("Run: ") + (ctx.options.RunSize == 3 ? QStringLiteral("Maximized")
                                                                     : QStringLiteral("Normal")));
    v.setCaption(ctl::lblAcntPlaySound, ctx.options.PlaySound == 1 ? QStringLiteral("Sound: On")
                                                                   : QStringLiteral("Sound: Off"));
}

BoxAnswer Box(AppContext& ctx, const QString& title, const QString& text, BoxButtons buttons) {
    return ctx.svc.boxes->show(title, text, BoxIcon::Critical, buttons);
}

// Runs `write` and tells whether the store reported a file it could not
// write meanwhile; whoever listened before still hears it.
template <typename Write> bool ToldOfProblem(SettingsStore& settings, Write write) {
    bool told = false;
    auto previous = settings.onProblem;
    settings.onProblem = [&told, &previous](const FileProblem& problem) {
        told = told || problem.kind == FileProblem::NotWritten;
        if (previous)
            previous(problem);
    };
    write();
    settings.onProblem = previous;
    return told;
}

void RenameInRules(RuleSet& rules, const QString& from, const QString& to) {
    for (int i = 1; i <= rules.RuleCount; ++i) {
        if (rules[i].Account == from)
            rules[i].Account = to;
    }
}

} // namespace

void ArrangeAccountsPage(AppContext& ctx) {
    MainView& v = *ctx.view;
    v.setMaxLength(ctl::txtAcntName, 20);
    v.setMaxLength(ctl::txtAcntPort, 10);
    v.setCaption(ctl::chkAcntEnabled, QStringLiteral("Enable Account"));
    v.setCaption(ctl::chkAcntSecure, QStringLiteral("Server Requires Secure Connection"));
    v.setCaption(ctl::chkAcntSoundOn, QStringLiteral("Sound On"));
    v.setToolTip(ctl::txtAcntName, QStringLiteral("Account Name: Maximum of 20 characters."));
    v.setToolTip(ctl::txtAcntServer, QStringLiteral("Server Example: Pop3.ServiceProvider.com"));
    v.setToolTip(ctl::chkAcntSecure, QStringLiteral("Server needs a Secure Connection using SSL."));
    v.setToolTip(ctl::txtAcntPort,
                 QStringLiteral("Port: Usually 110 for Normal, or 995 for Secure."));
    v.setToolTip(ctl::txtAcntLoginID, QStringLiteral("ID used to Login to Service Provider."));
    v.setCaption(ctl::fraColourBox, QStringLiteral("Click Colour Box"));
    for (int box = 1; box <= ctl::ColourBoxes; ++box) {
        v.setColour(Element(ctl::lblColourBox, box), BoxColours[box - 1]);
        v.setCaption(Element(ctl::lblColourBox, box), QLatin1String(BoxNames[box - 1]));
    }
    v.setVisible(ctl::fraColourBox, false);
    for (const ToolbarButton& b : AccountPageButtons()) {
        v.setCaption(Button(b.toolbar, b.key), b.caption);
        v.setToolTip(Button(b.toolbar, b.key), b.tip);
    }
}

namespace {

// The page's controls from the working copy of account n.
void FillControls(AppContext& ctx, int n) {
    AccountStore& acc = ctx.accounts;
    MainView& v = *ctx.view;
    const AccountEdit& e = acc.edit(n);
    v.setChecked(ctl::chkAcntEnabled, e.EditEnabled);
    v.setText(ctl::txtAcntName, e.EditName);
    v.setText(ctl::txtAcntServer, e.EditServer);
    v.setChecked(ctl::chkAcntSecure, e.EditSecure);
    v.setText(ctl::txtAcntPort, e.EditPort);
    v.setText(ctl::txtAcntLoginID, e.EditLoginID);
    v.setText(ctl::txtAcntPassword, e.EditPassword);
    v.setChecked(ctl::chkAcntSoundOn, e.EditSoundOn);
    v.setColour(ctl::txtAcntColour, quint32(e.EditColour));
}

} // namespace

void ShowAccount(AppContext& ctx, int n) {
    AccountStore& acc = ctx.accounts;
    MainView& v = *ctx.view;
    acc.AcntPageLoading = true;
    acc.CopyAccountToEdit(n);
    FillControls(ctx, n);

    acc.AcntDirty = false;
    v.setEnabled(Element(ctl::tbrButtons, ctl::SaveAccount), false);
    v.setEnabled(Element(ctl::tbrButtons, ctl::CancelAccount), false);
    v.setEnabled(ctl::tbrAcnts, true);
    v.setEnabled(ctl::TabStripAcnts, true);
    // Cancel after a save that could not be written leaves the page.
    v.setEnabled(ctl::tbrMainButtons, true);

    ShowClient(ctx, n);
    ShowSound(ctx, n);
    if (n > 0)
        SetAccountTabImage(ctx, n);
    SetMoveButtons(ctx);
    acc.AcntPageLoading = false;
}

void AccountDirtyCheck(AppContext& ctx) {
    AccountStore& acc = ctx.accounts;
    if (acc.AcntPageLoading)
        return;
    MainView& v = *ctx.view;
    const Account& r = acc[acc.AcntCurrent];
    const AccountEdit& e = acc.edit(acc.AcntCurrent);
    const QString client = v.text(ctl::txtAcntClient);
    const QString sound = v.text(ctl::txtAcntSound);
    acc.AcntDirty = e.EditEnabled != r.AcntEnabled || v.text(ctl::txtAcntName) != r.AcntName ||
                    v.text(ctl::txtAcntServer) != r.AcntServer || e.EditSecure != r.AcntSecure ||
                    v.text(ctl::txtAcntPort) != r.AcntPort ||
                    v.text(ctl::txtAcntLoginID) != r.AcntLoginID ||
                    v.text(ctl::txtAcntPassword) != r.AcntPassword ||
                    v.colour(ctl::txtAcntColour) != (quint32(r.AcntColour) & 0x00FFFFFFu) ||
                    (client != DefaultClientText && client != r.AcntClient) ||
                    (sound != DefaultSoundText && sound != r.AcntSound) ||
                    (sound != DefaultSoundText && e.EditSoundOn != r.AcntSoundOn);
    SetDirtyButtons(ctx, acc.AcntDirty);
}

bool AccountControlChanged(AppContext& ctx, const QString& control) {
    AccountStore& acc = ctx.accounts;
    AccountEdit& e = acc.edit(acc.AcntCurrent);
    MainView& v = *ctx.view;
    struct TextField {
        QLatin1String control;
        QString AccountEdit::*field;
    };
    static const TextField texts[] = {
        {ctl::txtAcntName, &AccountEdit::EditName},
        {ctl::txtAcntServer, &AccountEdit::EditServer},
        {ctl::txtAcntPort, &AccountEdit::EditPort},
        {ctl::txtAcntLoginID, &AccountEdit::EditLoginID},
        {ctl::txtAcntPassword, &AccountEdit::EditPassword},
        {ctl::txtAcntClient, &AccountEdit::EditClient},
        {ctl::txtAcntSound, &AccountEdit::EditSound},
    };
    bool known = false;
    for (const TextField& t : texts) {
        if (control == t.control) {
            e.*t.field = v.text(control);
            known = true;
        }
    }
    if (control == ctl::chkAcntEnabled)
        e.EditEnabled = v.checked(control);
    else if (control == ctl::chkAcntSecure)
        e.EditSecure = v.checked(control);
    else if (control == ctl::chkAcntSoundOn)
        e.EditSoundOn = v.checked(control);
    else if (!known)
        return false;
    // The client and sound boxes show at once what their text names.
    if (control == ctl::txtAcntClient)
        AccountClientChanged(ctx);
    else if (control == ctl::txtAcntSound)
        AccountSoundChanged(ctx);
    // The placeholder of an empty list is no account to edit.
    if (acc.AcntNum > 0)
        AccountDirtyCheck(ctx);
    return true;
}

bool StoreAccount(AppContext& ctx) {
    AccountStore& acc = ctx.accounts;
    MainView& v = *ctx.view;
    const int c = acc.AcntCurrent;
    if (c < 1)
        return false;
    const AccountEdit& e = acc.edit(c);
    if (e.EditName.isEmpty()) {
        Box(ctx, QStringLiteral("Blank Account Name"),
            QStringLiteral("The Account Name box is blank. Please") + Blanks(10) + CRLF +
                QStringLiteral("re-enter a name for this Account.") + CRLF + CRLF,
            BoxButtons::Ok);
        v.setFocus(ctl::txtAcntName);
        return false;
    }
    int same = 0;
    for (int i = 1; i <= acc.AcntNum; ++i) {
        if (acc.edit(i).EditName.toUpper() == e.EditName.toUpper())
            ++same;
    }
    if (same > 1) {
        Box(ctx, QStringLiteral("Duplicate Account Name"),
            QStringLiteral("The following Account Name is already used.") + Blanks(10) + CRLF +
                QStringLiteral("Account Name: '") + e.EditName + QStringLiteral("'") + CRLF + CRLF +
                QStringLiteral("Duplicate Account Names are not allowed.") + CRLF +
                QStringLiteral("Please re-enter a name for this Account.") + CRLF + CRLF,
            BoxButtons::Ok);
        v.setFocus(ctl::txtAcntName);
        return false;
    }

    // Kept to undo everything if the tree cannot be written.
    const Account before = acc[c];
    const RuleSet liveBefore = ctx.rules.LiveRules;
    const RuleSet workingBefore = ctx.rules.WorkingRules;

    const QString oldName = acc[c].AcntName;
    RenameInRules(ctx.rules.LiveRules, oldName, e.EditName);
    RenameInRules(ctx.rules.WorkingRules, oldName, e.EditName);
    TabStripView& emailTabs = v.tabs(TabStrip::Email);
    TabStripView& acntTabs = v.tabs(TabStrip::Accounts);
    const QString emailRest = Remainder(emailTabs.caption(c), oldName);
    const QString acntRest = Remainder(acntTabs.caption(c), oldName);
    const QString statusRest = Remainder(acc[c].AcntStatusText, oldName);

    Account& a = acc[c];
    a.AcntEnabled = e.EditEnabled;
    a.AcntName = e.EditName;
    a.AcntServer = e.EditServer;
    a.AcntSecure = e.EditSecure;
    a.AcntPort = e.EditPort;
    a.AcntLoginID = e.EditLoginID;
    a.AcntPassword = e.EditPassword;
    a.AcntColour = e.EditColour;
    a.AcntColourIndex = e.EditColourIndex;
    // A path of the account survives while a default hides it.
    if (!ctx.shell.DefaultClientValid) {
        a.AcntClient = e.EditClient;
        a.AcntClientValid = IsValidClient(*ctx.svc.files, a.AcntClient);
    }
    if (!ctx.shell.DefaultSoundValid) {
        a.AcntSound = e.EditSound;
        a.AcntSoundOn = e.EditSoundOn;
        a.AcntSoundValid = IsValidSound(*ctx.svc.files, a.AcntSound);
    }

    SettingsStore& settings = *ctx.svc.settings;
    const bool told = ToldOfProblem(settings, [&] { acc.SaveAccountFields(settings, c); });
    if (!acc.StoredAsShown(settings, c)) {
        // The tree keeps the old account: so do the record and the rules,
        // and the page stays dirty with what was typed.
        acc[c] = before;
        ctx.rules.LiveRules = liveBefore;
        ctx.rules.WorkingRules = workingBefore;
        if (!told)
            ctx.svc.boxes->show(
                ctx.shell.AppTitle + QStringLiteral(" - Account Not Saved"),
                QStringLiteral("The Account could not be saved.") + Blanks(15) + CRLF + CRLF +
                    QStringLiteral("The changes are still on the page.") + CRLF + CRLF,
                BoxIcon::Critical, BoxButtons::Ok);
        AccountDirtyCheck(ctx);
        return false;
    }
    emailTabs.setCaption(c, a.AcntName + emailRest);
    acntTabs.setCaption(c, a.AcntName + acntRest);
    a.AcntStatusText = a.AcntName + statusRest;
    v.status().setPanelText(1, a.AcntStatusText);

    FillRuleAccounts(ctx);
    AccountDirtyCheck(ctx);
    acntTabs.select(c);
    return true;
}

void SaveAccount(AppContext& ctx) {
    StoreAccount(ctx);
}

void CancelAccountEdit(AppContext& ctx) {
    ShowAccount(ctx, ctx.accounts.AcntCurrent);
}

void AddAccount(AppContext& ctx) {
    AccountStore& acc = ctx.accounts;
    MainView& v = *ctx.view;
    acc.AcntBusy = true;
    int k = 1;
    for (int pass = 0; pass <= acc.AcntNum; ++pass) {
        bool hit = false;
        const QString candidate = (QStringLiteral("New Account") + QString::number(k)).toUpper();
        for (int i = 1; i <= acc.AcntNum && !hit; ++i)
            hit = acc[i].AcntName.toUpper() == candidate;
        if (!hit)
            break;
        ++k;
    }
    const QString name = QStringLiteral("New Account") + QString::number(k);

    const bool first = acc.AcntNum == 0;
    ++acc.AcntNum;
    acc.ResizeAccounts(acc.AcntNum);
    ctx.messages.ResizeAccountStore(acc.AcntNum, ctx.messages.MessageCapacity);
    const int n = acc.AcntCurrent = acc.AcntNum;
    acc.edit(n) = AccountEdit{1, name, {}, 0, QStringLiteral("110"), {}, {}, 255, 5, {}, {}, 1};

    // The placeholder tab of an empty list gives way to the first account.
    for (TabStrip strip : {TabStrip::Email, TabStrip::Accounts}) {
        if (first)
            v.tabs(strip).clear();
        v.tabs(strip).addTab(name, QStringLiteral("MailNo"));
    }
    v.tabs(TabStrip::Accounts).select(n);

    const bool stored = StoreAccount(ctx);
    setting::saveInt(*ctx.svc.settings, setting::SectionSettings, QStringLiteral("AcntNum"),
                     acc.AcntNum);

    v.tabs(TabStrip::Email).setCaption(n, name);
    v.tabs(TabStrip::Accounts).setCaption(n, name);
    if (stored) {
        ShowAccount(ctx, n);
    } else {
        // Not in the tree: the page keeps the new account, dirty, for a
        // save once the file can be written.
        ShowAccount(ctx, n);
        acc.edit(n) = AccountEdit{1, name, {}, 0, QStringLiteral("110"), {}, {}, 255, 5, {}, {}, 1};
        FillControls(ctx, n);
    }

    acc.ResetRunTimeValues(n, ctx.format(ctx.now(), QStringLiteral("h:mm:ss AM/PM")));
    acc[n].AcntStatusText = acc[n].AcntName;
    v.status().setPanelText(1, acc[n].AcntStatusText);
    v.status().setPanelText(3, acc[n].AcntLastCheckText);

    FillRuleAccounts(ctx);
    SetAccountState(ctx);
    v.setFocus(ctl::txtAcntName);
    if (!stored)
        AccountDirtyCheck(ctx);
    acc.AcntBusy = false;
}

void TabStripAcnts_Click(AppContext& ctx) {
    AccountStore& acc = ctx.accounts;
    MainView& v = *ctx.view;
    if (acc.AcntBusy || acc.AcntNum == 0)
        return;
    if (!acc.AcntPageLoading && v.windowState() == WindowState::Normal)
        v.setFocus(ctl::txtAcntName);
    TabStripView& tabs = v.tabs(TabStrip::Accounts);
    const int chosen = tabs.selected();
    if (!acc.AcntDirty) {
        acc.AcntCurrent = chosen;
        ShowAccount(ctx, chosen);
        return;
    }
    acc.AcntBusy = true;
    if (chosen != acc.AcntCurrent) {
        const int old = acc.AcntCurrent;
        tabs.select(old);
        const BoxAnswer answer =
            Box(ctx, QStringLiteral("Changes Not Saved!"),
                QStringLiteral("The changes made to the following Account") + CRLF +
                    QStringLiteral("have not been saved.") + CRLF +
                    QStringLiteral("Account Name: '") + tabs.caption(old) + QStringLiteral("'") +
                    CRLF + CRLF + QStringLiteral("How would you like to proceed?") + CRLF + CRLF +
                    QStringLiteral("'Yes' to save the Account changes now.") + CRLF +
                    QStringLiteral("'No' to just return to the same Account.") + CRLF +
                    QStringLiteral("'Cancel' to discard all changes to this Account.") +
                    Blanks(10) + CRLF + CRLF,
                BoxButtons::YesNoCancel);
        if (answer == BoxAnswer::Yes || answer == BoxAnswer::Cancel) {
            // A save refused by its checks still moves on: its changes go.
            if (answer == BoxAnswer::Yes)
                StoreAccount(ctx);
            ShowAccount(ctx, old);
            acc.AcntCurrent = chosen;
            tabs.select(chosen);
            ShowAccount(ctx, chosen);
        }
    }
    acc.AcntBusy = false;
}

void tbrColour_Click(AppContext& ctx) {
    ctx.view->setVisible(ctl::fraColourBox, true);
}

void lblColourBox_Click(AppContext& ctx, int box) {
    if (box < 1 || box > ctl::ColourBoxes)
        return;
    AccountStore& acc = ctx.accounts;
    AccountEdit& e = acc.edit(acc.AcntCurrent);
    e.EditColourIndex = box;
    e.EditColour = qint32(BoxColours[box - 1]);
    ctx.view->setColour(ctl::txtAcntColour, BoxColours[box - 1]);
    if (acc.AcntNum > 0)
        AccountDirtyCheck(ctx);
    ctx.view->setVisible(ctl::fraColourBox, false);
}

void fraAcnt_MouseMove(AppContext& ctx) {
    ctx.view->setVisible(ctl::fraColourBox, false);
}

void SetMoveButtons(AppContext& ctx) {
    const AccountStore& acc = ctx.accounts;
    MainView& v = *ctx.view;
    const bool movable = acc.AcntNum >= 2 && !acc.AcntDirty;
    v.setEnabled(Backward(), movable && acc.AcntCurrent != 1);
    v.setEnabled(Forward(), movable && acc.AcntCurrent != acc.AcntNum);
}

} // namespace velmora
