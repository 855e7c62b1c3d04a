#include "EncoderSettingsFiles.h"

#include "base/Conversions.h"
#include "base/IniFile.h"
#include "base/RuntimeError.h"

namespace EncoderSettingsFiles {
namespace {
const QString Mp3Section = QStringLiteral("MP3 Options");
const QString VorbisSection = QStringLiteral("VORBIS Options");

struct IniText {
    const QByteArray &text;
    QString get(const QString &section, const char *key, const QString &fallback) const {
        return IniFile::value(text, section, QLatin1String(key), fallback);
    }
    bool flag(const QString &section, const char *key, bool fallback) const {
        return CBool(get(section, key, CStr(fallback)));
    }
    qint16 index(const QString &section, const char *key, qint16 fallback) const {
        return CInt(get(section, key, QString::number(fallback)));
    }
};

// A boolean as the record files write it, "#TRUE#"; a plain word or number reads as well.
bool recordFlag(const QString &field) {
    if (field.compare(QLatin1String("#TRUE#"), Qt::CaseInsensitive) == 0)
        return true;
    if (field.compare(QLatin1String("#FALSE#"), Qt::CaseInsensitive) == 0)
        return false;
    return CBool(field);
}

QByteArray flagText(bool value) {
    return value ? QByteArrayLiteral("#TRUE#") : QByteArrayLiteral("#FALSE#");
}
} // namespace

EncoderIniSettings readEncoderIni(const QByteArray &text) {
    const IniText ini{text};
    EncoderIniSettings s;
    s.cbr = ini.flag(Mp3Section, "Constant Bit Rate", s.cbr);
    s.cbrRate = ini.index(Mp3Section, "Bit Rate", s.cbrRate);
    s.vbr = ini.flag(Mp3Section, "Variable Rate", s.vbr);
    s.vbrMin = ini.index(Mp3Section, "Min", s.vbrMin);
    s.vbrMax = ini.index(Mp3Section, "Max", s.vbrMax);
    s.vbrQuality = ini.index(Mp3Section, "VBR Quality", s.vbrQuality);
    s.studio = ini.flag(Mp3Section, "Studio", s.studio);
    s.normal = ini.flag(Mp3Section, "Normal", s.normal);
    s.channelMode = ini.index(Mp3Section, "Channel Mode", s.channelMode);
    s.vorbisNominal = ini.index(VorbisSection, "Normal Bit Rate", s.vorbisNominal);
    s.vorbisAdvanced = ini.index(VorbisSection, "Use Advanced Settings", s.vorbisAdvanced);
    s.vorbisMin = ini.index(VorbisSection, "Minimum Bit Rate", s.vorbisMin);
    s.vorbisMax = ini.index(VorbisSection, "Maximum Bit Rate", s.vorbisMax);
    return s;
}

QByteArray writeEncoderIni(QByteArray text, const EncoderIniSettings &s) {
    auto set = [&text](const QString &section, const char *key, const QString &value) {
        text = IniFile::withValue(text, section, QLatin1String(key), value);
    };
    set(Mp3Section, "Constant Bit Rate", CStr(s.cbr));
    set(Mp3Section, "Bit Rate", QString::number(s.cbrRate));
    set(Mp3Section, "Variable Rate", CStr(s.vbr));
    set(Mp3Section, "Min", QString::number(s.vbrMin));
    set(Mp3Section, "Max", QString::number(s.vbrMax));
    set(Mp3Section, "VBR Quality", QString::number(s.vbrQuality));
    set(Mp3Section, "Studio", CStr(s.studio));
    set(Mp3Section, "Normal", CStr(s.normal));
    set(Mp3Section, "Channel Mode", QString::number(s.channelMode));
    set(VorbisSection, "Normal Bit Rate", QString::number(s.vorbisNominal));
    set(VorbisSection, "Use Advanced Settings", QString::number(s.vorbisAdvanced));
    set(VorbisSection, "Minimum Bit Rate", QString::number(s.vorbisMin));
    set(VorbisSection, "Maximum Bit Rate", QString::number(s.vorbisMax));
    return text;
}

QStringList lastRecord(const QByteArray &bytes, int count) {
    QStringList fields;
    for (QByteArray line : bytes.split('\n')) {
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.trimmed().isEmpty())
            continue;
        for (const QByteArray &field : line.split(','))
            fields.append(QString::fromLatin1(field.trimmed()));
    }
    const qsizetype whole = fields.size() / count;
    if (whole == 0)
        throw RuntimeError(62, QStringLiteral("Input past end of file"));
    return fields.mid((whole - 1) * count, count);
}

VorbisRecord readVorbis(const QByteArray &bytes) {
    const QStringList f = lastRecord(bytes, 4);
    return {CInt(f[0]), CInt(f[1]), CInt(f[2]), CInt(f[3])};
}

QByteArray vorbisLine(const VorbisRecord &r) {
    return QByteArray::number(r.nominal) + ',' + QByteArray::number(r.advanced) + ',' +
           QByteArray::number(r.minimum) + ',' + QByteArray::number(r.maximum) + '\n';
}

WMARecord readWMA(const QByteArray &bytes) {
    const QStringList f = lastRecord(bytes, 5);
    return {CInt(f[0]), CInt(f[1]), recordFlag(f[2]), recordFlag(f[3]), CInt(f[4])};
}

QByteArray wmaLine(const WMARecord &r) {
    return QByteArray::number(r.bitRate) + ',' + QByteArray::number(r.drm) + ',' +
           flagText(r.stereo) + ',' + flagText(r.mono) + ',' + QByteArray::number(r.sampleRate) +
           '\n';
}

} // namespace EncoderSettingsFiles
