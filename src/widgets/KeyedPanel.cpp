#include "KeyedPanel.h"
#include "PictureList.h"
#include "Twips.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>

KeyedPanel::KeyedPanel(const QString &key, Kind kind, QWidget *parentWidget, QObject *parent)
    : QObject(parent)
    , m_key(key)
    , m_kind(kind) {
    m_box = new QWidget(parentWidget);
    m_box->setObjectName(key);
    auto *layout = new QHBoxLayout(m_box);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->setSpacing(3);
    m_picture = new QLabel(m_box);
    m_picture->hide();
    m_text = new QLabel(m_box);
    m_progress = new QProgressBar(m_box);
    m_progress->setRange(0, 100);
    m_progress->setMaximumHeight(14);
    m_progress->hide();
    layout->addWidget(m_picture);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_progress);
    if (kind == Kind::Num)
        m_text->setText(QStringLiteral("NUM"));
    else if (kind == Kind::Caps)
        m_text->setText(QStringLiteral("CAPS"));
    tick();
}

QString KeyedPanel::Text() const {
    return m_text->text();
}

void KeyedPanel::setText(const QString &value) {
    m_text->setText(value);
}

void KeyedPanel::setImageKey(const QString &key) {
    m_imageKey = key;
    const QPixmap pm = PictureList::pixmap(key, 16);
    m_picture->setPixmap(pm);
    m_picture->setAccessibleDescription(key); // what the picture stands for, to a screen reader
    m_picture->setVisible(!pm.isNull());
}

void KeyedPanel::setWidth(int twips) {
    m_width = twips;
    if (twips > 0)
        m_box->setMinimumWidth(Twips::toPixels(twips));
}

void KeyedPanel::setValue(int percent) {
    m_value = percent;
    m_progress->setValue(qBound(0, percent, 100));
    m_progress->setVisible(percent > 0);
}

bool KeyedPanel::Enabled() const {
    return m_box->isEnabled();
}

void KeyedPanel::setEnabled(bool value) {
    m_box->setEnabled(value);
}

void KeyedPanel::tick() {
    const QDateTime now = QDateTime::currentDateTime();
    if (m_kind == Kind::Date)
        m_text->setText(QLocale().toString(now.date(), QLocale::ShortFormat));
    else if (m_kind == Kind::Time)
        m_text->setText(QLocale().toString(now.time(), QLocale::ShortFormat));
}
