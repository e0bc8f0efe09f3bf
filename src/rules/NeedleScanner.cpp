#include "rules/NeedleScanner.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#if defined(__x86_64__)
#include <immintrin.h>
#endif
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
    asciiClass.clear();
    if (classes <= 256) {
        for (char16_t c = 0; c < 128; ++c)
            asciiClass.push_back(quint8(classOf[c]));
    }
    narrow.clear();
    if (delta.size() < 32768)
        narrow.assign(delta.begin(), delta.end());
    buildSieve(needles);
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
    // A short text is walked: setting up the sieve would cost more.
    if (sieve && text.size() >= 256 && sieveScan(data, text.size(), first))
        return;
    if (walkWide(data, text.size(), first))
        return;
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

#if defined(__x86_64__) && defined(__GNUC__)
#define VELMORA_WIDE_WALK 1
#endif

#ifdef VELMORA_WIDE_WALK

namespace {

constexpr int kLanes = 64; // four vectors of sixteen

// The wide walk and the sieve both need AVX-512 with byte permutes.
bool VectorBytesRun() {
    static const bool runs = __builtin_cpu_supports("avx512f") &&
                             __builtin_cpu_supports("avx512bw") &&
                             __builtin_cpu_supports("avx512vbmi");
    return runs;
}

// Room for a text's classes; kept between texts of ordinary length, so
// that none costs an allocation.
quint8* ClassRoom(size_t length, std::vector<quint8>& own) {
    thread_local std::vector<quint8> kept;
    std::vector<quint8>& room = length <= (size_t(1) << 20) ? kept : own;
    if (room.size() < length)
        room.resize(length);
    return room.data();
}

} // namespace

bool NeedleScanner::walkWide(const char16_t* data, qsizetype size, std::vector<int>& first) const {
    // Each part is read from the longest needle's length before it: in a
    // shorter text that overlap would cost more than the parts win.
    const qsizetype lead = qsizetype(longest) - 1;
    if (asciiClass.empty() || size < kLanes * (2 * lead + 16) || size >= (qsizetype(1) << 30) ||
        !VectorBytesRun())
        return false;
    walkLanes(data, size, first);
    return true;
}

#define VELMORA_AVX512 __attribute__((target("avx512f,avx512bw,avx512vbmi")))
#pragma GCC diagnostic push
#ifndef __clang__
// The compiler's own vector headers start results from undefined values.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

namespace {

// The class of each character as a byte, 32 at a time; those beyond ASCII
// are looked up one by one.
VELMORA_AVX512 void ClassBytes(const char16_t* data, qsizetype size, const quint8* ascii,
                               const quint16* classOf, quint8* out) {
    const __m512i low = _mm512_loadu_si512(ascii);
    const __m512i high = _mm512_loadu_si512(ascii + 64);
    const __m512i notAscii = _mm512_set1_epi16(short(0xff80));
    qsizetype at = 0;
    for (; at + 32 <= size; at += 32) {
        const __m512i chars = _mm512_loadu_si512(data + at);
        const __m256i bytes = _mm512_cvtepi16_epi8(chars);
        const __m512i cls = _mm512_permutex2var_epi8(low, _mm512_castsi256_si512(bytes), high);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + at), _mm512_castsi512_si256(cls));
        for (quint32 others = _mm512_test_epi16_mask(chars, notAscii); others;
             others &= others - 1) {
            const qsizetype k = at + __builtin_ctz(others);
            out[k] = quint8(classOf[data[k]]);
        }
    }
    for (; at < size; ++at)
        out[at] = quint8(classOf[data[at]]);
}

} // namespace

