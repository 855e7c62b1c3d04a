#pragma once

#include "Waits.h"

#include <QString>
#include <QStringList>

class KeyedMenu;
class mdiMain;
class QMdiSubWindow;

// What the window tests ask of a started frame.
namespace FrameFixture {

using Waits::settle;

mdiMain *frame();
// The open children in the order they were loaded, and their captions.
QList<QMdiSubWindow *> childWindows();
QStringList captions();
// The number in a browser's caption, "File Browser [2]  /home" gives 2; 0 when there is none.
int browserNumber(const QString &caption);
// The menus that are shown, in menu order.
QStringList shownMenus(const KeyedMenu *menu);
// Starts the screen as 1024 by 768 at 96 dots per inch, before the application exists.
void useScreen1024x768();

} // namespace FrameFixture
