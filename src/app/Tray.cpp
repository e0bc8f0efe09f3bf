#include "context/ShellCalls.h"

#include "context/AppContext.h"
#include "platform/MainView.h"

namespace velmora {

namespace {

// The tray's tip field holds 63 characters and the closing zero.
constexpr int TrayTipLength = 63;

// The digits of one count as a stack of tray pictures on an empty field.
QList<int> CountPicture(const Account& a, int count) {
    if (a.AcntMsgCount > 99 || a.AcntNewCount > 99)
        return {TrayEmpty, TrayHundredOrMore};
    int tens = 0;
    int units = count;
    while (units >= 10) {
        units -= 10;
        ++tens;
    }
    if (tens == 0)
        return {TrayEmpty, TrayOneDigit + units};
    return {TrayTensDigit - 1 + tens, TrayUnitsDigit + units};
}

} // namespace

void UpdateTrayIcon(AppContext& ctx) {
    MainView& v = *ctx.view;
    if (v.windowState() != WindowState::Minimized)
        return;
    AccountStore& acc = ctx.accounts;
    const bool newOnly = ctx.options.ShowNewOnly == 1;

    int connected = 0;
    int sum = 0;
    for (int n = 1; n <= acc.AcntNum; ++n) {
        if (acc[n].AcntChecked && acc[n].AcntConnected) {
            ++connected;
            sum += newOnly ? acc[n].AcntNewCount : acc[n].AcntMsgCount;
        }
    }

    QList<int> picture;
    QString tip;
    if (connected == 0) {
        picture = {TrayNoConnection};
        tip = QStringLiteral("No Connection has been established.");
    } else {
        tip =
            acc[0].AcntLastCheckText + QStringLiteral("\r\n") + QString::number(sum) +
            (newOnly ? QStringLiteral(" New Message(s) in ") : QStringLiteral(" Message(s) in ")) +
            QString::number(connected) + QStringLiteral(" Account(s).");
        // One account a second; a pass ends with one tick of the plain
        // picture when the walk wraps to row 0.
        int& tray = ctx.shell.TrayAccount;
        int found = -1;
        for (int step = 0; step <= acc.AcntNum;) {
            if (tray > acc.AcntNum) {
                tray = 0;
                step = acc.AcntNum;
            }
            if (acc[tray].AcntEnabled == 1 && acc[tray].AcntChecked) {
                found = tray;
                break;
            }
            ++tray;
            ++step;
        }
        if (found < 0) {
            picture = {TrayPlain};
        } else {
            const Account& a = acc[found];
            picture = {a.AcntColourIndex};
            picture += CountPicture(a, newOnly ? a.AcntNewCount : a.AcntMsgCount);
            ++tray;
        }
    }
    v.tray().modify(picture, tip.left(TrayTipLength));
}

} // namespace velmora
