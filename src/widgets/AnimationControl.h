#pragma once

#include <QLabel>

class QMovie;

// The media state animation: plays a small animation file (any format QMovie reads). A file
// that can't be read leaves the animation that was open. Lives on the UI thread.
class AnimationControl : public QLabel {
    Q_OBJECT
public:
    explicit AnimationControl(QWidget *parent = nullptr);

    // Opens the file; false, and nothing changed, when it is not an animation.
    bool Open(const QString &fileName);
    QString FileName() const { return m_fileName; }

    // An opened animation starts by itself.
    bool AutoPlay() const { return m_autoPlay; }
    void setAutoPlay(bool value);
    void Play();
    void Stop();
    bool isPlaying() const;

private:
    QMovie *m_movie = nullptr;
    QString m_fileName;
    bool m_autoPlay = false;
};
