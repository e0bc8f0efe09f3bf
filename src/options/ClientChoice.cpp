#include "options/ClientChoice.h"

#include "accounts/AccountEditing.h"
#include "accounts/AccountStore.h"
#include "checking/CheckCycle.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "options/OptionsEditing.h"
#include "platform/Controls.h"
#include "platform/FileDialogs.h"
#include "platform/Files.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "platform/Shell.h"
#include "platform/SoundPlayer.h"

#include <QFileInfo>

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");

QString Blanks(int count) {
    return QString(count, QLatin1Char(' '));
}

QString ClientKey(int n) {
    return QStringLiteral("MailClient") + QString::number(n);
}

// The dialogs stop the timed checks while they are up.
struct Suspended {
    explicit Suspended(AppContext& ctx) : ctx(ctx) {
        SuspendStartUpTimer(ctx, QStringLiteral("Suspend"));
        SuspendAutoCheck(ctx, QStringLiteral("Suspend"));
    }
    ~Suspended() {
        SuspendStartUpTimer(ctx, QStringLiteral("Restore"));
        SuspendAutoCheck(ctx, QStringLiteral("Restore"));
    }
    AppContext& ctx;
};

// The box of the item: the default's on the Options page, the account's on
// the Accounts page.
QString ClientBox(int item) {
    return item == 0 ? QString(ctl::txtDefaultClient) : QString(ctl::txtAcntClient);
}

QString SoundBox(int item) {
    return item == 0 ? QString(ctl::txtDefaultSound) : QString(ctl::txtAcntSound);
}

// Options page working run size: option 0 is Normal (1), 1 Maximized (3).
int WorkingRunSize(AppContext& ctx) {
    return ctx.view->optionIndex(ctl::optRunSize) == 0 ? 1 : 3;
}

// The box took a chosen path: its page handles it as a typed change.
void BoxChanged(AppContext& ctx, int item, const QString& box) {
    if (item == 0)
        OptionsControlChanged(ctx, box);
    else
        AccountControlChanged(ctx, box);
}

} // namespace

QString PathFileName(const QString& path) {
    const qsizetype cut = std::max(path.lastIndexOf(QLatin1Char('\\')), path.lastIndexOf('/'));
    return path.mid(cut + 1);
}

bool IsValidClient(Files& files, const QString& path) {
    if (path.isEmpty() || !files.FileExists(path))
        return false;
    if (path.endsWith(QLatin1String(".desktop"), Qt::CaseInsensitive))
        return true;
    const QFileInfo info(path);
    return !info.isDir() && info.isExecutable();
}

bool IsValidSound(Files& files, const QString& path) {
    return IsValidFile(files, path, QStringLiteral(".wav"));
}

void ExtractClientIcon(AppContext& ctx, const QString& path, int n) {
    // The window makes the picture; where none can be found it shows the
    // "FolderX" picture under the key.
    ctx.view->setText(ctl::picClientIcon, ClientKey(n) + QLatin1Char('|') + path);
}

void ShowClientIcon(AppContext& ctx, int n) {
    MainView& v = *ctx.view;
    const QString start = Element(ctl::tbrButtons, ctl::StartEmailClient);
    const QString test0 = Button(Element(ctl::tbrClient, 0), QStringLiteral("Test"));
    const QString test1 = Button(Element(ctl::tbrClient, 1), QStringLiteral("Test"));
    if (n == -1) {
        v.setImage(start, QStringLiteral("Folder"));
        v.setCaption(ctl::mnuTrayRunClient, QStringLiteral("S&tart Email Client|#Folder"));
        for (int item = 0; item < 2; ++item) {
            v.setImage(Button(Element(ctl::tbrClient, item), QStringLiteral("Browse")),
                       QStringLiteral("Browse"));
            v.setImage(Button(Element(ctl::tbrClient, item), QStringLiteral("Test")),
                       QStringLiteral("Test"));
        }
        return;
    }
    v.setImage(start, ClientKey(n));
    v.setCaption(ctl::mnuTrayRunClient, QStringLiteral("S&tart Email Client|#") + ClientKey(n));
    v.setImage(Button(Element(ctl::tbrClient, 0), QStringLiteral("Browse")),
               QStringLiteral("Browse"));
    v.setImage(test0, ctx.shell.DefaultClientValid ? ClientKey(n) : QStringLiteral("Test"));
    const bool accountValid =
        n >= 1 && n <= ctx.accounts.AcntNum && ctx.accounts[n].AcntClientValid;
    v.setImage(test1, accountValid ? ClientKey(n) : QStringLiteral("Test"));
    // The window puts the pictures it made on what now names them.
    v.setText(ctl::picClientIcon, QStringLiteral("show"));
}

