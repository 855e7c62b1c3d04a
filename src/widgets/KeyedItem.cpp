#include "KeyedItem.h"
#include "PictureList.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSignalBlocker>

KeyedItem::KeyedItem(const QString &key, QAction *action, QObject *parent, QMenu *menu)
    : QObject(parent)
    , m_key(key)
    , m_action(action)
    , m_menu(menu) {}

QMenu *KeyedItem::menu() const {
    return m_menu;
}

bool KeyedItem::Enabled() const {
    return m_action->isEnabled();
}

void KeyedItem::setEnabled(bool value) {
    m_action->setEnabled(value);
}

int KeyedItem::Shown() const {
    return m_action->isVisible() ? 1 : 0;
}

void KeyedItem::setShown(int value) {
    m_action->setVisible(value != 0);
}

bool KeyedItem::Checked() const {
    return m_checked;
}

void KeyedItem::restoreCheck() {
    if (m_toggle)
        m_checked = m_action->isChecked();
    if (m_action->isChecked() != m_checked)
        m_action->setChecked(m_checked);
}

void KeyedItem::setChecked(bool value) {
    // A check mark is shown only by a checkable action.
    m_checked = value;
    m_action->setCheckable(m_action->isCheckable() || value);
    m_action->setChecked(value);
}

QString KeyedItem::Caption() const {
    return m_action->text();
}

void KeyedItem::setCaption(const QString &value) {
    m_action->setText(value);
}

void KeyedItem::setPictureKey(const QString &key) {
    m_pictureKey = key;
    m_action->setIcon(key.isEmpty() ? QIcon() : PictureList::icon(key));
}

QString KeyedItem::Text() const {
    if (auto *edit = qobject_cast<QLineEdit *>(m_control))
        return edit->text();
    if (auto *list = qobject_cast<QComboBox *>(m_control))
        return list->currentText();
    if (auto *label = qobject_cast<QLabel *>(m_control))
        return label->text();
    return Caption();
}

void KeyedItem::setText(const QString &value) {
    const QSignalBlocker quiet(m_control);
    if (auto *edit = qobject_cast<QLineEdit *>(m_control))
        edit->setText(value);
    else if (auto *list = qobject_cast<QComboBox *>(m_control))
        list->setCurrentIndex(list->findText(value));
    else if (auto *label = qobject_cast<QLabel *>(m_control))
        label->setText(value);
    else
        setCaption(value);
}
