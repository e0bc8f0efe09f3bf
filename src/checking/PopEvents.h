#pragma once

#include "platform/PopClient.h"

namespace velmora {

struct AppContext;

// The client's events as the main form handles them.
class PopEventHandler : public PopNotify {
public:
    explicit PopEventHandler(AppContext& ctx) : ctx(ctx) {}

    void Connected() override;
    void Progress(qint64 position, qint64 total) override;
    void Received(PopMessage& message) override;

private:
    AppContext& ctx;
};

// The tab animation, and the "Terminating" texts once Stop is pressed.
void tmrRetrieveMessage_Timer(AppContext& ctx);

} // namespace velmora
