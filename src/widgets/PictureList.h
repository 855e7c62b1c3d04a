#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

// The program's pictures by key: the pictures of the menu and toolbar items and of the status
// bar. An item's icon takes its key for the normal picture, the key with "DIS" for the greyed
// one and the key with "HOT" for the one under the mouse. Lives on the UI thread.
class PictureList {
public:
    // A null pixmap for an unknown key.
    static QPixmap pixmap(const QString &key, int size = 16);
    static QIcon icon(const QString &key);
    static bool contains(const QString &key);
};
