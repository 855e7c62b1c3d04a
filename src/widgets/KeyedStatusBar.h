#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include "KeyedPanel.h"

class QStatusBar;

// A status bar whose panels are looked up by string key, in the order they were added. Lives
// on the UI thread.
class KeyedStatusBar : public QObject {
    Q_OBJECT
public:
    explicit KeyedStatusBar(QStatusBar *bar, QObject *parent = nullptr);

    QStatusBar *bar() const { return m_bar; }

    KeyedPanel *addPanel(const QString &key, KeyedPanel::Kind kind = KeyedPanel::Kind::Text,
                         const QString &text = {}, int widthTwips = 0);
    // The panel of a key; an unknown key raises Invalid procedure call or argument (5).
    KeyedPanel *Item(const QString &key) const;
    QStringList keys() const { return m_order; }

    bool Visible() const;
    void setVisible(bool value);

private:
    QStatusBar *m_bar;
    QHash<QString, KeyedPanel *> m_panels;
    QStringList m_order;
    QTimer m_clock;
};
