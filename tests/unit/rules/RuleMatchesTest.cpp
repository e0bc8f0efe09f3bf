#include "rules/NeedleScanner.h"
#include "rules/RuleCheck.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

// Rows are (entries, message, fits, boxes): every row of the text tests,
// both wildcards, blank criteria, case, sizes and their failures, joins.
class RuleMatchesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void matches_data();
    void matches();
    void firstMarkingRuleDecides_data();
    void firstMarkingRuleDecides();
    void scannerAgreesWithPlainSearch();
    void scannerAgreesOnLongTexts_data();
    void scannerAgreesOnLongTexts();
    void scannerFindsNeedlesAcrossItsParts_data();
    void scannerFindsNeedlesAcrossItsParts();
    void scannerAgreesOnManyNeedles_data();
    void scannerAgreesOnManyNeedles();

private:
    std::unique_ptr<TestRig> rig;
    static void setRule(Rule& rule, const QStringList& entries, int action = 2,
                        const QString& account = "All Accounts", int enabled = 1);
    // The first needle whose scanned place differs from a plain search's,
    // described; blank when all agree.
    static QString disagreement(const QStringList& needles, const QString& text);
};

using Fields = QMap<QString, QString>;
Q_DECLARE_METATYPE(Fields)

void RuleMatchesTest::initTestCase() {
    rig = std::make_unique<TestRig>();
    rig->addAccount(1, "Home");
    QVERIFY(rig->start());
    rig->ctx->accounts[1].AcntMsgCount = 1;
    rig->ctx->messages.GrowMessageStore(1);
}

void RuleMatchesTest::setRule(Rule& rule, const QStringList& entries, int action,
                              const QString& account, int enabled) {
    rule = Rule();
    rule.Name = "r";
    rule.Enabled = enabled;
    rule.Account = account;
    rule.Action = action;
    rule.DescCount = int(entries.size());
    for (int i = 0; i < entries.size(); ++i)
        rule.Description[i + 1] = entries[i];
    rule.JoinDescription();
}

QString RuleMatchesTest::disagreement(const QStringList& needles, const QString& text) {
    NeedleScanner scanner;
    scanner.build(needles);
    std::vector<int> first;
    scanner.scan(text, first);
    const QString upper = RuleUpper(text);
    for (int n = 0; n < needles.size(); ++n) {
        const int expected = text.isEmpty() ? 0 : int(upper.indexOf(needles[n])) + 1;
        if (first[size_t(n)] != expected)
            return QString("'%1' at %2, not %3, in a text of %4")
                .arg(needles[n])
                .arg(first[size_t(n)])
                .arg(expected)
                .arg(text.size());
    }
    return {};
}

