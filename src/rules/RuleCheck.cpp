#include "rules/RuleCheck.h"

#include "context/AppContext.h"
#include "platform/MessageBoxes.h"

#include <cmath>

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

QString After(const QString& text, qsizetype from) {
    return from - 1 >= text.size() ? QString() : text.mid(from - 1);
}

// A signed 16-bit whole number, rounded half to even; false when the text
// is none. No exception: most criteria are words, and each throw would
// cost more than the reading.
bool Int16(const QString& text, int& number) {
    const QString trimmed = Trim(text);
    // Sizes are plain digits, and most criteria are words: neither needs
    // the full reading of a number. A letter other than an exponent's
    // makes no finite number.
    int digits = 0;
    bool letter = false;
    for (const QChar ch : trimmed) {
        if (ch >= QLatin1Char('0') && ch <= QLatin1Char('9'))
            ++digits;
        else if (ch.isLetter() && ch != QLatin1Char('e') && ch != QLatin1Char('E'))
            letter = true;
    }
    if (letter)
        return false;
    if (digits > 0 && digits == trimmed.size() && digits <= 5) {
        number = trimmed.toInt();
        return number <= 32767;
    }
    bool ok = false;
    const double value = trimmed.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return false;
    const double rounded = std::nearbyint(value);
    if (rounded < -32768 || rounded > 32767)
        return false;
    number = int(rounded);
    return true;
}

const int kNoField = -1;

int FieldIndex(const QString& where) {
    return where == QLatin1String("From")      ? 0
           : where == QLatin1String("To")      ? 1
           : where == QLatin1String("Subject") ? 2
           : where == QLatin1String("Body")    ? 3
                                               : kNoField;
}

// One message as the tests read it: each text field scanned once for every
// needle of the rules, when a test first asks.
struct MessageScan {
    MessageScan(const MailMessage& m, const RuleParseCache& cache) : m(m), cache(cache) {}
    const QString& text(int field) const {
        return field == 0 ? m.From : field == 1 ? m.To : field == 2 ? m.Subject : m.Body;
    }
    int pos(int field, int needle) const {
        if (!scanned[field]) {
            cache.scanners->field[field].scan(text(field), first[field]);
            scanned[field] = true;
        }
        return first[field][size_t(needle)];
    }
    // The message's size as a number, read once; a failure when it is none.
    int size() const;

    const MailMessage& m;
    const RuleParseCache& cache;
    mutable bool scanned[4] = {};
    mutable std::vector<int> first[4];
    mutable int sizeState = 0; // 0 not read, 1 a number, 2 none
    mutable int sizeNumber = 0;
};

bool TextTest(const RuleEntry& e, const MessageScan& scan) {
    const bool negated = e.negated;
    const QString& f = scan.text(e.field);
    if (e.test == RuleEntry::Contains) {
        if (e.form == RuleEntry::Plain) {
            const int p = scan.pos(e.field, e.criteriaNeedle);
            return negated ? p == 0 : p >= 1;
        }
        const int p = scan.pos(e.field, e.prefixNeedle);
        const int s = scan.pos(e.field, e.suffixNeedle);
        if (negated)
            return p == 0 || s == 0;
        // The "?" form bounds where the suffix may stand; neither form asks
        // that it stand behind the prefix.
        return p >= 1 && s >= 1 && (e.form == RuleEntry::Star || s <= e.Criteria.size());
    }
    if (e.test != RuleEntry::Equals)
        return false;
    if (e.form == RuleEntry::Plain)
        return negated ? f != e.Criteria : f == e.Criteria;
    const bool head = f.startsWith(e.prefix);
    // Past the wildcard as if it stood for one character, in the negated
    // "*" form too, which is therefore no opposite of its plain one.
    const bool tail = After(f, e.prefix.size() + 2) == e.suffix;
    if (negated)
        return !head || !tail;
    if (e.form == RuleEntry::Star)
        return head && f.endsWith(e.suffix);
    return head && tail;
}

int MessageScan::size() const {
    if (sizeState == 0)
        sizeState = Int16(m.Size, sizeNumber) ? 1 : 2;
    if (sizeState == 2)
        throw RuleFailure{};
    return sizeNumber;
}

bool SizeTest(const RuleEntry& e, const MessageScan& scan) {
    const int f = scan.size();
    if (!e.criteriaIsNumber)
        throw RuleFailure{};
    const int c = e.criteriaNumber;
    const bool negated = e.negated;
    // Strict both ways: a size equal to the criteria fits neither
    // "GreaterThan" nor its negation.
    switch (e.test) {
    case RuleEntry::Equals:
        return negated ? f != c : f == c;
    case RuleEntry::GreaterThan:
        return negated ? f < c : f > c;
    case RuleEntry::LessThan:
        return negated ? f > c : f < c;
    default:
        return false;
    }
}

// The rules' texts as the cache last saw them; evaluation never reads a
// stale parse.
bool Unchanged(const RuleSet& live, const RuleParseCache& cache) {
    if (cache.sources.size() != live.RuleCount + 1)
        return false;
    for (int n = 1; n <= live.RuleCount; ++n) {
        const QStringList& seen = cache.sources[n];
        const int count = qMin(live[n].DescCount, MaxRuleEntries);
        if (seen.size() != qMax(count, 0))
            return false;
        for (int i = 1; i <= count; ++i) {
            const QString& was = seen[i - 1];
            const QString& is = live[n].Description[i];
            // Usually the very same text, shared: no need to compare it.
            if (was.size() != is.size() || (was.constData() != is.constData() && was != is))
                return false;
        }
    }
    return true;
}

