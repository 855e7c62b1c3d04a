#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// Reading and writing the three files the encoder dialogs keep their choices in (the MP3
// dialog's ini file and the two one-line record files), from and to bytes; combos are kept by
// position in their lists.
// A field that is not a number, or out of its 16-bit range, throws the run-time error it would
// raise (13, 6); a file with no whole record throws 62. No widgets: the fuzz target uses it.

// "Dat/encoder.ini": what a key that is missing reads as is the field's initial value.
struct EncoderIniSettings {
    bool cbr = true;
    qint16 cbrRate = 8; // 128kb/s
    bool vbr = false;
    qint16 vbrMin = 0;  // 32kb/s
    qint16 vbrMax = 13; // 320kb/s, the list's last
    qint16 vbrQuality = 0;
    bool studio = false;
    bool normal = true;
    qint16 channelMode = 0;
    qint16 vorbisNominal = 9; // 128kb/s
    qint16 vorbisAdvanced = 0;
    qint16 vorbisMin = 0; // Default
    qint16 vorbisMax = 0;
    bool operator==(const EncoderIniSettings &) const = default;
};

struct VorbisRecord {
    qint16 nominal = 9;
    qint16 advanced = 0;
    qint16 minimum = 0;
    qint16 maximum = 0;
    bool operator==(const VorbisRecord &) const = default;
};

struct WMARecord {
    qint16 bitRate = 14; // 128kb/s
    qint16 drm = 0;
    bool stereo = true;
    bool mono = false;
    qint16 sampleRate = 0;
    bool operator==(const WMARecord &) const = default;
};

namespace EncoderSettingsFiles {

EncoderIniSettings readEncoderIni(const QByteArray &text);
QByteArray writeEncoderIni(QByteArray text, const EncoderIniSettings &settings);

VorbisRecord readVorbis(const QByteArray &bytes);
QByteArray vorbisLine(const VorbisRecord &record);

WMARecord readWMA(const QByteArray &bytes);
QByteArray wmaLine(const WMARecord &record);

// The fields of the last whole record of `count` fields, read as comma- and line-separated
// values one record after the other; throws 62 when there is no whole record.
QStringList lastRecord(const QByteArray &bytes, int count);

} // namespace EncoderSettingsFiles
