#include "KeyedToolbar.h"
#include "KeyedItem.h"
#include "base/RuntimeError.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
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

KeyedItem *KeyedToolbar::addControl(const QString &key, QWidget *control) {
    QAction *action = m_bar->addWidget(control);
    auto *item = new KeyedItem(key, action, this);
    item->setControl(control);
    m_items.insert(key, item);
    m_order.append(key);
    return item;
}

KeyedItem *KeyedToolbar::addTextBox(const QString &key, const QString &toolTip, int widthPixels) {
    auto *edit = new QLineEdit(m_bar);
    edit->setToolTip(toolTip);
    edit->setFixedWidth(widthPixels);
    KeyedItem *item = addControl(key, edit);
    // Only a changed text is news: leaving the box untouched says nothing.
    connect(edit, &QLineEdit::editingFinished, this, [this, item, edit] {
        if (!edit->isModified())
            return;
        edit->setModified(false);
        emit Change(item, QStringLiteral("Text"));
    });
    return item;
}

KeyedItem *KeyedToolbar::addList(const QString &key, const QString &toolTip,
                                 const QStringList &entries) {
    auto *list = new QComboBox(m_bar);
    list->setToolTip(toolTip);
    list->addItems(entries);
    KeyedItem *item = addControl(key, list);
    connect(list, &QComboBox::activated, this,
            [this, item] { emit Change(item, QStringLiteral("Text")); });
    return item;
}

KeyedItem *KeyedToolbar::addLabel(const QString &key, const QString &text) {
    return addControl(key, new QLabel(text, m_bar));
}

KeyedItem *KeyedToolbar::addToggle(const QString &key, const QString &toolTip,
                                   const QString &pictureKey) {
    KeyedItem *item = addItem(key, toolTip, pictureKey);
    item->setToggle(true);
    item->action()->setCheckable(true);
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
