// The frame's services to the windows it opens: its document area, command states, status bar
// and strips, reached through FrameServices rather than through the frame's controls.
#include "base/App.h"
#include "engine/writer/CDWriterPro.h"
#include "mdiMain.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/MessageBoxService.h"
#include "widgets/Twips.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QProgressBar>

QMdiSubWindow *mdiMain::addChild(QWidget *window) {
    QMdiSubWindow *sub = m_mdiArea->addSubWindow(window);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowIcon(window->windowIcon());
    // A window unloaded on its own takes its frame in the area with it.
    connect(window, &QObject::destroyed, sub, &QObject::deleteLater);
    return sub;
}

void mdiMain::setCommandsEnabled(const QStringList &keys, bool enabled) {
    for (const QString &key : keys) {
        if (SmartMenu->contains(key))
            SmartMenu->Item(key)->setEnabled(enabled);
        if (SmartToolbar->contains(key))
            SmartToolbar->Item(key)->setEnabled(enabled);
    }
}

void mdiMain::setMenuShown(const QString &key, bool shown) {
    SmartMenu->Item(key)->setShown(shown ? 1 : 0);
    SmartMenu->Item(key)->setEnabled(shown);
}

void mdiMain::setStatusText(const QString &panel, const QString &text) {
    smartStatusBar->Item(panel)->setText(text);
}

QMenu *mdiMain::popupMenu(Popup which) {
    switch (which) {
    case Popup::Tree:
        return mnuPopUpTV;
    case Popup::List:
        return mnuPopUpLV;
    case Popup::Audio:
        break;
    }
    return mnuPopUpAudio;
}

QString mdiMain::volumeIdentifierText() const {
    return txtVolIdentifier->text();
}

void mdiMain::setVolumeIdentifierText(const QString &text) {
    txtVolIdentifier->setText(text);
}

void mdiMain::setVolumeIdentifierEnabled(bool enabled) {
    txtVolIdentifier->setVisible(true);
    txtVolIdentifier->setEnabled(enabled);
}

void mdiMain::clearSizeBar() {
    prbSize->resize(0, prbSize->height());
    prbSize->setValue(0);
}

qint32 mdiMain::setSizeBar(qint32 maximum) {
    // A bar without range would draw as busy; an empty compilation has no width anyway.
    prbSize->setMaximum(qMax<qint32>(maximum, 1));
    Long width = maximum;
    width *= 10;
    prbSize->resize(Twips::toPixels(width), prbSize->height());
    // Held within the maximum, as the bar keeps it.
    prbSize->setValue(qMin<qint32>(width, maximum));
    return prbSize->value();
}

void mdiMain::setStatusPicture(const QString &panel, const QString &pictureKey) {
    smartStatusBar->Item(panel)->setImageKey(pictureKey);
}

void mdiMain::setStatusValue(const QString &panel, int value) {
    smartStatusBar->Item(panel)->setValue(value);
}

void mdiMain::useFileModifiedDate(bool modified) {
    if (modified)
        ToolMenuFileDateModified();
    else
        ToolMenuFileDateAdded();
}
