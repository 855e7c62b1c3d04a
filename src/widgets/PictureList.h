#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

// Icons of menus, toolbar and status bar, found by key; a "DIS" or "HOT" suffix on the key
// gives the greyed and the hovered variants of the same icon. UI thread.
class PictureList {
public:
    // A null pixmap for an unknown key.
    static QPixmap pixmap(const QString &key, int size = 16);
    static QIcon icon(const QString &key);
    static bool contains(const QString &key);
};
