#include "CompilationWindows.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "frmAudio.h"
#include "frmData.h"
#include "frmLabels.h"
#include "modCDPlay.h"
#include "widgets/DefaultInstance.h"

#include <QCoreApplication>
#include <QDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>
#include <functional>

namespace {

mdiMain *frameOf(QWidget *owner) {
    if (auto *main = qobject_cast<mdiMain *>(owner))
        return main;
    return DefaultInstance<mdiMain>::peek();
}

void openData(QWidget *owner) {
    mdiMain *main = frameOf(owner);
    if (!main)
        return;
    const bool fresh = !DefaultInstance<frmData>::exists();
    frmData *data = DefaultInstance<frmData>::get();
    if (fresh) {
        QMdiSubWindow *window = main->mdiArea()->addSubWindow(data);
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->setWindowIcon(data->windowIcon());
        // Unloading the window alone takes its frame in the area with it.
        QObject::connect(data, &QObject::destroyed, window, &QObject::deleteLater);
        data->Form_Load();
    }
    data->show();
    if (auto *window = qobject_cast<QMdiSubWindow *>(data->parentWidget())) {
        window->show();
        main->mdiArea()->setActiveSubWindow(window);
    }
}

void openAudio(QWidget *owner) {
    mdiMain *main = frameOf(owner);
    if (!main)
        return;
    const bool fresh = !DefaultInstance<frmAudio>::exists();
    frmAudio *audio = DefaultInstance<frmAudio>::get();
    if (fresh) {
        QMdiSubWindow *window = main->mdiArea()->addSubWindow(audio);
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->setWindowIcon(audio->windowIcon());
        QObject::connect(audio, &QObject::destroyed, window, &QObject::deleteLater);
        audio->Form_Load();
    }
    audio->show();
    if (auto *window = qobject_cast<QMdiSubWindow *>(audio->parentWidget())) {
        window->show();
        main->mdiArea()->setActiveSubWindow(window);
    }
}

// The audio window's commands from the menu and the toolbar; with no audio window they have
// nothing to act on.
void withAudio(void (frmAudio::*command)()) {
    if (frmAudio *audio = DefaultInstance<frmAudio>::peek())
        (audio->*command)();
}

// Runs `show` once the frame stands, with the argument after `option` when it was given: a
// compilation to look at without a mouse (screenshots, demonstrations).
void whenFrameStands(const char *option, std::function<void(mdiMain *, const QString &)> show) {
    // Read before the program has taken its arguments in.
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype at = arguments.indexOf(QLatin1String(option));
    if (at < 0 || at + 1 >= arguments.size())
        return;
    const QString folder = arguments.at(at + 1);
    auto *poll = new QTimer;
    poll->setInterval(100);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, folder, show = std::move(show)] {
        mdiMain *main = DefaultInstance<mdiMain>::peek();
        if (!main || !main->isVisible())
            return;
        poll->deleteLater();
        show(main, folder);
    });
    poll->start();
}

// "--data-compilation DIR" opens a data compilation with DIR dropped into it.
void showDataCompilation(mdiMain *main, const QString &folder) {
    FormRegistry::open(QStringLiteral("frmData"), main);
    FormRegistry::open(QStringLiteral("ResetImage"), main);
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(folder)});
    frmData *data = DefaultInstance<frmData>::peek();
    if (!data)
        return;
    data->OLEDragDrop(&dropped);
    // Opened at the dropped folder, as a user clicking into it sees it.
    const QString name = frmData::GetLastPathItem(QDir::cleanPath(folder));
    if (QTreeWidgetItem *node = data->node(QStringLiteral("\\") + name)) {
        data->tvwDirectories->setCurrentItem(node);
        data->UpdateImage();
    }
}

// "--audio-compilation DIR" opens an audio compilation with the waves of DIR dropped into it,
// the second track chosen and paused half-way through.
void showAudioCompilation(mdiMain *main, const QString &folder) {
    FormRegistry::open(QStringLiteral("frmAudio"), main);
    frmAudio *audio = DefaultInstance<frmAudio>::peek();
    if (!audio)
        return;
    QMimeData dropped;
    QList<QUrl> urls;
    const QDir dir(folder);
    for (const QString &name : dir.entryList({QStringLiteral("*.wav")}, QDir::Files, QDir::Name))
        urls.append(QUrl::fromLocalFile(dir.filePath(name)));
    dropped.setUrls(urls);
    audio->OLEDragDrop(&dropped);
    QTreeWidgetItem *row = audio->lvwAudioTracks->topLevelItem(1);
    if (!row)
        return;
    audio->lvwAudioTracks->setCurrentItem(row);
    audio->lvwAudioTracks_ItemClick(row);
    audio->Slider1->setValue(50);
    modCDPlay::FileSeek(modCDPlay::Length() / 2);
    audio->OnPause = true;
    audio->cmdStop->setEnabled(true);
    audio->cmdPause->setEnabled(true);
}

} // namespace

void registerCompilationWindows() {
    whenFrameStands("--data-compilation", showDataCompilation);
    whenFrameStands("--audio-compilation", showAudioCompilation);
    FormRegistry::add(QStringLiteral("frmData"), openData);
    FormRegistry::add(QStringLiteral("frmAudio"), openAudio);
    FormRegistry::add(QStringLiteral("ToolMenuRemoveTrack"),
                      [](QWidget *) { withAudio(&frmAudio::RemoveTrack); });
    FormRegistry::add(QStringLiteral("ToolMenuClearAudio"),
                      [](QWidget *) { withAudio(&frmAudio::ClearTracks); });
    FormRegistry::add(QStringLiteral("ResetImage"), [](QWidget *owner) {
        if (mdiMain *main = frameOf(owner))
            main->ResetImage();
    });
    FormRegistry::add(QStringLiteral("frmLabels"),
                      [](QWidget *owner) { frmLabels::showModal(frameOf(owner)); });
}
