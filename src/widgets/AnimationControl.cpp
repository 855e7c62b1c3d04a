#include "AnimationControl.h"

#include <QFileInfo>
#include <QMovie>

AnimationControl::AnimationControl(QWidget *parent)
    : QLabel(parent) {
    setAlignment(Qt::AlignCenter);
}

bool AnimationControl::Open(const QString &fileName) {
    auto *movie = new QMovie(fileName, QByteArray(), this);
    if (!movie->isValid()) {
        delete movie;
        return false;
    }
    if (m_movie) {
        m_movie->stop();
        delete m_movie;
    }
    m_movie = movie;
    m_fileName = fileName;
    // A screen reader names the step the picture shows ("writecd", "closecd", ...).
    setAccessibleDescription(QFileInfo(fileName).completeBaseName());
    setMovie(m_movie);
    m_movie->jumpToFrame(0);
    if (m_autoPlay)
        m_movie->start();
    return true;
}

void AnimationControl::setAutoPlay(bool value) {
    m_autoPlay = value;
    if (value)
        Play();
}

void AnimationControl::Play() {
    if (m_movie && m_movie->state() != QMovie::Running)
        m_movie->start();
}

void AnimationControl::Stop() {
    if (m_movie)
        m_movie->stop();
}

bool AnimationControl::isPlaying() const {
    return m_movie && m_movie->state() == QMovie::Running;
}
