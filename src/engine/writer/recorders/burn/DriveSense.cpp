#include "DriveSense.h"

#include <QRegularExpression>

#include <array>

namespace {
struct Entry {
    int asc;
    int ascq; // -1: any qualifier of the ASC
    qint32 code;
    const char *text;
};

// Additional sense codes of the MMC command set that a recorder reports while writing, closing,
// blanking or reading, with the failure each one stands for. Exact pairs come before the
// catch-all of their ASC.
constexpr std::array Entries{
    Entry{0x00, 0x00, 1052, "NO ADDITIONAL SENSE INFORMATION"},
    Entry{0x02, 0x00, 1017, "NO SEEK COMPLETE"},
    Entry{0x04, 0x04, 1055, "LOGICAL UNIT NOT READY, FORMAT IN PROGRESS"},
    Entry{0x04, 0x07, 1002, "LOGICAL UNIT NOT READY, OPERATION IN PROGRESS"},
    Entry{0x04, 0x08, 1002, "LOGICAL UNIT NOT READY, LONG WRITE IN PROGRESS"},
    Entry{0x04, -1, 1002, "LOGICAL UNIT NOT READY"},
    Entry{0x08, -1, 1003, "LOGICAL UNIT COMMUNICATION FAILURE"},
    Entry{0x09, -1, 1004, "TRACK FOLLOWING ERROR"},
    Entry{0x0C, 0x07, 1006, "WRITE ERROR - RECOVERY NEEDED"},
    Entry{0x0C, 0x08, 1007, "WRITE ERROR - RECOVERY FAILED"},
    Entry{0x0C, 0x09, 1008, "WRITE ERROR - LOSS OF STREAMING"},
    Entry{0x0C, 0x0A, 1008, "WRITE ERROR - PADDING BLOCKS ADDED"},
    Entry{0x0C, -1, 1005, "WRITE ERROR"},
    Entry{0x11, 0x01, 1010, "READ RETRIES EXHAUSTED"},
    Entry{0x11, 0x05, 1012, "L-EC UNCORRECTABLE ERROR"},
    Entry{0x11, 0x06, 1013, "CIRC UNRECOVERED ERROR"},
    Entry{0x11, 0x0F, 1014, "ERROR READING UPC/EAN NUMBER"},
    Entry{0x11, 0x10, 1015, "ERROR READING ISRC NUMBER"},
    Entry{0x11, 0x11, 1016, "READ ERROR - LOSS OF STREAMING"},
    Entry{0x11, -1, 1009, "UNRECOVERED READ ERROR"},
    Entry{0x15, -1, 1017, "RANDOM POSITIONING ERROR"},
    Entry{0x1A, -1, 1018, "PARAMETER LIST LENGTH ERROR"},
    Entry{0x1D, 0x00, 1005, "MISCOMPARE DURING VERIFY OPERATION"},
    Entry{0x20, -1, 1020, "INVALID COMMAND OPERATION CODE"},
    Entry{0x21, 0x00, 1021, "LOGICAL BLOCK ADDRESS OUT OF RANGE"},
    Entry{0x21, 0x02, 1038, "INVALID ADDRESS FOR WRITE"},
    Entry{0x21, -1, 1021, "LOGICAL BLOCK ADDRESS OUT OF RANGE"},
    Entry{0x24, -1, 1022, "INVALID FIELD IN CDB"},
    Entry{0x26, 0x01, 1024, "PARAMETER NOT SUPPORTED"},
    Entry{0x26, 0x02, 1025, "PARAMETER VALUE INVALID"},
    Entry{0x26, -1, 1023, "INVALID FIELD IN PARAMETER LIST"},
    Entry{0x28, -1, 1033, "NOT READY TO READY CHANGE, MEDIUM MAY HAVE CHANGED"},
    Entry{0x29, -1, 1026, "POWER ON, RESET, OR BUS DEVICE RESET OCCURRED"},
    Entry{0x2A, -1, 1027, "PARAMETERS CHANGED"},
    Entry{0x2C, -1, 1053, "COMMAND SEQUENCE ERROR"},
    Entry{0x30, 0x00, 1028, "INCOMPATIBLE MEDIUM INSTALLED"},
    Entry{0x30, 0x01, 1029, "CANNOT READ MEDIUM - UNKNOWN FORMAT"},
    Entry{0x30, 0x02, 1030, "CANNOT READ MEDIUM - INCOMPATIBLE FORMAT"},
    Entry{0x30, 0x04, 1031, "CANNOT WRITE MEDIUM - UNKNOWN FORMAT"},
    Entry{0x30, 0x05, 1032, "CANNOT WRITE MEDIUM - INCOMPATIBLE FORMAT"},
    Entry{0x30, 0x06, 1030, "CANNOT FORMAT MEDIUM - INCOMPATIBLE MEDIUM"},
    Entry{0x30, -1, 1028, "INCOMPATIBLE MEDIUM INSTALLED"},
    Entry{0x31, -1, 1029, "MEDIUM FORMAT CORRUPTED"},
    Entry{0x3A, -1, 1033, "MEDIUM NOT PRESENT"},
    Entry{0x3E, 0x02, 1035, "TIMEOUT ON LOGICAL UNIT"},
    Entry{0x44, -1, 1034, "INTERNAL TARGET FAILURE"},
    Entry{0x47, -1, 1019, "SCSI PARITY ERROR"},
    Entry{0x48, -1, 1019, "INITIATOR DETECTED ERROR MESSAGE RECEIVED"},
    Entry{0x4B, -1, 1019, "DATA PHASE ERROR"},
    Entry{0x51, -1, 1036, "ERASE FAILURE"},
    Entry{0x57, -1, 1037, "UNABLE TO RECOVER TABLE-OF-CONTENTS"},
    Entry{0x63, 0x00, 1038, "END OF USER AREA ENCOUNTERED ON THIS TRACK"},
    Entry{0x63, 0x01, 1039, "PACKET DOES NOT FIT IN AVAILABLE SPACE"},
    Entry{0x64, 0x00, 1040, "ILLEGAL MODE FOR THIS TRACK"},
    Entry{0x64, 0x01, 1041, "INVALID PACKET SIZE"},
    Entry{0x72, 0x00, 1042, "SESSION FIXATION ERROR"},
    Entry{0x72, 0x01, 1043, "SESSION FIXATION ERROR WRITING LEAD-IN"},
    Entry{0x72, 0x02, 1044, "SESSION FIXATION ERROR WRITING LEAD-OUT"},
    Entry{0x72, 0x03, 1045, "SESSION FIXATION ERROR - INCOMPLETE TRACK IN SESSION"},
    Entry{0x72, 0x04, 1046, "EMPTY OR PARTIALLY WRITTEN RESERVED TRACK"},
    Entry{0x72, -1, 1042, "SESSION FIXATION ERROR"},
    Entry{0x73, 0x00, 1049, "CD CONTROL ERROR"},
    Entry{0x73, 0x01, 1047, "POWER CALIBRATION AREA ALMOST FULL"},
    Entry{0x73, 0x02, 1047, "POWER CALIBRATION AREA IS FULL"},
    Entry{0x73, 0x03, 1048, "POWER CALIBRATION AREA ERROR"},
    Entry{0x73, 0x04, 1049, "PROGRAM MEMORY AREA UPDATE FAILURE"},
    Entry{0x73, 0x05, 1050, "PROGRAM MEMORY AREA IS FULL"},
    Entry{0x73, -1, 1049, "CD CONTROL ERROR"},
};

struct KeyEntry {
    qint32 code;
    const char *text;
};

// What is left when the ASC says nothing this table knows: the sense key alone.
constexpr std::array<KeyEntry, 16> Keys{{
    {1052, "NO SENSE"},
    {1052, "RECOVERED ERROR"},
    {1002, "NOT READY"},
    {1005, "MEDIUM ERROR"},
    {1034, "HARDWARE ERROR"},
    {1022, "ILLEGAL REQUEST"},
    {1026, "UNIT ATTENTION"},
    {1051, "DATA PROTECT"},
    {1051, "BLANK CHECK"},
    {1051, "VENDOR SPECIFIC"},
    {1051, "COPY ABORTED"},
    {1001, "ABORTED COMMAND"},
    {1051, "EQUAL"},
    {1021, "VOLUME OVERFLOW"},
    {1005, "MISCOMPARE"},
    {1051, "RESERVED"},
}};

const Entry *find(const DriveSense::Sense &s) {
    for (const Entry &e : Entries) {
        if (e.asc == s.asc && (e.ascq == s.ascq || e.ascq == -1))
            return &e;
    }
    return nullptr;
}

// Failures libburn reports in words, without sense data: the wording tells the drive code.
struct Wording {
    const char *needle;
    qint32 code;
    DriveSense::Sense sense;
};
constexpr std::array Wordings{
    Wording{"no media", 1033, {0x2, 0x3A, 0x00}},
    Wording{"no disc", 1033, {0x2, 0x3A, 0x00}},
    Wording{"not present", 1033, {0x2, 0x3A, 0x00}},
    Wording{"audio track prohibited", 1040, {0x5, 0x64, 0x00}},
    Wording{"track mode", 1040, {0x5, 0x64, 0x00}},
    Wording{"block type", 1040, {0x5, 0x64, 0x00}},
    Wording{"underrun", 1008, {0x3, 0x0C, 0x09}},
    Wording{"too large", 1021, {0x5, 0x21, 0x00}},
    Wording{"exceeds", 1021, {0x5, 0x21, 0x00}},
    Wording{"capacity", 1021, {0x5, 0x21, 0x00}},
    Wording{"multi session", 1032, {0x5, 0x30, 0x05}},
    Wording{"not writeable", 1032, {0x5, 0x30, 0x05}},
    Wording{"not writable", 1032, {0x5, 0x30, 0x05}},
    Wording{"unsuitable", 1032, {0x5, 0x30, 0x05}},
    Wording{"closed", 1032, {0x5, 0x30, 0x05}},
    Wording{"write mode", 1032, {0x5, 0x30, 0x05}},
    Wording{"timeout", 1035, {0x2, 0x3E, 0x02}},
    Wording{"timed out", 1035, {0x2, 0x3E, 0x02}},
    Wording{"blank", 1036, {0x3, 0x51, 0x00}},
    Wording{"format", 1030, {0x5, 0x30, 0x06}},
    Wording{"permission denied", 1001, {0xB, 0x00, 0x00}},
    Wording{"busy", 1001, {0xB, 0x00, 0x00}},
    Wording{"i/o error", 1001, {0xB, 0x00, 0x00}},
};
} // namespace

