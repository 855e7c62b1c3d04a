#pragma once

#include <QList>
#include <QString>

// One library the program stands on, as the library itself reports it while the program runs
// (not the headers it was built against), so that a report names what was really loaded.
struct EngineVersion {
    QString name;    // "libburn"
    QString version; // "1.5.4"
    QString role;    // what the program uses it for, for the about box and the credits
    QString licence; // the library's own licence, for the credits
    QString site;    // its project's web page
};

// Every engine library with its run-time version, in a fixed order (disc engines first, then
// the audio libraries, the toolkit last). Safe from any thread: it only asks the libraries.
QList<EngineVersion> engineVersions();
