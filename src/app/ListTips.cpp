#include "app/ListTips.h"

#include "context/AppContext.h"
#include "platform/MainView.h"

namespace velmora {

namespace {

constexpr int kZoneNone = 3;
constexpr int kTwipsPerInch = 1440;
// The From cell also holds the row's picture.
constexpr int kFromMargin = 260;
constexpr int kOtherMargin = 140;

int ZoneAt(const MessageListView& list, int x) {
    int edge = 0;
    for (int zone = 0; zone < kZoneNone; ++zone) {
        edge += list.columnWidth(zone + 1);
        if (x < edge)
            return zone;
    }
    return kZoneNone;
}

bool ZoneAllowed(const Options& o, int zone) {
    const int values[] = {o.FromToolTips, o.ToToolTips, o.SubjectToolTips};
    return values[zone] != 0;
}

} // namespace

void lvwEmail_MouseMove(AppContext& ctx, int row, int x) {
    MessageListView& list = ctx.view->list();
    ListState& s = ctx.list;
    if (row > 0)
        s.HoverMessage = row;
    const int zone = ZoneAt(list, x);
    // Moving within one cell must not restart the tip's delay.
    if (s.HoverMessage == s.TipRow && zone == s.TipZone)
        return;
    s.TipRow = s.HoverMessage;
    s.TipZone = zone;
    if (zone == kZoneNone) {
        s.ItemUnderPointer = false;
        s.HoverMessage = 0;
        s.TipRow = 0;
        s.TipZone = -1;
        list.setTip(QString());
        return;
    }
    // An option off leaves whatever tip was last set.
    if (!ZoneAllowed(ctx.options, zone))
        return;
    const int account = ctx.accounts.AcntCurrent;
    if (account < 1 || account > ctx.accounts.AcntNum || s.HoverMessage < 1 ||
        s.HoverMessage > ctx.accounts[account].AcntMsgCount)
        return;
    const MailMessage& m = ctx.messages.at(account, s.HoverMessage);
    const QString text = zone == 0 ? m.From : zone == 1 ? m.To : m.Subject;
    const int margin = zone == 0 ? kFromMargin : kOtherMargin;
    // Compared in twips, so that the margin needs no rounding.
    const int spare = list.columnWidth(zone + 1) - list.textWidth(text);
    if (qint64(spare) * kTwipsPerInch >= qint64(margin) * list.logicalDpi()) {
        list.setTip(QString());
        return;
    }
    QString tip = text;
    tip.replace(QLatin1Char(','), QLatin1String("\r\n"));
    list.setTip(tip);
}

} // namespace velmora
