#include "options/MenuColours.h"

#include "checking/CheckCycle.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "options/IniFile.h"
#include "platform/ColourDialog.h"
#include "platform/Controls.h"
#include "platform/Files.h"
#include "platform/MainView.h"

namespace velmora {

void ApplyMenuColourDefault(AppContext&) {}

void MenuDesigner(AppContext& ctx) {
    struct Entry {
        QString name;
        const char* caption;
    };
    static const Entry tray[] = {
        {ctl::mnuTrayShow, "&Show Velmora...|#Show"},
        {ctl::mnuTrayCheckAll, "&Check All|#CheckAll"},
        {ctl::mnuTrayNewMessage, "&New Message|#NewMessage"},
        {ctl::mnuTrayRunClient, "S&tart Email Client|#MailClient0"},
        {ctl::mnuTrayAutoCheck, "&Auto Check - On|#AutoCheckOn"},
        {ctl::mnuTraySounds, "Soun&ds - On|#SoundOn"},
        {ctl::mnuTrayOptions, "&Options...|#Gears"},
        {ctl::mnuTrayMenuColours, "&Menu Colours...|#MenuColours"},
        {ctl::mnuTrayUpdates, "&Updates|#Updates"},
        {ctl::mnuTrayAbout, "A&bout...|#About"},
        {ctl::mnuTrayHelp, "&Help|#Help"},
        {ctl::mnuTrayQuitApplication, "&Quit Application|#Quit"},
        {ctl::mnuEmailPreview, "&Preview|#Preview"},
        {ctl::mnuEmailDelete, "&Delete|#Delete"},
        {ctl::mnuEmailReply, "&Reply|#Reply"},
        {ctl::mnuEmailOpen, "&Open|#Open"},
    };
    for (const Entry& e : tray)
        ctx.view->setCaption(e.name, e.caption);
}

void ReleaseMenus(AppContext& ctx) {
    ctx.shell.MenuHooked = false;
}

} // namespace velmora

namespace velmora {

namespace {

constexpr MenuTheme Presets[6] = {
    {"Blue", 0xFFD7AE, 0xFFFFFF, 0xFF8000},
    {"Gray", 0xEAE5E3, 0xFFFFFF, 0xBEA3A4},
    {"Green", 0xB8E7E0, 0xD5FFFF, 0x7FB2A3},
    {"Classic Windows", 0xF0CAA6, 0xFFFFFF, 0x6A240A},
    {"Classic Windows XP", 0xDCB4B4, 0xFFFFFF, 0x984545},
    {"Velmora Default", 0x99B1BF, 0xEFEFEF, 0x577C91},
};

const QLatin1String ColourBoxes[3] = {ctl::lbl3DTopColour, ctl::lbl3DMiddleColour,
                                      ctl::lbl3DBottomColour};

} // namespace

const MenuTheme& PresetTheme(int theme) {
    return Presets[std::clamp(theme, 0, 5)];
}

QStringList ThemeCaptions() {
    QStringList captions;
    for (const MenuTheme& t : Presets)
        captions.append(QString::fromLatin1(t.caption));
    captions.append(QStringLiteral("User Colours"));
    return captions;
}

QString MenuStyleFilePath(AppContext& ctx) {
    return ctx.svc.files->ProgramFolder() + QStringLiteral("/frmMain.ini");
}

void WriteMenuStyleFile(AppContext& ctx) {
    const Options& o = ctx.options;
    IniFile ini(*ctx.svc.profiles, MenuStyleFilePath(ctx));
    // The file holds nothing else: it is written whole, or kept as it was.
    ini.StartNew();
    ini.setSection(QStringLiteral("Menu"));
    ini.KeySave(QStringLiteral("4"), QStringLiteral("NA"), QStringLiteral("MenuStyle"));
    ini.setSection(QStringLiteral("New3D"));
    ini.KeySave(QString::number(o.TopColour), QStringLiteral("NA"), QStringLiteral("New3DColor1"));
    ini.KeySave(QString::number(o.MiddleColour), QStringLiteral("NA"),
                QStringLiteral("New3DColor2"));
    ini.KeySave(QString::number(o.BottomColour), QStringLiteral("NA"),
                QStringLiteral("New3DColor3"));
    if (ini.CommitNew())
        ctx.view->setText(ctl::txtMenuStyleFile, ini.ConfigName());
}

void SetThemeColours(AppContext& ctx) {
    MainView& v = *ctx.view;
    const int theme = v.optionIndex(ctl::opt3DTheme);
    const Options& o = ctx.options;
    // The user's colours are those last saved, which after a saved preset
    // are the preset's.
    const qint32 colours[3] = {
        theme == UserTheme ? o.TopColour : PresetTheme(theme).top,
        theme == UserTheme ? o.MiddleColour : PresetTheme(theme).middle,
        theme == UserTheme ? o.BottomColour : PresetTheme(theme).bottom,
    };
    if (theme < 0 || theme > UserTheme)
        return;
    for (int i = 0; i < 3; ++i)
        v.setColour(ColourBoxes[i], quint32(colours[i]) & 0x00FFFFFFu);
}

void PickColour(AppContext& ctx, const QString& box) {
    SuspendStartUpTimer(ctx, QStringLiteral("Suspend"));
    SuspendAutoCheck(ctx, QStringLiteral("Suspend"));
    // The dialog starts on the box's colour, or on the colour last picked
    // in this run where it keeps one.
    quint32 colour = ctx.view->colour(box);
    if (ctx.svc.colours->PickColour(colour))
        ctx.view->setColour(box, colour & 0x00FFFFFFu);
    SuspendStartUpTimer(ctx, QStringLiteral("Restore"));
    SuspendAutoCheck(ctx, QStringLiteral("Restore"));
}

ButtonStyles ButtonStylesFor(int buttonStyle, int applyStyle) {
    if (buttonStyle != 1)
        return {};
    switch (applyStyle) {
    case 0:
        return {false, false, true};
    case 1:
        return {true, false, false};
    case 2:
        return {false, true, false};
    case 3:
        return {true, true, true};
    default:
        return {false, false, false, false};
    }
}

void ApplyButtonStyle(AppContext& ctx) {
    const ButtonStyles s = ButtonStylesFor(ctx.options.ButtonStyle, ctx.options.ApplyStyle);
    if (!s.changed)
        return;
    // Upper, intermediate and lower groups, 1 for raised.
    ctx.view->setText(ctl::txtButtonStyle, QStringLiteral("%1 %2 %3")
                                               .arg(int(s.upperRaised))
                                               .arg(int(s.intermediateRaised))
                                               .arg(int(s.lowerRaised)));
}

} // namespace velmora
