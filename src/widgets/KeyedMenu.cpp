#include "KeyedMenu.h"
#include "KeyedItem.h"
#include "base/RuntimeError.h"

#include <QMenu>
#include <QMenuBar>

KeyedMenu::KeyedMenu(QMenuBar *bar, QObject *parent)
    : QObject(parent)
    , m_bar(bar) {}

KeyedItem *KeyedMenu::addMenu(const QString &key, const QString &caption) {
    auto *menu = m_bar->addMenu(caption);
    auto *item = new KeyedItem(key, menu->menuAction(), this, menu);
    m_menuItems.insert(key, item);
    m_menus.append(key);
    connect(menu, &QMenu::aboutToShow, this, [this, item] {
        bool Cancel = false;
        emit BeforeDropDown(item, Cancel);
    });
    return item;
}

KeyedItem *KeyedMenu::addItem(const QString &menuKey, const QString &key, const QString &caption,
                              const QKeySequence &shortcut, const QString &pictureKey) {
    QMenu *menu = Menu(menuKey)->menu();
    auto *action = menu->addAction(caption);
    action->setShortcut(shortcut);
    auto *item = new KeyedItem(key, action, this);
    item->setPictureKey(pictureKey.isEmpty() ? key : pictureKey);
    m_items.insert(key, item);
    connect(action, &QAction::triggered, this, [this, item] {
        item->restoreCheck();
        emit Click(item);
    });
    return item;
}

void KeyedMenu::addSeparator(const QString &menuKey) {
    Menu(menuKey)->menu()->addSeparator();
}

void KeyedMenu::removeItem(const QString &key) {
    KeyedItem *item = m_items.take(key);
    if (!item)
        return;
    delete item->action();
    delete item;
}

KeyedItem *KeyedMenu::Item(const QString &key) const {
    KeyedItem *item = m_items.value(key);
    if (!item)
        item = m_menuItems.value(key);
    if (!item)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    return item;
}

KeyedItem *KeyedMenu::Menu(const QString &key) const {
    KeyedItem *item = m_menuItems.value(key);
    if (!item)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    return item;
}

QStringList KeyedMenu::itemKeys(const QString &menuKey) const {
    QStringList keys;
    const QMenu *menu = Menu(menuKey)->menu();
    for (QAction *a : menu->actions()) {
        for (auto it = m_items.cbegin(); it != m_items.cend(); ++it) {
            if (it.value()->action() == a) {
                keys.append(it.key());
                break;
            }
        }
    }
    return keys;
}

bool KeyedMenu::Enabled() const {
    return m_bar->isEnabled();
}

void KeyedMenu::setEnabled(bool value) {
    m_bar->setEnabled(value);
}

void KeyedMenu::click(const QString &key) {
    KeyedItem *item = Item(key);
    if (m_bar->isEnabled() && item->action()->isEnabled() && item->action()->isVisible())
        item->action()->trigger();
}
