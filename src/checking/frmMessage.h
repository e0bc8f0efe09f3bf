#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// The Auto Check Message: shown after a timed walk, above all windows, with
// a countdown that closes it. Auto Check is suspended while it stands.
namespace frmMessage {

void Show(AppContext& ctx, const QString& headline);
void tmrMessage_Timer(AppContext& ctx);
void Unload(AppContext& ctx);

} // namespace frmMessage
} // namespace velmora
