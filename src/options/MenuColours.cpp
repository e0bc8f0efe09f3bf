#include "options/MenuColours.h"

#include "context/AppContext.h"
#include "platform/MainView.h"

namespace velmora {

void ApplyMenuColourDefault(AppContext&) {}

void MenuDesigner(AppContext& ctx) {
    struct Entry {
        const char* name;
        const char* caption;
    };
    static const Entry tray[] = {
        {"mnuTrayShow", "&Show Velmora...|#Show"},
        {"mnuTrayCheckAll", "&Check All|#CheckAll"},
        {"mnuTrayNewMessage", "&New Message|#NewMessage"},
        {"mnuTrayRunClient", "S&tart Email Client|#MailClient0"},
        {"mnuTrayAutoCheck", "&Auto Check - On|#AutoCheckOn"},
        {"mnuTraySounds", "Soun&ds - On|#SoundOn"},
        {"mnuTrayOptions", "&Options...|#Gears"},
        {"mnuTrayMenuColours", "&Menu Colours...|#MenuColours"},
        {"mnuTrayUpdates", "&Updates|#Updates"},
        {"mnuTrayAbout", "A&bout...|#About"},
        {"mnuTrayHelp", "&Help|#Help"},
        {"mnuTrayQuitApplication", "&Quit Application|#Quit"},
        {"mnuEmailPreview", "&Preview|#Preview"},
        {"mnuEmailDelete", "&Delete|#Delete"},
        {"mnuEmailReply", "&Reply|#Reply"},
        {"mnuEmailOpen", "&Open|#Open"},
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
