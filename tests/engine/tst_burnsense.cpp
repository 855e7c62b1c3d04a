// What drives and libburn say, in the engine's terms; how a track is handed to libburn; and the
// session layout of media written at any address.
#include "engine/writer/recorders/burn/BurnLibrary.h"
#include "engine/writer/recorders/burn/BurnMedium.h"
#include "engine/writer/recorders/burn/DriveSense.h"
#include "engine/writer/recorders/burn/OverwriteSessions.h"
#include "engine/writer/recorders/burn/TrackFeed.h"

#include "Rows.h"

#include <QtTest>

#include <cstring>

namespace {
using Blocks = QMap<qint32, QByteArray>;

// A volume descriptor block of the given type counting `blocks`.
QByteArray descriptor(int type, quint32 blocks) {
    QByteArray b(2048, '\0');
    b[0] = char(type);
    std::memcpy(b.data() + 1, "CD001", 5);
    b[6] = 1;
    for (int i = 0; i < 4; ++i) {
        b[80 + i] = char(blocks >> (8 * i));
        b[87 - i] = char(blocks >> (8 * i));
    }
    return b;
}

// A track whose byte n is n * 7 mod 251, so that a lost or doubled byte shows; it fails at
// block `failAt`.
class PatternTrack : public TrackSource {
public:
    PatternTrack(qint32 mode, qint64 blocks, qint64 failAt = -1)
        : m_mode(mode)
        , m_blocks(blocks)
        , m_failAt(failAt) {}
    qint32 mode() const override { return m_mode; }
    qint64 blockCount() const override { return m_blocks; }
    bool read(char *buffer, qint64 bytes) override {
        const qint64 block = m_mode == 0 ? 2352 : 2048;
        if (bytes % block != 0)
            return false;
        if (m_failAt >= 0 && (m_offset + bytes) / block > m_failAt)
            return false;
        for (qint64 i = 0; i < bytes; ++i)
            buffer[i] = char((m_offset + i) * 7 % 251);
        m_offset += bytes;
        return true;
    }

private:
    qint32 m_mode;
    qint64 m_blocks, m_failAt;
    qint64 m_offset = 0;
};

struct SenseRow {
    DriveSense::Sense sense;
    int code;
    QString text;
};

OverwriteSessions::BlockReader reader(const Blocks &blocks) {
    return [blocks](qint32 lba, char *out) {
        std::fill(out, out + 2048, '\0');
        const auto it = blocks.find(lba);
        if (it != blocks.end())
            std::copy_n(it->constData(), std::min<qsizetype>(it->size(), 2048), out);
        return true;
    };
}
} // namespace

class tst_BurnSense : public QObject {
    Q_OBJECT
private slots:
    void senseToDriveCode_data() {
        addRows<SenseRow>({
            {"buffer underrun", {{3, 0x0C, 0x09}, 1008, "3/0C/09 WRITE ERROR - LOSS OF STREAMING"}},
            {"tray open: any qualifier of 3A", {{2, 0x3A, 2}, 1033, "2/3A/02 MEDIUM NOT PRESENT"}},
            {"miscompare", {{0xE, 0x1D, 0}, 1005, "E/1D/00 MISCOMPARE DURING VERIFY OPERATION"}},
            {"unlisted 73 qualifier", {{3, 0x73, 0x20}, 1049, "3/73/20 CD CONTROL ERROR"}},
            {"unknown ASC: the key decides", {{4, 0x99, 1}, 1034, "4/99/01 HARDWARE ERROR"}},
            {"nothing wrong", {{0, 0, 0}, 1052, "0/00/00 NO ADDITIONAL SENSE INFORMATION"}},
            {"no such key", {{16, 0x99, 0}, 1051, "10/99/00 UNKNOWN SENSE KEY"}},
        });
    }

    void senseToDriveCode() {
        QFETCH(SenseRow, row);
        QCOMPARE(DriveSense::driveCode(row.sense), row.code);
        QCOMPARE(DriveSense::senseText(row.sense), row.text);
    }

