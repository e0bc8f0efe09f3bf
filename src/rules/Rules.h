#pragma once

#include <QString>
#include <QVector>
#include <array>

namespace velmora {

struct AppContext;

// What to do with a message that fits up to ten conditions. Each condition
// (an entry) is kept as text, "[AND |OR ]Where Condition [NOT ]Criteria ",
// and parsed when it is evaluated. Slot 0 of Description holds all entries
// joined, for display.
struct Rule {
    QString Name;
    int Enabled = 0;
    QString Account;
    int Action = 0; // 1 Delete from Server, 2 Mark as Spam, 3 Ignore
    int DescCount = 0;
    std::array<QString, 11> Description;
    // Working set only: the highest DescCount since the rule was loaded.
    int RedoCount = 0;

    void JoinDescription();
};

// A whole rule set; the program keeps two, the live one that evaluation
// reads and the working one that the Rules page edits. Rules are numbered
// from 1; row 0 is unused.
struct RuleSet {
    int RuleCount = 0;
    int Show = 0;
    int ShowNew = 0;
    int Time = 30;
    QVector<Rule> rules = QVector<Rule>(1);

    Rule& operator[](int n) { return rules[n]; }
    const Rule& operator[](int n) const { return rules[n]; }
};

constexpr int MaxRuleEntries = 10;

// The Rules file: the program's folder and the options' RulesIniFileName.
QString RulesFilePath(AppContext& ctx);
void ReadRules(AppContext& ctx, const QString& path);
// The working set becomes the live one, and the file is written anew.
void WriteRules(AppContext& ctx, const QString& path);
void ResizeRules(AppContext& ctx, int count);
void CopyRulesToWorking(AppContext& ctx);

} // namespace velmora
