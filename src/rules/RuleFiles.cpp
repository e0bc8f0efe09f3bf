#include "rules/RuleFiles.h"

#include "checking/CheckCycle.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "options/IniFile.h"
#include "options/Setting.h"
#include "platform/Controls.h"
#include "platform/FileDialogs.h"
#include "platform/Files.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "platform/MessageView.h"
#include "rules/RuleEditing.h"
#include "rules/Rules.h"

#include <QFileInfo>

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");

// Takes out the first `times` occurrences of `what`, left to right over the
// text as given.
QString RemoveFirst(const QString& text, const QString& what, int times) {
    QString out;
    qsizetype from = 0;
    for (int done = 0; done < times; ++done) {
        const qsizetype at = text.indexOf(what, from);
        if (at < 0)
            break;
        out += text.mid(from, at - from);
        from = at + what.size();
    }
    return out + text.mid(from);
}

// Holds the timed checks off for as long as a dialog is up.
class Suspended {
public:
    explicit Suspended(AppContext& ctx) : ctx(ctx) {
        SuspendStartUpTimer(ctx, QStringLiteral("Suspend"));
        SuspendAutoCheck(ctx, QStringLiteral("Suspend"));
    }
    ~Suspended() {
        SuspendStartUpTimer(ctx, QStringLiteral("Restore"));
        SuspendAutoCheck(ctx, QStringLiteral("Restore"));
    }
    Suspended(const Suspended&) = delete;
    Suspended& operator=(const Suspended&) = delete;

private:
    AppContext& ctx;
};

void RefuseName(AppContext& ctx, const QString& name) {
    ctx.svc.boxes->show(
        ctx.shell.AppTitle + QStringLiteral(" - Rules FileName Error"),
        QStringLiteral("Rules FileName Error...") + CRLF + CRLF + QStringLiteral("The FileName '") +
            name + QStringLiteral("' would place the Rules File") + QString(10, QLatin1Char(' ')) +
            CRLF + QStringLiteral("outside the program's folder.") + CRLF + CRLF +
            QStringLiteral("Please enter a FileName without '/', '\\' or '..'.") + CRLF,
        BoxIcon::Critical, BoxButtons::Ok);
}

void UseRulesFileName(AppContext& ctx, const QString& name) {
    ctx.options.RulesIniFileName = name;
    setting::saveText(*ctx.svc.settings, setting::SectionOptions,
                      QStringLiteral("RulesIniFileName"), name);
}

// The working rules written under `name`, which then is the file in use;
// when the file cannot be written the old name stays.
bool WriteUnderName(AppContext& ctx, const QString& name) {
    const QString old = ctx.options.RulesIniFileName;
    UseRulesFileName(ctx, name);
    if (WriteWorkingRules(ctx, RulesFilePath(ctx)))
        return true;
    UseRulesFileName(ctx, old);
    ctx.view->setCaption(ctl::lblRulesFileName, QStringLiteral("FileName: ") + old);
    return false;
}

QString IntroText() {
    return QStringLiteral("Changing the Rules FileName will allow "
                          "multiple users to have their own set of rules if "
                          "the FileName is different for each user. The location "
                          "of the Rule File cannot be changed and the new FileName "
                          "will always have the prefix 'Rules'. It is suggested to "
                          "use your name as the FileName to keep each user's file "
                          "separate and therefore unique.");
}

} // namespace

QString RulesPrefix(const QString& name) {
    return QStringLiteral("Rules") +
           RemoveFirst(RemoveFirst(name, QStringLiteral("Rules"), 5), QStringLiteral("Rule"), 4);
}

QString RenamedRulesFile(const QString& typed) {
    QString name = RulesPrefix(typed);
    if (name.right(4) != QLatin1String(".ini"))
        name += QLatin1String(".ini");
    return name;
}

bool LeavesRulesFolder(const QString& name) {
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) ||
        name.contains(QLatin1String("..")))
        return true;
    for (const QChar c : name) {
        if (c.unicode() < 0x20)
            return true;
    }
    return false;
}

