#include "KeyedToolbar.h"
#include "KeyedItem.h"
#include "base/RuntimeError.h"

#include <QAction>
#include <QToolBar>

KeyedToolbar::KeyedToolbar(QToolBar *bar, QObject *parent)
    : QObject(parent)
    , m_bar(bar) {}

KeyedItem *KeyedToolbar::addItem(const QString &key, const QString &toolTip,
                                 const QString &pictureKey) {
    QAction *action = m_bar->addAction(toolTip);
    action->setToolTip(toolTip);
    auto *item = new KeyedItem(key, action, this);
    item->setPictureKey(pictureKey.isEmpty() ? key : pictureKey);
    m_items.insert(key, item);
    m_order.append(key);
    connect(action, &QAction::triggered, this, [this, item] {
        item->restoreCheck();
        emit Click(item);
    });
    return item;
}

void KeyedToolbar::addSeparator() {
    m_bar->addSeparator();
}

KeyedItem *KeyedToolbar::Item(const QString &key) const {
    KeyedItem *item = m_items.value(key);
    if (!item)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    return item;
}

bool KeyedToolbar::Enabled() const {
    return m_bar->isEnabled();
}

void KeyedToolbar::setEnabled(bool value) {
    m_bar->setEnabled(value);
}

bool KeyedToolbar::Visible() const {
    return m_bar->isVisibleTo(m_bar->parentWidget());
}

void KeyedToolbar::setVisible(bool value) {
    m_bar->setVisible(value);
}

void KeyedToolbar::click(const QString &key) {
    KeyedItem *item = Item(key);
    if (m_bar->isEnabled() && item->action()->isEnabled())
        item->action()->trigger();
}
