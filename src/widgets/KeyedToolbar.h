#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

class QToolBar;
class KeyedItem;

// A toolbar whose buttons are looked up by string key, in groups parted by separators. Lives on
// the UI thread.
class KeyedToolbar : public QObject {
    Q_OBJECT
public:
    explicit KeyedToolbar(QToolBar *bar, QObject *parent = nullptr);

    QToolBar *bar() const { return m_bar; }

    // A button with its tool tip; a picture key that is empty means the button's own key.
    KeyedItem *addItem(const QString &key, const QString &toolTip, const QString &pictureKey = {});
    void addSeparator();
    // Items that hold a control: a text box that changes on Return or when left, a list that
    // changes when an entry is picked, a label, and a button whose check flips at each click.
    KeyedItem *addTextBox(const QString &key, const QString &toolTip, int widthPixels);
    KeyedItem *addList(const QString &key, const QString &toolTip, const QStringList &entries);
    KeyedItem *addLabel(const QString &key, const QString &text);
    KeyedItem *addToggle(const QString &key, const QString &toolTip,
                         const QString &pictureKey = {});

    // The button of a key; an unknown key raises Invalid procedure call or argument (5).
    KeyedItem *Item(const QString &key) const;
    bool contains(const QString &key) const { return m_items.contains(key); }
    QStringList keys() const { return m_order; }

    bool Enabled() const;
    void setEnabled(bool value);
    bool Visible() const;
    void setVisible(bool value);

    // Runs the button as if clicked: a disabled button, or one of a disabled bar, does nothing.
    void click(const QString &key);

signals:
    void Click(KeyedItem *Item);
    // The user changed the text of a text box or the entry of a list ("Text").
    void Change(KeyedItem *Item, const QString &PropertyName);

private:
    KeyedItem *addControl(const QString &key, QWidget *control);

    QToolBar *m_bar;
    QHash<QString, KeyedItem *> m_items;
    QStringList m_order;
};
