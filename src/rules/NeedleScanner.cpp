#include "rules/NeedleScanner.h"

#include <algorithm>
#include <queue>

namespace velmora {

QString RuleUpper(const QString& text) {
    QString upper(text.size(), Qt::Uninitialized);
    char16_t* to = reinterpret_cast<char16_t*>(upper.data());
    const char16_t* from = reinterpret_cast<const char16_t*>(text.constData());
    for (qsizetype i = 0; i < text.size(); ++i)
        to[i] = RuleUpper(from[i]);
    return upper;
}

namespace {

// Every UTF-16 unit whose upper case is another, with that upper case:
// worked out once for all scanners, so a build need not look at all of them.
const std::vector<std::pair<char16_t, char16_t>>& Folds() {
    static const std::vector<std::pair<char16_t, char16_t>> folds = [] {
        std::vector<std::pair<char16_t, char16_t>> list;
        for (char32_t c = 0; c < 0x10000; ++c) {
            const char16_t upper = RuleUpper(char16_t(c));
            if (upper != c)
                list.emplace_back(char16_t(c), upper);
        }
        return list;
    }();
    return folds;
}

} // namespace

void NeedleScanner::build(const QStringList& needles) {
    // Character classes: one for each character the needles use; every
    // character whose upper case is one of them shares its class.
    classOf.assign(0x10000, 0);
    classes = 1;
    for (const QString& needle : needles) {
        for (const QChar ch : needle) {
            quint16& cls = classOf[ch.unicode()];
            if (cls == 0)
                cls = quint16(classes++);
        }
    }
    for (const auto& [c, upper] : Folds()) {
        if (classOf[c] == 0)
            classOf[c] = classOf[upper];
    }
    const size_t width = size_t(classes);

    // The trie, in one table of rows (-1 where no edge leads).
    delta.assign(width, -1);
    std::vector<std::vector<int>> out(1);
    lengths.clear();
    longest = 0;
    for (const QString& needle : needles) {
        lengths.push_back(int(needle.size()));
        longest = std::max(longest, int(needle.size()));
        size_t at = 0;
        for (const QChar ch : needle) {
            const size_t edge = at * width + classOf[ch.unicode()];
            if (delta[edge] < 0) {
                delta[edge] = int(out.size());
                delta.resize(delta.size() + width, -1);
                out.emplace_back();
            }
            at = size_t(delta[edge]);
        }
        if (!needle.isEmpty())
            out[at].push_back(int(lengths.size()) - 1);
    }

    // Failure links breadth first, turning each row into its full row of
    // next states in place: a state's failure is shallower, so its row is
    // full already when the state's turn comes.
    const size_t states = out.size();
    std::vector<int> fail(states, 0);
    std::queue<int> pending;
    for (size_t cls = 0; cls < width; ++cls) {
        int& next = delta[cls];
        if (next < 0)
            next = 0;
        else
            pending.push(next);
    }
    while (!pending.empty()) {
        const size_t at = size_t(pending.front());
        pending.pop();
        const size_t failRow = size_t(fail[at]) * width;
        const std::vector<int>& inherited = out[size_t(fail[at])];
        out[at].insert(out[at].end(), inherited.begin(), inherited.end());
        for (size_t cls = 0; cls < width; ++cls) {
            int& next = delta[at * width + cls];
            const int viaFail = delta[failRow + cls];
            if (next < 0) {
                next = viaFail;
            } else {
                fail[size_t(next)] = viaFail;
                pending.push(next);
            }
        }
    }
    outStart.assign(states + 1, 0);
    outList.clear();
    for (size_t s = 0; s < states; ++s) {
        outStart[s] = int(outList.size());
        outList.insert(outList.end(), out[s].begin(), out[s].end());
    }
    outStart[states] = int(outList.size());
    // Row offsets rather than state numbers, and the mark of a needle's end
    // in the sign: a step is one load.
    for (int& next : delta) {
        const int row = next * classes;
        next = out[size_t(next)].empty() ? row : -row - 1;
    }
    narrow.clear();
    if (delta.size() < 32768)
        narrow.assign(delta.begin(), delta.end());
}

void NeedleScanner::scan(const QString& text, std::vector<int>& first) const {
    first.assign(lengths.size(), 0);
    if (text.isEmpty())
        return;
    bool any = false;
    for (size_t i = 0; i < lengths.size(); ++i) {
        if (lengths[i] == 0)
            first[i] = 1;
        else
            any = true;
    }
    if (!any)
        return;
    const char16_t* data = reinterpret_cast<const char16_t*>(text.constData());
    if (!narrow.empty())
        walk(narrow.data(), data, text.size(), first);
    else
        walk(delta.data(), data, text.size(), first);
}

void NeedleScanner::found(int row, qsizetype at, std::vector<int>& first) const {
    const int state = row / classes;
    for (int k = outStart[size_t(state)]; k < outStart[size_t(state) + 1]; ++k) {
        const int needle = outList[size_t(k)];
        const int position = int(at) - lengths[size_t(needle)] + 2;
        int& kept = first[size_t(needle)];
        if (kept == 0 || position < kept)
            kept = position;
    }
}

// A long text is read as four parts at once: four independent walks keep
// the processor busy where one walk would wait on each step. Each part
// starts early by the longest needle less one, so a needle that ends in it
// is found whatever came before; an occurrence found twice keeps its first
// position.
template <class Step>
void NeedleScanner::walk(const Step* table, const char16_t* data, qsizetype size,
                         std::vector<int>& first) const {
    constexpr int kParts = 4;
    const quint16* classOf = this->classOf.data();
    const auto step = [&](int& row, qsizetype at) {
        const char16_t c = data[at];
        const int next = table[row + classOf[c]];
        if (next >= 0) {
            row = next;
        } else {
            row = -next - 1;
            found(row, at, first);
        }
    };
    const qsizetype part = size / kParts;
    if (part < 4 * qsizetype(longest) + 64) {
        int row = 0;
        for (qsizetype at = 0; at < size; ++at)
            step(row, at);
        return;
    }
    qsizetype from[kParts];
    qsizetype to[kParts];
    for (int k = 0; k < kParts; ++k) {
        from[k] = k == 0 ? 0 : k * part - (longest - 1);
        to[k] = k == kParts - 1 ? size : (k + 1) * part;
    }
    int rows[kParts] = {0, 0, 0, 0};
    const qsizetype together = to[0] - from[0];
    int r0 = 0, r1 = 0, r2 = 0, r3 = 0;
    for (qsizetype i = 0; i < together; ++i) {
        step(r0, from[0] + i);
        step(r1, from[1] + i);
        step(r2, from[2] + i);
        step(r3, from[3] + i);
    }
    rows[1] = r1;
    rows[2] = r2;
    rows[3] = r3;
    for (int k = 1; k < kParts; ++k) {
        for (qsizetype at = from[k] + together; at < to[k]; ++at)
            step(rows[k], at);
    }
}

} // namespace velmora
