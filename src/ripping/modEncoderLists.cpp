#include "modEncoderLists.h"

#include "base/App.h"
#include "base/RuntimeError.h"
#include "widgets/MessageBoxService.h"

#include <QComboBox>

namespace modEncoderLists {

const QList<qint32> &Mp3BitRates() {
    static const QList<qint32> rates = {32,  40,  48,  56,  64,  80,  96,
                                        112, 128, 160, 192, 224, 256, 320};
    return rates;
}

void LoadBitRatesMP3(QComboBox *cboList) {
    for (qint32 rate : Mp3BitRates())
        cboList->addItem(QStringLiteral("%1kb/s").arg(rate), rate);
}

void LoadBitRatesVorbis(QComboBox *cboList) {
    cboList->addItem(QStringLiteral("Default"), 0);
    LoadBitRatesMP3(cboList);
}

void LoadChannels(QComboBox *cboList) {
    const char *const names[] = {"Stereo", "J-Stereo", "Mono", "Dual Channel"};
    for (int i = 0; i < 4; ++i)
        cboList->addItem(QString::fromLatin1(names[i]), i);
}

void LoadVorbisRates(QComboBox *nominal, QComboBox *minimum, QComboBox *maximum) {
    for (QComboBox *c : {nominal, minimum, maximum})
        LoadBitRatesVorbis(c);
    nominal->setCurrentIndex(9);
    minimum->setCurrentIndex(0);
    maximum->setCurrentIndex(0);
}

qint32 VorbisRateAt(qint32 index) {
    if (index == 0)
        return 0;
    return index > 0 && index <= Mp3BitRates().size() ? Mp3BitRates().at(index - 1) : -1;
}

void Inform(const QString &text) {
    MsgBox(text, vbInformation, App::ProductName() + QStringLiteral(" - Information"));
}

void SetListIndex(QComboBox *cboList, qint32 index) {
    if (index < -1 || index >= cboList->count())
        throw RuntimeError(380, QStringLiteral("Invalid property value"));
    cboList->setCurrentIndex(index);
}

} // namespace modEncoderLists
