#include "CueSheet.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {
constexpr qint64 FramesPerSecond = 75;
constexpr qint32 MaxTracks = 99;

// "MM:SS:FF" in frames; -1 when it is no time.
qint64 frames(const QString &msf) {
    static const QRegularExpression form(QStringLiteral("^(\\d{1,4}):(\\d{1,2}):(\\d{1,2})$"));
    const auto m = form.match(msf);
    if (!m.hasMatch())
        return -1;
    const qint64 s = m.captured(2).toLongLong(), f = m.captured(3).toLongLong();
    if (s >= 60 || f >= FramesPerSecond)
        return -1;
    return (m.captured(1).toLongLong() * 60 + s) * FramesPerSecond + f;
}

// The words of a line; a quoted name is one word.
QStringList words(const QString &line) {
    QStringList out;
    static const QRegularExpression word(QStringLiteral("\"([^\"]*)\"|(\\S+)"));
    for (auto it = word.globalMatch(line); it.hasNext();) {
        const auto m = it.next();
        out << (m.capturedStart(1) >= 0 ? m.captured(1) : m.captured(2));
    }
    return out;
}

struct Raw {
    qint32 number = 0;
    QString mode;
    QString file;
    qint64 index0 = -1, index1 = -1; // frames into the file
};
} // namespace

qint64 CueSheet::totalSectors() const {
    qint64 total = 0;
    for (const Track &t : m_tracks)
        total += t.sectors;
    return total;
}

QByteArray CueSheet::dataSheet(const QString &binName) {
    return "FILE \"" + binName.toUtf8() +
           "\" BINARY\n  TRACK 01 MODE1/2048\n    INDEX 01 00:00:00\n";
}

CueSheet CueSheet::load(const QString &path) {
    CueSheet sheet;
    if (path.trimmed().isEmpty()) {
        sheet.m_error = QStringLiteral("No cue sheet was given.");
        return sheet;
    }
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        sheet.m_error = QStringLiteral("The cue sheet %1 can't be read.").arg(path);
        return sheet;
    }
    // A cue sheet is a page of text; anything larger is something else.
    if (f.size() > 1 << 20) {
        sheet.m_error = QStringLiteral("%1 is no cue sheet.").arg(path);
        return sheet;
    }
    return parse(f.readAll(), QFileInfo(path).absolutePath(), [](const QString &p) -> qint64 {
        const QFileInfo info(p);
        return info.isFile() ? info.size() : -1;
    });
}

CueSheet CueSheet::parse(const QByteArray &text, const QString &folder, FileSize fileSize) {
    CueSheet sheet;
    auto fail = [&sheet](const QString &why) {
        sheet.m_tracks.clear();
        sheet.m_error = why;
        return sheet;
    };
    QList<Raw> raw;
    QString file;
    const QStringList lines =
        QString::fromUtf8(text).split(QRegularExpression(QStringLiteral("[\r\n]")));
    for (int n = 0; n < lines.size(); ++n) {
        const QStringList w = words(lines[n]);
        if (w.isEmpty())
            continue;
        const QString key = w[0].toUpper();
        const QString where = QStringLiteral("Line %1 of the cue sheet").arg(n + 1);
        if (key == u"FILE") {
            if (w.size() < 3 || w[2].toUpper() != u"BINARY")
                return fail(QStringLiteral("%1: only BINARY files can be written.").arg(where));
            file = QDir(folder).filePath(w[1]);
        } else if (key == u"TRACK") {
            if (w.size() < 3 || file.isEmpty())
                return fail(QStringLiteral("%1: a track without its file.").arg(where));
            if (raw.size() >= MaxTracks)
                return fail(QStringLiteral("A disc holds at most 99 tracks."));
            Raw r;
            r.number = w[1].toInt();
            r.mode = w[2].toUpper();
            r.file = file;
            if (r.mode != u"AUDIO" && r.mode != u"MODE1/2048")
                return fail(QStringLiteral("Track %1 is %2: only AUDIO and MODE1/2048 tracks can "
                                           "be written.")
                                .arg(r.number)
                                .arg(r.mode));
            raw << r;
        } else if (key == u"INDEX") {
            const qint64 at = w.size() >= 3 ? frames(w[2]) : -1;
            if (raw.isEmpty() || at < 0)
                return fail(QStringLiteral("%1: an index that can't be read.").arg(where));
            const int index = w[1].toInt();
            if (index == 0)
                raw.last().index0 = at;
            else if (index == 1)
                raw.last().index1 = at;
        }
        // REM, FLAGS, TITLE, PERFORMER, CATALOG, ISRC, PREGAP and POSTGAP change no sector.
    }
    if (raw.isEmpty())
        return fail(QStringLiteral("The cue sheet lists no track."));
    const bool audio = raw.first().mode == u"AUDIO";
    for (const Raw &r : raw) {
        if ((r.mode == u"AUDIO") != audio)
            return fail(QStringLiteral("The cue sheet mixes audio and data tracks: only discs of "
                                       "one kind can be written."));
        if (r.index1 < 0)
            return fail(QStringLiteral("Track %1 has no INDEX 01.").arg(r.number));
    }
    const qint64 sector = audio ? 2352 : 2048;
    for (int i = 0; i < raw.size(); ++i) {
        const Raw &r = raw[i];
        const qint64 size = fileSize(r.file);
        if (size < 0)
            return fail(
                QStringLiteral("The file %1 of track %2 is missing.").arg(r.file).arg(r.number));
        // A track runs to the next one's gap in the same file, else to the file's end; the
        // recorder writes the gap before each later track itself.
        qint64 end = (size + sector - 1) / sector;
        if (i + 1 < raw.size() && raw[i + 1].file == r.file)
            end = raw[i + 1].index0 >= 0 ? raw[i + 1].index0 : raw[i + 1].index1;
        end = std::min(end, (size + sector - 1) / sector);
        if (end <= r.index1 || r.index1 * sector >= size)
            return fail(QStringLiteral("Track %1 holds no sectors.").arg(r.number));
        sheet.m_tracks << Track{r.number, audio, r.file, r.index1 * sector, end - r.index1};
    }
    return sheet;
}
