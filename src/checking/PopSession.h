#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// The one POP client of the program, made when the main form loads, and the
// connection procedures around it.
void CreatePopClient(AppContext& ctx);
void ReleasePopClient(AppContext& ctx);
// Drops the client in use for a fresh one. The old one may still be inside
// the call that led here, so it is kept until the next connection begins.
void ReplacePopClient(AppContext& ctx);

void PrepareConnection(AppContext& ctx, int account);
// Safe when nothing is connected, and more than once.
void CloseConnection(AppContext& ctx);
void TestConnection(AppContext& ctx, int account);
// One whole retrieval of an account; the outcome stays in its values.
void RetrieveAccount(AppContext& ctx, int account);
// The connection test of the Accounts page, with the interface held still
// around it.
void TestAccountConnection(AppContext& ctx);

// The account's port text as a number; a text that is none fails as the
// client's refusal of a port (PopError::BadPort).
qint32 PortNumber(const QString& text);

} // namespace velmora
