#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QStringList>

namespace velmora {

struct Account;
struct AppContext;

// What the bar's tip is built from: the five panels' texts as they stand,
// the account shown and the moment the pointer rests.
struct PanelTipFacts {
    QStringList panels; // texts of panels 1 to 5
    int AcntMsgCount = 0;
    int AcntNewCount = 0;
    int AcntSpamCount = 0;
    int AcntDeleteCount = 0;
    // Any of the list's attachment counters is 1 or more.
    bool listAttachments = false;
    QString NextCheckTime; // "dd/mm/yy-hh:mm"
    QDateTime now;
};

// The sentence for the panel under the pointer, 1 to 5; blank for 0.
QString PanelTip(int panel, const PanelTipFacts& facts, const QLocale& locale);
// The facts for the account whose tab is selected.
PanelTipFacts CurrentPanelFacts(const AppContext& ctx);
// Sets the bar's tip for the panel under the pointer, 0 for none.
void ShowPanelTip(AppContext& ctx, int panel);

} // namespace velmora
