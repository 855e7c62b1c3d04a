#include "WriteRig.h"
#include "EngineRig.h"
#include "Waits.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "base/IniFile.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/image/ImageRecorder.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/MessageBoxService.h"
#include "writing/frmBurn.h"

#include <QtTest>
#include <QtWidgets>

namespace {
QString numbersHidden(QString text) {
    static const QRegularExpression progress(
        QStringLiteral("^( ?(Caching Track\\.\\.\\. |Caching and Processing Track\\.\\.\\. |"
                       "Writing Block: ))[0-9].*$"));
    const auto m = progress.match(text);
    return m.hasMatch() ? m.captured(1) + u'#' : text;
}

void appendOnce(QStringList &list, const QString &text) {
    if (list.isEmpty() || list.last() != text)
        list.append(text);
}
} // namespace

WriteRig::WriteRig(const QStringList &settings, int kind, const QString &medium, Tray tray) {
    // Nothing in a test may switch the machine off.
    SystemCalls::setPowerOffHandler([] { return false; });
    EngineRig::prepareImageRecorder(medium, settings);
    MessageBoxService::setAnswerer([this](const MessageBoxService::Request &r) {
        const mdiMain *f = DefaultInstance<mdiMain>::peek();
        boxes.append({r.prompt, r.title, r.buttons,
                      f ? f->smartStatusBar->Item(QStringLiteral("DATA"))->Text() : QString()});
        return MessageBoxService::defaultButton(r.buttons);
    });
    if (tray == Tray::ClosedDisc || tray == Tray::AppendableDisc) {
        // A one-session disc laid in the tray by hand.
        env.writeFile("Image Recorder/Tray/disc.iso", QByteArray(150 * 2048, '\0'));
        env.writeFile("Image Recorder/Tray/disc.tdisc",
                      QByteArray("[Tessaly Disc]\nVersion=1\nMedium=CD-R 80\nData=disc.iso\n"
                                 "Finalized=") +
                          (tray == Tray::ClosedDisc ? "1" : "0") +
                          "\nSessions=1\n\n[Session1]\nStart=0\nBlocks=150\nMode=1\n"
                          "Closed=1\n");
    }
    if (tray == Tray::NoRecorder)
        IniFile::write(env.iniFile(), "Recorders", "Image Recorder", "False");
    if (!env.startProgram())
        return;
    m_frame = DefaultInstance<mdiMain>::peek();
    if (tray != Tray::NoRecorder) {
        const int imageRecorder = m_frame->Tessaly->DriveCount() - 1;
        m_frame->cboDevices->setCurrentIndex(m_frame->cboDevices->findData(imageRecorder));
    }
    if (tray == Tray::Blank)
        m_frame->runCommand(QStringLiteral("CLOSETRAY"));
    QTest::qWait(50);
    // What opening a compilation window does to the job and the frame.
    gblnDisctypeIsData = qint16(kind);
    m_frame->EnableForm(true);
    connectRecorder();
}

void WriteRig::connectRecorder() {
    for (const QMetaObject::Connection &c : std::as_const(m_recorder))
        QObject::disconnect(c);
    m_recorder.clear();
    CDWriterPro *cd = m_frame->Tessaly;
    const auto after = [this] { record(); };
    for (auto signal : {&CDWriterPro::PreparingToWrite, &CDWriterPro::CreatingDirectories,
                        &CDWriterPro::ClosingSession, &CDWriterPro::ClosingDisc})
        m_recorder << QObject::connect(cd, signal, m_frame, after);
    m_recorder << QObject::connect(cd, &CDWriterPro::CachingStatus, m_frame, after);
    m_recorder << QObject::connect(cd, &CDWriterPro::ReadingTrackFile, m_frame, after);
    m_recorder << QObject::connect(cd, &CDWriterPro::ClosingTrack, m_frame, after);
    m_recorder << QObject::connect(cd, &CDWriterPro::TrackWriteStatus, m_frame, [this] {
        record();
        frmBurn *burn = frmBurn::instance();
        const bool offered = burn && burn->cmdCancel->isEnabled();
        if (offered && !m_cancelOffered) {
            cancelEnabledAt.append(burn->prgTrackProgress->value());
            if (cancelWhenOffered) {
                cancelWhenOffered = false;
                burn->cmdCancel->click();
                record();
            }
        }
        m_cancelOffered = offered;
    });
    for (auto [signal, name] : {std::pair{&CDWriterPro::WriteComplete, "WriteComplete"},
                                std::pair{&CDWriterPro::WriteCancelled, "WriteCancelled"}})
        m_recorder << QObject::connect(cd, signal, m_frame, [this, name] { ending = name; });
    m_recorder << QObject::connect(cd, &CDWriterPro::WriteError, m_frame,
                                   [this] { ending = "WriteError"; });
}

WriteRig::~WriteRig() {
    env.stopProgram();
    ScriptedAnswers::installFallback();
}

void WriteRig::record() {
    appendOnce(panelTexts,
               numbersHidden(m_frame->smartStatusBar->Item(QStringLiteral("DATA"))->Text()));
    if (frmBurn *burn = frmBurn::instance())
        appendOnce(actionTexts, numbersHidden(burn->lblActions->text()));
}

frmBurn *WriteRig::openDialog() {
    m_frame->runCommand(QStringLiteral("WRITEDISC"));
    connectRecorder();
    return frmBurn::instance();
}

bool WriteRig::writeAndWait(frmBurn *burn, int timeoutMs) {
    ending.clear();
    if (!burn || !burn->cmdWrite->isEnabled())
        return false;
    burn->cmdWrite->click();
    const bool ended = Waits::until([this] { return !ending.isEmpty(); }, timeoutMs);
    // The eject's media event and the deferred close of the dialog.
    QTest::qWait(80);
    Waits::settle();
    return ended;
}

QStringList WriteRig::trayDiscs() const {
    return QDir(ImageRecorder::trayFolder()).entryList({"*.tdisc"}, QDir::Files);
}

QStringList WriteRig::ejectedDiscs() const {
    return QDir(ImageRecorder::ejectedFolder()).entryList({"*.tdisc"}, QDir::Files);
}

QString WriteRig::ejectedImage() const {
    const QDir ejected(ImageRecorder::ejectedFolder());
    const QStringList data = ejected.entryList({"*.iso"}, QDir::Files, QDir::Time);
    return data.isEmpty() ? QString() : ejected.filePath(data.first());
}
