#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

// The MP3 tool's options: one record kept for the run, its file "Dat/OptMP3.dat" and the lame
// switches built from it. UI thread.
struct MP3Options {
    qint32 Bitrate = 128;
    qint32 Mode = 4;
    qint32 Optimization = 0;
    qint32 IncludeCRC = 0;
    qint32 Copy = 0;
    qint32 Copyright = 0;
    qint32 Filing = 0;
    qint32 EnableVBR = 0;
    qint32 VBRBitrate = 128;
    qint32 Quality = 4;
    qint32 DisableVBRTag = 0;
    qint32 EnforceBitrate = 0;
    qint32 UseABR = 0;
    qint32 ABRBitrate = 128;
    qint32 BlockTypes = 0;
    qint32 DisableFiltering = 0;
    qint32 DisableBitRes = 0;
    qint32 DisableShort = 0;
    qint32 ComplyISO = 0;
    qint32 ATHControl = 0;
    qint32 QLevel = 0;
    QString CustomOptions = QString(128, u' ');
    qint32 UseCustom = 0;
    double OutputFrequency = 0;
    qint32 UseHighPassFilter = 0;
    qint32 UseHighPassWidth = 0;
    double HighPassFreq = 0;
    double HighPassWidth = 0;
    qint32 UseLowPassFilter = 0;
    qint32 UseLowPassWidth = 0;
    double LowPassFreq = 0;
    double LowPassWidth = 0;
};

namespace modMP3Support {

extern MP3Options udtOptions;
extern QString strCommands;
extern QString strDelSrcFile;
extern bool blnRetLoad;
extern bool blnRetSave;

// "App.Path/Dat/OptMP3.dat".
QString OptionsFile();

void BuildMP3String();
bool LoadOptions();
bool SaveOptions();
void SetDefaultOptions();
qint32 BitrateToTicks(qint32 lngBitrate);
qint32 TicksToBitrate(qint32 lngTick);

// The file's bytes: one line of the record, and the last whole record of a file's bytes
// (nullopt-like false when a line is not a record).
QByteArray RecordLine(const MP3Options &options);
bool ParseRecords(const QByteArray &bytes, MP3Options &options);

} // namespace modMP3Support