void RuleMatchesTest::matches_data() {
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<Fields>("message");
    QTest::addColumn<bool>("fits");
    QTest::addColumn<int>("boxes");
    auto row = [](const char* name, QStringList entries, Fields message, bool fits, int boxes = 0) {
        QTest::newRow(name) << entries << message << fits << boxes;
    };
    row("Contains ignores case", {"Subject Contains free "}, {{"Subject", "Get FREE stuff"}}, true);
    row("Contains folds case beyond ASCII", {"Body Contains große straße "},
        {{"Body", QString::fromUtf8("GROßE STRAßE, ſtill")}}, true);
    row("a letter whose capital is ASCII", {"Body Contains still "},
        {{"Body", QString::fromUtf8("ſtıll")}}, true);
    row("Contains NOT", {"Subject Contains NOT free "}, {{"Subject", "hello"}}, true);
    row("Contains NOT, present", {"Subject Contains NOT free "}, {{"Subject", "free"}}, false);
    row("Equals minds case", {"Subject Equals Hello "}, {{"Subject", "hello"}}, false);
    row("Equals", {"Subject Equals Hello "}, {{"Subject", "Hello"}}, true);
    row("Equals NOT", {"Subject Equals NOT Hello "}, {{"Subject", "hello"}}, true);
    row("inner blanks of the criteria", {"Subject Contains free offer "},
        {{"Subject", "a FREE OFFER"}}, true);
    row("* Contains in either order", {"Subject Contains free*offer "}, {{"Subject", "OFFER FREE"}},
        true);
    row("* Contains NOT, one part missing", {"Subject Contains NOT free*offer "},
        {{"Subject", "free only"}}, true);
    row("* Equals, nothing between", {"Subject Equals ab*cd "}, {{"Subject", "abcd"}}, true);
    row("* Equals, text between", {"Subject Equals ab*cd "}, {{"Subject", "abXYcd"}}, true);
    row("* Equals minds case", {"Subject Equals ab*cd "}, {{"Subject", "ABcd"}}, false);
    row("* Equals NOT counts the star as one", {"Subject Equals NOT ab*cd "},
        {{"Subject", "abXYcd"}}, true);
    row("? Contains bounds the suffix", {"From Contains a?b "}, {{"From", "xxxxxxxxab"}}, false);
    row("? Contains", {"From Contains a?b "}, {{"From", "ab"}}, true);
    row("? Contains NOT has no bound", {"From Contains NOT a?b "}, {{"From", "xxxxxxxxab"}}, false);
    row("? Equals one character", {"Subject Equals a?c "}, {{"Subject", "abc"}}, true);
    row("? Equals none", {"Subject Equals a?c "}, {{"Subject", "ac"}}, false);
    row("? Equals two", {"Subject Equals a?c "}, {{"Subject", "abbc"}}, false);
    row("? Equals NOT", {"Subject Equals NOT a?c "}, {{"Subject", "abbc"}}, true);
    row("? wins over an earlier *", {"Subject Equals x*y?z "}, {{"Subject", "x*yQz"}}, true);
    row("blank Contains fits a field", {"Body Contains "}, {{"Body", "x"}}, true);
    row("blank Contains misses a blank field", {"Body Contains "}, {{"Body", ""}}, false);
    row("blank Equals fits a blank field", {"Body Equals "}, {{"Body", ""}}, true);
    row("unknown condition", {"Subject Resembles x "}, {{"Subject", "x"}}, false);
    row("attachment", {"Attachment IsPresent "}, {{"Attach", "1"}}, true);
    row("attachment NOT", {"Attachment IsPresent NOT "}, {{"Attach", "0"}}, true);
    row("attachment with its two blanks", {"Attachment IsPresent  "}, {{"Attach", "1"}}, true);
    row("size equal is not greater", {"Size GreaterThan 500 "}, {{"Size", "500"}}, false);
    row("nor less, negated", {"Size GreaterThan NOT 500 "}, {{"Size", "500"}}, false);
    row("size greater", {"Size GreaterThan 500 "}, {{"Size", "501"}}, true);
    row("size LessThan NOT", {"Size LessThan NOT 5 "}, {{"Size", "7"}}, true);
    row("criteria rounds half to even", {"Size Equals 2.5 "}, {{"Size", "2"}}, true);
    row("criteria no number", {"Size Equals big "}, {{"Size", "2"}}, false, 1);
    row("size beyond 16 bits", {"Size LessThan 5 "}, {{"Size", "33000"}}, false, 1);
    row("largest size", {"Size GreaterThan 32766 "}, {{"Size", "32767"}}, true);
    row("criteria with an exponent", {"Size Equals 1e3 "}, {{"Size", "1000"}}, true);
    row("entry without its blanks", {"Subject"}, {{"Subject", "x"}}, false, 1);
    row("AND, one fits", {"Subject Contains a ", "AND From Contains b "},
        {{"Subject", "a"}, {"From", "x"}}, false);
    row("AND, both fit", {"Subject Contains a ", "AND From Contains b "},
        {{"Subject", "a"}, {"From", "b"}}, true);
    row("OR, one fits", {"Subject Contains a ", "OR From Contains b "},
        {{"Subject", "x"}, {"From", "b"}}, true);
    row("unknown Where later spoils OR", {"Subject Contains a ", "OR Header Contains b "},
        {{"Subject", "a"}}, false);
    row("failure later spoils OR", {"Subject Contains a ", "OR Size Equals x "},
        {{"Subject", "a"}, {"Size", "1"}}, false, 1);
    row("the last conjunction rules",
        {"Subject Contains a ", "OR From Contains b ", "From Contains c "},
        {{"Subject", "a"}, {"From", "bc"}}, false);
    row("NOT as criteria word", {"Subject Contains NOT "}, {{"Subject", "NOT"}}, false);
}

void RuleMatchesTest::matches() {
    QFETCH(QStringList, entries);
    QFETCH(Fields, message);
    QFETCH(bool, fits);
    QFETCH(int, boxes);
    AppContext& ctx = *rig->ctx;
    MailMessage& m = ctx.messages.at(1, 1);
    m = MailMessage();
    m.From = message.value("From");
    m.To = "me@example.com";
    m.Subject = message.value("Subject");
    m.Body = message.value("Body");
    m.Size = message.value("Size", "1");
    m.Attach = message.value("Attach") == "1";
    ctx.rules.LiveRules.RuleCount = 1;
    ctx.rules.LiveRules.rules.resize(2);
    setRule(ctx.rules.LiveRules[1], entries);
    rig->boxes.boxes.clear();
    QCOMPARE(RuleMatches(ctx, 1, 1, 1), fits);
    QCOMPARE(rig->boxes.boxes.size(), boxes);
    if (boxes > 0) {
        const RecordedBoxes::Box& box = rig->boxes.boxes[0];
        QCOMPARE(box.title, QString("Velmora"));
        QCOMPARE(box.text, QString("Rule Check - Process Error\r\nRemove from final code!!"));
        QCOMPARE(box.icon, BoxIcon::None);
    }

    // RuleCheck marks by the same verdict.
    RuleCheck(ctx, 1, 1);
    QCOMPARE(m.Spam, fits);
}

