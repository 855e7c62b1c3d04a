#include "clsMP3.h"
#include "base/App.h"

#include <QDateTime>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QWidget>

clsMP3::clsMP3() = default;

clsMP3::~clsMP3() {
    EndApp();
}

void clsMP3::setMP3Switches(const QString &value) {
    strMP3Switches = value.endsWith(u' ') ? value : value + u' ';
}

QString clsMP3::lameProgram() {
    const QString beside = App::pathOf(QStringLiteral("/lame"));
    const QFileInfo info(beside);
    if (info.isFile() && info.isExecutable())
        return beside;
    return QStandardPaths::findExecutable(QStringLiteral("lame"));
}

QString clsMP3::logFile() {
    return App::pathOf(QStringLiteral("/Dat/MP3Tool.log"));
}

QStringList clsMP3::arguments() const {
    // The names are not quoted: a blank in a path splits it, as the command line always has.
    return (strMP3Switches + strSrcFileName + u' ' + strDestFileName)
        .split(u' ', Qt::SkipEmptyParts);
}

bool clsMP3::running() const {
    return m_process && m_process->state() != QProcess::NotRunning;
}

void clsMP3::log(const QByteArray &text) const {
    QFile file(logFile());
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.write(text);
}

void clsMP3::MP3Encode(QWidget *frm, qint32 &result) {
    if (strSrcFileName.isEmpty()) {
        result = ResultNoSource;
        return;
    }
    if (strDestFileName.isEmpty()) {
        result = ResultNoDestination;
        return;
    }
    result = ResultDone;
    m_failure.clear();
    const QFileInfo dest(strDestFileName);
    m_destExisted = dest.exists();
    m_destModified = m_destExisted ? dest.lastModified() : QDateTime();
    KeepFormOnTop(frm, true);
    StartApp(strMP3Switches + strSrcFileName + u' ' + strDestFileName, result);
    WaitForAppToEnd();
    if (result == ResultDone && m_process) {
        if (m_process->exitStatus() != QProcess::NormalExit || m_process->exitCode() != 0) {
            result = ResultFailed;
            m_failure =
                m_process->exitStatus() == QProcess::NormalExit
                    ? QStringLiteral("lame ended with exit code %1.").arg(m_process->exitCode())
                    : QStringLiteral("lame stopped before it was done.");
            removePartialOutput();
        }
        log(QStringLiteral("-- %1\n")
                .arg(result == ResultDone ? QStringLiteral("done") : m_failure)
                .toUtf8());
    }
    KeepFormOnTop(frm, false);
}

void clsMP3::StartApp(const QString &command, qint32 &result) {
    EndApp();
    const QString program = lameProgram();
    const QStringList words = command.split(u' ', Qt::SkipEmptyParts);
    log(QStringLiteral("%1 %2 %3\n")
            .arg(QDateTime::currentDateTime().toString(Qt::ISODate),
                 program.isEmpty() ? QStringLiteral("lame") : program, words.join(u' '))
            .toUtf8());
    if (program.isEmpty()) {
        m_failure = QStringLiteral("The program lame was found neither in %1 nor on the PATH.")
                        .arg(App::Path());
        log("-- " + m_failure.toUtf8() + '\n');
        result = ResultNotStarted;
        return;
    }
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    m_process->setStandardInputFile(QProcess::nullDevice());
    QObject::connect(m_process.get(), &QProcess::readyRead, m_process.get(),
                     [this] { log(m_process->readAll()); });
    m_process->start(program, words);
    if (!m_process->waitForStarted()) {
        m_failure = QStringLiteral("lame could not be started: %1").arg(m_process->errorString());
        log("-- " + m_failure.toUtf8() + '\n');
        result = ResultNotStarted;
    }
}

void clsMP3::WaitForAppToEnd() {
    if (!running())
        return;
    QEventLoop loop;
    QObject::connect(m_process.get(), &QProcess::finished, &loop, &QEventLoop::quit);
    QObject::connect(m_process.get(), &QProcess::errorOccurred, &loop, [this, &loop] {
        if (!running())
            loop.quit();
    });
    loop.exec();
    log(m_process->readAll());
}

void clsMP3::EndApp() {
    if (!running())
        return;
    m_process->kill();
    m_process->waitForFinished();
}

void clsMP3::KeepFormOnTop(QWidget *frm, bool blnOnTop) {
    if (!frm)
        return;
    if (!frm->isWindow()) {
        // A child of the frame is kept in front of its siblings instead.
        if (blnOnTop)
            frm->raise();
        return;
    }
    if (frm->testAttribute(Qt::WA_WState_Created) &&
        frm->windowFlags().testFlag(Qt::WindowStaysOnTopHint) == blnOnTop)
        return;
    const bool visible = frm->isVisible();
    frm->setWindowFlag(Qt::WindowStaysOnTopHint, blnOnTop);
    if (visible)
        frm->show();
}

void clsMP3::removePartialOutput() const {
    const QFileInfo dest(strDestFileName);
    if (!dest.exists())
        return;
    // A file that was there before and that lame did not touch is the user's, not lame's.
    if (m_destExisted && dest.lastModified() == m_destModified)
        return;
    QFile::remove(strDestFileName);
}
