#include "rules/RuleCheck.h"

#include "app/AppContext.h"
#include "platform/MessageBoxes.h"

#include <cmath>
#include <optional>

namespace velmora {

namespace {

// A failure inside an evaluation; it ends the rule with one box.
struct RuleFailure {};

QString Trim(const QString& text) {
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text[first] == QLatin1Char(' '))
        ++first;
    while (last > first && text[last - 1] == QLatin1Char(' '))
        --last;
    return text.mid(first, last - first);
}

// Position of the next blank from `start` on, counting from 1; 0 for none.
qsizetype NextBlank(const QString& text, qsizetype start) {
    if (start > text.size())
        return 0;
    return text.indexOf(QLatin1Char(' '), start - 1) + 1;
}

// The part from `start` up to the blank at `blank`; none when it is missing.
bool Part(const QString& text, qsizetype start, qsizetype blank, QString& part) {
    if (blank - start < 0)
        return false;
    part = Trim(text.mid(start - 1, blank - start));
    return true;
}

// Position of y in x by exact search, counting from 1: 0 when absent or
// when x is blank; 1 when y is blank and x is not.
qsizetype Pos(const QString& x, const QString& y) {
    if (x.isEmpty())
        return 0;
    if (y.isEmpty())
        return 1;
    return x.indexOf(y) + 1;
}

QString After(const QString& text, qsizetype from) {
    return from - 1 >= text.size() ? QString() : text.mid(from - 1);
}

// A signed 16-bit whole number, rounded half to even, or a failure.
int Int16(const QString& text) {
    bool ok = false;
    const double value = Trim(text).toDouble(&ok);
    if (!ok || !std::isfinite(value))
        throw RuleFailure{};
    const double rounded = std::nearbyint(value);
    if (rounded < -32768 || rounded > 32767)
        throw RuleFailure{};
    return int(rounded);
}

// The message fields the tests read, with their upper-case forms made once.
struct Fields {
    explicit Fields(const MailMessage& m) : m(m) {}
    const QString& text(const QString& where) const {
        return where == QLatin1String("From")      ? m.From
               : where == QLatin1String("To")      ? m.To
               : where == QLatin1String("Subject") ? m.Subject
                                                   : m.Body;
    }
    const QString& upper(const QString& where) const {
        const int i = where == QLatin1String("From")      ? 0
                      : where == QLatin1String("To")      ? 1
                      : where == QLatin1String("Subject") ? 2
                                                          : 3;
        if (!uppers[i])
            uppers[i] = text(where).toUpper();
        return *uppers[i];
    }
    const MailMessage& m;
    mutable std::optional<QString> uppers[4];
};

bool TextTest(const RuleEntry& e, const QString& f, const QString& upperF) {
    const bool negated = e.Not == QLatin1String("NOT");
    const bool contains = e.Condition == QLatin1String("Contains");
    if (!contains && e.Condition != QLatin1String("Equals"))
        return false;
    switch (e.form) {
    case RuleEntry::Plain:
        if (contains)
            return negated ? Pos(upperF, e.upperCriteria) == 0 : Pos(upperF, e.upperCriteria) >= 1;
        return negated ? f != e.Criteria : f == e.Criteria;
    case RuleEntry::Star:
    case RuleEntry::Question: {
        if (contains) {
            const qsizetype p = Pos(upperF, e.upperPrefix);
            const qsizetype s = Pos(upperF, e.upperSuffix);
            if (negated)
                return p == 0 || s == 0;
            // The "?" form bounds where the suffix may stand; neither form
            // asks that it stand behind the prefix.
            return p >= 1 && s >= 1 && (e.form == RuleEntry::Star || s <= e.Criteria.size());
        }
        const bool head = f.left(e.prefix.size()) == e.prefix;
        // Past the wildcard as if it stood for one character, in the negated
        // "*" form too, which is therefore no opposite of its plain one.
        const bool tail = After(f, e.prefix.size() + 2) == e.suffix;
        if (negated)
            return !head || !tail;
        if (e.form == RuleEntry::Star)
            return head && f.right(e.suffix.size()) == e.suffix;
        return head && tail;
    }
    }
    return false;
}

bool SizeTest(const RuleEntry& e, const QString& size) {
    const int f = Int16(size);
    const int c = Int16(e.Criteria);
    const bool negated = e.Not == QLatin1String("NOT");
    // Strict both ways: a size equal to the criteria fits neither
    // "GreaterThan" nor its negation.
    if (e.Condition == QLatin1String("Equals"))
        return negated ? f != c : f == c;
    if (e.Condition == QLatin1String("GreaterThan"))
        return negated ? f < c : f > c;
    if (e.Condition == QLatin1String("LessThan"))
        return negated ? f > c : f < c;
    return false;
}

const ParsedRule& Parsed(AppContext& ctx, int n) {
    const Rule& rule = ctx.LiveRules[n];
    QStringList source;
    for (int i = 1; i <= rule.DescCount; ++i)
        source.append(rule.Description[i]);
    QVector<ParsedRule>& cache = ctx.RuleCache.rules;
    if (cache.size() <= n)
        cache.resize(n + 1);
    ParsedRule& parsed = cache[n];
    if (parsed.source == source)
        return parsed;
    parsed = ParsedRule();
    parsed.source = source;
    for (const QString& text : source) {
        RuleEntry entry;
        if (!ParseRuleEntry(text, entry, parsed.Conjunction)) {
            parsed.malformed = true;
            break;
        }
        parsed.entries.append(entry);
    }
    return parsed;
}

bool Evaluate(const ParsedRule& rule, const MailMessage& m) {
    if (rule.malformed)
        throw RuleFailure{};
    const Fields fields(m);
    const int count = int(rule.entries.size());
    QVector<bool> match(count, false);
    for (int i = 0; i < count; ++i) {
        const RuleEntry& e = rule.entries[i];
        if (e.Where == QLatin1String("From") || e.Where == QLatin1String("To") ||
            e.Where == QLatin1String("Subject") || e.Where == QLatin1String("Body"))
            match[i] = TextTest(e, fields.text(e.Where), fields.upper(e.Where));
        else if (e.Where == QLatin1String("Attachment"))
            match[i] = e.Not == QLatin1String("NOT") ? !m.Attach : m.Attach;
        else if (e.Where == QLatin1String("Size"))
            match[i] = SizeTest(e, m.Size);
        else
            return false;
        if (match[i] && count == 1)
            return true;
    }
    // One conjunction for the whole rule: the last entry's.
    int matched = 0;
    for (int i = 0; i < count; ++i) {
        if (rule.Conjunction == QLatin1String("OR") && match[i])
            return true;
        if (rule.Conjunction == QLatin1String("AND") && match[i])
            ++matched;
    }
    return rule.Conjunction == QLatin1String("AND") && matched == count;
}

} // namespace

