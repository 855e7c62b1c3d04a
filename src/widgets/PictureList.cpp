#include "PictureList.h"

#include <QApplication>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

namespace {

// Pictures of the platform's style where one fits the command.
const QHash<QString, QStyle::StandardPixmap> &standardPictures() {
    static const QHash<QString, QStyle::StandardPixmap> table = {
        {QStringLiteral("NEW"), QStyle::SP_FileIcon},
        {QStringLiteral("ADDFILES"), QStyle::SP_DirOpenIcon},
        {QStringLiteral("CLOSE"), QStyle::SP_DialogCloseButton},
        {QStringLiteral("CLOSEALL"), QStyle::SP_TitleBarCloseButton},
        {QStringLiteral("SAVEASISO"), QStyle::SP_DialogSaveButton},
        {QStringLiteral("LABEL"), QStyle::SP_FileDialogInfoView},
        {QStringLiteral("PREFERENCES"), QStyle::SP_FileDialogDetailedView},
        {QStringLiteral("PREVIEW"), QStyle::SP_FileDialogContentsView},
        {QStringLiteral("PRINT"), QStyle::SP_FileDialogListView},
        {QStringLiteral("PRINTERSETTINGS"), QStyle::SP_ComputerIcon},
        {QStringLiteral("PAGESETUP"), QStyle::SP_FileDialogDetailedView},
        {QStringLiteral("EXIT"), QStyle::SP_DialogCancelButton},
        {QStringLiteral("REFRESH"), QStyle::SP_BrowserReload},
        {QStringLiteral("MOVEUP"), QStyle::SP_FileDialogToParent},
        {QStringLiteral("FOLDERADD"), QStyle::SP_FileDialogNewFolder},
        {QStringLiteral("BROWSEFOLDER"), QStyle::SP_DirIcon},
        {QStringLiteral("SELECTALL"), QStyle::SP_DialogYesButton},
        {QStringLiteral("SELECTNONE"), QStyle::SP_DialogNoButton},
        {QStringLiteral("CLEARALL"), QStyle::SP_DialogResetButton},
        {QStringLiteral("REMOVE"), QStyle::SP_TrashIcon},
        {QStringLiteral("DELFOLDER"), QStyle::SP_TrashIcon},
        {QStringLiteral("DELFILE"), QStyle::SP_TrashIcon},
        {QStringLiteral("SHOWTOOLBAR"), QStyle::SP_TitleBarShadeButton},
        {QStringLiteral("SHOWSTATUSBAR"), QStyle::SP_TitleBarUnshadeButton},
        {QStringLiteral("EJECTCD"), QStyle::SP_MediaSeekForward},
        {QStringLiteral("CLOSETRAY"), QStyle::SP_MediaSeekBackward},
        {QStringLiteral("NORMALIZE"), QStyle::SP_MediaVolume},
        {QStringLiteral("ENCODE"), QStyle::SP_MediaPlay},
        {QStringLiteral("HELP"), QStyle::SP_DialogHelpButton},
        {QStringLiteral("CONTENTS"), QStyle::SP_DialogHelpButton},
        {QStringLiteral("INDEX"), QStyle::SP_FileDialogListView},
        {QStringLiteral("ABOUT"), QStyle::SP_MessageBoxInformation},
        {QStringLiteral("NOTE"), QStyle::SP_MediaVolume},
        {QStringLiteral("WEB"), QStyle::SP_DriveNetIcon},
        {QStringLiteral("INTERNETUPDATE"), QStyle::SP_ArrowDown},
        {QStringLiteral("LICENSE"), QStyle::SP_FileIcon},
        {QStringLiteral("SUPPORTEDDRIVES"), QStyle::SP_DriveCDIcon},
    };
    return table;
}

// Disc pictures are drawn: a disc with a mark in the colour of the command.
const QHash<QString, QColor> &discPictures() {
    static const QHash<QString, QColor> table = {
        {QStringLiteral("MEDIA"), QColor(40, 150, 40)},
        {QStringLiteral("WORKING"), QColor(200, 120, 0)},
        {QStringLiteral("BURN"), QColor(210, 40, 30)},
        {QStringLiteral("WRITEFROMISO"), QColor(210, 40, 30)},
        {QStringLiteral("CUESHEET"), QColor(150, 60, 160)},
        {QStringLiteral("CDCOPY"), QColor(60, 90, 200)},
        {QStringLiteral("CDRECINFO"), QColor(60, 90, 200)},
        {QStringLiteral("DISCINFORMATION"), QColor(60, 90, 200)},
        {QStringLiteral("SESSION"), QColor(60, 160, 160)},
        {QStringLiteral("ERASE"), QColor(120, 120, 120)},
        {QStringLiteral("IMPPRESES"), QColor(60, 160, 160)},
        {QStringLiteral("RIPAUDIO"), QColor(150, 60, 160)},
        {QStringLiteral("RIPDATA"), QColor(150, 60, 160)},
    };
    return table;
}

QPixmap drawDisc(int size, const QColor &mark, bool present) {
    QPixmap pm(size, size);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r(1, 1, size - 2, size - 2);
    if (present) {
        QRadialGradient g(r.center(), r.width() / 2);
        g.setColorAt(0, QColor(235, 235, 245));
        g.setColorAt(0.7, QColor(170, 190, 220));
        g.setColorAt(1, QColor(120, 140, 180));
        p.setBrush(g);
        p.setPen(QPen(QColor(80, 80, 100), 1));
    } else {
        // An empty tray: the outline of the missing disc.
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(QColor(120, 120, 120), 1, Qt::DashLine));
    }
    p.drawEllipse(r);
    const double hole = size / 5.0;
    p.setBrush(present ? QBrush(Qt::white) : QBrush(Qt::NoBrush));
    p.drawEllipse(r.center(), hole / 2, hole / 2);
    if (mark.isValid()) {
        p.setPen(Qt::NoPen);
        p.setBrush(mark);
        p.drawEllipse(QRectF(size * 0.55, size * 0.55, size * 0.42, size * 0.42));
    }
    return pm;
}

} // namespace

QPixmap PictureList::pixmap(const QString &key, int size) {
    if (key == QLatin1String("NOMEDIA"))
        return drawDisc(size, QColor(), false);
    if (auto it = discPictures().constFind(key); it != discPictures().constEnd())
        return drawDisc(size, key == QLatin1String("MEDIA") ? QColor() : *it, true);
    if (auto it = standardPictures().constFind(key); it != standardPictures().constEnd())
        return QApplication::style()->standardIcon(*it).pixmap(size, size);
    return QPixmap();
}

bool PictureList::contains(const QString &key) {
    return key == QLatin1String("NOMEDIA") || discPictures().contains(key) ||
           standardPictures().contains(key);
}

QIcon PictureList::icon(const QString &key) {
    // Without a "DIS" picture the icon greys the normal one itself.
    QIcon icon;
    for (int size : {16, 24, 32}) {
        const QPixmap normal = pixmap(key, size);
        if (normal.isNull())
            continue;
        icon.addPixmap(normal, QIcon::Normal);
        if (const QPixmap dis = pixmap(key + QStringLiteral("DIS"), size); !dis.isNull())
            icon.addPixmap(dis, QIcon::Disabled);
        const QPixmap hot = pixmap(key + QStringLiteral("HOT"), size);
        icon.addPixmap(hot.isNull() ? normal : hot, QIcon::Active);
    }
    return icon;
}
