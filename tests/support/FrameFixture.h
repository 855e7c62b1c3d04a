#pragma once

#include "Waits.h"

#include <QtCore>

class mdiMain;
class QMdiSubWindow;

// What the window tests ask of a started frame.
namespace FrameFixture {

using Waits::settle;

mdiMain *frame();
// In the order they were loaded.
QList<QMdiSubWindow *> childWindows();
QStringList captions();
// The number in a browser's caption, "File Browser [2]  /home" gives 2; 0 when there is none.
int browserNumber(const QString &caption);
// The frame against tests/snapshots/<name>.txt, less the clock's panels and the test's folder.
QString differences(const QString &name, const QString &folder);
// Before the application exists: 1024 by 768 at 96 dots per inch.
void useScreen1024x768();

} // namespace FrameFixture