bool ParseRuleEntry(const QString& d, RuleEntry& entry, QString& conjunction) {
    qsizetype p = NextBlank(d, 1);
    const QString first = Trim(d.left(p));
    qsizetype s = 1;
    conjunction.clear();
    if (first == QLatin1String("AND") || first == QLatin1String("OR")) {
        conjunction = first;
        s = p + 1;
    }
    p = NextBlank(d, s);
    if (!Part(d, s, p, entry.Where))
        return false;
    s = p + 1;
    p = NextBlank(d, s);
    if (!Part(d, s, p, entry.Condition))
        return false;
    s = p + 1;
    if (s <= d.size()) {
        p = NextBlank(d, s);
        QString word;
        if (!Part(d, s, p, word))
            return false;
        if (word == QLatin1String("NOT")) {
            entry.Not = word;
            s = p + 1;
        }
        entry.Criteria = Trim(After(d, s));
    }
    // Only the first wildcard counts, and "?" goes before "*".
    const QString& c = entry.Criteria;
    const qsizetype q = c.indexOf(QLatin1Char('?'));
    const qsizetype a = c.indexOf(QLatin1Char('*'));
    const qsizetype at = q >= 0 ? q : a;
    if (at >= 0) {
        entry.form = q >= 0 ? RuleEntry::Question : RuleEntry::Star;
        entry.prefix = c.left(at);
        entry.suffix = c.mid(at + 1);
    }
    entry.upperCriteria = c.toUpper();
    entry.upperPrefix = entry.prefix.toUpper();
    entry.upperSuffix = entry.suffix.toUpper();
    return true;
}

bool RuleMatches(AppContext& ctx, int rule, int account, int message) {
    try {
        return Evaluate(Parsed(ctx, rule), ctx.messages.at(account, message));
    } catch (const RuleFailure&) {
        ctx.svc.boxes->show(
            ctx.AppTitle, QStringLiteral("Rule Check - Process Error\r\nRemove from final code!!"),
            BoxIcon::None, BoxButtons::Ok);
        return false;
    }
}

void RuleCheck(AppContext& ctx, int account, int message) {
    MailMessage& m = ctx.messages.at(account, message);
    m.Delete = false;
    m.Spam = false;
    const RuleSet& live = ctx.LiveRules;
    Account& a = ctx.accounts[account];
    for (int r = 1; r <= live.RuleCount; ++r) {
        const Rule& rule = live[r];
        if (rule.Account != a.AcntName && rule.Account != QLatin1String("All Accounts"))
            continue;
        if (rule.Enabled != 1)
            continue;
        if (!RuleMatches(ctx, r, account, message))
            continue;
        // The first fitting rule with a marking action decides; Ignore
        // protects nothing.
        if (rule.Action == 1) {
            m.Delete = true;
            ++a.AcntDeleteCount;
            return;
        }
        if (rule.Action == 2) {
            m.Spam = true;
            ++a.AcntSpamCount;
            return;
        }
    }
}

} // namespace velmora