// Sixty-four parts of the text walked in step, sixteen to a vector: one
// gather a step fetches the next states of sixteen parts, and one every
// fourth step the next four classes of each. Each part starts `lead`
// characters early (the first one before the text, on a class no needle
// uses), so a needle that ends in it was read whole; one found by two
// parts keeps its first position.
VELMORA_AVX512 void NeedleScanner::walkLanes(const char16_t* data, qsizetype size,
                                             std::vector<int>& first) const {
    const qsizetype lead = qsizetype(longest) - 1;
    const qsizetype part = (size + kLanes - 1) / kLanes;
    const qsizetype steps = (part + lead + 3) / 4 * 4;
    // Classes from `lead` before the text to past the last step of the last
    // part.
    const size_t length = size_t(lead + kLanes * part + 8);
    std::vector<quint8> own;
    quint8* cls = ClassRoom(length, own);
    std::fill_n(cls, lead, quint8(0));
    std::fill(cls + lead + size, cls + length, quint8(0));
    ClassBytes(data, size, asciiClass.data(), classOf.data(), cls + lead);

    const int* table = delta.data();
    const int* base = reinterpret_cast<const int*>(cls);
    const __m512i lane = _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    const __m512i partSize = _mm512_set1_epi32(int(part));
    const __m512i from0 = _mm512_mullo_epi32(lane, partSize);
    const __m512i from1 =
        _mm512_mullo_epi32(_mm512_add_epi32(lane, _mm512_set1_epi32(16)), partSize);
    const __m512i from2 =
        _mm512_mullo_epi32(_mm512_add_epi32(lane, _mm512_set1_epi32(32)), partSize);
    const __m512i from3 =
        _mm512_mullo_epi32(_mm512_add_epi32(lane, _mm512_set1_epi32(48)), partSize);
    const __m512i byteMask = _mm512_set1_epi32(0xff);
    const __m512i zero = _mm512_setzero_si512();
    __m512i r0 = zero, r1 = zero, r2 = zero, r3 = zero;
    for (qsizetype i = 0; i < steps; i += 4) {
        const __m512i at = _mm512_set1_epi32(int(i));
        __m512i c0 = _mm512_i32gather_epi32(_mm512_add_epi32(from0, at), base, 1);
        __m512i c1 = _mm512_i32gather_epi32(_mm512_add_epi32(from1, at), base, 1);
        __m512i c2 = _mm512_i32gather_epi32(_mm512_add_epi32(from2, at), base, 1);
        __m512i c3 = _mm512_i32gather_epi32(_mm512_add_epi32(from3, at), base, 1);
        for (int s = 0; s < 4; ++s) {
            r0 = _mm512_i32gather_epi32(_mm512_add_epi32(r0, _mm512_and_si512(c0, byteMask)), table,
                                        4);
            r1 = _mm512_i32gather_epi32(_mm512_add_epi32(r1, _mm512_and_si512(c1, byteMask)), table,
                                        4);
            r2 = _mm512_i32gather_epi32(_mm512_add_epi32(r2, _mm512_and_si512(c2, byteMask)), table,
                                        4);
            r3 = _mm512_i32gather_epi32(_mm512_add_epi32(r3, _mm512_and_si512(c3, byteMask)), table,
                                        4);
            c0 = _mm512_srli_epi32(c0, 8);
            c1 = _mm512_srli_epi32(c1, 8);
            c2 = _mm512_srli_epi32(c2, 8);
            c3 = _mm512_srli_epi32(c3, 8);
            const __m512i any = _mm512_or_si512(_mm512_or_si512(r0, r1), _mm512_or_si512(r2, r3));
            if (_mm512_cmplt_epi32_mask(any, zero) == 0) [[likely]]
                continue;
            // Needles end in some parts: note them, and turn the marked
            // states back into plain ones.
            quint64 ended = quint64(_mm512_cmplt_epi32_mask(r0, zero)) |
                            quint64(_mm512_cmplt_epi32_mask(r1, zero)) << 16 |
                            quint64(_mm512_cmplt_epi32_mask(r2, zero)) << 32 |
                            quint64(_mm512_cmplt_epi32_mask(r3, zero)) << 48;
            alignas(64) int row[kLanes];
            _mm512_store_si512(row, r0);
            _mm512_store_si512(row + 16, r1);
            _mm512_store_si512(row + 32, r2);
            _mm512_store_si512(row + 48, r3);
            while (ended) {
                const int l = __builtin_ctzll(ended);
                ended &= ended - 1;
                row[l] = -row[l] - 1;
                found(row[l], l * part + i + s - lead, first);
            }
            r0 = _mm512_load_si512(row);
            r1 = _mm512_load_si512(row + 16);
            r2 = _mm512_load_si512(row + 32);
            r3 = _mm512_load_si512(row + 48);
        }
    }
}

namespace {

constexpr int kWindow = 8; // characters of a needle the sieve reads
constexpr int kGroups = 16;
constexpr int kMostSieved = kGroups * 12;

// Roughly how common a character is in ordinary text: a window of rarer
// ones lets fewer places through.
int Commonness(QChar c) {
    static const std::array<quint8, 128> rank = [] {
        static constexpr char kOrder[] = " ETAOINSHRDLCUMWFGYPBVKJXQZ";
        std::array<quint8, 128> r{};
        for (int k = 0; kOrder[k]; ++k)
            r[size_t(kOrder[k])] = quint8(sizeof kOrder - size_t(k));
        return r;
    }();
    return c.unicode() < 128 ? rank[c.unicode()] : 0;
}

} // namespace

