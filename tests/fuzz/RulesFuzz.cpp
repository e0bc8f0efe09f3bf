// Rule entries parsed and matched: up to ten entries of one rule against a
// message, decided twice, which must agree.
#include "FuzzInput.h"
#include "rules/RuleCheck.h"
#include "support/TestRig.h"

#include <QCoreApplication>

using namespace velmora;

namespace {

TestRig* rig = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static QCoreApplication app(*argc, *argv);
    rig = new TestRig;
    rig->addAccount(1, "Home");
    rig->start();
    rig->ctx->accounts[1].AcntMsgCount = 1;
    rig->ctx->messages.GrowMessageStore(1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput in(data, size);
    AppContext& ctx = *rig->ctx;
    ctx.rules.LiveRules.rules.resize(2);
    ctx.rules.LiveRules.RuleCount = 1;
    Rule& rule = ctx.rules.LiveRules[1];
    rule = Rule();
    rule.Name = QStringLiteral("fuzz");
    rule.Enabled = 1;
    rule.Account = QStringLiteral("All Accounts");
    rule.Action = 2;
    // Entries, one a line, up to a blank line; each as the Rules file gives
    // it back, with its closing blank.
    for (QString line = in.text('\n'); !line.isEmpty() && rule.DescCount < MaxRuleEntries;
         line = in.text('\n')) {
        RuleEntry entry;
        QString conjunction;
        ParseRuleEntry(line, entry, conjunction);
        rule.Description[++rule.DescCount] = line + QLatin1Char(' ');
    }
    rule.JoinDescription();

    MailMessage& m = ctx.messages.at(1, 1);
    m = MailMessage();
    m.From = in.text('\n');
    m.To = in.text('\n');
    m.Subject = in.text('\n');
    m.Size = in.text('\n');
    m.Attach = in.byte() & 1;
    m.Body = QString::fromUtf8(in.rest());

    Account& account = ctx.accounts[1];
    account.AcntSpamCount = account.AcntDeleteCount = 0;
    RuleMatches(ctx, 1, 1, 1);
    RuleCheck(ctx, 1, 1);
    // A second look at the same message gives the same verdict.
    const bool spam = m.Spam, remove = m.Delete;
    m.Spam = m.Delete = false;
    RuleCheck(ctx, 1, 1);
    FUZZ_CHECK(m.Spam == spam && m.Delete == remove);
    rig->boxes.boxes.clear();
    return 0;
}
