// Runs one piece of work of the MP3 tool or the normaliser, for bench/mp3norm to time against
// the existing tools:
//   bench_mp3norm normalize SOURCE DEST PERCENT
//   bench_mp3norm encode SOURCE DEST        (lame through the MP3 tool's runner, "-b 128")
#include "base/App.h"
#include "engine/normalizer/DGPNorm.h"
#include "ripping/clsMP3.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() >= 4 && args[1] == QLatin1String("encode")) {
        QTemporaryDir folder;
        App::setPath(folder.path());
        clsMP3 mp3;
        mp3.setEncodeDecode(1);
        mp3.setMP3Switches(QStringLiteral("-S -b 128"));
        mp3.setSrcFilename(args[2]);
        mp3.setDestFilename(args[3]);
        qint32 result = 0;
        mp3.MP3Encode(nullptr, result);
        return result;
    }
    if (args.size() >= 5 && args[1] == QLatin1String("normalize")) {
        DGPNorm norm;
        int status = 1;
        QObject::connect(&norm, &DGPNorm::PercentDone, &app, [&](double percent) {
            if (percent == 100.0) {
                status = 0;
                app.quit();
            }
        });
        QObject::connect(&norm, &DGPNorm::NormalizeFailed, &app, [&](const QString &text) {
            std::fprintf(stderr, "%s\n", qPrintable(text));
            app.quit();
        });
        if (!norm.Normalize(args[2], args[3], args[4].toInt()))
            return 1;
        app.exec();
        return status;
    }
    std::fprintf(stderr, "usage: bench_mp3norm normalize SRC DST PERCENT | encode SRC DST\n");
    return 2;
}
