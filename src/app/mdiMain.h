#pragma once

#include "FrameServices.h"
#include "base/Checked.h"
#include "base/VbDate.h"

#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <functional>

class AnimationControl;
class CDNotify;
class CDWriterPro;
class KeyedItem;
class KeyedMenu;
class KeyedStatusBar;
class KeyedToolbar;
class LineControl;
class QComboBox;
class QLabel;
class QLineEdit;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QProgressBar;
class QScrollArea;
class frmFiles;

// The main frame: the multiple-document area that holds the file browsers and the compilation
// windows, the keyed menu, toolbar and status bar, the recorder strip and the size ruler. It
// owns the disc-writing engine and the media notifier for the whole run, and hands them with its
// services to every window it opens. One default instance. On the UI thread.
class mdiMain : public QMainWindow, public FrameServices {
    Q_OBJECT
public:
    mdiMain();
    ~mdiMain() override;

    QMdiArea *mdiArea() const { return m_mdiArea; }

    // The engines.
    CDWriterPro *Tessaly = nullptr;
    CDNotify *CDNotify1 = nullptr;

    // Menu, toolbar and status bar, by key.
    KeyedMenu *SmartMenu = nullptr;
    KeyedToolbar *SmartToolbar = nullptr;
    KeyedStatusBar *smartStatusBar = nullptr;

    // The top strip: recorder, speed, volume identifier.
    QWidget *asxTop = nullptr;
    QLabel *lblRecorder = nullptr;
    QComboBox *cboDevices = nullptr;
    QLabel *lblWriteSpeed = nullptr;
    QComboBox *cboWriteSpeed = nullptr;
    QLabel *lblVolIdentifier = nullptr;
    QLineEdit *txtVolIdentifier = nullptr;

    // The bottom strip: the size ruler, lengths in twips, 10 to the megabyte from 100.
    QWidget *asxBottom = nullptr;
    AnimationControl *aniRuler = nullptr;
    QProgressBar *prbSize = nullptr;
    LineControl *linTopSize = nullptr;
    LineControl *linCDSize = nullptr;
    QList<LineControl *> linSize;
    QList<QLabel *> lblSize;

    // Pop-up menus the compilation windows fill and show.
    QMenu *mnuPopUpTV = nullptr;
    QMenu *mnuPopUpLV = nullptr;
    QMenu *mnuPopUpAudio = nullptr;

    // What the windows the frame opens may ask of it.
    QWidget *frameWidget() override { return this; }
    QMdiSubWindow *addChild(QWidget *window) override;
    void setCommandsEnabled(const QStringList &keys, bool enabled) override;
    void setMenuShown(const QString &key, bool shown) override;
    void setStatusText(const QString &panel, const QString &text) override;
    QMenu *popupMenu(Popup which) override;
    QString volumeIdentifierText() const override;
    void setVolumeIdentifierText(const QString &text) override;
    void setVolumeIdentifierEnabled(bool enabled) override;
    void clearSizeBar() override;
    qint32 setSizeBar(qint32 maximum) override;
    void setStatusPicture(const QString &panel, const QString &pictureKey) override;
    void setStatusValue(const QString &panel, int value) override;
    void useFileModifiedDate(bool modified) override;
    QString writeSpeedText() const override { return mstrSpeed; }

    void EnableForm(bool blnEnable) override;
    void CheckSession();
    void SetChildNumbers(qint16 ClosingForm);
    void LoadDriveCombo();
    void LoadWriteSpeedCombo();
    void NoCDRDrives();
    void setCDSizeLine();
    void ShowHelpContents(int intHelpFile);
    void ShowHelpIndex(int intHelpFile);
    void ShowHelpContextID(int intHelpFile, qint32 lngContextID);
    void UpdateWindowList();

    // The command of a key, as the menu and the toolbar run it; an unknown key does nothing.
    void runCommand(const QString &key) override;

    // The command handlers.
    void ToolMenuNew();
    void ToolMenuClose();
    void ToolMenuAddFiles();
    void ToolMenuCloseAll();
    void ToolMenuSaveAsIso();
    void ToolMenuWriteDisc();
    void ToolMenuWriteIso();
    void ToolMenuPreferences();
    void ToolMenuPrint();
    void ToolMenuPrintPreview();
    void ToolMenuPrinterSettings();
    void ToolMenuPageSettings();
    void ToolMenuExit();
    void ToolMenuRefresh();
    void ToolMenuMoveUp();
    void ToolMenuCreateFolder();
    void ToolMenuBrowseFolder();
    void ToolMenuSelectAll(bool blnSelected);
    void ToolMenuClearAudio();
    void ToolMenuRemoveTrack();
    void ToolMenuRipAudio();
    void ToolMenuNormalize();
    void ToolMenuRipData();
    void ToolMenuClearAllItems();
    void ToolMenuRemoveDirectory();
    void ToolMenuRenameDirectory();
    void ToolMenuRemoveFile();
    void ToolMenuRenameFile();
    void ToolMenuFileDateModified();
    void ToolMenuFileDateAdded();
    void ToolMenuViewToolbar();
    void ToolMenuViewStatusbar();
    void ToolMenuViewMeter();
    void ToolMenuEjectCd();
    void ToolMenuCloseTray();
    void ToolMenuRecorderInfo();
    void ToolMenuDiscInfo();
    void ToolMenuEraseDisc();
    void ToolMenuImportPrevious();
    void ToolMenuTileVertical();
    void ToolMenuTileHorizental();
    void ToolMenuCascade();
    void ToolMenuArrangeIcons();
    void ToolMenuSupportedDrives();
    void ToolMenuLicense();
    void ToolMenuInternetUpdate();
    void ToolMenuOnWeb();
    void ToolMenuHelp();
    void ToolMenuHelpContents();
    void ToolMenuHelpIndex();
    void ToolMenuAbout();