void RuleMatchesTest::firstMarkingRuleDecides_data() {
    QTest::addColumn<QList<int>>("actions");
    QTest::addColumn<QStringList>("accounts");
    QTest::addColumn<QString>("mark");
    QTest::newRow("Ignore protects nothing") << QList<int>{3, 1} << QStringList{"", ""} << "Delete";
    QTest::newRow("the first wins") << QList<int>{2, 1} << QStringList{"", ""} << "Spam";
    QTest::newRow("another account's rule")
        << QList<int>{1, 2} << QStringList{"Work", ""} << "Spam";
    QTest::newRow("names differ by case") << QList<int>{1} << QStringList{"home"} << "";
    QTest::newRow("a disabled bad rule raises nothing")
        << QList<int>{-1, 1} << QStringList{"", ""} << "Delete";
}

void RuleMatchesTest::firstMarkingRuleDecides() {
    QFETCH(QList<int>, actions);
    QFETCH(QStringList, accounts);
    QFETCH(QString, mark);
    AppContext& ctx = *rig->ctx;
    MailMessage& m = ctx.messages.at(1, 1);
    m = MailMessage();
    m.Subject = "offer";
    m.Spam = m.Delete = true; // decided afresh
    ctx.rules.LiveRules.RuleCount = int(actions.size());
    ctx.rules.LiveRules.rules.resize(actions.size() + 1);
    for (int r = 0; r < actions.size(); ++r) {
        const bool bad = actions[r] < 0;
        setRule(ctx.rules.LiveRules[r + 1], {bad ? "Subject" : "Subject Contains offer "},
                bad ? 1 : actions[r], accounts[r].isEmpty() ? "All Accounts" : accounts[r],
                bad ? 0 : 1);
    }
    Account& a = ctx.accounts[1];
    a.AcntSpamCount = a.AcntDeleteCount = 0;
    rig->boxes.boxes.clear();
    RuleCheck(ctx, 1, 1);
    QCOMPARE(m.Delete, mark == "Delete");
    QCOMPARE(m.Spam, mark == "Spam");
    QCOMPARE(a.AcntDeleteCount, mark == "Delete" ? 1 : 0);
    QCOMPARE(a.AcntSpamCount, mark == "Spam" ? 1 : 0);
    QVERIFY(rig->boxes.boxes.isEmpty());
}

// The one-pass scan must give what a search for each needle alone gives,
// on overlapping needles, repeats and letters beyond ASCII, in short texts
// and in long ones, which it reads in parts.
void RuleMatchesTest::scannerAgreesWithPlainSearch() {
    const QString alphabet = QString::fromUtf8("abAB éÉßΣσ");
    QRandomGenerator random(7);
    auto word = [&](int most) {
        QString w;
        for (int n = int(random.bounded(most + 1)); n > 0; --n)
            w += alphabet[int(random.bounded(int(alphabet.size())))];
        return w;
    };
    for (int round = 0; round < 300; ++round) {
        QStringList needles;
        for (int n = 0; n < 6; ++n)
            needles.append(RuleUpper(word(4)));
        const QString text = word(round % 3 == 0 ? 3000 : 40);
        const QString differs = disagreement(needles, text);
        QVERIFY2(differs.isEmpty(), qPrintable(differs + ": " + text.left(80)));
    }
}

// Long texts with needles planted late: around the length where the text
// is read in four parts, long needles, letters beyond ASCII whose upper
// case differs, and so many different letters that the table is too large
// for 16 bits.
void RuleMatchesTest::scannerAgreesOnLongTexts_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("needles");
    QTest::addColumn<QString>("alphabet");
    const QStringList words{"QRST", "XY", "ABCDEFGHIJ"};
    QTest::newRow("just below four parts") << 4 * (4 * 10 + 64) - 1 << words << "abxyqrst ";
    QTest::newRow("at four parts") << 4 * (4 * 10 + 64) << words << "abxyqrst ";
    QTest::newRow("a long needle")
        << 20000 << QStringList{"THE QUICK BROWN FOX JUMPS OVER THE LAZY DOG", "OX"}
        << "the quick brown fox jumps over the lazy dog";
    QTest::newRow("beyond ASCII, mixed in")
        << 20000 << QStringList{"ΣΑΣ", "SS", "ÉÉ"} << QString::fromUtf8("sσςΣaα é É");
    auto distinct = [](int count) {
        QStringList needles;
        for (int c = 0; c < count; c += 5) {
            QString needle;
            for (int k = c; k < qMin(count, c + 5); ++k)
                needle += QChar(0x4e00 + k);
            needles.append(needle);
        }
        return needles;
    };
    auto letters = [](int count) {
        QString all;
        for (int k = 0; k < count; ++k)
            all += QChar(0x4e00 + k);
        return all + "ab";
    };
    QTest::newRow("300 letters") << 40000 << distinct(300) << letters(300);
}

