#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <stdexcept>

namespace velmora {

// What a named control is, and so what can be done with it.
enum class ControlKind {
    Frame,     // a frame or page: enabled, visible
    Label,     // a label: caption, visible
    Toolbar,   // a whole toolbar: enabled, visible
    Button,    // a button of a toolbar or button row: caption, tip, picture; a click
    MenuEntry, // an entry of a popup menu: caption with "|#" and its picture; a click
    TabStrip,  // an account tab strip: its own surface
    List,      // the message list: its own surface
    Header,    // a column header of the message list: picture
    Text,      // a text box: text, maximum length; a change
    Check,     // a check box: 0 or 1; a change
    Option,    // one option button of an array: which one is set; a change
    Combo,     // a combo or list box: items and index; a change
    Spin,      // a numeric spin box: range and value; a change
    Colour,    // a colour box: a 0x00BBGGRR value
    Focus,     // a control that only takes the focus
    Tray,      // the tray picture: a click
    Link,      // a label that opens something: caption, visible; a click
    Menu,      // a popup menu: shown at the pointer
};

// A control name the window does not have, or an operation the control's
// kind does not offer: always a fault of the program, never ignored.
class UnknownControl : public std::logic_error {
public:
    explicit UnknownControl(const QString& what) : std::logic_error(what.toStdString()) {}
};

// Names of array elements and toolbar buttons: "tbrButtons(3)",
// "tbrEmail/EmailPreview", "lvwEmail/From".
QString Element(const QString& array, int index);
QString Button(const QString& toolbar, const QString& key);

// The names the logic uses by themselves; constant from the start, so
// other constants may be made of them.
namespace ctl {
inline constexpr QLatin1String lblBanner("lblBanner");
inline constexpr QLatin1String lblNoAcntsBanner("lblNoAcntsBanner");
inline constexpr QLatin1String lblRulesFileName("lblRulesFileName");
inline constexpr QLatin1String fraMain("fraMain");
inline constexpr QLatin1String fraNoAcntsBanner("fraNoAcntsBanner");
inline constexpr QLatin1String fraRulesToolbar("fraRulesToolbar");
inline constexpr QLatin1String fraMainButtons("fraMainButtons");
inline constexpr QLatin1String fraEmailToolBar("fraEmailToolBar");
inline constexpr QLatin1String fraAcntToolBar("fraAcntToolBar");
inline constexpr QLatin1String cmdTakeFocus("cmdTakeFocus");
inline constexpr QLatin1String tbrMainButtons("tbrMainButtons");
inline constexpr QLatin1String tbrButtons("tbrButtons");
inline constexpr QLatin1String tbrEmail("tbrEmail");
inline constexpr QLatin1String tbrAcnts("tbrAcnts");
inline constexpr QLatin1String tbrRules("tbrRules");
inline constexpr QLatin1String lvwEmail("lvwEmail");
inline constexpr QLatin1String TabStripEmail("TabStripEmail");
inline constexpr QLatin1String TabStripAcnts("TabStripAcnts");
inline constexpr QLatin1String TrayIcon("TrayIcon");
inline constexpr QLatin1String mnuTrayPopMenu("mnuTrayPopMenu");
inline constexpr QLatin1String mnuEmailPopMenu("mnuEmailPopMenu");
inline constexpr QLatin1String tbrOptAbout("tbrOptAbout");
inline constexpr QLatin1String lblAboutWebSite("lblAboutWebSite");
inline constexpr QLatin1String lblAboutEmail("lblAboutEmail");
inline constexpr QLatin1String mnuTrayShow("mnuTrayShow");
inline constexpr QLatin1String mnuTrayCheckAll("mnuTrayCheckAll");
inline constexpr QLatin1String mnuTrayNewMessage("mnuTrayNewMessage");
inline constexpr QLatin1String mnuTrayRunClient("mnuTrayRunClient");
inline constexpr QLatin1String mnuTrayAutoCheck("mnuTrayAutoCheck");
inline constexpr QLatin1String mnuTraySounds("mnuTraySounds");
inline constexpr QLatin1String mnuTrayOptions("mnuTrayOptions");
inline constexpr QLatin1String mnuTrayMenuColours("mnuTrayMenuColours");
inline constexpr QLatin1String mnuTrayUpdates("mnuTrayUpdates");
inline constexpr QLatin1String mnuTrayAbout("mnuTrayAbout");
inline constexpr QLatin1String mnuTrayHelp("mnuTrayHelp");
inline constexpr QLatin1String mnuTrayQuitApplication("mnuTrayQuitApplication");
inline constexpr QLatin1String mnuEmailPreview("mnuEmailPreview");
inline constexpr QLatin1String mnuEmailDelete("mnuEmailDelete");
inline constexpr QLatin1String mnuEmailReply("mnuEmailReply");
inline constexpr QLatin1String mnuEmailOpen("mnuEmailOpen");
// The Accounts page.
inline constexpr QLatin1String fraAcnt("fraAcnt");
inline constexpr QLatin1String fraColourBox("fraColourBox");
inline constexpr QLatin1String lblColourBox("lblColourBox");
inline constexpr QLatin1String tbrColour("tbrColour");
inline constexpr QLatin1String txtAcntName("txtAcntName");
inline constexpr QLatin1String txtAcntServer("txtAcntServer");
inline constexpr QLatin1String txtAcntPort("txtAcntPort");
inline constexpr QLatin1String txtAcntLoginID("txtAcntLoginID");
inline constexpr QLatin1String txtAcntPassword("txtAcntPassword");
inline constexpr QLatin1String txtAcntColour("txtAcntColour");
inline constexpr QLatin1String txtAcntClient("txtAcntClient");
inline constexpr QLatin1String txtAcntSound("txtAcntSound");
inline constexpr QLatin1String chkAcntEnabled("chkAcntEnabled");
inline constexpr QLatin1String chkAcntSecure("chkAcntSecure");
inline constexpr QLatin1String chkAcntSoundOn("chkAcntSoundOn");
inline constexpr QLatin1String lblSoundName("lblSoundName");
inline constexpr QLatin1String lblAcntPlaySound("lblAcntPlaySound");
inline constexpr QLatin1String lblAcntRunSize("lblAcntRunSize");
// The Options page: the tree of its six sections and what they hold. The
// explanation labels are named after the box they explain.
inline constexpr QLatin1String TreeView("TreeView");
inline constexpr QLatin1String lblOptionsTitle("lblOptionsTitle");
inline constexpr QLatin1String fraOptions("fraOptions");
inline constexpr QLatin1String chkRunStartUp("chkRunStartUp");
inline constexpr QLatin1String chkEmailCheckStartUp("chkEmailCheckStartUp");
inline constexpr QLatin1String chkMinimizeStartUp("chkMinimizeStartUp");
inline constexpr QLatin1String chkUseInterval("chkUseInterval");
inline constexpr QLatin1String chkNoCheck("chkNoCheck");
inline constexpr QLatin1String chkShowEmailMsgBox("chkShowEmailMsgBox");
inline constexpr QLatin1String chkPlaySound("chkPlaySound");
inline constexpr QLatin1String chkQuickCheck("chkQuickCheck");
inline constexpr QLatin1String chkDeleteConfirmation("chkDeleteConfirmation");
inline constexpr QLatin1String chkCloseButton("chkCloseButton");
inline constexpr QLatin1String chkSuppressConnectErrors("chkSuppressConnectErrors");
inline constexpr QLatin1String chkSuppressRetrieveErrors("chkSuppressRetrieveErrors");
inline constexpr QLatin1String chkShowNewOnly("chkShowNewOnly");
inline constexpr QLatin1String chkRestoreColWidth("chkRestoreColWidth");
inline constexpr QLatin1String chkButtonStyle("chkButtonStyle");
inline constexpr QLatin1String chkFromToolTips("chkFromToolTips");
inline constexpr QLatin1String chkToToolTips("chkToToolTips");
inline constexpr QLatin1String chkSubjectToolTips("chkSubjectToolTips");
inline constexpr QLatin1String chkMessageSort("chkMessageSort");
inline constexpr QLatin1String txtStartUpDelay("txtStartUpDelay");
inline constexpr QLatin1String txtMsgBoxTime("txtMsgBoxTime");
inline constexpr QLatin1String txtConnectTimeOut("txtConnectTimeOut");
inline constexpr QLatin1String txtHours("txtHours");
inline constexpr QLatin1String txtMinutes("txtMinutes");
inline constexpr QLatin1String txtNoCheckTime("txtNoCheckTime");
inline constexpr QLatin1String updNoCheck("updNoCheck");
inline constexpr QLatin1String txtDefaultClient("txtDefaultClient");
inline constexpr QLatin1String txtDefaultSound("txtDefaultSound");
inline constexpr QLatin1String optShowEmail("optShowEmail");
inline constexpr QLatin1String optRunSize("optRunSize");
inline constexpr QLatin1String opt3DTheme("opt3DTheme");
inline constexpr QLatin1String optApplyStyle("optApplyStyle");
inline constexpr QLatin1String optSortColumn("optSortColumn");
inline constexpr QLatin1String optSortOrder("optSortOrder");
inline constexpr QLatin1String fraApplyStyle("fraApplyStyle");
inline constexpr QLatin1String fraSort("fraSort");
inline constexpr QLatin1String lbl3DTopColour("lbl3DTopColour");
inline constexpr QLatin1String lbl3DMiddleColour("lbl3DMiddleColour");
inline constexpr QLatin1String lbl3DBottomColour("lbl3DBottomColour");
inline constexpr QLatin1String lblMenuColours("lblMenuColours");
inline constexpr QLatin1String lblRunStartUp("lblRunStartUp");
inline constexpr QLatin1String lblEmailCheckStartUp("lblEmailCheckStartUp");
inline constexpr QLatin1String lblMinimizeStartUp("lblMinimizeStartUp");
inline constexpr QLatin1String lblUseInterval("lblUseInterval");
inline constexpr QLatin1String lblInterval("lblInterval");
inline constexpr QLatin1String lblSoundInfo("lblSoundInfo");
inline constexpr QLatin1String tbrOptMisc("tbrOptMisc");
inline constexpr QLatin1String tbrClient("tbrClient");
inline constexpr QLatin1String tbrSound("tbrSound");
inline constexpr QLatin1String lblClientName("lblClientName");
// Hidden: takes "key|path" and makes the picture of that key from the file
// ("key|" forgets it); "show" puts the pictures made on the controls whose
// picture key names them.
inline constexpr QLatin1String picClientIcon("picClientIcon");
// Hidden: takes the path of the menu style file each time it is written, and
// the popup menus take their colours from it.
inline constexpr QLatin1String txtMenuStyleFile("txtMenuStyleFile");
// Hidden: "U I L", 1 where the upper, intermediate or lower toolbars are
// raised.
inline constexpr QLatin1String txtButtonStyle("txtButtonStyle");
// The first of the two move bars: Backward and Forward of the accounts.
inline constexpr QLatin1String tbrMoveAccounts("tbrMoveButtons(0)");
// The Rules page.
inline constexpr QLatin1String fraRules("fraRules");
inline constexpr QLatin1String fraRule("fraRule");
inline constexpr QLatin1String fraAction("fraAction");
inline constexpr QLatin1String fraNotify("fraNotify");
inline constexpr QLatin1String lstRules("lstRules");
// The check boxes of lstRules, one "1" or "0" an item in order.
inline constexpr QLatin1String lstRulesEnabled("lstRulesEnabled");
inline constexpr QLatin1String txtRuleName("txtRuleName");
inline constexpr QLatin1String cboRuleAccount("cboRuleAccount");
inline constexpr QLatin1String cboBoolean("cboBoolean");
inline constexpr QLatin1String cboWhere("cboWhere");
inline constexpr QLatin1String cboCondition("cboCondition");
inline constexpr QLatin1String chkNot("chkNot");
inline constexpr QLatin1String txtCriteria("txtCriteria");
inline constexpr QLatin1String txtRuleDescription("txtRuleDescription");
inline constexpr QLatin1String lblRuleName("lblRuleName");
inline constexpr QLatin1String lblRuleAccount("lblRuleAccount");
inline constexpr QLatin1String lblCriteria("lblCriteria");
inline constexpr QLatin1String lblRuleDescription("lblRuleDescription");
inline constexpr QLatin1String lblRuleDescEntries("lblRuleDescEntries");
inline constexpr QLatin1String lblRuleNotifyTime("lblRuleNotifyTime");
// Elements 1 to 3 are the actions; element 0 is never shown.
inline constexpr QLatin1String optRuleAction("optRuleAction");
inline constexpr QLatin1String chkRuleNotify("chkRuleNotify");
inline constexpr QLatin1String chkRuleNotifyNew("chkRuleNotifyNew");
inline constexpr QLatin1String txtRuleNotifyTime("txtRuleNotifyTime");
// Update and Clear, then Undo and Redo.
inline constexpr QLatin1String tbrRuleUpdate("tbrRuleUpdate");
// The second move bar: Up and Down of the rules.
inline constexpr QLatin1String tbrMoveRules("tbrMoveButtons(1)");

// The elements of tbrButtons the logic names.
constexpr int HelpEmail = 0;
constexpr int StopRetrieval = 1;
constexpr int Close = 2;
constexpr int CheckAll = 3;
constexpr int StartEmailClient = 4;
constexpr int HelpAccounts = 5;
constexpr int SaveAccount = 6;
constexpr int CancelAccount = 7;
constexpr int HelpRules = 8;
constexpr int SaveRules = 9;
constexpr int CancelRules = 10;
constexpr int HelpOptions = 11;
constexpr int SaveOptions = 12;
constexpr int CancelOptions = 13;
constexpr int PauseStartupCheck = 14;

// The six colour boxes of the Accounts page, 1 to 6.
constexpr int ColourBoxes = 6;
} // namespace ctl

// The main buttons that switch the pages, the row of buttons below each
// page, and the buttons of each page's own toolbar, with their captions.
struct MainButton {
    QString key;
    QString caption;
    QString tip;
};
struct PageButton {
    int index;
    int page;
    QString key;
    QString caption;
    QString tip;
    QString image;
};
struct ToolbarButton {
    QString toolbar;
    QString key;
    QString caption;
    QString tip;
};
const QVector<MainButton>& MainButtonTable();
const QVector<PageButton>& PageButtonTable();
const QVector<ToolbarButton>& ToolbarButtonTable();
// The Accounts page's small bars, the colour button and the move buttons:
// captions without pictures.
const QVector<ToolbarButton>& AccountPageButtons();
// The Rules page's description bar and move buttons.
const QVector<ToolbarButton>& RulePageButtons();
// The small bars of the Options page and the client and sound bars of both
// pages; the logic gives them their pictures.
const QVector<ToolbarButton>& OptionPageButtons();
// The entries of the tray menu, then of the list's popup menu, in order.
const QStringList& TrayMenuEntries();
const QStringList& EmailMenuEntries();
// The list's columns by header key, left to right.
const QStringList& ListColumns();

// Every control of the main window, by name: the window has exactly these.
struct ControlInfo {
    QString name;
    ControlKind kind;
};
const QVector<ControlInfo>& ControlTable();
// The kind of a named control; UnknownControl for a name not in the table.
ControlKind KindOf(const QString& name);
// UnknownControl unless the control is one of the kinds given.
void Expect(const QString& name, std::initializer_list<ControlKind> kinds);

} // namespace velmora
