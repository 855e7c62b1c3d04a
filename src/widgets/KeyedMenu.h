#pragma once

#include <QHash>
#include <QKeySequence>
#include <QObject>
#include <QStringList>

class QMenuBar;
class KeyedItem;

// Wraps the frame's menu bar so the commands find their entries by key rather than by
// pointer; it signals the entry clicked or about to open. UI thread.
class KeyedMenu : public QObject {
    Q_OBJECT
public:
    explicit KeyedMenu(QMenuBar *bar, QObject *parent = nullptr);

    QMenuBar *bar() const { return m_bar; }

    KeyedItem *addMenu(const QString &key, const QString &caption);
    // An item at the end of the menu `menuKey`; a picture key that is empty means the item's
    // own key.
    KeyedItem *addItem(const QString &menuKey, const QString &key, const QString &caption,
                       const QKeySequence &shortcut = {}, const QString &pictureKey = {});
    void addSeparator(const QString &menuKey);
    void removeItem(const QString &key);

    // The item of a key, or the menu of that key when no item has it (a menu and one of its
    // items may share a key); an unknown key raises Invalid procedure call or argument (5).
    KeyedItem *Item(const QString &key) const;
    // The menu of a key, with the same error.
    KeyedItem *Menu(const QString &key) const;
    bool contains(const QString &key) const {
        return m_items.contains(key) || m_menuItems.contains(key);
    }
    // The keys of a menu's items in the order shown.
    QStringList itemKeys(const QString &menuKey) const;
    QStringList menuKeys() const { return m_menus; }

    bool Enabled() const;
    void setEnabled(bool value);

    // Runs the item as if clicked: a disabled or hidden item does nothing.
    void click(const QString &key);

signals:
    void Click(KeyedItem *Item);
    // Before a menu drops down; Cancel is passed for the handler's use.
    void BeforeDropDown(KeyedItem *Item, bool &Cancel);

private:
    QMenuBar *m_bar;
    QHash<QString, KeyedItem *> m_items;
    QHash<QString, KeyedItem *> m_menuItems;
    QStringList m_menus;
};
