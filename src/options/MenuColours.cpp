#include "options/MenuColours.h"

#include "context/AppContext.h"
#include "platform/Controls.h"
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

void WriteMenuStyleFile(AppContext&) {}

} // namespace velmora
