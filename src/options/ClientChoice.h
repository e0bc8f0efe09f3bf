#pragma once

#include <QString>

namespace velmora {

struct AppContext;
class Files;

// The email client and the sound: which files count, Browse and Test for the
// Options page's defaults (item 0) and the Accounts page's own (item 1), and
// the client's picture on the buttons and in the tray menu.

// A client is a program that can be started, or a desktop entry that names
// one; either must exist.
bool IsValidClient(Files& files, const QString& path);
// A sound is an existing WAV file.
bool IsValidSound(Files& files, const QString& path);

// Makes the picture "MailClient" plus n (0 for the default) from the file.
void ExtractClientIcon(AppContext& ctx, const QString& path, int n);
// Puts the picture of client n, or with -1 that of no client, on the Start
// Email Client button, the tray entry and the Test buttons.
void ShowClientIcon(AppContext& ctx, int n);
// The pictures again from the record: the default's, then the current
// account's.
void RefreshClientIcons(AppContext& ctx);

// The Accounts page's boxes changed: label, validity and picture follow.
void AccountClientChanged(AppContext& ctx);
void AccountSoundChanged(AppContext& ctx);
// The picture of account n's client is gone with the account.
void ForgetClientIcon(AppContext& ctx, int n);

void BrowseClient(AppContext& ctx, int item);
void BrowseSound(AppContext& ctx, int item);
void TestClient(AppContext& ctx, int item);
void TestSound(AppContext& ctx, int item);
// A button of tbrClient or tbrSound; false for any other.
bool ClientSoundButtonClick(AppContext& ctx, const QString& toolbar, const QString& key);

void ShowClientErrorBox(AppContext& ctx);
void ShowSoundErrorBox(AppContext& ctx);

// What follows the last separator of a path.
QString PathFileName(const QString& path);

} // namespace velmora
