#pragma once

#include <QtGlobal>

class CD2CD;
class QComboBox;

// Helpers of the three copy windows: address bytes, drive lines and speed choices. UI thread.
namespace modCD2CD {

// The host, target and unit of an address (third, second and lowest byte).
quint8 NMSByte(const qint32 &address);
quint8 NLSByte(const qint32 &address);
quint8 LSByte(const qint32 &address);

// Every device whose revision query answers, as its list line, into each list given, with the
// address as item data.
void FillDrives(CD2CD &engine, QComboBox *first, QComboBox *second = nullptr);

// The speeds "1x" to "18x" and "MAX", those above the selected device's MaxSpeedCode removed.
void PopulateSpeed(QComboBox *cboSpeed, qint32 maxSpeedCode);
// Fills the copy window's and the image burner's speed lists for the selected device.
void PopulateSpeedCD2CD(QComboBox *cboSpeed, const CD2CD &engine);
void PopulateSpeedBin(QComboBox *cboSpeed, const CD2CD &engine);
// The speed code of a list position: 0 to 9 the same number, 10 the drive's best (255). It goes
// by position, so a shortened list's "MAX" gives one code above the drive's highest speed.
qint32 SpeedCodeOfIndex(int listIndex);
// Stops the running job and tells the user so, the same in every copy window.
void AbortWithBox(CD2CD &engine);

} // namespace modCD2CD
