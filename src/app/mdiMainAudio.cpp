// The frame's side of the audio compilation: the engine's track list shown in the audio window.
#include "AudioTrackList.h"
#include "base/Format.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/writer/CDWriterPro.h"
#include "mdiMain.h"
#include "widgets/KeyedPanel.h"
#include "widgets/KeyedStatusBar.h"

void mdiMain::connectAudioEvents() {
    TRAPPED_CONNECT(Tessaly, &CDWriterPro::EnumAudioTrack, mdiMain, Tessaly_EnumAudioTrack);
}

void mdiMain::Tessaly_EnumAudioTrack(const QString &sFileName, qint32 lTotalSizeBlocks,
                                     qint32 lTotalSizeBytes, qint32 lTrackNumber) {
    Q_UNUSED(lTotalSizeBytes);
    if (AudioTrackList *audio = AudioTrackList::current())
        audio->addTrackRow(QStringLiteral("Track ") + Format(lTrackNumber, QStringLiteral("0#")),
                           sFileName, QStringLiteral("Wave"),
                           Tessaly->BlocksToTime(lTotalSizeBlocks));
    smartStatusBar->Item(QStringLiteral("DIRECTORIES"))
        ->setText(QStringLiteral(" Tracks: ") + QString::number(lTrackNumber));
    smartStatusBar->Item(QStringLiteral("FILES"))->setImageKey(QStringLiteral("NOTE"));
}
