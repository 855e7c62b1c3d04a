#pragma once

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>

class QThread;

// The wave normaliser. Lives on the UI thread; each run works on a worker thread of its own and
// posts its events back, so they arrive on the UI thread in order. A run ends with exactly one
// of PercentDone(100) (after the file is closed and in place) or NormalizeFailed.
class DGPNorm : public QObject {
    Q_OBJECT
public:
    explicit DGPNorm(QObject *parent = nullptr);
    // Stops a run that is still going and waits for its worker; the partial file goes.
    ~DGPNorm() override;

    // Starts a run; false (and no event) when one is already going.
    bool Normalize(const QString &SourceFile, const QString &DestinationFile, qint32 Percent);
    bool busy() const { return m_thread != nullptr; }
    // Whether the last finished run found only silence and copied the file as it was.
    bool lastWasSilent() const { return m_lastSilent; }

signals:
    void PercentDone(double nPercent);
    void NormalizeFailed(const QString &description);

private:
    void finish(bool ok, bool silent, const QString &error);

    std::unique_ptr<QThread> m_thread;
    std::atomic<bool> m_cancel{false};
    bool m_lastSilent = false;
};