    void parseLibburnMessages_data() {
        columns<QString, QString>("message", "sense"); // sense: empty: none
        const auto row = [](const char *name, const char *message, const char *sense) {
            QTest::newRow(name) << QString(message) << QString(sense);
        };
        row("bracketed", "SCSI error on write(33,16): [5 21 02] Invalid address", "5/21/02");
        row("bracketed, lower case", "FAILURE: [3 0c 09] write error", "3/0C/09");
        row("bare, after the command",
            "SCSI error condition on command 2Ah WRITE(10) : 5 64 00 ILLEGAL MODE", "5/64/00");
        row("bare, about sense data", "Sense data: 2 3a 00", "2/3A/00");
        row("bare, but no SCSI in it", "Track 1 of 12 05 done", "");
        row("no sense", "Drive offers no suitable write mode with this job", "");
    }

    void parseLibburnMessages() {
        auto [message, sense] = fetch<QString, QString>("message", "sense");
        const auto parsed = DriveSense::parse(message);
        QCOMPARE(parsed ? DriveSense::senseText(*parsed).left(7) : QString(), sense);
    }

    void failureFromMessages_data() {
        // fallback: the step's own sense when the drive says nothing; sense: "+": followed by the
        // message in brackets
        columns<QStringList, bool, int, QString>("messages", "fallback", "code", "sense");
        const auto row = [](const char *name, QStringList messages, bool fallback, int code,
                            QString sense) {
            if (sense.endsWith(u'+'))
                sense = sense.chopped(1) + " (" + messages.last() + ")";
            QTest::newRow(name) << messages << fallback << code << sense;
        };
        row("sense data decides",
            {"NOTE: Drive is ready", "FAILURE: SCSI error on write: [3 0C 09] Write error"}, true,
            1008, "3/0C/09 WRITE ERROR - LOSS OF STREAMING");
        row("refusal in words", {"SORRY: audio track prohibited by non-CD"}, false, 1040,
            "5/64/00 ILLEGAL MODE FOR THIS TRACK+");
        row("closed medium in words", {"SORRY: The medium is closed"}, false, 1032,
            "5/30/05 CANNOT WRITE MEDIUM - INCOMPATIBLE FORMAT+");
        row("full medium in words", {"FAILURE: Track size exceeds free space"}, false, 1021,
            "5/21/00 LOGICAL BLOCK ADDRESS OUT OF RANGE+");
        row("no write mode in words", {"SORRY: Drive offers no suitable write mode"}, false, 1032,
            "5/30/05 CANNOT WRITE MEDIUM - INCOMPATIBLE FORMAT+");
        row("timeout in words", {"FAILURE: Timeout (120 s) with asynchronous SCSI command"}, false,
            1035, "2/3E/02 TIMEOUT ON LOGICAL UNIT+");
        row("not blank in words", {"SORRY: Medium is not blank"}, false, 1036,
            "3/51/00 ERASE FAILURE+");
        row("unformatted in words", {"FAILURE: Medium unformatted or format corrupted"}, false,
            1030, "5/30/06 CANNOT FORMAT MEDIUM - INCOMPATIBLE MEDIUM+");
        row("denied in words", {"FATAL: Cannot open drive: Permission denied"}, false, 1001,
            "B/00/00 NO ADDITIONAL SENSE INFORMATION+");
        row("the step's meaning when nothing is said", {}, true, 1009,
            "3/11/00 UNRECOVERED READ ERROR");
        row("nothing known: libburn's last word", {"NOTE: a", "FATAL: Something never seen"}, false,
            1051, "FATAL: Something never seen");
        row("nothing at all", {}, false, 1051, "0/00/00 NO ADDITIONAL SENSE INFORMATION");
    }

