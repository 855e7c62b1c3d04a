#include "modCD2CD.h"

#include "engine/copier/CD2CD.h"
#include "widgets/MessageBoxService.h"

#include <QComboBox>

namespace {
// One byte of the address, counted from the lowest.
quint8 byteAt(const qint32 &address, int shift) {
    return quint8((quint32(address) >> shift) & 0xff);
}
} // namespace

quint8 modCD2CD::NMSByte(const qint32 &address) {
    return byteAt(address, 16);
}

quint8 modCD2CD::NLSByte(const qint32 &address) {
    return byteAt(address, 8);
}

quint8 modCD2CD::LSByte(const qint32 &address) {
    return byteAt(address, 0);
}

void modCD2CD::FillDrives(CD2CD &engine, QComboBox *first, QComboBox *second) {
    // A list starts without a selection: choosing an item is the form's step.
    const QSignalBlocker quietFirst(first), quietSecond(second);
    for (qint32 i = 0; i < engine.DeviceCount(); ++i) {
        const qint32 address = engine.DeviceAddress(i);
        const QString line = engine.listLine(address);
        if (engine.QueryRevision(address) <= 0)
            continue; // no revision: left out of the lists
        for (QComboBox *list : {first, second})
            if (list)
                list->addItem(line, address);
    }
    for (QComboBox *list : {first, second})
        if (list)
            list->setCurrentIndex(-1);
}

void modCD2CD::PopulateSpeed(QComboBox *cboSpeed, qint32 maxSpeedCode) {
    const QSignalBlocker quiet(cboSpeed);
    cboSpeed->clear();
    for (const char *speed :
         {"1x", "2x", "4x", "6x", "8x", "10x", "12x", "14x", "16x", "18x", "MAX"})
        cboSpeed->addItem(QString::fromLatin1(speed));
    for (qint32 value = 0; value <= 8; ++value) {
        if (value != maxSpeedCode)
            continue;
        for (int index = 9; index >= value + 1; --index)
            cboSpeed->removeItem(index);
    }
    cboSpeed->setCurrentIndex(-1);
}

void modCD2CD::PopulateSpeedCD2CD(QComboBox *cboSpeed, const CD2CD &engine) {
    PopulateSpeed(cboSpeed, engine.MaxSpeedCode());
}

void modCD2CD::PopulateSpeedBin(QComboBox *cboSpeed, const CD2CD &engine) {
    PopulateSpeed(cboSpeed, engine.MaxSpeedCode());
}

qint32 modCD2CD::SpeedCodeOfIndex(int listIndex) {
    if (listIndex >= 0 && listIndex <= 9)
        return listIndex;
    return listIndex == 10 ? CD2CD::MaxSpeed : -1;
}

void modCD2CD::AbortWithBox(CD2CD &engine) {
    engine.AbortJob();
    MsgBox(QStringLiteral("Abort was seleceted. The Burning Process is now aborting"),
           vbInformation, QStringLiteral("Aborting Burn Process"));
}
