#pragma once

#include <QString>

namespace velmora {

struct AppContext;
struct Failure;

// The two failure dialogs of anything that touches a server. `title` is the
// phrase behind the program's name in the box's title.
void ShowConnectionError(AppContext& ctx, int account, int number, QString text,
                         const QString& title);
void ShowUnexpectedError(AppContext& ctx, int account, int number, const QString& text,
                         const QString& title);
// Picks the dialog: the client's own failures, with LastError above 0, get
// the connection dialog; any other failure the unexpected one.
void ShowFailure(AppContext& ctx, int account, const Failure& failure, const QString& title);
// The client's number for a failure it raised itself; 0 for any other.
int ClientErrorNumber(const AppContext& ctx, const Failure& failure);
void ShowTestSucceeded(AppContext& ctx);

} // namespace velmora
