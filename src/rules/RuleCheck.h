#pragma once

#include "rules/NeedleScanner.h"

#include <QString>
#include <QStringList>
#include <QVector>
#include <memory>

namespace velmora {

struct AppContext;

// One entry of a rule, read from its text form.
struct RuleEntry {
    enum Form { Plain, Star, Question };
    QString Where;
    QString Condition;
    QString Not;
    QString Criteria;
    // Worked out once: the wildcard form, the parts around the wildcard,
    // and the upper-case texts the Contains tests use.
    Form form = Plain;
    QString prefix, suffix;
    QString upperCriteria, upperPrefix, upperSuffix;
    // For a Contains test of a text field: the field (0 From, 1 To,
    // 2 Subject, 3 Body) and the needles it looks for in it.
    int field = -1;
    int criteriaNeedle = -1, prefixNeedle = -1, suffixNeedle = -1;
    // For a Size test: the criteria as a number, when it is one.
    bool criteriaIsNumber = false;
    int criteriaNumber = 0;
    // The words read once, as evaluation asks them of every message.
    enum Test { Contains, Equals, GreaterThan, LessThan, OtherTest };
    Test test = OtherTest;
    bool negated = false;
};

// The entries of a rule parsed from its text, kept while the text stays the
// same: evaluation reads every rule for every message, and the text is the
// one source of truth.
struct ParsedRule {
    QStringList source;
    bool malformed = false; // an entry lacks the blanks its parts need
    QVector<RuleEntry> entries;
    QString Conjunction;
    bool isAnd = false, isOr = false;
};

// The live rules parsed, with one scanner a text field for all the texts
// the Contains tests look for in it. Rebuilt whenever a rule's text changes.
struct RuleParseCache {
    QVector<QStringList> sources;
    QVector<ParsedRule> rules;
    std::shared_ptr<const FieldScanners> scanners = std::make_shared<FieldScanners>();
};

// Decides the Delete and Spam marks of one captured message by the live
// rules, and counts them on the account.
void RuleCheck(AppContext& ctx, int account, int message);
// Whether a live rule fits a message. A rule that cannot be evaluated shows
// its box and does not fit.
bool RuleMatches(AppContext& ctx, int rule, int account, int message);
// The text of one entry split into its parts; false when it lacks a blank
// that its parts need. `conjunction` takes the entry's AND or OR, or blank.
bool ParseRuleEntry(const QString& text, RuleEntry& entry, QString& conjunction);

} // namespace velmora
