#include "app/Preview.h"

#include "app/PrintDocument.h"
#include "checking/CheckCycle.h"
#include "checking/Deletion.h"
#include "context/AppContext.h"
#include "context/Product.h"
#include "messages/MessageFiles.h"
#include "messages/MessageList.h"
#include "platform/FileDialogs.h"
#include "platform/Files.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "platform/MessageView.h"
#include "platform/Printer.h"
#include "platform/Shell.h"

#include <memory>

namespace velmora {

namespace {

struct ButtonRow {
    const char* key;
    const char* caption;
    const char* tip;
};

// The captions' trailing blanks set the buttons' widths.
const ButtonRow kButtons[] = {
    {"Save", "Save    ", "Save Email Message"},
    {"Print", "Print     ", "Print Message"},
    {"Delete", "Delete  ", "Delete Message"},
    {"Reply", "Reply   ", "Reply to Sender"},
    {"Open", "Open   ", "Open with Email Client"},
    {"Exit Preview", "Exit Preview     ", "Exit Preview"},
};

// What the window keeps while it is loaded: the tab showing.
struct PreviewForm {
    int tab = 1;
};

QString TempPath(AppContext& ctx, const char* name) {
    return ctx.svc.files->TempFolder() + QLatin1Char('/') + QLatin1String(name);
}

void RemoveTemporaries(AppContext& ctx) {
    for (const char* name : {"temporary.eml", "temporary.msg"})
        ctx.svc.files->RemoveFile(TempPath(ctx, name));
}

void TabClick(AppContext& ctx, PreviewForm& form, int tab) {
    PreviewView* view = ctx.svc.windows->previewView();
    if (!ctx.shell.PreviewOpen || !view || tab < 1 || tab > PreviewTabs().size())
        return;
    form.tab = tab;
    view->showSide(tab);
}

void DeleteFromPreview(AppContext& ctx) {
    ctx.svc.windows->previewView()->hideWindow();
    SetCheckingInterface(ctx, false, false);
    DeleteMessages(ctx, ctx.accounts.AcntCurrent, false);
    SetCheckingInterface(ctx, true, false);
    UnloadPreview(ctx);
}

// The handler goes by what the button says, not by its key.
void ButtonClick(AppContext& ctx, const PreviewForm& form, const QString& caption) {
    if (!ctx.shell.PreviewOpen)
        return;
    const QString action = caption.trimmed();
    if (action == QLatin1String("Save"))
        SaveMessageAs(ctx);
    else if (action == QLatin1String("Print"))
        PrintMessage(ctx, form.tab);
    else if (action == QLatin1String("Delete"))
        DeleteFromPreview(ctx);
    else if (action == QLatin1String("Reply"))
        ReplyToMessage(ctx);
    else if (action == QLatin1String("Open"))
        OpenMessage(ctx);
    else if (action == QLatin1String("Exit Preview"))
        UnloadPreview(ctx);
}

void LoadPreview(AppContext& ctx, PreviewView& v, const MailMessage& m) {
    ctx.shell.PreviewOpen = true;
    SuspendAutoCheck(ctx, "Suspend");
    auto form = std::make_shared<PreviewForm>();
    v.setHandlers({[&ctx, form](int tab) { TabClick(ctx, *form, tab); },
                   [&ctx, form](const QString& caption) { ButtonClick(ctx, *form, caption); },
                   [&ctx] { UnloadPreview(ctx); },
                   [&ctx, &v] {
                       // Unless another window of the program stands over it.
                       if (!ctx.shell.AutoMessageOpen && !ctx.shell.RuleReportOpen)
                           v.focusBody();
                   }});
    v.setCaption(ctx.shell.AppTitle + QStringLiteral(" - Preview  "));
    for (const ButtonRow& b : kButtons)
        v.setButton(QLatin1String(b.key), QLatin1String(b.caption), QLatin1String(b.tip));
    v.setRaisedButtons(ctx.options.ButtonStyle == 1);
    v.setFields(m.From, m.To, m.Date, m.Subject);
    v.setTexts(m.Body, RawMessageText(m));
    v.setTabs(PreviewTabs());
    v.selectTab(1);
    TabClick(ctx, *form, 1);
    v.showWindow();
}

} // namespace

const QStringList& PreviewTabs() {
    static const QStringList tabs = {QStringLiteral("Body (Plain Text Only)"),
                                     QStringLiteral("Raw Message")};
    return tabs;
}

const QStringList& PreviewButtonKeys() {
    static const QStringList keys = [] {
        QStringList list;
        for (const ButtonRow& b : kButtons)
            list.append(QLatin1String(b.key));
        return list;
    }();
    return keys;
}

QString PreviewCaption(const QString& key) {
    for (const ButtonRow& b : kButtons) {
        if (key == QLatin1String(b.key))
            return QLatin1String(b.caption);
    }
    return {};
}

const MailMessage* SelectedMail(const AppContext& ctx) {
    if (!SelectedMessageValid(ctx))
        return nullptr;
    return &ctx.messages.at(ctx.accounts.AcntCurrent, ctx.list.SelectedMessage);
}

void PreviewMessage(AppContext& ctx) {
    PreviewView* view = ctx.svc.windows->previewView();
    const MailMessage* m = SelectedMail(ctx);
    if (!view || !m)
        return;
    // An open preview is brought forward as it is, not loaded again.
    if (ctx.shell.PreviewOpen) {
        view->raiseWindow();
        return;
    }
    LoadPreview(ctx, *view, *m);
}

void UnloadPreview(AppContext& ctx) {
    if (!ctx.shell.PreviewOpen)
        return;
    if (PreviewView* view = ctx.svc.windows->previewView())
        view->hideWindow();
    RemoveTemporaries(ctx);
    ctx.shell.PreviewOpen = false;
    SuspendAutoCheck(ctx, "Restore");
}

void HidePreview(AppContext& ctx) {
    if (ctx.shell.PreviewOpen)
        ctx.svc.windows->previewView()->hideWindow();
}

void ShowPreviewAgain(AppContext& ctx) {
    if (ctx.shell.PreviewOpen)
        ctx.svc.windows->previewView()->showWindow();
}

QString SaveMessageAs(AppContext& ctx) {
    const MailMessage* m = SelectedMail(ctx);
    if (!m)
        return {};
    const QString filter = QStringLiteral("OutLook Express (*.eml);;") +
                           QStringLiteral("Email Message (*.msg);;") +
                           QStringLiteral("Text File (*.txt)");
    const QString proposed = CleanFileName(m->Subject);
    QString path = ctx.svc.dialogs->SaveFile(QStringLiteral("Save As"), filter,
                                             ctx.svc.files->ProgramFolder() + '/' + proposed);
    // A cancelled dialog still leaves its proposed name, which is then
    // written in the current folder.
    if (path.isEmpty())
        path = proposed;
    return WriteMessageFile(path, *m) ? path : QString();
}

void PrintMessage(AppContext& ctx, int tab) {
    const MailMessage* m = SelectedMail(ctx);
    if (!m)
        return;
    const QString title = ctx.shell.AppTitle + QStringLiteral(" - ") + m->Subject;
    const QString failure = ctx.svc.printer->Print(BuildPrintDocument(*m, tab, title));
    if (failure.isEmpty())
        return;
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Print Failed"),
                        QStringLiteral("The message could not be printed.\r\n\r\n") + failure,
                        BoxIcon::Critical, BoxButtons::Ok);
}

