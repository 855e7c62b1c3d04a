#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

class QAction;
class QMenu;
class QWidget;

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

    // A click leaves the check mark to the program: the toolkit's own toggle is undone, but for
    // a toggle item, whose check follows the click.
    void restoreCheck();
    void setToggle(bool value) { m_toggle = value; }

    // The control of a toolbar item that is a text box, a list or a label; null for a button.
    QWidget *control() const { return m_control; }
    void setControl(QWidget *control) { m_control = control; }
    // The text of that control: typed, picked or shown. Setting it raises no change.
    QString Text() const;
    void setText(const QString &value);

    QVariant Tag;
    int ItemType = 0;

private:
    QString m_key;
    QAction *m_action;
    QString m_pictureKey;
    QMenu *m_menu;
    QWidget *m_control = nullptr;
    bool m_checked = false;
    bool m_toggle = false;
};
