#include "platform/qt/IniProfileFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>
#include <sys/stat.h>

namespace velmora {

namespace {

// "[Name]" gives Name; anything else is no section line.
bool SectionName(QStringView line, QStringView* name) {
    const QStringView trimmed = line.trimmed();
    const qsizetype close = trimmed.indexOf(u']');
    if (!trimmed.startsWith(u'[') || close < 0)
        return false;
    *name = trimmed.mid(1, close - 1).trimmed();
    return true;
}

bool SameName(QStringView a, QStringView b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// The range of lines of a section's body: [first, end).
bool FindSection(const QStringList& lines, const QString& section, int* first, int* end) {
    QStringView name;
    for (int i = 0; i < lines.size(); ++i) {
        if (!SectionName(lines[i], &name) || !SameName(name, section))
            continue;
        *first = i + 1;
        *end = *first;
        while (*end < lines.size() && !SectionName(lines[*end], &name))
            ++*end;
        return true;
    }
    return false;
}

// The line index of a key in a section body, or -1.
int FindKey(const QStringList& lines, int first, int end, const QString& key) {
    for (int i = first; i < end; ++i) {
        const qsizetype equals = lines[i].indexOf(u'=');
        if (equals >= 0 && SameName(QStringView(lines[i]).left(equals).trimmed(), key))
            return i;
    }
    return -1;
}

// Fills the buffer as far as it goes, leaving room for the closing NUL.
int Fill(QString& buffer, const QString& text, int size) {
    if (size <= 0) {
        buffer.clear();
        return 0;
    }
    buffer = text.left(size - 1);
    return int(buffer.size());
}

// A temporary file beside the target, renamed over it: readers see the old
// file or the new one, never half of one. No sync to disk: a crash of the
// program is what this guards against, and the rename is cheap.
bool ReplaceFile(const QString& file, const QByteArray& bytes) {
    const QFileInfo info(file);
    QDir().mkpath(info.absolutePath());
    QTemporaryFile temp(info.absolutePath() + QStringLiteral("/.") + info.fileName() +
                        QStringLiteral(".XXXXXX"));
    if (!temp.open() || temp.write(bytes) != bytes.size() || !temp.flush())
        return false;
    if (QFileInfo::exists(file))
        temp.setPermissions(QFile::permissions(file));
    temp.close();
    if (std::rename(QFile::encodeName(temp.fileName()).constData(),
                    QFile::encodeName(file).constData()) != 0)
        return false;
    temp.setAutoRemove(false);
    return true;
}

} // namespace

QStringList IniProfileFiles::ReadLines(const QString& file) {
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly))
        return {};
    QString text = QString::fromUtf8(in.readAll());
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines = text.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

IniProfileFiles::Stamp IniProfileFiles::StampOf(const QString& file) {
    struct stat st;
    if (::stat(QFile::encodeName(file).constData(), &st) != 0)
        return {};
    return {true, qint64(st.st_size), qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec,
            quint64(st.st_ino)};
}

const QStringList& IniProfileFiles::lines(const QString& file) {
    const Stamp stamp = StampOf(file);
    if (file != cachedFile || !stamp.exists || stamp != cachedStamp)
        remember(file, ReadLines(file), stamp);
    return cachedLines;
}

void IniProfileFiles::remember(const QString& file, const QStringList& lines, const Stamp& stamp) {
    cachedFile = file;
    cachedLines = lines;
    cachedStamp = stamp;
    cachedSections.clear();
    QStringView name;
    int open = -1;
    QString openName;
    const auto close = [&](int end) {
        if (open >= 0 && !cachedSections.contains(openName))
            cachedSections.insert(openName, {open, end});
    };
    for (int i = 0; i < lines.size(); ++i) {
        if (!SectionName(lines[i], &name))
            continue;
        close(i);
        open = i + 1;
        openName = name.toString().toCaseFolded();
    }
    close(int(lines.size()));
}

bool IniProfileFiles::findSection(const QString& section, int* first, int* end) const {
    const auto found = cachedSections.constFind(section.toCaseFolded());
    QStringView name;
    // Folding whole names may differ from comparing them a letter at a
    // time; the slow walk settles any doubt.
    if (found == cachedSections.constEnd() || found->first < 1 ||
        !SectionName(cachedLines[found->first - 1], &name) || !SameName(name, section))
        return FindSection(cachedLines, section, first, end);
    *first = found->first;
    *end = found->second;
    return true;
}

int IniProfileFiles::GetPrivateProfileSection(const QString& section, QString& buffer, int size,
                                              const QString& file) {
    const QStringList& lines = this->lines(file);
    int first = 0;
    int end = 0;
    if (!findSection(section, &first, &end)) {
        buffer.clear();
        return 0;
    }
    QString text;
    for (int i = first; i < end; ++i) {
        if (!lines[i].trimmed().isEmpty())
            text += lines[i] + QChar(0);
    }
    if (text.isEmpty()) {
        buffer.clear();
        return 0;
    }
    // Too long for the buffer: cut, and still end in two NULs.
    if (text.size() + 1 > size && size >= 2)
        text = text.left(size - 2) + QChar(0);
    buffer = text + QChar(0);
    return int(text.size());
}

int IniProfileFiles::GetPrivateProfileString(const QString& section, const QString& key,
                                             const QString& defaultValue, QString& buffer, int size,
                                             const QString& file) {
    const QStringList& lines = this->lines(file);
    int first = 0;
    int end = 0;
    if (findSection(section, &first, &end)) {
        if (const int at = FindKey(lines, first, end, key); at >= 0) {
            const QString& line = lines[at];
            return Fill(buffer, line.mid(line.indexOf('=') + 1).trimmed(), size);
        }
    }
    return Fill(buffer, defaultValue.trimmed(), size);
}

bool IniProfileFiles::WritePrivateProfileString(const QString& section, const QString& key,
                                                const QString& value, const QString& file) {
    QStringList lines = this->lines(file);
    int first = 0;
    int end = 0;
    const QString entry = key + QLatin1Char('=') + value;
    if (!FindSection(lines, section, &first, &end)) {
        lines << QLatin1Char('[') + section + QLatin1Char(']') << entry;
    } else if (const int at = FindKey(lines, first, end, key); at >= 0) {
        lines[at] = entry;
    } else {
        // After the section's last entry, before any blank lines that end it.
        int insert = end;
        while (insert > first && lines[insert - 1].trimmed().isEmpty())
            --insert;
        lines.insert(insert, entry);
    }
    if (!ReplaceFile(file, (lines.join(QLatin1String("\r\n")) + QLatin1String("\r\n")).toUtf8()))
        return false;
    remember(file, lines, StampOf(file));
    return true;
}

} // namespace velmora
