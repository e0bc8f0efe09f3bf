#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

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
};

// The entries of a rule parsed from its text, kept while the text stays the
// same: evaluation reads every rule for every message, and the text is the
// one source of truth.
struct ParsedRule {
    QStringList source;
    bool malformed = false; // an entry lacks the blanks its parts need
    QVector<RuleEntry> entries;
    QString Conjunction;
};

struct RuleParseCache {
    QVector<ParsedRule> rules;
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
