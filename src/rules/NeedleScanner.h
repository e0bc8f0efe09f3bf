#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace velmora {

// Upper case as rule texts compare: one character for one, so a position in
// the upper-case text is the same position in the text.
inline char16_t RuleUpper(char16_t c) {
    if (c < 128)
        return c >= u'a' && c <= u'z' ? char16_t(c - 32) : c;
    return char16_t(QChar::toUpper(c));
}
QString RuleUpper(const QString& text);

// Finds, in one pass over a text, where each of many needles first stands
// in its upper-case form: the rules' Contains tests all read one field of a
// message, and the field may be a long body. Built as an automaton over
// the characters the needles use (Aho and Corasick), with a full table of
// next states, so a pass costs one table step a character.
class NeedleScanner {
public:
    // Needles are upper-case already; blank ones are allowed.
    void build(const QStringList& needles);
    int size() const { return int(lengths.size()); }
    // For each needle its first position in RuleUpper(text), counting from
    // 1; 0 when it is absent or the text is blank; 1 for a blank needle in a
    // text that is not.
    void scan(const QString& text, std::vector<int>& first) const;

private:
    template <class Step>
    void walk(const Step* table, const char16_t* data, qsizetype size,
              std::vector<int>& first) const;
    // Notes what ends in a state at a position; positions count from 0.
    void found(int row, qsizetype at, std::vector<int>& first) const;

    int classes = 1;
    // The next state's row, by row + class: the row's offset, or, for a
    // state where a needle ends, minus the offset minus 1. Kept in 16 bits
    // when it fits, so the table stays in the fastest cache.
    std::vector<int> delta;
    std::vector<qint16> narrow;
    std::vector<int> outStart; // needles ending in state s: outList[outStart[s]..outStart[s+1])
    std::vector<int> outList;
    // The class of each character a text may hold, read as its upper case:
    // 0 for one no needle uses.
    std::vector<quint16> classOf;
    std::vector<int> lengths;
    int longest = 0;
};

// The needles of a message's four text fields: From, To, Subject, Body.
struct FieldScanners {
    NeedleScanner field[4];
};

} // namespace velmora