void RuleMatchesTest::scannerAgreesOnLongTexts() {
    QFETCH(int, size);
    QFETCH(QStringList, needles);
    QFETCH(QString, alphabet);
    QRandomGenerator random(11);
    for (int round = 0; round < 4; ++round) {
        QString text;
        for (int k = 0; k < size; ++k)
            text += alphabet[int(random.bounded(int(alphabet.size())))];
        // Some needles planted late, where later parts read them.
        for (const QString& needle : needles) {
            if (random.bounded(2) == 0)
                text.replace(int(random.bounded(size / 2, size - int(needle.size()))),
                             needle.size(), needle.toLower());
        }
        const QString differs = disagreement(needles, text);
        QVERIFY2(differs.isEmpty(), qPrintable(differs));
    }
}

// A long text is read in four parts; a needle that straddles where one
// part ends must still be found, once, at its first place.
void RuleMatchesTest::scannerFindsNeedlesAcrossItsParts_data() {
    QTest::addColumn<int>("boundary");
    QTest::addColumn<QChar>("filler");
    QTest::newRow("first end") << 300 << QChar('y');
    QTest::newRow("middle") << 600 << QChar('y');
    QTest::newRow("last end") << 900 << QChar('y');
    QTest::newRow("beyond ASCII") << 600 << QChar(0x3c3);
}

void RuleMatchesTest::scannerFindsNeedlesAcrossItsParts() {
    QFETCH(int, boundary);
    QFETCH(QChar, filler);
    const int size = 1200;
    NeedleScanner scanner;
    scanner.build({"QRST", "X"});
    for (int at = boundary - 10; at <= boundary + 10; ++at) {
        QString text(size, filler);
        text.replace(at, 4, "qrst");
        text.replace(size - 1, 1, "x");
        std::vector<int> first;
        scanner.scan(text, first);
        QCOMPARE(first[0], at + 1);
        QCOMPARE(first[1], size);
    }
}

// Many needles made of the words of the text, so that they stand often,
// with near misses among them: needles planted first and last, repeated,
// and sharing their beginnings.
void RuleMatchesTest::scannerAgreesOnManyNeedles_data() {
    QTest::addColumn<int>("needles");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("letters");
    QTest::newRow("a few needles") << 6 << 3001 << "abcdefghijklmnopqrstuvwxyz";
    QTest::newRow("many needles") << 150 << 20000 << "abcdefghijklmnopqrstuvwxyz";
    QTest::newRow("a small alphabet") << 20 << 8000 << "abcdeno";
    QTest::newRow("letters beyond ASCII")
        << 30 << 10000 << QString::fromUtf8("abcdefghijklmnopéßσςΣ");
    QTest::newRow("more needles than words") << 250 << 5000 << "abcdefghijklmnopqrstuvwxyz";
}

void RuleMatchesTest::scannerAgreesOnManyNeedles() {
    QFETCH(int, needles);
    QFETCH(int, size);
    QFETCH(QString, letters);
    QRandomGenerator random(13);
    auto pick = [&](const auto& list) {
        return list[int(random.bounded(int(list.size())))];
    };
    for (int round = 0; round < 6; ++round) {
        QStringList words;
        for (int w = 0; w < 40; ++w) {
            QString word;
            for (int n = 2 + int(random.bounded(7)); n > 0; --n)
                word += pick(letters);
            words.append(word);
        }
        QStringList wanted;
        while (wanted.size() < needles) {
            QString needle = pick(words);
            while (needle.size() < 4 || random.bounded(3) == 0)
                needle += " " + pick(words);
            if (random.bounded(4) == 0)
                needle.chop(1); // a near miss
            if (random.bounded(6) == 0 && !wanted.isEmpty())
                needle = wanted.last(); // the same needle twice
            wanted.append(RuleUpper(needle));
        }
        QString text = pick(wanted).toLower();
        while (text.size() < size)
            text += (random.bounded(2) ? " " : "\n") + pick(words);
        text.truncate(size - wanted.last().size());
        text += wanted.last();
        const QString differs = disagreement(wanted, text);
        QVERIFY2(differs.isEmpty(), qPrintable(differs));
    }
}

QTEST_GUILESS_MAIN(RuleMatchesTest)
#include "RuleMatchesTest.moc"
