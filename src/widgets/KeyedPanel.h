#pragma once

#include <QObject>
#include <QString>

class QLabel;
class QProgressBar;
class QWidget;

// One keyed item of a status bar: a text, a picture key, a width in twips and a progress value
// (shown as a bar while it is above 0). Lives on the UI thread.
class KeyedPanel : public QObject {
    Q_OBJECT
public:
    // What the panel shows by itself; Text panels show what the program sets.
    enum class Kind { Text, Num, Caps, Date, Time };

    KeyedPanel(const QString &key, Kind kind, QWidget *parentWidget, QObject *parent);

    QString Key() const { return m_key; }
    Kind kind() const { return m_kind; }
    QWidget *widget() const { return m_box; }

    QString Text() const;
    void setText(const QString &value);
    QString ImageKey() const { return m_imageKey; }
    void setImageKey(const QString &key);
    int Width() const { return m_width; }
    void setWidth(int twips);
    int Value() const { return m_value; }
    void setValue(int percent);
    bool Enabled() const;
    void setEnabled(bool value);

    // The automatic panels show the time of day and the date.
    void tick();

private:
    QString m_key;
    Kind m_kind;
    QWidget *m_box;
    QLabel *m_picture;
    QLabel *m_text;
    QProgressBar *m_progress;
    QString m_imageKey;
    int m_width = 0;
    int m_value = 0;
};