void OpenMessage(AppContext& ctx) {
    const MailMessage* m = SelectedMail(ctx);
    if (!m)
        return;
    // Not every mail program takes ".eml"; some take ".msg".
    for (const char* name : {"temporary.eml", "temporary.msg"}) {
        const QString path = TempPath(ctx, name);
        WriteMessageFile(path, *m);
        if (ctx.svc.shell->Open(path, QString(), 1))
            return;
    }
    const QString crLf = QStringLiteral("\r\n");
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Open Message Failed"),
                        QStringLiteral("The message failed to open using") + crLf +
                            QStringLiteral("your Default Email Client.") + crLf + crLf +
                            QStringLiteral("If this problem occurs for every message") + crLf +
                            QStringLiteral("you attempt to Open please report this to") + crLf +
                            QStringLiteral("Kestrum for further") + QString(10, ' ') + crLf +
                            QStringLiteral("analysis. Please include the name of your") + crLf +
                            QStringLiteral("Email program.") + crLf + crLf +
                            QStringLiteral("Email: ") + Product::SupportAddress(),
                        BoxIcon::Information, BoxButtons::Ok);
}

void ReplyToMessage(AppContext& ctx) {
    const MailMessage* m = SelectedMail(ctx);
    if (!m)
        return;
    const ReplyText reply = BuildReply(*m, ctx.svc.locale);
    // No mail program shows nothing: the compose window is the answer.
    ctx.svc.shell->Compose(
        reply.recipient, reply.subject,
        FitForHandOver(reply.recipient, reply.subject, reply.body, ComposeLimit));
}

void NewMessage(AppContext& ctx) {
    ctx.svc.shell->Open(QStringLiteral("mailto:"), QString(), 1);
}

} // namespace velmora
