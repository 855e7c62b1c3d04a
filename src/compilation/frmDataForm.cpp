// The data window's life in the frame: loading, activation and unloading with the frame's
// command states, and the two pop-up menus of the frame it fills while it is open.
#include "app/modDeclarations.h"
#include "app/modIniFunc.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "engine/writer/CDWriterPro.h"
#include "frmData.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/Twips.h"

#include <algorithm>

#include <QCloseEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QTreeWidget>

namespace {

const QStringList &menuItems() {
    static const QStringList keys = {
        QStringLiteral("CLOSE"), QStringLiteral("CLOSEALL"),        QStringLiteral("SAVEASISO"),
        QStringLiteral("LABEL"), QStringLiteral("WRITEDISC"),       QStringLiteral("PRINTPREVIEW"),
        QStringLiteral("PRINT"), QStringLiteral("PRINTERSETTINGS"), QStringLiteral("PAGESETTINGS")};
    return keys;
}

} // namespace

void frmData::Form_Load() {
    FrameServices *main = services();
    const qint16 left = CInt(sGetINI(gstrINIFile, QStringLiteral("General"),
                                     QStringLiteral("DataImage Left"), QStringLiteral("0")));
    QWidget *outer = parentWidget() ? parentWidget() : this;
    outer->setGeometry(Twips::toPixels(left), 0, Twips::toPixels(7600), Twips::toPixels(8500));
    gblnDisctypeIsData = 0;
    main->SetTypeSize();
    main->setCommandsEnabled({QStringLiteral("NEW")}, false);
    main->setCommandsEnabled(menuItems(), true);
    // A fresh compilation dates its files as modified on this machine, menu ticks to match.
    main->useFileModifiedDate(true);
    buildPopups();
    engine()->ClearISOImage();
    main->EnableForm(true);
    EnableForm(true);
}

void frmData::Form_Activate() {
    ErrorTrap::run("Form_Activate", "frmData", [this] {
        services()->setCommandsEnabled({QStringLiteral("CLOSE"), QStringLiteral("CLOSEALL")}, true);
        services()->setMenuShown(QStringLiteral("DATAIMAGE"), true);
    });
}

void frmData::Form_Unload(int &Cancel) {
    gblnDisctypeIsData = 99;
    Cancel = gblnUnloadOk ? 0 : 1;
    // The frame falls back to the state of no compilation even where a write keeps the window.
    FrameServices *main = services();
    main->setCommandsEnabled({QStringLiteral("NEW")}, true);
    main->setMenuShown(QStringLiteral("DATAIMAGE"), false);
    main->setCommandsEnabled(menuItems(), false);
    main->setStatusText(QStringLiteral("DATA"), QStringLiteral(" Data Image Size:"));
    main->setStatusText(QStringLiteral("FILES"), QStringLiteral(" Files:"));
    main->setStatusText(QStringLiteral("DIRECTORIES"), QStringLiteral(" Directories:"));
    // Emptied once the window no longer counts as the data compilation: no caption follows it.
    main->setVolumeIdentifierText(QString());
    main->setVolumeIdentifierEnabled(false);
    main->clearSizeBar();
}

void frmData::closeEvent(QCloseEvent *event) {
    // The window is in use by the drop that is being added.
    if (m_dropping) {
        event->ignore();
        return;
    }
    int Cancel = 0;
    ErrorTrap::run("Form_Unload", "frmData", [&] { Form_Unload(Cancel); });
    if (Cancel != 0) {
        event->ignore();
        return;
    }
    clearPopups();
    event->accept();
}

// --- Pop-up menus -------------------------------------------------------------------------

QAction *frmData::popupEntry(const QString &name) const {
    return m_entries.value(name);
}

