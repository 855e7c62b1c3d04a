#include "DiscVolume.h"

namespace {

constexpr int Block = 2048;

QString isoText(const QByteArray &block, int at, int length) {
    return QString::fromLatin1(block.mid(at, length)).trimmed();
}

// A Joliet volume names itself in UCS-2, big-endian.
QString jolietText(const QByteArray &block, int at, int length) {
    QString text;
    for (int i = at; i + 1 < at + length; i += 2)
        text += QChar(char16_t((uchar(block.at(i)) << 8) | uchar(block.at(i + 1))));
    return text.trimmed();
}

bool jolietEscape(const QByteArray &block) {
    const QByteArray escape = block.mid(88, 3);
    return escape == "%/@" || escape == "%/C" || escape == "%/E";
}

} // namespace

qint32 DiscVolume::serialOf(const QByteArray &descriptor) {
    quint8 sum[4] = {0, 0, 0, 0};
    for (int i = 0; i < qMin(int(descriptor.size()), Block); ++i)
        sum[i % 4] = quint8(sum[i % 4] + quint8(descriptor.at(i)));
    const quint32 serial =
        (quint32(sum[0]) << 24) | (quint32(sum[1]) << 16) | (quint32(sum[2]) << 8) | sum[3];
    return qint32(serial);
}

DiscVolume DiscVolume::audioDisc() {
    return {QStringLiteral("Audio CD"), QStringLiteral("CDDA"), 0};
}

DiscVolume DiscVolume::fromDescriptors(const QByteArray &blocks) {
    DiscVolume v;
    bool iso = false, joliet = false, udf = false;
    QString jolietLabel;
    for (qsizetype at = 0; at + Block <= blocks.size(); at += Block) {
        const QByteArray block = blocks.mid(at, Block);
        const QByteArray id = block.mid(1, 5);
        if (id == "CD001") {
            const int type = uchar(block.at(0));
            if (type == 1 && !iso) {
                iso = true;
                v.label = isoText(block, 40, 32);
                v.serial = serialOf(block);
            } else if (type == 2 && jolietEscape(block)) {
                joliet = true;
                jolietLabel = jolietText(block, 40, 32);
            } else if (type == 255) {
                break;
            }
        } else if (id == "NSR02" || id == "NSR03") {
            udf = true;
        } else if (id != "BEA01" && id != "TEA01" && id != "BOOT2" && id != "CDW02") {
            break; // the end of the set, or no volume descriptors at all
        }
    }
    if (udf)
        v.fileSystem = QStringLiteral("UDF");
    else if (iso)
        v.fileSystem = joliet ? QStringLiteral("ISO 9660 + Joliet") : QStringLiteral("ISO 9660");
    // A Joliet label keeps the case and length the 8-bit one had to give up.
    if (joliet && !jolietLabel.isEmpty() && jolietLabel.size() >= v.label.size())
        v.label = jolietLabel;
    return v;
}
