#include "KeyedStatusBar.h"
#include "base/RuntimeError.h"

#include <QStatusBar>

KeyedStatusBar::KeyedStatusBar(QStatusBar *bar, QObject *parent)
    : QObject(parent)
    , m_bar(bar) {
    // The clock panels move on by themselves, as a status bar's clock does.
    m_clock.setInterval(10000);
    connect(&m_clock, &QTimer::timeout, this, [this] {
        for (KeyedPanel *p : std::as_const(m_panels))
            p->tick();
    });
    m_clock.start();
}

KeyedPanel *KeyedStatusBar::addPanel(const QString &key, KeyedPanel::Kind kind, const QString &text,
                                     int widthTwips) {
    auto *panel = new KeyedPanel(key, kind, m_bar, this);
    if (!text.isEmpty())
        panel->setText(text);
    panel->setWidth(widthTwips);
    // Text panels share the room; the automatic ones keep to the right as they are small.
    if (kind == KeyedPanel::Kind::Text)
        m_bar->addWidget(panel->widget(), widthTwips > 0 ? 0 : 1);
    else
        m_bar->addPermanentWidget(panel->widget());
    m_panels.insert(key, panel);
    m_order.append(key);
    return panel;
}

KeyedPanel *KeyedStatusBar::Item(const QString &key) const {
    KeyedPanel *panel = m_panels.value(key);
    if (!panel)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    return panel;
}

bool KeyedStatusBar::Visible() const {
    return m_bar->isVisibleTo(m_bar->parentWidget());
}

void KeyedStatusBar::setVisible(bool value) {
    m_bar->setVisible(value);
}
