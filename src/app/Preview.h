#pragma once

#include <QString>
#include <QStringList>

namespace velmora {

struct AppContext;
struct MailMessage;

// frmPreview: one message of AcntCurrent and SelectedMessage shown whole,
// with its raw text, and the actions on it.

// The list's Preview: loads the window, or raises it when it is open.
void PreviewMessage(AppContext& ctx);
void UnloadPreview(AppContext& ctx);
// The window goes to the tray and comes back with the main one.
void HidePreview(AppContext& ctx);
void ShowPreviewAgain(AppContext& ctx);

// The tabs' captions and the buttons' keys, in order.
const QStringList& PreviewTabs();
const QStringList& PreviewButtonKeys();
// A button's caption as shown, blanks and all.
QString PreviewCaption(const QString& key);

// The actions, on AcntCurrent and SelectedMessage; none without one.
// `tab` is the preview's tab showing, which decides what is printed.
// Saving answers the path written, blank when nothing was: the window
// itself passes over a failed save in silence.
QString SaveMessageAs(AppContext& ctx);
void PrintMessage(AppContext& ctx, int tab);
void OpenMessage(AppContext& ctx);
void ReplyToMessage(AppContext& ctx);
// A bare new message in the user's mail program.
void NewMessage(AppContext& ctx);

// The message the actions work on; null when no valid one is selected.
const MailMessage* SelectedMail(const AppContext& ctx);

} // namespace velmora
