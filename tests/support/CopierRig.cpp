#include "CopierRig.h"

#include "Fixtures.h"
#include "Waits.h"

#include "engine/writer/recorders/image/ImageMedium.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtCore>

CopierRig::CopierRig(EngineRig::Job job, const QStringList &settings)
    : rig(QStringLiteral("CD-R 80"), job, QStringList{"SecondDrive=1"} + settings) {
    QObject::connect(&copier, &CD2CD::PercentDone, &copier, [this](double p) { percents << p; });
    QObject::connect(&copier, &CD2CD::JobComplete, &copier, [this] { ++endings; });
    QObject::connect(&copier, &CD2CD::JobFailed, &copier, [this](const QString &why) {
        failure = why;
        ++endings;
    });
    copier.setBlankDiscHandler(this);
    copier.CloseTray(First);
}

void CopierRig::addFiles(const QString &folder, int count, int size) {
    for (int i = 0; i < count; ++i) {
        const QString file = QDir(folder).filePath(QStringLiteral("f%1.bin").arg(i));
        Fixtures::writeFile(file, Fixtures::pseudoRandom(size, i + 1));
        rig.engine.AddISOFile(QStringLiteral("\\f%1.bin").arg(i), file);
    }
}

bool CopierRig::waitForJob() {
    const int before = endings;
    failure.clear();
    percents.clear();
    return Waits::until([&] { return endings > before && !copier.JobRunning(); }) &&
           failure.isEmpty();
}

QString CopierRig::trayData(qint32 unit) {
    const QString descriptor = ImageRecorder(unit).mediumFile();
    QFile f(descriptor);
    const auto medium =
        f.open(QIODevice::ReadOnly) ? ImageMedium::parse(f.readAll()) : std::nullopt;
    return medium ? QFileInfo(descriptor).dir().filePath(medium->dataFile) : QString();
}
