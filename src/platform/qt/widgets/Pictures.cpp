#include "platform/qt/widgets/Pictures.h"

#include "platform/qt/widgets/DrawnIcons.h"
#include "platform/qt/widgets/TrayPictures.h"

#include <QHash>
#include <QStringList>

namespace velmora::Pictures {

namespace {

// The desktop theme's names for a key, best first. Keys not here (the
// list's rows, the tabs, the sort arrows, the Auto Check pair) are always
// drawn: they show a state whose colours matter, or have no good name.
QStringList ThemeNames(const QString& key) {
    static const QHash<QString, QStringList> names = {
        {"Email", {"mail-unread"}},
        {"Show", {"mail-unread"}},
        {"Accounts", {"system-users"}},
        {"Rules", {"view-filter"}},
        {"Options", {"preferences-system"}},
        {"Gears", {"preferences-system"}},
        {"Quit", {"application-exit"}},
        {"Size", {"view-restore"}},
        {"Help", {"help-contents"}},
        {"About", {"help-about"}},
        {"Stop", {"process-stop"}},
        {"Close", {"window-close"}},
        {"Save", {"document-save"}},
        {"Cancel", {"dialog-cancel", "document-revert"}},
        {"Pause", {"media-playback-pause"}},
        {"CheckAll", {"mail-send-receive"}},
        {"EmailCheck", {"mail-send-receive"}},
        {"NewMessage", {"mail-message-new"}},
        {"EmailNew", {"mail-message-new"}},
        {"Preview", {"document-print-preview"}},
        {"EmailPreview", {"document-print-preview"}},
        {"Delete", {"edit-delete"}},
        {"EmailDelete", {"edit-delete"}},
        {"AcntDelete", {"edit-delete"}},
        {"RulesDelete", {"edit-delete"}},
        {"EmailSpam", {"mail-mark-junk"}},
        {"Reply", {"mail-reply-sender"}},
        {"EmailReply", {"mail-reply-sender"}},
        {"Open", {"document-open"}},
        {"EmailOpen", {"document-open"}},
        {"Folder", {"internet-mail"}},
        {"AcntAdd", {"list-add"}},
        {"RulesAdd", {"list-add"}},
        {"AcntTest", {"network-transmit-receive"}},
        {"RulesImport", {"document-import", "document-open"}},
        {"RulesRename", {"edit-rename"}},
        {"Updates", {"system-software-update"}},
        {"Update", {"system-software-update"}},
        {"ReadMe", {"text-x-generic"}},
        {"Print", {"document-print"}},
        {"Browse", {"document-open"}},
        {"MenuColours", {"preferences-desktop-theme"}},
        {"SoundOn", {"audio-volume-high"}},
        {"SoundOff", {"audio-volume-muted"}},
    };
    if (key.startsWith(QLatin1String("MailClient")))
        return {QStringLiteral("internet-mail")};
    return names.value(key);
}

// For tests and screenshots: the same pictures whatever the desktop.
bool DrawnOnly() {
    return qEnvironmentVariableIntValue("VELMORA_DRAWN_ICONS") != 0;
}

} // namespace

QIcon Keyed(const QString& key) {
    if (key.isEmpty() || key == QLatin1String("Blank"))
        return QIcon();
    const bool drawnOnly = DrawnOnly();
    static QHash<QString, QIcon> cache[2];
    QHash<QString, QIcon>& known = cache[drawnOnly ? 1 : 0];
    if (auto it = known.constFind(key); it != known.constEnd())
        return *it;
    const QIcon drawn = DrawnIcons::Icon(key);
    if (!drawnOnly) {
        for (const QString& name : ThemeNames(key)) {
            if (QIcon::hasThemeIcon(name))
                return known[key] = QIcon::fromTheme(name, drawn);
        }
    }
    return known[key] = drawn;
}

QIcon Tray(const QList<int>& layers) {
    return TrayPictures::Icon(layers);
}

} // namespace velmora::Pictures
