#pragma once

#include <QString>

#include <atomic>
#include <functional>

// One normalising run, done in the calling thread (DGPNorm calls it on its worker): the first
// pass finds the peak, the second scales every sample so that the peak becomes the chosen
// percentage of full scale, written in the source's own format to a temporary file that
// replaces the destination only when it is complete.
class NormalizeJob {
public:
    struct Result {
        bool ok = false;
        bool silent = false; // nothing to scale: the file was copied as it is
        QString error;       // a sentence for the user when !ok
    };
    // Progress from 0 up to below 100; the caller reports 100 itself once the job is done.
    using Progress = std::function<void(double percent)>;

    NormalizeJob(QString source, QString destination, qint32 percent);

    Result run(const Progress &progress, const std::atomic<bool> &cancel);

private:
    QString m_source;
    QString m_destination;
    qint32 m_percent;
};