// Each needle is sieved by a window of eight of its characters, or all of
// a shorter one. The needles are in sixteen groups; for each place of a
// window and each class, a byte tells which of groups 0-7 (`low`) and
// 8-15 (`high`) have that class there, so eight table lookups of a text's
// classes say, for sixty-four places at once, which groups' windows could
// start there. A place that passes is looked up by its eight classes in a
// hash table of the windows, and a needle whose window is found there is
// compared whole.
struct NeedleScanner::Sieve {
    quint8 low[kWindow][64] = {};
    quint8 high[kWindow][64] = {};
    std::vector<int> needle; // which needle of the scanner
    std::vector<int> from;   // its classes: classes[from[k]..from[k + 1])
    std::vector<quint8> classes;
    std::vector<int> window;       // where its window starts in it
    unsigned widths[kGroups] = {}; // bit w: a group has a window of w classes
    struct Entry {
        quint64 key = 0;
        int width = 0;
        int first = -1; // the first needle with this window
    };
    std::vector<Entry> table;
    std::vector<int> same; // the next needle with the same window, or -1
    int bits = 6;

    size_t home(quint64 key, int width) const {
        return size_t(((key + quint64(width)) * 0x9E3779B97F4A7C15ull) >> (64 - bits));
    }
    void mark(int place, int cls, int group) {
        if (group < 8)
            low[place][cls] |= quint8(1u << group);
        else
            high[place][cls] |= quint8(1u << (group - 8));
    }
    bool has(int place, int cls, int group) const {
        return (group < 8 ? low[place][cls] >> group : high[place][cls] >> (group - 8)) & 1;
    }
};

void NeedleScanner::buildSieve(const QStringList& needles) {
    sieve.reset();
    if (classes > 64 || asciiClass.empty() || !VectorBytesRun())
        return;
    auto s = std::make_shared<Sieve>();
    std::vector<int> shortWidths; // of needles shorter than a window
    int longOnes = 0;
    for (int n = 0; n < int(needles.size()); ++n) {
        const QString& text = needles[n];
        if (text.isEmpty())
            continue;
        if (text.size() < 4)
            return;
        s->needle.push_back(n);
        s->from.push_back(int(s->classes.size()));
        for (const QChar ch : text)
            s->classes.push_back(quint8(classOf[ch.unicode()]));
        int best = 0, bestCost = INT_MAX;
        for (int at = 0; at + kWindow <= text.size(); ++at) {
            int cost = 0;
            for (int k = 0; k < kWindow; ++k)
                cost += Commonness(text[at + k]);
            if (cost < bestCost) {
                bestCost = cost;
                best = at;
            }
        }
        s->window.push_back(best);
        if (text.size() >= kWindow)
            ++longOnes;
        else if (std::find(shortWidths.begin(), shortWidths.end(), int(text.size())) ==
                 shortWidths.end())
            shortWidths.push_back(int(text.size()));
    }
    const int count = int(s->needle.size());
    if (count == 0 || count > kMostSieved)
        return;
    s->from.push_back(int(s->classes.size()));

    // Shorter needles go to a group of their own for each length, as their
    // windows let every class through after their end. The others are
    // spread evenly, each to the group whose windows it widens least.
    const int longGroups = kGroups - int(shortWidths.size());
    const int room = (longOnes + longGroups - 1) / longGroups;
    std::vector<int> members(kGroups, 0);
    for (int k = 0; k < count; ++k) {
        const QString& text = needles[s->needle[size_t(k)]];
        const quint8* cls = s->classes.data() + s->from[size_t(k)] + s->window[size_t(k)];
        const int width = int(std::min<qsizetype>(kWindow, text.size()));
        int widens[kWindow] = {};
        for (int place = 0; place < width; ++place)
            widens[place] = Commonness(text[s->window[size_t(k)] + place]) + 5;
        int group = 0;
        if (width < kWindow) {
            group = longGroups + int(std::find(shortWidths.begin(), shortWidths.end(), width) -
                                     shortWidths.begin());
        } else {
            int bestCost = INT_MAX;
            for (int g = 0; g < longGroups; ++g) {
                if (members[size_t(g)] >= room)
                    continue;
                int cost = 2 * members[size_t(g)];
                for (int place = 0; place < kWindow; ++place) {
                    if (!s->has(place, cls[place], g))
                        cost += widens[place];
                }
                if (cost < bestCost) {
                    bestCost = cost;
                    group = g;
                }
            }
        }
        ++members[size_t(group)];
        s->widths[group] |= 1u << width;
        for (int place = 0; place < kWindow; ++place) {
            if (place < width) {
                s->mark(place, cls[place], group);
            } else {
                for (int c = 0; c < 64; ++c)
                    s->mark(place, c, group);
            }
        }
    }

    while ((1 << s->bits) < 2 * count)
        ++s->bits;
    s->table.assign(size_t(1) << s->bits, Sieve::Entry{});
    s->same.assign(size_t(count), -1);
    for (int k = 0; k < count; ++k) {
        const int width = std::min(kWindow, s->from[size_t(k) + 1] - s->from[size_t(k)]);
        quint64 key = 0;
        std::memcpy(&key, s->classes.data() + s->from[size_t(k)] + s->window[size_t(k)],
                    size_t(width));
        for (size_t h = s->home(key, width);; h = (h + 1) & (s->table.size() - 1)) {
            Sieve::Entry& e = s->table[h];
            if (e.first < 0) {
                e = {key, width, k};
                break;
            }
            if (e.key == key && e.width == width) {
                int last = e.first;
                while (s->same[size_t(last)] >= 0)
                    last = s->same[size_t(last)];
                s->same[size_t(last)] = k;
                break;
            }
        }
    }
    sieve = std::move(s);
}

