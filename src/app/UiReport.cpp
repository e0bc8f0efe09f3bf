#include "app/UiScript.h"

#include "app/CheckReport.h"
#include "context/AppContext.h"
#include "platform/Controls.h"
#include "platform/Headless.h"
#include "platform/StateView.h"

#include <QJsonArray>

namespace velmora {

namespace {

using K = ControlKind;

QJsonArray Strings(const QStringList& list) {
    return QJsonArray::fromStringList(list);
}

// What a user would see of one control, by its kind.
QJsonObject ControlJson(const StateView& v, const QString& name) {
    QJsonObject o{{"enabled", v.isEnabled(name)}, {"visible", v.isVisible(name)}};
    switch (KindOf(name)) {
    case K::Button:
    case K::MenuEntry:
        o["caption"] = v.caption(name);
        o["toolTip"] = v.toolTip(name);
        o["image"] = v.image(name);
        break;
    case K::Label:
    case K::Link:
        o["caption"] = v.caption(name);
        if (name.startsWith(ctl::lblColourBox))
            o["colour"] = qint64(v.colour(name));
        break;
    case K::Frame:
        o["caption"] = v.caption(name);
        break;
    case K::Header:
        o["image"] = v.image(name);
        break;
    case K::Text:
    case K::Spin:
        // A password is never printed.
        o["text"] = name == ctl::txtAcntPassword && !v.text(name).isEmpty()
                        ? QStringLiteral("********")
                        : v.text(name);
        break;
    case K::Check:
        o["checked"] = v.checked(name);
        break;
    case K::Option:
        o["index"] = v.optionIndex(name.left(name.indexOf('(')));
        break;
    case K::Combo:
        o["items"] = Strings(v.items(name));
        o["index"] = v.currentIndex(name);
        break;
    case K::Colour:
        o["colour"] = qint64(v.colour(name));
        break;
    case K::TabStrip: {
        const StateTabStrip& s = name == ctl::TabStripEmail ? v.emailTabs : v.acntTabs;
        QJsonArray tabs;
        for (const StateTabStrip::Tab& t : s.tabs)
            tabs.append(QJsonObject{{"caption", t.caption}, {"image", t.image}});
        o["tabs"] = tabs;
        o["selected"] = s.current;
        QJsonArray drags;
        for (int tab : s.draggedTabs)
            drags.append(tab);
        o["dragged"] = drags;
        break;
    }
    case K::List: {
        QJsonArray selected;
        for (int row = 1; row <= v.messageList.rowCount(); ++row) {
            if (v.messageList.selected[row - 1])
                selected.append(row);
        }
        o["rows"] = v.messageList.rowCount();
        o["selected"] = selected;
        break;
    }
    case K::Tray:
        o["tip"] = v.trayEntry.tipText;
        break;
    default:
        break;
    }
    return o;
}

// frmPreview as it was left.
QJsonObject PreviewJson(const AppContext& ctx, const StatePreviewView& p) {
    QJsonObject buttons;
    for (auto it = p.captions.cbegin(); it != p.captions.cend(); ++it)
        buttons[it.key()] = it.value();
    return QJsonObject{{"open", ctx.shell.PreviewOpen},
                       {"shown", p.shown},
                       {"caption", p.caption},
                       {"From", p.from},
                       {"To", p.to},
                       {"Date", p.date},
                       {"Subject", p.subject},
                       {"tabs", QJsonArray::fromStringList(p.tabs)},
                       {"tab", p.side},
                       {"body", p.body},
                       {"raw", p.raw},
                       {"buttons", buttons},
                       {"raised", p.raises}};
}

} // namespace

QJsonObject UiStateJson(const AppContext& ctx, const StateView& view, const Headless& h,
                        const QStringList& touched, const QJsonArray& refused) {
    QJsonArray boxes;
    for (const RecordedBoxes::Box& b : h.boxes.boxes)
        boxes.append(QJsonObject{{"title", b.title},
                                 {"text", b.text},
                                 {"icon", IconName(b.icon)},
                                 {"buttons", ButtonsName(b.buttons)},
                                 {"answer", AnswerName(b.answer)}});
    QJsonArray shell;
    for (const RecordedShell::Request& s : h.shell.requests)
        shell.append(QJsonObject{
            {"target", s.target}, {"parameters", s.parameters}, {"windowState", s.windowState}});
    QJsonArray composed;
    for (const RecordedShell::Composition& c : h.shell.compositions)
        composed.append(
            QJsonObject{{"recipient", c.recipient}, {"subject", c.subject}, {"body", c.body}});
    QJsonArray help;
    for (const RecordedHelp::Request& r : h.help.requests)
        help.append(QJsonObject{{"file", r.file}, {"topic", r.context}});
    QJsonArray dialogs;
    for (const ScriptedDialogs::Request& d : h.dialogs.requests)
        dialogs.append(QJsonObject{{"kind", d.kind},
                                   {"title", d.title},
                                   {"filter", d.filter},
                                   {"initialPath", d.initialPath},
                                   {"answer", d.answer}});
    if (const auto& rf = h.windows.ruleFile; rf->showings > 0)
        dialogs.append(QJsonObject{{"kind", "frmRuleFile"},
                                   {"title", rf->caption},
                                   {"folder", rf->folder},
                                   {"currentName", rf->currentName},
                                   {"answer", rf->newName}});
    QJsonObject controls;
    for (const QString& name : touched)
        controls[name] = ControlJson(view, name);
    QJsonArray panels;
    for (const QString& p : view.statusBar.panels)
        panels.append(p);
    QJsonArray trayPicture;
    for (int p : view.trayEntry.pictureStack)
        trayPicture.append(p);
    return QJsonObject{
        {"page", ctx.shell.PageBanners.value(ctx.shell.CurrentPage)},
        {"window", QJsonObject{{"visible", view.windowVisible},
                               {"minimized", view.state == WindowState::Minimized}}},
        {"boxes", boxes},
        {"sounds", Strings(h.sounds.played)},
        {"shell", shell},
        {"help", help},
        {"menus", Strings(view.poppedUpMenus)},
        {"dialogs", dialogs},
        {"printed", Strings(h.printer.jobs)},
        {"composed", composed},
        {"preview", PreviewJson(ctx, h.windows.preview)},
        {"status", panels},
        {"statusTip", view.statusBar.tipText},
        {"listTip", view.messageList.tipText},
        {"focus", view.focus},
        {"tray", QJsonObject{{"present", view.trayEntry.present},
                             {"picture", trayPicture},
                             {"tip", view.trayEntry.tipText}}},
        {"controls", controls},
        {"refused", refused},
    };
}

} // namespace velmora
