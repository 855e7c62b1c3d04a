#pragma once

#include <QString>
#include <QStringList>

class CDNotify;
class CDWriterPro;
class QMdiSubWindow;
class QMenu;
class QWidget;

// What the frame offers the windows it opens: its document area, its keyed commands, its
// status bar and the strips it keeps. A window reaches the frame only through this, never
// through the frame's controls. Implemented by mdiMain; UI thread.
class FrameServices {
public:
    enum class Popup { Tree, List, Audio };

    virtual ~FrameServices();

    // The frame as a widget, to parent dialogs on.
    virtual QWidget *frameWidget() = 0;
    // Puts a window into the document area and shows it; the frame's window goes with it.
    virtual QMdiSubWindow *addChild(QWidget *window) = 0;
    // The menu and toolbar items of these keys, where each has one.
    virtual void setCommandsEnabled(const QStringList &keys, bool enabled) = 0;
    // A top menu ("DATAIMAGE") shown and enabled, or hidden.
    virtual void setMenuShown(const QString &key, bool shown) = 0;
    virtual void setStatusText(const QString &panel, const QString &text) = 0;
    // Runs a command key as the menu does.
    virtual void runCommand(const QString &key) = 0;
    virtual QMenu *popupMenu(Popup which) = 0;
    // Menus, toolbar and strips during a job.
    virtual void EnableForm(bool blnEnable) = 0;
    virtual void RecalcImageSize() = 0;
    // The ruler's labels for the open kind of compilation.
    virtual void SetTypeSize() = 0;
    // The volume identifier box: its text, and whether it is in use.
    virtual QString volumeIdentifierText() const = 0;
    virtual void setVolumeIdentifierText(const QString &text) = 0;
    virtual void setVolumeIdentifierEnabled(bool enabled) = 0;
    // The size bar emptied when the compilation goes.
    virtual void clearSizeBar() = 0;
    // The size bar at a length of `maximum` units of 10 twips against the ruler; the value the
    // bar holds afterwards.
    virtual qint32 setSizeBar(qint32 maximum) = 0;
    // The picture of a status panel by its key ("NOTE"); empty for none.
    virtual void setStatusPicture(const QString &panel, const QString &pictureKey) = 0;
    // The bar of a status panel with one ("CACHING"), in percent.
    virtual void setStatusValue(const QString &panel, int value) = 0;
    // The chosen write speed as the speed list shows it ("52x 7800 kB/s").
    virtual QString writeSpeedText() const = 0;
    // The date the files of the image carry: modified (true) or added.
    virtual void useFileModifiedDate(bool modified) = 0;
};

// What a window is handed when it is made.
struct WindowContext {
    CDWriterPro *engine = nullptr;
    CDNotify *notify = nullptr;
    FrameServices *frame = nullptr;
};