VELMORA_AVX512 bool NeedleScanner::sieveScan(const char16_t* data, qsizetype size,
                                             std::vector<int>& first) const {
    const Sieve& s = *sieve;
    std::vector<quint8> own;
    quint8* cls = ClassRoom(size_t(size) + 64 + kWindow, own);
    ClassBytes(data, size, asciiClass.data(), classOf.data(), cls);
    std::fill_n(cls + size, 64 + kWindow, quint8(0));

    __m512i low[kWindow], high[kWindow];
    for (int k = 0; k < kWindow; ++k) {
        low[k] = _mm512_loadu_si512(s.low[k]);
        high[k] = _mm512_loadu_si512(s.high[k]);
    }
    qsizetype passed = 0;
    for (qsizetype at = 0; at < size; at += 64) {
        __m512i c = _mm512_loadu_si512(cls + at);
        __m512i l = _mm512_permutexvar_epi8(c, low[0]);
        __m512i h = _mm512_permutexvar_epi8(c, high[0]);
#pragma GCC unroll 8
        for (int k = 1; k < kWindow; ++k) {
            c = _mm512_loadu_si512(cls + at + k);
            l = _mm512_and_si512(l, _mm512_permutexvar_epi8(c, low[k]));
            h = _mm512_and_si512(h, _mm512_permutexvar_epi8(c, high[k]));
        }
        quint64 places = _mm512_test_epi8_mask(l, l) | _mm512_test_epi8_mask(h, h);
        if (places == 0) [[likely]]
            continue;
        // Text much like the needles: the walk costs less than a closer
        // look at so many places.
        passed += __builtin_popcountll(places);
        if (passed > at / 64 + 256) {
            for (const int n : s.needle)
                first[size_t(n)] = 0;
            return false;
        }
        alignas(64) quint8 lowGroups[64], highGroups[64];
        _mm512_store_si512(lowGroups, l);
        _mm512_store_si512(highGroups, h);
        while (places) {
            const int j = __builtin_ctzll(places);
            places &= places - 1;
            const qsizetype place = at + j;
            unsigned widths = 0;
            for (unsigned groups = lowGroups[j] | unsigned(highGroups[j]) << 8; groups;
                 groups &= groups - 1)
                widths |= s.widths[__builtin_ctz(groups)];
            quint64 word;
            std::memcpy(&word, cls + place, sizeof word);
            for (; widths; widths &= widths - 1) {
                const int width = __builtin_ctz(widths);
                const quint64 key =
                    width == kWindow ? word : word & ((quint64(1) << 8 * width) - 1);
                for (size_t e = s.home(key, width);; e = (e + 1) & (s.table.size() - 1)) {
                    const Sieve::Entry& entry = s.table[e];
                    if (entry.first < 0)
                        break;
                    if (entry.key != key || entry.width != width)
                        continue;
                    for (int k = entry.first; k >= 0; k = s.same[size_t(k)]) {
                        int& kept = first[size_t(s.needle[size_t(k)])];
                        const qsizetype start = place - s.window[size_t(k)];
                        const int length = s.from[size_t(k) + 1] - s.from[size_t(k)];
                        if (kept == 0 && start >= 0 && start + length <= size &&
                            std::memcmp(cls + start, s.classes.data() + s.from[size_t(k)],
                                        size_t(length)) == 0)
                            kept = int(start) + 1;
                    }
                    break;
                }
            }
        }
    }
    return true;
}

#pragma GCC diagnostic pop
#undef VELMORA_AVX512

#else

bool NeedleScanner::walkWide(const char16_t*, qsizetype, std::vector<int>&) const {
    return false;
}

void NeedleScanner::buildSieve(const QStringList&) {
    sieve.reset();
}

bool NeedleScanner::sieveScan(const char16_t*, qsizetype, std::vector<int>&) const {
    return false;
}

#endif

std::shared_ptr<const FieldScan> ScanFields(std::shared_ptr<const FieldScanners> by,
                                            const QString (&text)[4]) {
    auto scan = std::make_shared<FieldScan>();
    for (int f = 0; f < 4; ++f) {
        by->field[f].scan(text[f], scan->first[f]);
        scan->text[f] = text[f];
    }
    scan->by = std::move(by);
    return scan;
}

} // namespace velmora