    void failureFromMessages() {
        auto [messages, fallback, code, sense] =
            fetch<QStringList, bool, int, QString>("messages", "fallback", "code", "sense");
        const JobOutcome o = DriveSense::failure(
            "What failed", messages,
            fallback ? std::optional(DriveSense::Sense{3, 0x11, 0x00}) : std::nullopt);
        QCOMPARE(o.kind, JobOutcome::Failed);
        QCOMPARE(o.writeError, 3);
        QCOMPARE(o.driveError, code);
        QCOMPARE(o.errorInfo, QStringLiteral("What failed"));
        QCOMPARE(o.senseInfo, sense);
    }

    // A drive's speed descriptors (source, loaded profile, kB/s) for a loaded CD-R: the
    // medium's own win, else the drive's in general; fastest first, each once, none of zero.
    void writeSpeeds_data() {
        columns<QList<QList<int>>, QList<qint32>>("descriptors", "speeds");
        QTest::newRow("the medium's own") << QList<QList<int>>{{1, 9, 8467},
                                                               {2, 9, 1764},
                                                               {2, 9, 7056},
                                                               {2, 9, 7056},
                                                               {2, 26, 11080}}
                                          << QList<qint32>{7056, 1764};
        QTest::newRow("the drive's when the medium has none")
            << QList<QList<int>>{{1, 0, 5644}, {2, 26, 11080}, {1, 0, 0}, {1, 0, 8467}}
            << QList<qint32>{11080, 8467, 5644};
        QTest::newRow("none of any use") << QList<QList<int>>{{2, 9, 0}} << QList<qint32>{};
    }
    void writeSpeeds() {
        auto [descriptors, speeds] =
            fetch<QList<QList<int>>, QList<qint32>>("descriptors", "speeds");
        std::vector<burn::burn_speed_descriptor> list(size_t(descriptors.size()));
        for (size_t i = 0; i < list.size(); ++i) {
            list[i].source = descriptors[qsizetype(i)][0];
            list[i].profile_loaded = descriptors[qsizetype(i)][1];
            list[i].write_speed = descriptors[qsizetype(i)][2];
            list[i].next = i + 1 < list.size() ? &list[i + 1] : nullptr;
        }
        QCOMPARE(BurnMedium::writeSpeeds(list.data(), 9), speeds);
    }

    void sessionsOfAMedium_data() {
        columns<Blocks, QList<int>, int>("blocks", "starts", "next");
        QTest::newRow("blank") << Blocks{} << QList<int>{} << 32;
        QTest::newRow("cancelled first session: no head")
            << Blocks{{48, descriptor(1, 500)}} << QList<int>{} << 32;
        QTest::newRow("image at block 0")
            << Blocks{{16, descriptor(1, 700)}} << QList<int>{0} << -1;
        QTest::newRow("two sessions")
            << Blocks{{16, descriptor(1, 89)}, {48, descriptor(1, 24)}, {80, descriptor(1, 25)}}
            << QList<int>{32, 64} << 96;
        QTest::newRow("remains of a cancel beyond the head")
            << Blocks{{16, descriptor(1, 56)}, {48, descriptor(1, 24)}, {80, descriptor(1, 9000)}}
            << QList<int>{32} << 64;
    }

    void sessionsOfAMedium() {
        auto [blocks, starts, next] = fetch<Blocks, QList<int>, int>("blocks", "starts", "next");
        const auto sessions = OverwriteSessions::scan(reader(blocks), 100000);
        QList<int> found;
        for (const auto &s : sessions)
            found << s.start;
        QCOMPARE(found, starts);
        QCOMPARE(OverwriteSessions::nextStart(sessions), next);
    }

    void headCountsFromBlockZero() {
        QByteArray session(32 * 2048, '\x11');
        session.replace(16 * 2048, 2048, descriptor(1, 25));
        session.replace(17 * 2048, 2048, descriptor(2, 25));
        session.replace(18 * 2048, 2048, descriptor(255, 0));
        const QByteArray head = OverwriteSessions::head(session, 64, 25);
        QCOMPARE(head.size(), session.size());
        QCOMPARE(OverwriteSessions::volumeBlocks(head.constData() + 16 * 2048), 89);
        QCOMPARE(head.mid(17 * 2048, 2048), descriptor(2, 89)); // Joliet's counts too, both orders
        QCOMPARE(head.mid(18 * 2048, 2048), descriptor(255, 0));
        QCOMPARE(head.left(16 * 2048), session.left(16 * 2048));
    }

