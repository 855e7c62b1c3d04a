#include "CompilationWindows.h"
#include "app/FormRegistry.h"
#include "frmAudio.h"
#include "frmData.h"
#include "frmLabels.h"

namespace {
// The audio window's commands from the menu and the toolbar; with no audio window open there
// is no track to act on.
void withAudio(void (frmAudio::*command)()) {
    if (frmAudio *audio = DefaultInstance<frmAudio>::peek())
        (audio->*command)();
}
} // namespace

void registerCompilationWindows() {
    FormRegistry::addWindow<frmData>(QStringLiteral("frmData"), FormRegistry::Placement::Child);
    FormRegistry::addWindow<frmAudio>(QStringLiteral("frmAudio"), FormRegistry::Placement::Child);
    FormRegistry::add(QStringLiteral("ToolMenuRemoveTrack"),
                      [](QWidget *) { withAudio(&frmAudio::RemoveTrack); });
    FormRegistry::add(QStringLiteral("ToolMenuClearAudio"),
                      [](QWidget *) { withAudio(&frmAudio::ClearTracks); });
    FormRegistry::add(QStringLiteral("frmLabels"),
                      [](QWidget *owner) { frmLabels::showModal(owner); });
}
