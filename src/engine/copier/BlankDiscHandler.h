#pragma once

#include <QString>

// What a copy onto the drive it reads from needs of the user: the source disc has been read and
// ejected, and a blank disc must go in. Called on the UI thread; the job then waits until the
// drive holds a blank disc, or until it is aborted.
class BlankDiscHandler {
public:
    virtual ~BlankDiscHandler() = default;
    virtual void blankDiscWanted(qint32 address, const QString &driveName) = 0;
};