    void feedHandsOutTheTrack_data() {
        columns<int, int>("mode", "blocks");
        // readSize: what libburn asks for per call; failAt: the block at which the source fails; -1
        // never
        columns<int, int>("readSize", "failAt");
        QTest::newRow("audio, a sector per call") << 0 << 75 << 2352 << -1;
        QTest::newRow("data, a sector per call") << 1 << 70 << 2048 << -1;
        QTest::newRow("data, odd sizes across runs") << 1 << 33 << 1000 << -1;
        QTest::newRow("audio, large calls") << 0 << 40 << 2352 * 16 << -1;
        QTest::newRow("source fails at block 40") << 1 << 100 << 2048 << 40;
    }

    void feedHandsOutTheTrack() {
        auto [mode, blocks, readSize, failAt] =
            fetch<int, int, int, int>("mode", "blocks", "readSize", "failAt");
        PatternTrack track(mode, blocks, failAt);
        auto record = std::make_shared<TrackFeed::Record>();
        BurnLibrary::SourcePtr src = TrackFeed::create(&track, record);
        QVERIFY(src);
        const qint64 blockBytes = mode == 0 ? 2352 : 2048;
        QCOMPARE(qint64(src->get_size(src.get())), blocks * blockBytes);
        QByteArray all;
        std::vector<unsigned char> buffer(static_cast<size_t>(readSize));
        int n;
        while ((n = src->read_xt(src.get(), buffer.data(), readSize)) > 0)
            all.append(reinterpret_cast<const char *>(buffer.data()), n);
        // A failure is -1, never an early end that libburn would pad with zeros.
        QCOMPARE(n, failAt < 0 ? 0 : -1);
        QCOMPARE(record->failed.load(), failAt >= 0);
        const qint64 handedOut =
            failAt < 0 ? blocks : failAt / TrackFeed::DigestBlocks * TrackFeed::DigestBlocks;
        QCOMPARE(all.size(), handedOut * blockBytes);
        for (qint64 i = 0; i < all.size(); i += 4093)
            QCOMPARE(static_cast<unsigned char>(all[i]), static_cast<unsigned char>(i * 7 % 251));
        // One digest per run of blocks, each of exactly the bytes handed out.
        const qint64 run = TrackFeed::DigestBlocks * blockBytes;
        QCOMPARE(record->digests.size(),
                 (handedOut + TrackFeed::DigestBlocks - 1) / TrackFeed::DigestBlocks);
        for (qsizetype r = 0; r < record->digests.size(); ++r)
            QCOMPARE(record->digests[r], TrackFeed::digest(all.constData() + r * run,
                                                           std::min(run, all.size() - r * run)));
    }

    void profilesAsMediaTypes() {
        // Profile, media type, and whether this recorder lays out the sessions (not the drive).
        const QList<std::tuple<int, int, bool>> rows = {
            {0x08, 255, false}, // CD-ROM, shown as a closed CD-R
            {0x13, 3, true},    // DVD-RW restricted overwrite
            {0x14, 3, false},   // DVD-RW sequential
            {0x43, 1, true},    // BD-RE
            {0xffff, 1, true},  // a file
            {0, 254, false}};   // none
        for (const auto &[profile, mediaType, anyAddress] : rows) {
            QCOMPARE(BurnMedium::mediaTypeOf(profile), mediaType);
            QCOMPARE(BurnMedium::isOverwriteable(profile), anyAddress);
        }
    }
};

QTEST_MAIN(tst_BurnSense)
#include "tst_burnsense.moc"
