#pragma once

#include "EngineRig.h"
#include "ScriptedAnswers.h"

#include "app/FormRegistry.h"
#include "widgets/DefaultInstance.h"

#include <QtCore>

// The Image Recorder's engine handed to the frame's windows as the frame hands its own (no
// frame): windows open through the registry by name, every box is answered by script.
struct DiscToolsRig : EngineRig {
    explicit DiscToolsRig(const QString &medium = QStringLiteral("CD-R 80"), Job job = Data,
                          const QStringList &settings = {});
    ~DiscToolsRig();
    // One file of `bytes` bytes named after the volume.
    bool writeData(const QString &volume, int bytes = 300000);
    bool writeAudio();
    template<typename T> T *open(const QString &name) {
        FormRegistry::open(name);
        return DefaultInstance<T>::peek();
    }
    QStringList prompts() const;

    ScriptedAnswers answers;
    QTemporaryDir sources;
};

// As isoinfo reads it from the session at block 0.
QString isoinfoVolumeId(const QString &image);