qint32 DriveSense::driveCode(const Sense &s) {
    if (s.key == 0 && s.asc == 0 && s.ascq == 0)
        return 1052;
    if (const Entry *e = find(s))
        return e->code;
    return s.key >= 0 && s.key < int(Keys.size()) ? Keys[size_t(s.key)].code : 1051;
}

QString DriveSense::senseText(const Sense &s) {
    const char *text = nullptr;
    if (const Entry *e = find(s))
        text = e->text;
    else if (s.key >= 0 && s.key < int(Keys.size()))
        text = Keys[size_t(s.key)].text;
    else
        text = "UNKNOWN SENSE KEY";
    return QStringLiteral("%1/%2/%3 %4")
        .arg(s.key, 0, 16)
        .arg(s.asc, 2, 16, QLatin1Char('0'))
        .arg(s.ascq, 2, 16, QLatin1Char('0'))
        .arg(QLatin1StringView(text))
        .toUpper();
}

std::optional<DriveSense::Sense> DriveSense::parse(const QString &message) {
    // libburn writes sense data as "[K AA QQ]", and in some messages bare, after the command
    // that failed; bare triples count only in a message about SCSI or sense data.
    static const QRegularExpression bracketed(
        QStringLiteral(R"(\[\s*([0-9A-Fa-f])\s+([0-9A-Fa-f]{2})\s+([0-9A-Fa-f]{2})\s*\])"));
    static const QRegularExpression bare(QStringLiteral(
        R"((?<![0-9A-Za-z])([0-9A-Fa-f])\s+([0-9A-Fa-f]{2})\s+([0-9A-Fa-f]{2})(?![0-9A-Za-z]))"));
    QRegularExpressionMatch m = bracketed.match(message);
    if (!m.hasMatch() && (message.contains(QLatin1StringView("SCSI")) ||
                          message.contains(QLatin1StringView("sense"), Qt::CaseInsensitive)))
        m = bare.match(message);
    if (!m.hasMatch())
        return std::nullopt;
    return Sense{m.captured(1).toInt(nullptr, 16), m.captured(2).toInt(nullptr, 16),
                 m.captured(3).toInt(nullptr, 16)};
}

JobOutcome DriveSense::failure(const QString &info, const QStringList &messages,
                               std::optional<Sense> fallback) {
    for (const QString &m : messages) {
        if (const auto sense = parse(m))
            return JobOutcome::driveFailure(driveCode(*sense), info, senseText(*sense));
    }
    if (fallback)
        return JobOutcome::driveFailure(driveCode(*fallback), info, senseText(*fallback));
    for (const QString &m : messages) {
        const QString lower = m.toLower();
        for (const Wording &w : Wordings) {
            if (lower.contains(QLatin1StringView(w.needle)))
                return JobOutcome::driveFailure(
                    w.code, info, senseText(w.sense) + QStringLiteral(" (") + m + u')');
        }
    }
    // Nothing the drive said explains it: the extended data is libburn's own last word.
    return JobOutcome::driveFailure(1051, info,
                                    messages.isEmpty()
                                        ? QStringLiteral("0/00/00 NO ADDITIONAL SENSE INFORMATION")
                                        : messages.last());
}
