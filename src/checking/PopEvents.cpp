#include "checking/PopEvents.h"

#include "checking/PopSession.h"
#include "context/AppContext.h"
#include "platform/Controls.h"
#include "platform/MainView.h"

#include <cmath>
#include <limits>

namespace velmora {

void PopEventHandler::Connected() {
    ctx.check.PopConnected = true;
}

void PopEventHandler::Progress(qint64 position, qint64 total) {
    position = qMin(position, total);
    if (ctx.check.StopRequested) {
        // Tearing the line down makes the fetch fail; the capture's failure
        // handling sees the stop and stays silent.
        CloseConnection(ctx);
        ReplacePopClient(ctx);
        return;
    }
    // The bar counts in whatever unit keeps the figures inside its range.
    const qint64 scale = total > std::numeric_limits<int>::max() ? total / 1000000 + 1 : 1;
    ctx.view->status().setProgress(0, int(total / scale), int(position / scale));
    const double percent = total > 0 ? double(position) / double(total) * 100.0 : 100.0;
    ctx.view->status().setPanelText(3,
                                    QStringLiteral("%1 % Complete").arg(std::nearbyint(percent)));
    ctx.view->status().setPanelText(4, QStringLiteral("Retrieving... (%1 of %2)")
                                           .arg(ctx.check.ReceivedCount)
                                           .arg(ctx.check.PopClient->Messages().Count()));
}

// The counter names the message being retrieved, so it stays within the
// mailbox's count, which the client keeps within 16 bits.
void PopEventHandler::Received(PopMessage&) {
    PopClient* client = ctx.check.PopClient.get();
    if (client && ctx.check.ReceivedCount < client->Messages().Count())
        ++ctx.check.ReceivedCount;
}

void tmrRetrieveMessage_Timer(AppContext& ctx) {
    ++ctx.check.AnimationFrame;
    if (ctx.check.AnimationFrame > 8)
        ctx.check.AnimationFrame = 1;
    // Image 15 minus the frame: the spin runs backward, MailSpin8 to 1.
    const QString key = QStringLiteral("MailSpin%1").arg(9 - ctx.check.AnimationFrame);
    MainView& v = *ctx.view;
    if (ctx.check.TestInProgress)
        v.tabs(TabStrip::Accounts).setImage(ctx.accounts.AcntCurrent, key);
    else
        v.tabs(TabStrip::Email).setImage(v.tabs(TabStrip::Email).selected(), key);
    if (ctx.check.StopRequested) {
        v.setCaption(Element(ctl::tbrButtons, ctl::StopRetrieval), "Terminating...      ");
        v.status().setProgressVisible(false);
        v.status().setPanelText(1, "Terminating Connection...Please Wait");
        v.status().setPanelText(
            4, QStringLiteral("Stopping Retrieve... %1").arg(ctx.check.ReceivedCount));
        ctx.check.tmrRetrieveMessage->setEnabled(false);
        // A server that sends nothing raises no Progress event: the line is
        // dropped here, so a stall, a lookup or a handshake ends at once.
        if (ctx.check.PopClient) {
            CloseConnection(ctx);
            ReplacePopClient(ctx);
        }
    }
}

} // namespace velmora
