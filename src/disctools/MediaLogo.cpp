#include "MediaLogo.h"
#include "widgets/PictureList.h"

#include <QFont>
#include <QHash>
#include <QPainter>

QPixmap MediaLogo::pixmap(const QString &key) {
    static const QHash<QString, QString> captions = {
        {QStringLiteral("CDR"), QStringLiteral("CD-R")},
        {QStringLiteral("CDROM"), QStringLiteral("CD-ROM")},
        {QStringLiteral("CDRW"), QStringLiteral("CD-RW")},
        {QStringLiteral("DVDR"), QStringLiteral("DVD±R")},
        {QStringLiteral("DVDRW"), QStringLiteral("DVD±RW")},
        {QStringLiteral("DVDRAM"), QStringLiteral("RAM")},
        {QStringLiteral("DVDROM"), QStringLiteral("DVD")},
        {QStringLiteral("AUDIO"), QStringLiteral("♫")},
    };
    QPixmap pm = PictureList::pixmap(QStringLiteral("MEDIA"), Size);
    QPainter p(&pm);
    p.setRenderHint(QPainter::TextAntialiasing);
    QFont font = p.font();
    font.setBold(true);
    font.setPixelSize(key == QLatin1String("AUDIO") ? 22 : 11);
    p.setFont(font);
    const QRect band(0, Size / 2 - 8, Size, 16);
    p.fillRect(band, QColor(255, 255, 255, 190));
    p.setPen(QColor(30, 40, 90));
    p.drawText(key == QLatin1String("AUDIO") ? pm.rect() : band, Qt::AlignCenter,
               captions.value(key, key));
    return pm;
}