void RenameRuleFile(AppContext& ctx) {
    std::unique_ptr<RuleFileView> form = ctx.svc.windows->createRuleFileView();
    if (!form)
        return;
    Suspended held(ctx);
    form->setCaption(ctx.shell.AppTitle + QStringLiteral(" - Rules FileName"));
    form->setIntro(IntroText());
    form->setFolder(ctx.svc.files->ProgramFolder());
    form->setCurrentName(ctx.options.RulesIniFileName);
    form->setNewName(QStringLiteral("Rules"));
    QString typed;
    if (!form->exec(typed))
        return;
    form.reset();
    const QString name = RenamedRulesFile(typed);
    if (LeavesRulesFolder(typed) || LeavesRulesFolder(name)) {
        RefuseName(ctx, typed);
        return;
    }
    // Another user's file of that name would be lost under this one.
    const QString target = ctx.svc.files->ProgramFolder() + QLatin1Char('/') + name;
    if (name != ctx.options.RulesIniFileName && QFileInfo::exists(target) &&
        ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Rules FileName Exists"),
                            QStringLiteral("The Rules File '") + name +
                                QStringLiteral("' already exists.") +
                                QString(10, QLatin1Char(' ')) + CRLF + CRLF +
                                QStringLiteral("Its rules will be replaced by the current ones.") +
                                CRLF + CRLF + QStringLiteral("Would you like to proceed?") + CRLF,
                            BoxIcon::Critical, BoxButtons::YesNo, 2) != BoxAnswer::Yes)
        return;
    if (WriteUnderName(ctx, name))
        CheckRulesDirty(ctx);
}

void ImportRules(AppContext& ctx) {
    Suspended held(ctx);
    const QString path = ctx.svc.dialogs->OpenFile(
        QStringLiteral("Import Rules"), QStringLiteral("(*.ini)"), ctx.svc.files->ProgramFolder());
    if (path.isEmpty())
        return;
    int count = 0;
    {
        IniFile ini(*ctx.svc.profiles, ctx.rules.ProfilePath);
        ini.setConfigName(path);
        bool ok = false;
        count = ini.KeyGet("Rules", "RuleCount", "").trimmed().toInt(&ok);
        if (!ok)
            count = 0;
    }
    if (count <= 0) {
        ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Rule Import Failed"),
                            QStringLiteral("Rule Import Failed.") + CRLF + CRLF +
                                QStringLiteral("The Imported Rule File does not appear ") +
                                QString(10, QLatin1Char(' ')) + CRLF +
                                QStringLiteral("to be the correct format or it does not") + CRLF +
                                QStringLiteral("contain any Rules.") + CRLF + CRLF +
                                QStringLiteral("Try Help for further information.") + CRLF,
                            BoxIcon::Information, BoxButtons::Ok);
        return;
    }
    const QString name = RulesPrefix(QFileInfo(path).fileName());
    if (LeavesRulesFolder(name)) {
        RefuseName(ctx, QFileInfo(path).fileName());
        return;
    }
    const QString oldPath = RulesFilePath(ctx);
    ReadRules(ctx, path);
    int modifications = 0;
    RuleSet& live = ctx.rules.LiveRules;
    for (int n = 1; n <= live.RuleCount; ++n) {
        if (live[n].Account != QLatin1String("All Accounts")) {
            live[n].Account = QStringLiteral("All Accounts");
            ++modifications;
        }
    }
    ctx.rules.CurrentRule = 1;
    LoadRulePage(ctx);
    if (!WriteUnderName(ctx, name)) {
        // Nothing was imported: the rules in force are the old file's.
        ReadRules(ctx, oldPath);
        ctx.rules.CurrentRule = ctx.rules.LiveRules.RuleCount >= 1 ? 1 : 0;
        LoadRulePage(ctx);
        return;
    }
    QString text = QStringLiteral("The Rule File has been successfully imported.") +
                   QString(10, QLatin1Char(' ')) + CRLF + CRLF;
    if (modifications > 0)
        text += QStringLiteral("Some Account modifications were made to") + CRLF +
                QStringLiteral("ensure compatibility with your current Accounts.") + CRLF +
                QStringLiteral("You may need to adjust these.") + CRLF + CRLF;
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Rule Import Successful"), text,
                        BoxIcon::Information, BoxButtons::Ok);
}

} // namespace velmora
