#pragma once

#include "engine/writer/recorders/Recorder.h"

#include <QString>
#include <QStringList>

#include <optional>

// Turns what a drive and libburn report about a failure into the engine's terms: a drive code
// of the failure table, and a sense text "K/AA/QQ TEXT" a person can read. Pure; any thread.
namespace DriveSense {

struct Sense {
    int key = 0;
    int asc = 0;
    int ascq = 0;
};

// The drive code that fits the sense data best: the exact ASC/ASCQ first, then the ASC, then
// the sense key.
qint32 driveCode(const Sense &sense);
// "5/21/02 INVALID ADDRESS FOR WRITE"; ASC/ASCQ pairs without a known text fall back to the
// name of the sense key.
QString senseText(const Sense &sense);

// Finds the sense data in a libburn message ("... [5 21 02] Invalid address for write").
std::optional<Sense> parse(const QString &message);

// The outcome of a failed libburn job from the messages it queued: the first message that
// carries sense data decides; without any, `fallback` when given (what the failed step means
// when the drive says nothing), else the wording of the messages; else libburn's last word.
JobOutcome failure(const QString &info, const QStringList &messages,
                   std::optional<Sense> fallback = std::nullopt);

} // namespace DriveSense
