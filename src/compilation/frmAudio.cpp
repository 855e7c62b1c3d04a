#include "frmAudio.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/writer/CDWriterPro.h"
#include "modCDPlay.h"
#include "widgets/MessageBoxService.h"
#include "widgets/Twips.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QSlider>
#include <QStyle>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>

namespace {

// An audio CD holds no more tracks than this.
constexpr int MostTracks = 99;

QString information() {
    return App::ProductName() + QStringLiteral(" - Information");
}

QPushButton *playerButton(QWidget *parent, const char *name, const QString &caption) {
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(QLatin1String(name));
    button->setEnabled(false);
    return button;
}

} // namespace

frmAudio::frmAudio(const WindowContext &context)
    : m_context(context) {
    setObjectName(QStringLiteral("frmAudio"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(QApplication::style()->standardIcon(QStyle::SP_MediaVolume));

    lvwAudioTracks = new QTreeWidget(this);
    lvwAudioTracks->setObjectName(QStringLiteral("lvwAudioTracks"));
    lvwAudioTracks->setColumnCount(4);
    lvwAudioTracks->setHeaderLabels({QStringLiteral("Track:"), QStringLiteral("File Name:"),
                                     QStringLiteral("Type:"), QStringLiteral("Time:")});
    lvwAudioTracks->setRootIsDecorated(false);
    lvwAudioTracks->setUniformRowHeights(true);
    lvwAudioTracks->setSelectionMode(QAbstractItemView::SingleSelection);
    lvwAudioTracks->setContextMenuPolicy(Qt::NoContextMenu);
    lvwAudioTracks->header()->resizeSection(0, Twips::toPixels(1400));
    lvwAudioTracks->header()->resizeSection(1, Twips::toPixels(3800));
    lvwAudioTracks->header()->resizeSection(2, Twips::toPixels(800));
    lvwAudioTracks->headerItem()->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
    // A long path shows its end, where the file's own name is.
    lvwAudioTracks->setTextElideMode(Qt::ElideLeft);
    lvwAudioTracks->setDragEnabled(true);
    lvwAudioTracks->setAcceptDrops(true);
    lvwAudioTracks->viewport()->setAcceptDrops(true);
    lvwAudioTracks->viewport()->installEventFilter(this);

    cmdPlay = playerButton(this, "cmdPlay", QStringLiteral("&Play"));
    cmdStop = playerButton(this, "cmdStop", QStringLiteral("&Stop"));
    cmdPause = playerButton(this, "cmdPause", QStringLiteral("P&ause"));
    Slider1 = new QSlider(Qt::Horizontal, this);
    Slider1->setObjectName(QStringLiteral("Slider1"));
    Slider1->setEnabled(false);
    Timer1 = new QTimer(this);
    Timer1->setInterval(100);

    TRAPPED_CONNECT(engine(), &CDWriterPro::EnumAudioTrack, frmAudio, Tessaly_EnumAudioTrack);
    connect(lvwAudioTracks, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *item) {
        ErrorTrap::run("lvwAudioTracks_ItemClick", "frmAudio",
                       [&] { lvwAudioTracks_ItemClick(item); });
    });
    connect(cmdPlay, &QPushButton::clicked, this,
            [this] { ErrorTrap::run("cmdPlay_Click", "frmAudio", [this] { cmdPlay_Click(); }); });
    connect(cmdStop, &QPushButton::clicked, this,
            [this] { ErrorTrap::run("cmdStop_Click", "frmAudio", [this] { cmdStop_Click(); }); });
    connect(cmdPause, &QPushButton::clicked, this,
            [this] { ErrorTrap::run("cmdPause_Click", "frmAudio", [this] { cmdPause_Click(); }); });
    connect(Timer1, &QTimer::timeout, this,
            [this] { ErrorTrap::run("Timer1_Timer", "frmAudio", [this] { Timer1_Timer(); }); });
    connect(Slider1, &QSlider::sliderPressed, this, [this] {
        ErrorTrap::run("Slider1_MouseDown", "frmAudio", [this] { Slider1_MouseDown(); });
    });
    connect(Slider1, &QSlider::sliderReleased, this, [this] {
        ErrorTrap::run("Slider1_MouseUp", "frmAudio", [this] { Slider1_MouseUp(); });
    });
}

frmAudio::~frmAudio() {
    if (m_popup)
        m_popup->clear();
}

QString frmAudio::pathOf(const QTreeWidgetItem *item) {
    return item ? item->text(1) : QString();
}

int frmAudio::selectedIndex() const {
    const QList<QTreeWidgetItem *> selected = lvwAudioTracks->selectedItems();
    return selected.isEmpty() ? 0 : lvwAudioTracks->indexOfTopLevelItem(selected.first()) + 1;
}

void frmAudio::Tessaly_EnumAudioTrack(const QString &sFileName, qint32 lTotalSizeBlocks,
                                      qint32 lTotalSizeBytes, qint32 lTrackNumber) {
    Q_UNUSED(lTotalSizeBytes);
    auto *row = new QTreeWidgetItem;
    row->setText(0, QStringLiteral("Track ") + Format(lTrackNumber, QStringLiteral("0#")));
    row->setIcon(0, QApplication::style()->standardIcon(QStyle::SP_MediaVolume));
    row->setText(1, sFileName);
    row->setToolTip(1, sFileName);
    row->setText(2, QStringLiteral("Wave"));
    row->setText(3, engine()->BlocksToTime(lTotalSizeBlocks));
    row->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
    row->setFlags(row->flags() & ~Qt::ItemIsDropEnabled);
    lvwAudioTracks->addTopLevelItem(row);
    services()->setStatusText(QStringLiteral("DIRECTORIES"),
                              QStringLiteral(" Tracks: ") + QString::number(lTrackNumber));
    services()->setStatusPicture(QStringLiteral("FILES"), QStringLiteral("NOTE"));
}

void frmAudio::EnableForm(bool blnEnable) {
    lvwAudioTracks->setEnabled(blnEnable);
    if (blnEnable)
        unsetCursor();
    else
        setCursor(Qt::WaitCursor);
}

bool frmAudio::IsPathDirectory(const QString &strPath) {
    return QFileInfo(strPath).isDir();
}

// --- Drops --------------------------------------------------------------------------------

void frmAudio::OLEDragDrop(const QMimeData *Data) {
    if (!Data || !Data->hasUrls() || m_dropping)
        return;
    qint32 lngPosition = qMax(selectedIndex(), 1);
    setCursor(Qt::WaitCursor);
    m_dropping = true;
    CDWriterPro *engine = this->engine();
    for (const QUrl &url : Data->urls()) {
        QString strFile = url.toLocalFile();
        while (strFile.size() > 1 && strFile.endsWith(u'/'))
            strFile.chop(1);
        if (strFile.isEmpty())
            continue;
        if (strFile.right(3).toUpper() != u"WAV") {
            MsgBox(QStringLiteral("Only .wav files are allowed for an audio disc."), vbInformation,
                   information());
        } else if (!IsPathDirectory(strFile)) {
            // The engine would refuse the track as if the wave were bad; say what is wrong.
            if (engine->AudioTrackCount() >= MostTracks) {
                MsgBox(QStringLiteral("An audio CD holds no more than 99 tracks.\n\"") +
                           QFileInfo(strFile).fileName() +
                           QStringLiteral("\" and the files after it were not added."),
                       vbInformation, information());
                break;
            }
            if (!engine->AddAudioTrack(strFile, lngPosition))
                MsgBox(QStringLiteral("Invalid Audio Format...High quality .wav files only!"),
                       vbInformation, information());
        }
        lngPosition += 1;
    }
    m_dropping = false;
    LoadTrackList();
    unsetCursor();
}

void frmAudio::moveTrack(int from, int to) {
    CDWriterPro *engine = this->engine();
    const int count = engine->AudioTrackCount();
    if (from < 1 || from > count)
        return;
    to = qBound(1, to, count + 1);
    const int target = to > from ? to - 1 : to;
    if (target == from)
        return;
    const QString path = pathOf(lvwAudioTracks->topLevelItem(from - 1));
    engine->RemoveAudioTrack(from);
    if (!engine->AddAudioTrack(path, target)) {
        // The wave changed since it was added: it goes back where it was if it can.
        const bool kept = engine->AddAudioTrack(path, from);
        MsgBox(QStringLiteral("The track could not be moved: \"") + path +
                   (kept ? QStringLiteral("\" can no longer be read as it was added.")
                         : QStringLiteral("\" can no longer be read and was removed.")),
               vbExclamation, App::ProductName() + QStringLiteral(" - Warning"));
        LoadTrackList();
        return;
    }
    LoadTrackList();
    lvwAudioTracks->setCurrentItem(lvwAudioTracks->topLevelItem(target - 1));
}

bool frmAudio::dropOnList(QEvent *event) {
    auto *drop = static_cast<QDropEvent *>(event);
    // A row of this list carries the list's own format and no file names.
    const QMimeData *mime = drop->mimeData();
    const bool internal =
        drop->source() == lvwAudioTracks ||
        (mime && !mime->hasUrls() &&
         mime->hasFormat(QStringLiteral("application/x-qabstractitemmodeldatalist")));
    if (m_dropping || !lvwAudioTracks->isEnabled() ||
        (!internal && (!drop->mimeData() || !drop->mimeData()->hasUrls()))) {
        drop->ignore();
        return true;
    }
    drop->setDropAction(internal ? Qt::MoveAction : Qt::CopyAction);
    drop->accept();
    if (event->type() != QEvent::Drop)
        return true;
    if (internal) {
        QTreeWidgetItem *under = lvwAudioTracks->itemAt(drop->position().toPoint());
        const int to = under ? lvwAudioTracks->indexOfTopLevelItem(under) + 1
                             : lvwAudioTracks->topLevelItemCount() + 1;
        const int from = selectedIndex();
        ErrorTrap::run("lvwAudioTracks_OLEDragDrop", "frmAudio", [&] { moveTrack(from, to); });
    } else {
        const QMimeData *data = drop->mimeData();
        ErrorTrap::run("lvwAudioTracks_OLEDragDrop", "frmAudio", [&] { OLEDragDrop(data); });
    }
    return true;
}

bool frmAudio::eventFilter(QObject *watched, QEvent *event) {
    if (watched != lvwAudioTracks->viewport())
        return QWidget::eventFilter(watched, event);
    const auto type = event->type();
    if (type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop)
        return dropOnList(event);
    if (type == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent *>(event)->button() == Qt::RightButton) {
        const QPoint at = static_cast<QMouseEvent *>(event)->globalPosition().toPoint();
        ErrorTrap::run("lvwAudioTracks_MouseUp", "frmAudio",
                       [&] { services()->popupMenu(FrameServices::Popup::Audio)->popup(at); });
    }
    return QWidget::eventFilter(watched, event);
}

// --- The player ---------------------------------------------------------------------------

void frmAudio::lvwAudioTracks_ItemClick(QTreeWidgetItem *Item) {
    const QString path = pathOf(Item);
    if (!modCDPlay::isPlaying()) {
        modCDPlay::OpenFile(path);
        Slider1->setValue(0);
        Slider1->setEnabled(true);
        cmdPlay->setEnabled(true);
    } else {
        modCDPlay::StopPlay();
        Slider1->setValue(0);
        modCDPlay::OpenFile(path);
        modCDPlay::Play();
    }
}

void frmAudio::cmdPlay_Click() {
    cmdStop->setEnabled(true);
    cmdPause->setEnabled(true);
    const QList<QTreeWidgetItem *> selected = lvwAudioTracks->selectedItems();
    if (selected.isEmpty() || pathOf(selected.first()).isEmpty()) {
        MsgBox(QStringLiteral("Please select a track from the list."), vbInformation,
               information());
        return;
    }
    OnPause = false;
    modCDPlay::Play();
    Timer1->start();
    Slider1->setEnabled(true);
}

void frmAudio::cmdPause_Click() {
    if (OnPause) {
        OnPause = false;
        modCDPlay::Play();
        Timer1->start();
    } else {
        Timer1->stop();
        modCDPlay::PausePlay();
        OnPause = true;
    }
}

void frmAudio::cmdStop_Click() {
    if (!modCDPlay::isPlaying())
        return;
    modCDPlay::StopPlay();
    Slider1->setValue(0);
}

void frmAudio::Timer1_Timer() {
    if (fMovingSlider)
        return;
    if (!modCDPlay::Playing())
        Timer1->stop();
    const qint32 length = modCDPlay::Length();
    const double share = length > 0 ? double(modCDPlay::Position()) / length * 100 : 0;
    Slider1->setValue(CInt(qBound(0.0, share, 100.0)));
    if (Slider1->value() == Slider1->maximum()) {
        Slider1->setValue(0);
        modCDPlay::StopPlay();
    }
}

void frmAudio::Slider1_MouseDown() {
    fMovingSlider = true;
    cmdPause_Click();
}

void frmAudio::Slider1_MouseUp() {
    fMovingSlider = false;
    modCDPlay::FileSeek(CLng(double(Slider1->value()) / 100 * modCDPlay::Length()));
    cmdPlay_Click();
}

void frmAudio::disablePlayer() {
    for (QWidget *control : std::initializer_list<QWidget *>{cmdPlay, cmdStop, cmdPause, Slider1})
        control->setEnabled(false);
}

// --- Layout -------------------------------------------------------------------------------

void frmAudio::SizeControls() {
    const int width = Twips::fromPixels(this->width());
    const int height = Twips::fromPixels(this->height());
    lvwAudioTracks->setGeometry(0, Twips::toPixels(500), Twips::toPixels(qMax(width - 10, 0)),
                                Twips::toPixels(qMax(height - 500, 0)));
    // The player's strip: three buttons, then the slider to the right edge.
    const int top = Twips::toPixels(60);
    const int buttonHeight = Twips::toPixels(380);
    int left = Twips::toPixels(60);
    for (QPushButton *button : {cmdPlay, cmdStop, cmdPause}) {
        button->setGeometry(left, top, Twips::toPixels(1000), buttonHeight);
        left += Twips::toPixels(1060);
    }
    Slider1->setGeometry(left + Twips::toPixels(60), top,
                         qMax(Twips::toPixels(width - 120) - left, 0), buttonHeight);
}

void frmAudio::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    // A failure while laying out is passed over: the next resize lays out again.
    try {
        SizeControls();
    } catch (...) {
    }
}

CompilationListing frmAudio::listing() {
    CompilationListing list;
    list.isData = false;
    for (int i = 0; i < lvwAudioTracks->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *row = lvwAudioTracks->topLevelItem(i);
        list.tracks.append({row->text(0), row->text(1), row->text(3)});
    }
    return list;
}
