#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

class QComboBox;

// The lists the encoder dialogs share, and the checked way to set a list's index. UI thread.
namespace modEncoderLists {

// 32 to 320 kb/s, the fourteen MP3 rates; the Vorbis list puts "Default" (0) before them.
const QList<qint32> &Mp3BitRates();
void LoadBitRatesMP3(QComboBox *cboList);
void LoadBitRatesVorbis(QComboBox *cboList);
void LoadChannels(QComboBox *cboList);
// The three Vorbis lists as a dialog opens: 128kb/s nominal, "Default" for both limits.
void LoadVorbisRates(QComboBox *nominal, QComboBox *minimum, QComboBox *maximum);
// The item data of an index of the Vorbis list, 0 for "Default"; -1 when there is no such entry.
qint32 VorbisRateAt(qint32 index);

// An information box titled with the product's name.
void Inform(const QString &text);

// Sets the list index as a stored value would: -1 clears the choice, an index past the list is
// the run-time error 380 ("Invalid property value").
void SetListIndex(QComboBox *cboList, qint32 index);

} // namespace modEncoderLists
