#pragma once

#include "EngineRig.h"
#include "ScriptedAnswers.h"

#include "app/FormRegistry.h"
#include "widgets/DefaultInstance.h"

#include <QStringList>
#include <QTemporaryDir>

// The Image Recorder's engine handed to the frame's windows as the frame hands its own (no
// frame): windows open through the registry by name, every box is answered by script.
struct DiscToolsRig : EngineRig {
    explicit DiscToolsRig(const QString &medium = QStringLiteral("CD-R 80"), Job job = Data,
                          const QStringList &settings = {});
    ~DiscToolsRig();

    // Writes a session with one file of `bytes` bytes under the volume name; whether it ran
    // to an ending event.
    bool writeData(const QString &volume, int bytes = 300000);
    // Writes a closed audio disc of one track.
    bool writeAudio();
    // Runs a registered window's opener by name, as the frame's command does; then the open
    // instance of T, or null.
    template<typename T> T *open(const QString &name) {
        FormRegistry::open(name);
        return DefaultInstance<T>::peek();
    }
    // What the boxes said so far, in order.
    QStringList prompts() const;

    ScriptedAnswers answers;
    QTemporaryDir sources;
};

// Fails the running test unless each "name=text" (joined by "|") holds for the window's child of
// that name: its text (a label, a line edit), or "on"/"off" for whether a button is enabled.
void expectShown(const QWidget *window, const QString &shown);

// The volume identifier of the ISO 9660 session at block 0 of `image`, as isoinfo reads it.
QString isoinfoVolumeId(const QString &image);