void frmData::buildPopups() {
    FrameServices *main = services();
    clearPopups();
    auto add = [this](QMenu *menu, const char *name, const QString &caption,
                      std::function<void()> handler, bool checkable = false) {
        QAction *action = menu->addAction(caption);
        action->setObjectName(QLatin1String(name));
        action->setCheckable(checkable);
        connect(action, &QAction::triggered, this,
                [name, handler = std::move(handler)] { ErrorTrap::run(name, "mdiMain", handler); });
        m_entries.insert(QLatin1String(name), action);
    };
    m_popupTV = main->popupMenu(FrameServices::Popup::Tree);
    m_popupLV = main->popupMenu(FrameServices::Popup::List);
    QMenu *tv = m_popupTV;
    add(tv, "mnuRemoveDirectory", QStringLiteral("&Remove Directory"),
        [main] { main->runCommand(QStringLiteral("REMOVEDIRECTORY")); });
    add(tv, "mnuRenameDirectory", QStringLiteral("Re&name Directory"),
        [main] { main->runCommand(QStringLiteral("RENAMEDIRECTORY")); });
    tv->addSeparator();
    add(tv, "mnuClearAllItemsTV", QStringLiteral("&Clear All Items"),
        [this] { engine()->ClearISOImage(); });

    QMenu *lv = m_popupLV;
    add(lv, "mnuRemoveFile", QStringLiteral("&Remove File"),
        [main] { main->runCommand(QStringLiteral("REMOVEFILE")); });
    add(lv, "mnuRenameFile", QStringLiteral("Re&name File"),
        [main] { main->runCommand(QStringLiteral("RENAMEFILE")); });
    add(lv, "mnuClearAllItemsLV", QStringLiteral("&Clear All Items"),
        [this] { engine()->ClearISOImage(); });
    lv->addSeparator();
    QMenu *view = lv->addMenu(QStringLiteral("&View"));
    add(
        view, "mnuLargeIcons", QStringLiteral("Lar&ge Icons"), [this] { setListView(0); }, true);
    add(
        view, "mnuSmallIcons", QStringLiteral("S&mall Icons"), [this] { setListView(1); }, true);
    add(
        view, "mnuList", QStringLiteral("&List"), [this] { setListView(2); }, true);
    add(
        view, "mnuDetails", QStringLiteral("&Details"), [this] { setListView(3); }, true);
    QMenu *sort = lv->addMenu(QStringLiteral("&Sort"));
    add(
        sort, "mnuByName", QStringLiteral("By &Name"), [this] { setListSort(0); }, true);
    add(
        sort, "mnuByDate", QStringLiteral("By &Date"), [this] { setListSort(2); }, true);
    add(
        sort, "mnuDoNotSort", QStringLiteral("Do &Not Sort"), [this] { setListSort(-1); }, true);
    lv->addSeparator();
    add(lv, "mnuRefresh", QStringLiteral("Re&fresh"),
        [this] { lvwImageFiles->viewport()->update(); });
    setListView(m_view);
    setListSort(m_sortKey);
}

void frmData::clearPopups() {
    m_entries.clear();
    for (QMenu *menu : {m_popupTV.data(), m_popupLV.data()}) {
        if (menu)
            menu->clear();
    }
}

void frmData::setListView(int view) {
    m_view = view;
    const QStringList names = {QStringLiteral("mnuLargeIcons"), QStringLiteral("mnuSmallIcons"),
                               QStringLiteral("mnuList"), QStringLiteral("mnuDetails")};
    for (int i = 0; i < names.size(); ++i) {
        if (QAction *entry = m_entries.value(names.at(i)))
            entry->setChecked(i == view);
    }
    // Details show the size and the date under headers; the other views the names only.
    const bool details = view == 3;
    lvwImageFiles->setHeaderHidden(!details);
    lvwImageFiles->setColumnHidden(1, !details);
    lvwImageFiles->setColumnHidden(2, !details);
    lvwImageFiles->setIconSize(view == 0 ? QSize(32, 32) : QSize(16, 16));
}

void frmData::setListSort(int sortKey) {
    m_sortKey = sortKey;
    if (QAction *entry = m_entries.value(QStringLiteral("mnuByName")))
        entry->setChecked(sortKey == 0);
    if (QAction *entry = m_entries.value(QStringLiteral("mnuByDate")))
        entry->setChecked(sortKey == 2);
    if (QAction *entry = m_entries.value(QStringLiteral("mnuDoNotSort")))
        entry->setChecked(sortKey < 0);
    lvwImageFiles->setSortingEnabled(sortKey >= 0);
    if (sortKey >= 0)
        lvwImageFiles->sortByColumn(sortKey, Qt::AscendingOrder);
    else
        lvwImageFiles->header()->setSortIndicatorShown(false);
}

CompilationListing frmData::listing() {
    QList<QTreeWidgetItem *> folders = m_nodes.values();
    std::sort(folders.begin(), folders.end(), [](QTreeWidgetItem *a, QTreeWidgetItem *b) {
        return a->data(0, AddedRole).toLongLong() < b->data(0, AddedRole).toLongLong();
    });
    CompilationListing list;
    list.isData = true;
    for (QTreeWidgetItem *folder : folders) {
        CompilationListing::Folder entry;
        QStringList names;
        for (QTreeWidgetItem *at = folder; at; at = at->parent())
            names.prepend(at->text(0));
        entry.fullPath = names.join(u'\\');
        // The files as the list shows them, in its order.
        LoadFileList(keyOf(folder));
        for (int i = 0; i < lvwImageFiles->topLevelItemCount(); ++i) {
            const QTreeWidgetItem *row = lvwImageFiles->topLevelItem(i);
            entry.files.append({row->text(0), row->text(1)});
        }
        list.folders.append(entry);
    }
    // The window shows the root again, as after a fresh start.
    if (QTreeWidgetItem *root = node(QStringLiteral("\\"))) {
        tvwDirectories->setCurrentItem(root);
        LoadFileList(keyOf(root));
    }
    return list;
}
