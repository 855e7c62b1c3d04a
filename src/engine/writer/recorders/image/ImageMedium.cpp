#include "ImageMedium.h"

#include "base/IniFile.h"

namespace {
constexpr qint32 CdSpeed = 176;   // kB/s of 1x on a CD
constexpr qint32 DvdSpeed = 1385; // kB/s of 1x on a DVD
constexpr int MaxSessions = 99;
const QString Section = QStringLiteral("Tessaly Disc");

// "Tracks=0 1150 1800": the start of each audio track, rising by more than the gap and lying
// inside the session's blocks.
bool parseTracks(const QString &text, ImageMedium::Session &session) {
    const QStringList parts = text.split(u' ', Qt::SkipEmptyParts);
    if (parts.size() > ImageMedium::MaxTracks || session.mode != 0)
        return false;
    qint64 previous = -1;
    for (const QString &part : parts) {
        bool ok = false;
        const qint32 start = part.toInt(&ok);
        const bool first = previous < 0;
        if (!ok || (first && start != session.start) ||
            (!first && start <= previous + ImageMedium::AudioGap) ||
            qint64(start) >= qint64(session.start) + session.blocks)
            return false;
        session.trackStarts.append(start);
        previous = start;
    }
    return true;
}

QByteArray msf(qint32 frames) {
    return QByteArray::number(frames / 4500).rightJustified(2, '0') + ':' +
           QByteArray::number(frames / 75 % 60).rightJustified(2, '0') + ':' +
           QByteArray::number(frames % 75).rightJustified(2, '0');
}
} // namespace

const QList<MediumKind> &ImageMedium::kinds() {
    static const QList<MediumKind> list = {
        {QStringLiteral("CD-R 74"), 255, 333000, 52 * CdSpeed, CdSpeed, false, true, true},
        {QStringLiteral("CD-R 80"), 255, 360000, 52 * CdSpeed, CdSpeed, false, true, true},
        {QStringLiteral("CD-RW 74"), 253, 333000, 24 * CdSpeed, CdSpeed, true, true, true},
        {QStringLiteral("CD-RW 80"), 253, 360000, 24 * CdSpeed, CdSpeed, true, true, true},
        {QStringLiteral("DVD-R"), 2, 2298496, 16 * DvdSpeed, DvdSpeed, false, false, true},
        {QStringLiteral("DVD+R"), 10, 2295104, 16 * DvdSpeed, DvdSpeed, false, false, true},
        {QStringLiteral("DVD-RW"), 3, 2298496, 6 * DvdSpeed, DvdSpeed, true, false, true},
        {QStringLiteral("DVD+RW"), 9, 2295104, 8 * DvdSpeed, DvdSpeed, true, false, true},
        {QStringLiteral("DVD-RAM"), 1, 2236704, 5 * DvdSpeed, DvdSpeed, true, false, true},
        {QStringLiteral("DVD-ROM"), 0, 2298496, 0, DvdSpeed, false, false, false},
        {QStringLiteral("CD-ROM"), 255, 360000, 0, CdSpeed, false, true, false},
    };
    return list;
}

const MediumKind *ImageMedium::kindByName(const QString &name) {
    for (const MediumKind &k : kinds()) {
        if (k.name.compare(name.trimmed(), Qt::CaseInsensitive) == 0)
            return &k;
    }
    return nullptr;
}

ImageMedium ImageMedium::blank(const MediumKind &kind, const QString &dataFileName) {
    ImageMedium m;
    m.kindName = kind.name;
    m.dataFile = dataFileName;
    return m;
}

ImageMedium ImageMedium::pressed(qint64 imageBytes, const QString &dataFileName) {
    ImageMedium m;
    const qint32 blocks = qint32(std::min<qint64>((imageBytes + 2047) / 2048, 2298496));
    m.kindName = blocks > 360000 ? QStringLiteral("DVD-ROM") : QStringLiteral("CD-ROM");
    m.dataFile = dataFileName;
    m.sessions.append({0, blocks, 1, true, {}});
    m.finalized = true;
    return m;
}

std::optional<ImageMedium> ImageMedium::parse(const QByteArray &text) {
    auto value = [&](const QString &section, const QString &key) {
        return IniFile::value(text, section, key, QString()).trimmed();
    };
    bool ok = false;
    if (value(Section, QStringLiteral("Version")).toInt(&ok) != 1 || !ok)
        return std::nullopt;
    ImageMedium m;
    m.kindName = value(Section, QStringLiteral("Medium"));
    const MediumKind *k = kindByName(m.kindName);
    if (!k)
        return std::nullopt;
    m.kindName = k->name;
    m.dataFile = value(Section, QStringLiteral("Data"));
    // The data file lies beside the descriptor: a bare name, never a path.
    if (m.dataFile.isEmpty() || m.dataFile.contains(u'/') || m.dataFile.startsWith(u'.'))
        return std::nullopt;
    m.finalized = value(Section, QStringLiteral("Finalized")) == QStringLiteral("1");
    const int count = value(Section, QStringLiteral("Sessions")).toInt(&ok);
    if (!ok || count < 0 || count > MaxSessions)
        return std::nullopt;
    qint32 end = 0;
    for (int i = 1; i <= count; ++i) {
        const QString s = QStringLiteral("Session%1").arg(i);
        Session session;
        bool okStart = false, okBlocks = false, okMode = false;
        session.start = value(s, QStringLiteral("Start")).toInt(&okStart);
        session.blocks = value(s, QStringLiteral("Blocks")).toInt(&okBlocks);
        session.mode = value(s, QStringLiteral("Mode")).toInt(&okMode);
        session.closed = value(s, QStringLiteral("Closed")) != QStringLiteral("0");
        const QString tracks = value(s, QStringLiteral("Tracks"));
        if (!tracks.isEmpty() && !parseTracks(tracks, session))
            return std::nullopt;
        // Sessions follow each other on the medium and stay within its capacity.
        if (!okStart || !okBlocks || !okMode || session.start < end || session.blocks < 0 ||
            session.mode < 0 || session.mode > 2 ||
            qint64(session.start) + session.blocks > k->capacity)
            return std::nullopt;
        if (i < count && !session.closed)
            return std::nullopt;
        // Audio and data don't share a disc here: audio is one session from block 0.
        if ((session.mode == 0) != (i == 1 && !session.trackStarts.isEmpty()) ||
            (i > 1 && m.sessions.first().mode == 0))
            return std::nullopt;
        end = session.start + session.blocks;
        m.sessions.append(session);
    }
    return m;
}

