#pragma once

#include "app/modDeclarations.h"

#include <QtCore>

// The nine labels of a data disc: the box of the labels dialog that edits each, the global that
// holds it and the box's length limit, in the order of the engine's identifiers.
struct VolumeLabel {
    const char *box;
    QString *global;
    int limit;
};

inline const QList<VolumeLabel> &volumeLabels() {
    static const QList<VolumeLabel> labels{
        {"txtVolumeLabel", &gstrVolumeIdentifier, 31},
        {"txtVolumeApplication", &gstrVolumeApplicationIdentifier, 128},
        {"txtVolumePublisher", &gstrVolumePublisher, 128},
        {"txtSystemVolumeIdentifier", &gstrVolumeSystemIdentifier, 31},
        {"txtVolumeSet", &gstrVolumeSetIdentifier, 128},
        {"txtDataPreparer", &gstrVolumeDataPreparerIdentifier, 128},
        {"txtCopyrightFile", &gstrVolumeCopyrightFileIdentifier, 36},
        {"txtAbstractFile", &gstrVolumeAbstractFileIdentifier, 36},
        {"txtBibliographicFile", &gstrVolumeBiblioFileIdentifier, 36},
    };
    return labels;
}
