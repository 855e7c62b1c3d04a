#include "IniFile.h"

#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QSaveFile>

namespace {

struct Line {
    qsizetype start = 0; // offset of the line in the text
    qsizetype end = 0;   // offset behind its content, before CR LF or LF
    qsizetype next = 0;  // offset of the following line
};

QList<Line> splitLines(const QByteArray &text) {
    QList<Line> lines;
    qsizetype pos = 0;
    while (pos < text.size()) {
        Line l;
        l.start = pos;
        qsizetype nl = text.indexOf('\n', pos);
        if (nl < 0) {
            l.end = text.size();
            l.next = text.size();
        } else {
            l.end = (nl > pos && text.at(nl - 1) == '\r') ? nl - 1 : nl;
            l.next = nl + 1;
        }
        lines.append(l);
        pos = l.next;
    }
    return lines;
}

QString decode(const QByteArray &bytes) {
    return QString::fromUtf8(bytes);
}

// "[Name]" gives "Name"; a line without the bracket gives an empty name.
QString sectionName(const QByteArray &content) {
    const QByteArray t = content.trimmed();
    if (!t.startsWith('['))
        return QString();
    qsizetype close = t.indexOf(']');
    const QByteArray name = close < 0 ? t.mid(1) : t.mid(1, close - 1);
    return decode(name.trimmed());
}

bool isSectionLine(const QByteArray &content) {
    return content.trimmed().startsWith('[');
}

bool keyMatches(const QByteArray &content, const QString &key, QString *value) {
    const qsizetype eq = content.indexOf('=');
    if (eq < 0)
        return false;
    const QString name = decode(content.left(eq).trimmed());
    if (name.compare(key.trimmed(), Qt::CaseInsensitive) != 0)
        return false;
    if (value)
        *value = decode(content.mid(eq + 1).trimmed());
    return true;
}

// Index range [first, last) of the lines of the first section of that name, header excluded.
bool findSection(const QByteArray &text, const QList<Line> &lines, const QString &section,
                 qsizetype *header, qsizetype *first, qsizetype *last) {
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray content = text.mid(lines[i].start, lines[i].end - lines[i].start);
        if (!isSectionLine(content))
            continue;
        if (sectionName(content).compare(section.trimmed(), Qt::CaseInsensitive) != 0)
            continue;
        qsizetype j = i + 1;
        while (j < lines.size() &&
               !isSectionLine(text.mid(lines[j].start, lines[j].end - lines[j].start)))
            ++j;
        *header = i;
        *first = i + 1;
        *last = j;
        return true;
    }
    return false;
}

QByteArray lineEnding(const QByteArray &text) {
    return text.contains("\r\n") ? QByteArrayLiteral("\r\n") : QByteArrayLiteral("\n");
}

} // namespace

QString IniFile::value(const QByteArray &text, const QString &section, const QString &key,
                       const QString &defaultValue) {
    if (text.contains('\0'))
        return defaultValue;
    const QList<Line> lines = splitLines(text);
    qsizetype header = 0, first = 0, last = 0;
    if (!findSection(text, lines, section, &header, &first, &last))
        return defaultValue;
    for (qsizetype i = first; i < last; ++i) {
        QString v;
        if (keyMatches(text.mid(lines[i].start, lines[i].end - lines[i].start), key, &v))
            return v;
    }
    return defaultValue;
}

QByteArray IniFile::withValue(const QByteArray &text, const QString &section, const QString &key,
                              const QString &value) {
    const QByteArray eol = lineEnding(text);
    const QList<Line> lines = splitLines(text);
    const QByteArray entryValue = value.toUtf8();
    qsizetype header = 0, first = 0, last = 0;
    if (findSection(text, lines, section, &header, &first, &last)) {
        for (qsizetype i = first; i < last; ++i) {
            const QByteArray content = text.mid(lines[i].start, lines[i].end - lines[i].start);
            if (keyMatches(content, key, nullptr)) {
                // The key keeps its spelling in the file; the line its ending.
                const QByteArray name = content.left(content.indexOf('=')).trimmed();
                QByteArray out = text.left(lines[i].start);
                out += name + '=' + entryValue;
                out += text.mid(lines[i].end);
                return out;
            }
        }
        // A new key goes behind the last line of the section that is not blank.
        qsizetype after = header;
        for (qsizetype i = first; i < last; ++i) {
            if (!text.mid(lines[i].start, lines[i].end - lines[i].start).trimmed().isEmpty())
                after = i;
        }
        const Line &l = lines[after];
        QByteArray out = text.left(l.next);
        if (l.next == l.end) // the last line of the text had no line ending
            out += eol;
        out += key.toUtf8() + '=' + entryValue + eol;
        out += text.mid(l.next);
        return out;
    }
    QByteArray out = text;
    if (!out.isEmpty() && !out.endsWith('\n'))
        out += eol;
    out += '[' + section.toUtf8() + ']' + eol + key.toUtf8() + '=' + entryValue + eol;
    return out;
}

QString IniFile::read(const QString &path, const QString &section, const QString &key,
                      const QString &defaultValue) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return defaultValue;
    return value(f.readAll(), section, key, defaultValue);
}

bool IniFile::write(const QString &path, const QString &section, const QString &key,
                    const QString &value) {
    // A file that exists but can't be read or written is left alone rather than replaced.
    QByteArray text;
    QFile f(path);
    if (f.exists()) {
        if (!QFileInfo(path).isWritable() || !f.open(QIODevice::ReadOnly))
            return false;
        text = f.readAll();
        f.close();
    }
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    out.write(withValue(text, section, key, value));
    return out.commit();
}
