#include "checking/Notification.h"

#include "checking/frmMessage.h"
#include "context/AppContext.h"
#include "options/Setting.h"
#include "platform/DesktopNotifier.h"
#include "platform/EventPump.h"
#include "platform/Files.h"
#include "platform/SoundPlayer.h"

#include <optional>

namespace velmora {

namespace {

// The one value that decides both the message and the sounds: 0 only new
// messages, 1 any messages, 2 always.
bool PassesShowEmail(const AppContext& ctx, const Account& a) {
    switch (ctx.options.ShowEmail) {
    case 0:
        return a.AcntHasNew;
    case 1:
        return a.AcntHasMessages;
    case 2:
        return true;
    default:
        return false;
    }
}

// The headline of the Auto Check Message, or none when no message shows.
std::optional<QString> Headline(AppContext& ctx, bool anyNew, bool anyMessages) {
    const QString time = ctx.format(ctx.now(), "h:mm AM/PM");
    switch (ctx.options.ShowEmail) {
    case 0:
        if (!anyNew)
            return std::nullopt;
        return QStringLiteral("%1 New Message(s) found at %2").arg(ctx.check.TotalNew).arg(time);
    case 1:
    case 2:
        if (anyMessages)
            return QStringLiteral("%1 Message(s) found at %2")
                .arg(ctx.check.TotalMessages)
                .arg(time);
        if (ctx.options.ShowEmail == 1)
            return std::nullopt;
        return QStringLiteral("No Message(s) found at ") + time;
    default:
        return std::nullopt;
    }
}

// Beside the program's own message: the desktop's notification, when new
// mail came and the desktop offers the service, unless turned off.
void NotifyDesktop(AppContext& ctx, bool anyNew, bool anyMessages) {
    DesktopNotifier* notifier = ctx.svc.notifier;
    if (!anyNew ||
        setting::readInt(*ctx.svc.settings, setting::SectionOptions, "DesktopNotification", 1) != 1)
        return;
    const std::optional<QString> headline = Headline(ctx, anyNew, anyMessages);
    if (headline && notifier->available())
        notifier->notify(ctx.shell.AppTitle, *headline);
}

} // namespace

void AnnounceCheck(AppContext& ctx, bool anyNew, bool anyMessages) {
    ctx.check.AutoCheckHeadline = QString();
    NotifyDesktop(ctx, anyNew, anyMessages);
    if (ctx.options.ShowEmailMsgBox == 0 && ctx.options.PlaySound == 0)
        return;
    if (ctx.options.ShowEmailMsgBox != 0) {
        const std::optional<QString> headline = Headline(ctx, anyNew, anyMessages);
        // Nothing to tell: no message, and no sound either.
        if (!headline)
            return;
        ctx.check.AutoCheckHeadline = *headline;
        frmMessage::Show(ctx, *headline);
    }
    PlayCheckSound(ctx, 0);
}

void PlayCheckSound(AppContext& ctx, int account) {
    if (!ctx.shell.SoundMaster || ctx.options.PlaySound == 0)
        return;
    const AccountStore& acc = ctx.accounts;
    if (account > 0) {
        if (acc[account].AcntSoundOn == 0)
            return;
        if (PassesShowEmail(ctx, acc[account]))
            PlaySoundFile(ctx, account);
        return;
    }
    for (int n = 1; n <= acc.AcntNum; ++n) {
        const Account& a = acc[n];
        if (a.AcntEnabled != 1 || !PassesShowEmail(ctx, a))
            continue;
        // The default sound plays once, whatever the number of accounts.
        if (ctx.shell.DefaultSoundValid) {
            PlaySoundFile(ctx, n);
            return;
        }
        if (a.AcntSoundOn == 1)
            PlaySoundFile(ctx, n);
    }
}

void PlaySoundFile(AppContext& ctx, int account) {
    const Account& a = ctx.accounts[account];
    if (a.AcntConnected) {
        if (ctx.shell.DefaultSoundValid)
            PlayWave(ctx, ctx.options.DefaultSound);
        else if (a.AcntSoundValid)
            PlayWave(ctx, a.AcntSound);
    } else if (a.AcntSoundOn == 1 && ctx.shell.SoundMaster) {
        PlayWave(ctx, ErrorSoundPath(ctx));
    }
}

void PlayWave(AppContext& ctx, const QString& path) {
    if (ctx.shell.Unloading)
        return;
    // One of the three places the program yields by itself.
    ctx.svc.events->DoEvents();
    ctx.svc.sound->PlayWave(path);
}

QString ErrorSoundPath(AppContext& ctx) {
    return ctx.svc.files->InstallDataFolder() + QStringLiteral("/Sounds/Error.wav");
}

} // namespace velmora