    // Event handlers.
    void smartMenu_Click(KeyedItem *Item);
    void smartToolbar_Click(KeyedItem *Item);
    void smartmenu_BeforeDropDown(KeyedItem *Item, bool &Cancel);
    void cboDevices_Click();
    void cboWriteSpeed_Click();
    void CDNotify1_Arrival(const QString &Drive);
    void CDNotify1_RemoveComplete(const QString &Drive);

    // Image: the data window's mirror of the engine's image, the volume identifier box and the
    // size ruler.
    void ResetImage();
    void RecalcImageSize() override;
    void SetTypeSize() override;
    // The status bar names the folder being added where it lies on this machine.
    void Tessaly_ISOItemAdded(const QString &sParentDestPath, const QString &sItemDestPath,
                              const QString &sItemName, const QString &SourceFilePath,
                              bool bIsDirectory);
    void Tessaly_ISOItemRemoved(const QString &sDestinationPath, bool bIsDirectory);
    void Tessaly_ISODestPathChanged(const QString &sOldDestPath, const QString &sNewDestPath,
                                    bool bIsDirectory);
    void Tessaly_EnumISOItems(const QString &sItemDestPath, const QString &sItemName,
                              bool bIsDirectory, VbDate dteFileDate, qint64 lFileSize);
    void Tessaly_ISOImageReset();
    void Tessaly_ReplaceImportedISOFile(const QString &sDestPath, const QString &sNewSourcePath,
                                        const QString &sFileName, bool &bReplaceFile);
    void txtVolIdentifier_Change();

    // Browser numbering: the top number handed out so far (reset by Close All), and the open
    // browsers by number.
    Integer NumberForms = 0;
    CheckedArray<QPointer<frmFiles>, 100> frmF;
    QString mstrSpeed;
    bool mblnTrackWriteFirst = false;
    bool mblnCacheFirst = false;

    // False in the reduced layout of a machine without recorders, whose hidden menus stay hidden.
    bool hasRecorders() const { return m_hasRecorders; }

    // The part of the ruler in view, in twips from its left edge.
    std::pair<int, int> rulerInView() const;

    // The open children in the order they were loaded.
    QList<QMdiSubWindow *> openForms() const;
    // Opens the application folder's animation of a name ("cdspin"); a missing one is passed
    // over and the old one stays.
    void ShowAnimation(const QString &name);

    // Write: the engine's events during a write in the status bar; the dialog follows them
    // itself and hears from the frame only how the job ended.
    void connectWriteEvents();
    // The status bar at rest once a job has ended, however it ended.
    void restAfterJob();
    // Tells that the disc's last session is open and where it is closed.
    void reportOpenSession();
    void Tessaly_PreparingToWrite();
    void Tessaly_CachingStatus(qint16 nPercentComplete);
    void Tessaly_ReadingTrackFile(const QString &sFileName, qint32 lFileIndex, qint32 lTrackNumber);
    void Tessaly_ReadingTrackFileError(qint32 TrackFileError, const QString &sFileName,
                                       qint32 lTrackNumber);
    void Tessaly_CreatingDirectories();
    void Tessaly_TrackWriteStatus(qint32 lTrackNumber, qint32 lBlocksWritten,
                                  qint32 lBlocksToWrite);
    void Tessaly_ClosingTrack(qint32 lTrackNumber);
    void Tessaly_ClosingSession();
    void Tessaly_ClosingDisc();
    void Tessaly_WriteComplete();
    void Tessaly_WriteCancelled();
    void Tessaly_WriteError(qint32 WriteError, qint32 DriveError, const QString &sErrorInfo,
                            const QString &sSenseInfo);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void MDIForm_Load();
    // Cancel is set to 1 to keep the frame.
    void MDIForm_QueryUnload(int &Cancel, int UnloadMode);

    void buildMenu();
    void buildToolbar();
    void buildStatusBar();
    QWidget *buildTopStrip();
    QWidget *buildBottomStrip();
    void buildCommandTable();
    void setMenuState(const QStringList &keys, bool enabled);
    void setToolbarState(const QStringList &keys, bool enabled);
    frmFiles *activeFileBrowser();
    // Opens a window or runs a procedure of another part of the program by name; one that is
    // not in the program yet is said so.
    void openForm(const QString &name);
    // The key of the command running now, to name it in a box.
    QString m_runningKey;
    // Side by side, each the full height of the area, or one above the other.
    void tileChildren(bool sideBySide);
    // The active child's window.
    QMdiSubWindow *activeChild() const;
    void connectEngine();
    // Image: the engine's image events and the volume identifier box.
    void connectImageEvents();

    // Scrolls the ruler so that the free-space line and the end of the size bar are in view;
    // when both do not fit, the nearer of the two: the bar's end of a compilation that fits,
    // the line of one that does not.
    void followRuler();

    QMdiArea *m_mdiArea = nullptr;
    QScrollArea *m_rulerScroll = nullptr;
    QWidget *m_ruler = nullptr;
    bool m_hasRecorders = true;
    QHash<QString, std::function<void()>> m_commands;
};