QByteArray ImageMedium::serialize() const {
    QByteArray out;
    out += "; A disc of the Tessaly Image Recorder. The data file holds every session's\n"
           "; blocks at their addresses (2048 bytes each); see the Image Recorder's notes.\n";
    out += "[" + Section.toUtf8() + "]\n";
    out += "Version=1\n";
    out += "Medium=" + kindName.toUtf8() + "\n";
    out += "Data=" + dataFile.toUtf8() + "\n";
    out += "Finalized=" + QByteArray(finalized ? "1" : "0") + "\n";
    out += "Sessions=" + QByteArray::number(sessions.size()) + "\n";
    for (int i = 0; i < sessions.size(); ++i) {
        const Session &s = sessions.at(i);
        out += "\n[Session" + QByteArray::number(i + 1) + "]\n";
        out += "Start=" + QByteArray::number(s.start) + "\n";
        out += "Blocks=" + QByteArray::number(s.blocks) + "\n";
        out += "Mode=" + QByteArray::number(s.mode) + "\n";
        out += "Closed=" + QByteArray(s.closed ? "1" : "0") + "\n";
        if (!s.trackStarts.isEmpty()) {
            QByteArrayList starts;
            for (qint32 t : s.trackStarts)
                starts.append(QByteArray::number(t));
            out += "Tracks=" + starts.join(' ') + "\n";
        }
    }
    return out;
}

bool ImageMedium::appendable() const {
    const MediumKind *k = kind();
    if (!k || !k->writable || finalized)
        return false;
    if (!sessions.isEmpty() && !sessions.last().closed)
        return false;
    // A 100th session would make a descriptor no reader takes.
    if (sessions.size() >= MaxSessions)
        return false;
    return nextWritableAddress() >= 0;
}

qint32 ImageMedium::nextWritableAddress() const {
    const MediumKind *k = kind();
    if (!k || finalized)
        return -1;
    if (sessions.isEmpty())
        return 0;
    const Session &last = sessions.last();
    qint64 next = qint64(last.start) + last.blocks;
    if (k->cd)
        next += sessions.size() == 1 ? FirstSessionGap : LaterSessionGap;
    else
        next = (next + 15) / 16 * 16; // a DVD session ends on a whole ECC block of 16
    return next < k->capacity ? qint32(next) : -1;
}

MediumState ImageMedium::state() const {
    MediumState st;
    const MediumKind *k = kind();
    if (!k)
        return st;
    st.mediaType = k->mediaType;
    st.capacityBlocks = k->capacity;
    st.sessionCount = qint32(sessions.size());
    st.maxWriteSpeed = k->writable && !finalized ? k->maxSpeed : 0;
    for (const Session &s : sessions) {
        if (s.mode != 0)
            st.sessionExtents.append({s.start, s.blocks});
    }
    if (sessions.isEmpty()) {
        st.discStatus = 0;        // empty
        st.lastSessionStatus = 0; // empty session
        st.discType = 255;
    } else {
        const Session &last = sessions.last();
        st.discStatus = finalized ? 2 : 1;
        st.lastSessionStatus = finalized ? 3 : (last.closed ? 0 : 1);
        st.lastSessionStart = last.start;
        st.lastSessionMode = last.mode;
        st.discType = last.mode == 2 ? 32 : 0;
    }
    if (!k->writable) {
        st.discStatus = 2;
        st.lastSessionStatus = 3;
    }
    st.nextWritableAddress = appendable() ? nextWritableAddress() : -1;
    // As a drive counts them: the empty session waiting on an appendable disc is one more.
    st.sessionCount += st.nextWritableAddress >= 0 ? 1 : 0;
    st.freeBlocks = st.nextWritableAddress >= 0 ? k->capacity - st.nextWritableAddress : 0;
    return st;
}

QByteArray ImageMedium::cueSheet(const QString &binName) const {
    if (!isAudio())
        return QByteArray();
    QByteArray out = "REM Audio disc of the Tessaly Image Recorder\n";
    out += "FILE \"" + binName.toUtf8() + "\" BINARY\n";
    const QList<qint32> &starts = sessions.first().trackStarts;
    for (int i = 0; i < starts.size(); ++i) {
        // The disc holds the user's own audio, so rippers are told a digital copy is allowed,
        // as a drive writing it through libburn marks it.
        out += "  TRACK " + QByteArray::number(i + 1).rightJustified(2, '0') + " AUDIO\n";
        out += "    FLAGS DCP\n";
        if (i > 0)
            out += "    INDEX 00 " + msf(starts.at(i) - AudioGap) + "\n";
        out += "    INDEX 01 " + msf(starts.at(i)) + "\n";
    }
    return out;
}
