#include "platform/Controls.h"

#include <QHash>

namespace velmora {

QString Element(const QString& array, int index) {
    return QStringLiteral("%1(%2)").arg(array).arg(index);
}

QString Button(const QString& toolbar, const QString& key) {
    return toolbar + QLatin1Char('/') + key;
}

const QVector<MainButton>& MainButtonTable() {
    static const QVector<MainButton> table = {
        {"Email", "Email        ", "Email Messages"},
        {"Accounts", "Accounts  ", "Account Information"},
        {"Rules", "Rules       ", "View Rules"},
        {"Options", "Options    ", "Select Options"},
        {"Quit", "Quit          ", "Quit Velmora"},
        {"Size", "Size         ", "Restore Original Size"},
    };
    return table;
}

const QVector<PageButton>& PageButtonTable() {
    static const QVector<PageButton> table = {
        {0, 0, "Help", "Help     ", "Help With Email", "Help"},
        {1, 0, "StopRetrieval", "Stop Retrieval      ", "Stop Retrieving Messages", "Stop"},
        {2, 0, "Close", "Close         ", "Close Velmora to System Tray", "Close"},
        {3, 0, "CheckAll", "Check All          ", "Check All Accounts for Messages", "CheckAll"},
        {4, 0, "StartEmailClient", "Start Email Client     ", "Start Email Client Application",
         "Folder"},
        {5, 1, "Help", "Help     ", "Help With Accounts", "Help"},
        {6, 1, "SaveAccount", "Save Account   ", "Save this Account Information", "Save"},
        {7, 1, "Cancel", "Cancel       ", "Cancel changes to this Account", "Cancel"},
        {8, 2, "Help", "Help     ", "Help With Rules", "Help"},
        {9, 2, "SaveRules", "Save Rules       ", "Save Rule Information", "Save"},
        {10, 2, "Cancel", "Cancel       ", "Cancel changes to Rules", "Cancel"},
        {11, 3, "Help", "Help     ", "Help With Options", "Help"},
        {12, 3, "SaveOptions", "Save Options    ", "Save changes to Options", "Save"},
        {13, 3, "Cancel", "Cancel       ", "Cancel changes made to Options", "Cancel"},
        {14, 0, "PauseStartupCheck", "StartUp: Continue    ", "Pause the StartUp Check Timer",
         "Pause"},
    };
    return table;
}

const QVector<ToolbarButton>& ToolbarButtonTable() {
    static const QVector<ToolbarButton> table = {
        {"tbrEmail", "EmailPreview", "Preview ", "Preview Selected Message"},
        {"tbrEmail", "EmailDelete", "Delete   ", "Delete Selected Message from Server"},
        {"tbrEmail", "EmailSpam", "Spam    ", "Delete All Spam Messages from Server"},
        {"tbrEmail", "EmailReply", "Reply    ", "Reply to Sender using Email Client"},
        {"tbrEmail", "EmailOpen", "Open    ", "Open Message in Email Client"},
        {"tbrEmail", "EmailNew", "New      ", "New Message using Email Client"},
        {"tbrEmail", "EmailCheck", "Check   ", "Check Account for Messages"},
        {"tbrAcnts", "AcntAdd", "Add Account  ", "Add a New Account"},
        {"tbrAcnts", "AcntDelete", "Delete Account  ", "Delete this Account"},
        {"tbrAcnts", "AcntTest", "Test Account  ", "Test the Connection to this Account"},
        {"tbrRules", "RulesAdd", "Add Rule                ", "Add a New Rule"},
        {"tbrRules", "RulesDelete", "Delete Rule            ", "Delete Selected Selected Rule"},
        {"tbrRules", "RulesImport", "Import Rules           ", "Import Rules from a Rules File"},
        {"tbrRules", "RulesRename", "Rename Rules File  ", "Rename the Rules FileName"},
        {"tbrOptAbout", "ReadMe", "View Read Me  ", "View Read Me Using WordPad"},
        {"tbrOptAbout", "Update", "Updates  ", "Check WebSite for Updates"},
    };
    return table;
}

const QVector<ToolbarButton>& AccountPageButtons() {
    static const QVector<ToolbarButton> table = {
        {"tbrColour", "Colour", "Colour ", "Click to choose the Account Colour"},
        {"tbrMoveButtons(0)", "Backward", "Backward ", "Move this Account one place Backward"},
        {"tbrMoveButtons(0)", "Forward", "Forward ", "Move this Account one place Forward"},
    };
    return table;
}

const QVector<ToolbarButton>& RulePageButtons() {
    static const QVector<ToolbarButton> table = {
        {"tbrRuleUpdate", "Update", "Update Description ", "Update Rule Description"},
        {"tbrRuleUpdate", "Clear", "Clear Description    ", "Clear Rule Description "},
        {"tbrRuleUpdate", "Undo", "Undo", "Undo Update"},
        {"tbrRuleUpdate", "Redo", "Redo", "Redo Update"},
        {"tbrMoveButtons(1)", "Up", "Up", "Move Rule Up"},
        {"tbrMoveButtons(1)", "Down", "Down", "Move Rule Down"},
    };
    return table;
}

const QVector<ToolbarButton>& OptionPageButtons() {
    static const QVector<ToolbarButton> table = {
        {"tbrOptMisc", "SelectAll", "Select All ", "Allow all Email Message ToolTips"},
        {"tbrOptMisc", "SelectNone", "Select None ", "Allow no Email Message ToolTips"},
        {"tbrOptMisc", "RestoreColWidth", "Restore Column Width Now ",
         "Restore the Default Email Message Column Width Now"},
        {"tbrClient(0)", "Browse", "Browse ", "Browse for the Default Email Client"},
        {"tbrClient(0)", "Test", "Test ", "Test the Default Email Client"},
        {"tbrSound(0)", "Browse", "Browse ", "Browse for the Default Sound File"},
        {"tbrSound(0)", "Test", "Test ", "Test the Default Sound File"},
        {"tbrClient(1)", "Browse", "Browse ", "Browse for the Account's Email Client"},
        {"tbrClient(1)", "Test", "Test ", "Test the Email Client"},
        {"tbrSound(1)", "Browse", "Browse ", "Browse for the Account's Sound File"},
        {"tbrSound(1)", "Test", "Test ", "Test the Sound File"},
    };
    return table;
}

const QStringList& TrayMenuEntries() {
    static const QStringList entries = {
        ctl::mnuTrayShow,      ctl::mnuTrayCheckAll,    ctl::mnuTrayNewMessage,
        ctl::mnuTrayRunClient, ctl::mnuTrayAutoCheck,   ctl::mnuTraySounds,
        ctl::mnuTrayOptions,   ctl::mnuTrayMenuColours, ctl::mnuTrayUpdates,
        ctl::mnuTrayAbout,     ctl::mnuTrayHelp,        ctl::mnuTrayQuitApplication,
    };
    return entries;
}

const QStringList& EmailMenuEntries() {
    static const QStringList entries = {ctl::mnuEmailPreview, ctl::mnuEmailDelete,
                                        ctl::mnuEmailReply, ctl::mnuEmailOpen};
    return entries;
}

const QStringList& ListColumns() {
    static const QStringList columns = {"From", "To", "Subject", "Date", "Size"};
    return columns;
}

const QVector<ControlInfo>& ControlTable() {
    static const QVector<ControlInfo> table = [] {
        QVector<ControlInfo> t;
        using K = ControlKind;
        for (int page = 0; page < 4; ++page)
            t.append({Element(ctl::fraMain, page), K::Frame});
        for (const auto& name : {ctl::fraNoAcntsBanner, ctl::fraRulesToolbar, ctl::fraMainButtons,
                                 ctl::fraEmailToolBar, ctl::fraAcntToolBar})
            t.append({name, K::Frame});
        for (const auto& name : {ctl::lblBanner, ctl::lblNoAcntsBanner, ctl::lblRulesFileName})
            t.append({name, K::Label});
        t.append({ctl::cmdTakeFocus, K::Focus});
        t.append({ctl::TrayIcon, K::Tray});
        for (const auto& name : {ctl::lblAboutWebSite, ctl::lblAboutEmail})
            t.append({name, K::Link});
        for (const auto& name : {ctl::mnuTrayPopMenu, ctl::mnuEmailPopMenu})
            t.append({name, K::Menu});
        for (const auto& name : {ctl::tbrMainButtons, ctl::tbrEmail, ctl::tbrAcnts, ctl::tbrRules,
                                 ctl::tbrOptAbout, ctl::tbrColour, ctl::tbrMoveAccounts})
            t.append({name, K::Toolbar});
        t.append({ctl::fraAcnt, K::Frame});
        t.append({ctl::fraColourBox, K::Frame});
        for (int box = 1; box <= ctl::ColourBoxes; ++box)
            t.append({Element(ctl::lblColourBox, box), K::Link});
        for (const auto& name :
             {ctl::txtAcntName, ctl::txtAcntServer, ctl::txtAcntPort, ctl::txtAcntLoginID,
              ctl::txtAcntPassword, ctl::txtAcntClient, ctl::txtAcntSound})
            t.append({name, K::Text});
        t.append({ctl::txtAcntColour, K::Colour});
        for (const auto& name : {ctl::chkAcntEnabled, ctl::chkAcntSecure, ctl::chkAcntSoundOn})
            t.append({name, K::Check});
        for (const auto& name : {ctl::lblSoundName, ctl::lblAcntPlaySound, ctl::lblAcntRunSize})
            t.append({name, K::Label});
        // The Options page.
        t.append({ctl::TreeView, K::Combo});
        t.append({ctl::lblOptionsTitle, K::Label});
        for (int node = 1; node <= 6; ++node)
            t.append({Element(ctl::fraOptions, node), K::Frame});
        for (const auto& name :
             {ctl::chkRunStartUp, ctl::chkEmailCheckStartUp, ctl::chkMinimizeStartUp,
              ctl::chkUseInterval, ctl::chkNoCheck, ctl::chkShowEmailMsgBox, ctl::chkPlaySound,
              ctl::chkQuickCheck, ctl::chkDeleteConfirmation, ctl::chkCloseButton,
              ctl::chkSuppressConnectErrors, ctl::chkSuppressRetrieveErrors, ctl::chkShowNewOnly,
              ctl::chkRestoreColWidth, ctl::chkButtonStyle, ctl::chkFromToolTips,
              ctl::chkToToolTips, ctl::chkSubjectToolTips, ctl::chkMessageSort})
            t.append({name, K::Check});
        for (const auto& name : {ctl::txtStartUpDelay, ctl::txtMsgBoxTime, ctl::txtConnectTimeOut,
                                 ctl::txtHours, ctl::txtMinutes})
            t.append({name, K::Spin});
        for (int i = 0; i < 4; ++i)
            t.append({Element(ctl::updNoCheck, i), K::Spin});
        for (int i = 0; i < 2; ++i)
            t.append({Element(ctl::txtNoCheckTime, i), K::Text});
        for (const auto& name : {ctl::txtDefaultClient, ctl::txtDefaultSound, ctl::picClientIcon,
                                 ctl::txtMenuStyleFile, ctl::txtButtonStyle})
            t.append({name, K::Text});
        const QPair<QLatin1String, int> arrays[] = {
            {ctl::optShowEmail, 3},  {ctl::optRunSize, 2},    {ctl::opt3DTheme, 7},
            {ctl::optApplyStyle, 4}, {ctl::optSortColumn, 6}, {ctl::optSortOrder, 2}};
        for (const auto& [array, count] : arrays) {
            for (int i = 0; i < count; ++i)
                t.append({Element(array, i), K::Option});
        }
        for (const auto& name : {ctl::fraApplyStyle, ctl::fraSort})
            t.append({name, K::Frame});
        for (const auto& name :
             {ctl::lbl3DTopColour, ctl::lbl3DMiddleColour, ctl::lbl3DBottomColour})
            t.append({name, K::Link});
        for (const auto& name : {ctl::lblRunStartUp, ctl::lblEmailCheckStartUp,
                                 ctl::lblMinimizeStartUp, ctl::lblUseInterval, ctl::lblClientName})
            t.append({name, K::Label});
        for (int i : {0, 1, 2, 6})
            t.append({Element(ctl::lblMenuColours, i), K::Label});
        for (int i = 0; i < 3; ++i) {
            t.append({Element(ctl::lblInterval, i), K::Label});
            t.append({Element(ctl::lblSoundInfo, i), K::Label});
        }
        t.append({ctl::tbrOptMisc, K::Toolbar});
        for (int i = 0; i < 2; ++i) {
            t.append({Element(ctl::tbrClient, i), K::Toolbar});
            t.append({Element(ctl::tbrSound, i), K::Toolbar});
        }
        for (const MainButton& b : MainButtonTable())
            t.append({Button(ctl::tbrMainButtons, b.key), K::Button});
        for (const PageButton& b : PageButtonTable())
            t.append({Element(ctl::tbrButtons, b.index), K::Button});
        for (const ToolbarButton& b :
             ToolbarButtonTable() + AccountPageButtons() + OptionPageButtons())
            t.append({Button(b.toolbar, b.key), K::Button});
        for (const QString& name : TrayMenuEntries() + EmailMenuEntries())
            t.append({name, K::MenuEntry});
        for (const auto& name : {ctl::fraRules, ctl::fraRule, ctl::fraAction, ctl::fraNotify})
            t.append({name, K::Frame});
        for (const auto& name : {ctl::lstRules, ctl::cboRuleAccount, ctl::cboBoolean, ctl::cboWhere,
                                 ctl::cboCondition})
            t.append({name, K::Combo});
        for (const auto& name : {ctl::lstRulesEnabled, ctl::txtRuleName, ctl::txtCriteria,
                                 ctl::txtRuleDescription, ctl::txtRuleNotifyTime})
            t.append({name, K::Text});
        for (const auto& name : {ctl::chkNot, ctl::chkRuleNotify, ctl::chkRuleNotifyNew})
            t.append({name, K::Check});
        for (const auto& name :
             {ctl::lblRuleName, ctl::lblRuleAccount, ctl::lblCriteria, ctl::lblRuleDescription,
              ctl::lblRuleDescEntries, ctl::lblRuleNotifyTime})
            t.append({name, K::Label});
        for (int action = 0; action <= 3; ++action)
            t.append({Element(ctl::optRuleAction, action), K::Option});
        for (const auto& name : {ctl::tbrRuleUpdate, ctl::tbrMoveRules})
            t.append({name, K::Toolbar});
        for (const ToolbarButton& b : RulePageButtons())
            t.append({Button(b.toolbar, b.key), K::Button});
        t.append({ctl::TabStripEmail, K::TabStrip});
        t.append({ctl::TabStripAcnts, K::TabStrip});
        t.append({ctl::lvwEmail, K::List});
        for (const QString& column : ListColumns())
            t.append({Button(ctl::lvwEmail, column), K::Header});
        return t;
    }();
    return table;
}

ControlKind KindOf(const QString& name) {
    static const QHash<QString, ControlKind> kinds = [] {
        QHash<QString, ControlKind> h;
        for (const ControlInfo& c : ControlTable())
            h.insert(c.name, c.kind);
        return h;
    }();
    const auto it = kinds.constFind(name);
    if (it == kinds.constEnd())
        throw UnknownControl(QStringLiteral("no control named '%1'").arg(name));
    return *it;
}

void Expect(const QString& name, std::initializer_list<ControlKind> kinds) {
    const ControlKind kind = KindOf(name);
    for (ControlKind k : kinds) {
        if (k == kind)
            return;
    }
    throw UnknownControl(QStringLiteral("'%1' offers no such operation").arg(name));
}

} // namespace velmora