void RefreshClientIcons(AppContext& ctx) {
    if (ctx.shell.DefaultClientValid)
        ExtractClientIcon(ctx, ctx.options.DefaultClient, 0);
    const int c = ctx.accounts.AcntCurrent;
    if (ctx.shell.DefaultClientValid) {
        ShowClientIcon(ctx, 0);
    } else if (c >= 1 && c <= ctx.accounts.AcntNum && ctx.accounts[c].AcntClientValid) {
        ExtractClientIcon(ctx, ctx.accounts[c].AcntClient, c);
        ShowClientIcon(ctx, c);
    } else {
        ShowClientIcon(ctx, -1);
    }
}

void AccountClientChanged(AppContext& ctx) {
    MainView& v = *ctx.view;
    const int c = ctx.accounts.AcntCurrent;
    if (ctx.shell.DefaultClientValid) {
        v.setCaption(ctl::lblClientName, PathFileName(ctx.options.DefaultClient));
        return;
    }
    const QString text = v.text(ctl::txtAcntClient);
    const bool valid = IsValidClient(*ctx.svc.files, text);
    if (c >= 1 && c <= ctx.accounts.AcntNum)
        ctx.accounts[c].AcntClientValid = valid;
    if (valid) {
        v.setCaption(ctl::lblClientName, PathFileName(text));
        ExtractClientIcon(ctx, text, c);
        ShowClientIcon(ctx, c);
    } else {
        v.setCaption(ctl::lblClientName, QString());
        ShowClientIcon(ctx, -1);
    }
}

void AccountSoundChanged(AppContext& ctx) {
    MainView& v = *ctx.view;
    const int c = ctx.accounts.AcntCurrent;
    if (ctx.shell.DefaultSoundValid) {
        v.setCaption(ctl::lblSoundName, PathFileName(ctx.options.DefaultSound));
        return;
    }
    const QString text = v.text(ctl::txtAcntSound);
    const bool valid = IsValidSound(*ctx.svc.files, text);
    if (c >= 1 && c <= ctx.accounts.AcntNum)
        ctx.accounts[c].AcntSoundValid = valid;
    v.setCaption(ctl::lblSoundName, valid ? PathFileName(text) : QString());
}

void ForgetClientIcon(AppContext& ctx, int n) {
    if (n >= 1)
        ctx.view->setText(ctl::picClientIcon, ClientKey(n) + QLatin1Char('|'));
}

void BrowseClient(AppContext& ctx, int item) {
    MainView& v = *ctx.view;
    QString start = v.text(ClientBox(item));
    // Clients are registered as desktop entries; that is where to look.
    if (start.isEmpty() || (item == 1 && !v.isEnabled(ctl::txtAcntClient)))
        start = QStringLiteral("/usr/share/applications/");
    QString chosen;
    {
        Suspended suspended(ctx);
        chosen = ctx.svc.dialogs->OpenFile(
            QString(), QStringLiteral("Email Client (*.desktop);;All Files (*)"), start);
    }
    if (chosen.isEmpty())
        return;
    v.setText(ClientBox(item), chosen);
    BoxChanged(ctx, item, ClientBox(item));
}