void Refresh(AppContext& ctx) {
    const RuleSet& live = ctx.rules.LiveRules;
    RuleParseCache& cache = ctx.rules.RuleCache;
    if (Unchanged(live, cache))
        return;
    QVector<QStringList> sources(live.RuleCount + 1);
    for (int n = 1; n <= live.RuleCount; ++n) {
        for (int i = 1; i <= live[n].DescCount && i <= MaxRuleEntries; ++i)
            sources[n].append(live[n].Description[i]);
    }
    cache.sources = sources;
    cache.rules = QVector<ParsedRule>(sources.size());
    QStringList needles[4];
    auto needle = [&needles](int field, const QString& upper) {
        qsizetype at = needles[field].indexOf(upper);
        if (at < 0) {
            at = needles[field].size();
            needles[field].append(upper);
        }
        return int(at);
    };
    for (int n = 1; n < sources.size(); ++n) {
        ParsedRule& parsed = cache.rules[n];
        for (const QString& text : sources[n]) {
            RuleEntry entry;
            if (!ParseRuleEntry(text, entry, parsed.Conjunction)) {
                parsed.malformed = true;
                break;
            }
            entry.field = FieldIndex(entry.Where);
            entry.negated = entry.Not == QLatin1String("NOT");
            const QString& cond = entry.Condition;
            entry.test = cond == QLatin1String("Contains")      ? RuleEntry::Contains
                         : cond == QLatin1String("Equals")      ? RuleEntry::Equals
                         : cond == QLatin1String("GreaterThan") ? RuleEntry::GreaterThan
                         : cond == QLatin1String("LessThan")    ? RuleEntry::LessThan
                                                                : RuleEntry::OtherTest;
            entry.criteriaIsNumber = Int16(entry.Criteria, entry.criteriaNumber);
            if (entry.field != kNoField && entry.Condition == QLatin1String("Contains")) {
                entry.criteriaNeedle = needle(entry.field, entry.upperCriteria);
                entry.prefixNeedle = needle(entry.field, entry.upperPrefix);
                entry.suffixNeedle = needle(entry.field, entry.upperSuffix);
            }
            parsed.entries.append(entry);
        }
        parsed.isAnd = parsed.Conjunction == QLatin1String("AND");
        parsed.isOr = parsed.Conjunction == QLatin1String("OR");
    }
    auto scanners = std::make_shared<FieldScanners>();
    for (int field = 0; field < 4; ++field)
        scanners->field[field].build(needles[field]);
    cache.scanners = std::move(scanners);
}

bool Evaluate(const ParsedRule& rule, const MessageScan& scan) {
    if (rule.malformed)
        throw RuleFailure{};
    const MailMessage& m = scan.m;
    const int count = int(rule.entries.size());
    bool match[MaxRuleEntries] = {};
    for (int i = 0; i < count; ++i) {
        const RuleEntry& e = rule.entries[i];
        if (e.field != kNoField)
            match[i] = TextTest(e, scan);
        else if (e.Where == QLatin1String("Attachment"))
            match[i] = e.negated ? !m.Attach : m.Attach;
        else if (e.Where == QLatin1String("Size"))
            match[i] = SizeTest(e, scan);
        else
            return false;
        if (match[i] && count == 1)
            return true;
    }
    // One conjunction for the whole rule: the last entry's.
    int matched = 0;
    for (int i = 0; i < count; ++i) {
        if (rule.isOr && match[i])
            return true;
        if (rule.isAnd && match[i])
            ++matched;
    }
    return rule.isAnd && matched == count;
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
    entry.upperCriteria = RuleUpper(c);
    entry.upperPrefix = RuleUpper(entry.prefix);
    entry.upperSuffix = RuleUpper(entry.suffix);
    return true;
}

namespace {

bool Matches(AppContext& ctx, int rule, const MessageScan& scan) {
    try {
        return Evaluate(ctx.rules.RuleCache.rules[rule], scan);
    } catch (const RuleFailure&) {
        ctx.svc.boxes->show(
            ctx.shell.AppTitle,
            QStringLiteral("Rule Check - Process Error\r\nRemove from final code!!"), BoxIcon::None,
            BoxButtons::Ok);
        return false;
    }
}

} // namespace

bool RuleMatches(AppContext& ctx, int rule, int account, int message) {
    Refresh(ctx);
    return Matches(ctx, rule, MessageScan(ctx.messages.at(account, message), ctx.rules.RuleCache));
}

void RuleCheck(AppContext& ctx, int account, int message) {
    MailMessage& m = ctx.messages.at(account, message);
    m.Delete = false;
    m.Spam = false;
    const RuleSet& live = ctx.rules.LiveRules;
    if (live.RuleCount < 1)
        return;
    Refresh(ctx);
    const MessageScan scan(m, ctx.rules.RuleCache);
    Account& a = ctx.accounts[account];
    for (int r = 1; r <= live.RuleCount; ++r) {
        const Rule& rule = live[r];
        if (rule.Account != a.AcntName && rule.Account != QLatin1String("All Accounts"))
            continue;
        if (rule.Enabled != 1)
            continue;
        if (!Matches(ctx, r, scan))
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
