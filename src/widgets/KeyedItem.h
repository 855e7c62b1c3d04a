#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

class QAction;
class QMenu;

// One keyed item of a menu or a toolbar: enabled, shown (0 hidden, 1 shown) and checked
// states, a caption, a tag and its picture key. A menu's own item also holds its drop-down.
// Lives on the UI thread.
class KeyedItem : public QObject {
    Q_OBJECT
public:
    KeyedItem(const QString &key, QAction *action, QObject *parent, QMenu *menu = nullptr);

    QString Key() const { return m_key; }
    QAction *action() const { return m_action; }
    // The drop-down of a menu, or null for a plain item.
    QMenu *menu() const;

    bool Enabled() const;
    void setEnabled(bool value);
    int Shown() const;
    void setShown(int value);
    bool Checked() const;
    void setChecked(bool value);
    QString Caption() const;
    void setCaption(const QString &value);

    // The picture key of the item; the greyed and the hot pictures are the key with "DIS" and
    // "HOT" behind it.
    QString PictureKey() const { return m_pictureKey; }
    void setPictureKey(const QString &key);

    // A click leaves the check mark to the program: the toolkit's own toggle is undone.
    void restoreCheck();

    QVariant Tag;
    int ItemType = 0;

private:
    QString m_key;
    QAction *m_action;
    QString m_pictureKey;
    QMenu *m_menu;
    bool m_checked = false;
};