void BrowseSound(AppContext& ctx, int item) {
    MainView& v = *ctx.view;
    QString start = v.text(SoundBox(item));
    if (start.isEmpty() || (item == 1 && !v.isEnabled(ctl::txtAcntSound)))
        start = ctx.svc.files->InstallDataFolder() + QStringLiteral("/Sounds/");
    QString chosen;
    {
        Suspended suspended(ctx);
        chosen = ctx.svc.dialogs->OpenFile(QString(), QStringLiteral("Sound (*.wav)"), start);
    }
    if (chosen.isEmpty())
        return;
    v.setText(SoundBox(item), chosen);
    if (item == 1)
        v.setCaption(ctl::lblSoundName, PathFileName(chosen));
    BoxChanged(ctx, item, SoundBox(item));
}

void TestClient(AppContext& ctx, int item) {
    Files& files = *ctx.svc.files;
    MainView& v = *ctx.view;
    bool started = false;
    if (item == 0) {
        const QString working = v.text(ctl::txtDefaultClient);
        if (IsValidClient(files, working))
            started = ctx.svc.shell->Open(working, QString(), WorkingRunSize(ctx));
    } else if (IsValidClient(files, ctx.options.DefaultClient)) {
        started = ctx.svc.shell->Open(ctx.options.DefaultClient, QString(), ctx.options.RunSize);
    } else {
        const QString own = ctx.accounts.edit(ctx.accounts.AcntCurrent).EditClient;
        if (IsValidClient(files, own))
            started = ctx.svc.shell->Open(own, QString(), 1);
    }
    if (!started)
        ShowClientErrorBox(ctx);
}

void TestSound(AppContext& ctx, int item) {
    Files& files = *ctx.svc.files;
    // A test must sound: the switches of the sounds are not looked at.
    QString wave;
    if (item == 0) {
        const QString working = ctx.view->text(ctl::txtDefaultSound);
        if (IsValidSound(files, working))
            wave = working;
    } else if (IsValidSound(files, ctx.options.DefaultSound)) {
        wave = ctx.options.DefaultSound;
    } else {
        const QString own = ctx.accounts.edit(ctx.accounts.AcntCurrent).EditSound;
        if (IsValidSound(files, own))
            wave = own;
    }
    if (wave.isEmpty())
        ShowSoundErrorBox(ctx);
    else
        ctx.svc.sound->PlayWave(wave);
}

bool ClientSoundButtonClick(AppContext& ctx, const QString& toolbar, const QString& key) {
    for (int item = 0; item < 2; ++item) {
        const bool browse = key == QLatin1String("Browse");
        if (toolbar == Element(ctl::tbrClient, item)) {
            browse ? BrowseClient(ctx, item) : TestClient(ctx, item);
            return true;
        }
        if (toolbar == Element(ctl::tbrSound, item)) {
            browse ? BrowseSound(ctx, item) : TestSound(ctx, item);
            return true;
        }
    }
    return false;
}

void ShowClientErrorBox(AppContext& ctx) {
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Email Client Error"),
                        QStringLiteral("The Email Client Program failed!") + CRLF + CRLF +
                            QStringLiteral("It appears the path and/or filename") + Blanks(20) +
                            CRLF + QStringLiteral("do not exist or have changed location.") + CRLF +
                            CRLF + QStringLiteral("The FileName must have a file extension") +
                            CRLF + QStringLiteral("that ends with '.exe' to work properly.") +
                            CRLF + CRLF,
                        BoxIcon::Information, BoxButtons::Ok);
}

void ShowSoundErrorBox(AppContext& ctx) {
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Sound Error"),
                        QStringLiteral("The Sound File failed!") + CRLF + CRLF +
                            QStringLiteral("It appears the path and/or sound file") + Blanks(20) +
                            CRLF + QStringLiteral("do not exist or have changed location.") + CRLF +
                            CRLF + QStringLiteral("The Sound File must have a file extension") +
                            CRLF + QStringLiteral("that ends with '.wav' to work properly.") +
                            CRLF + CRLF,
                        BoxIcon::Information, BoxButtons::Ok);
}

} // namespace velmora
