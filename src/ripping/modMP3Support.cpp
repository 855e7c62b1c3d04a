#include "modMP3Support.h"
#include "base/App.h"
#include "widgets/MessageBoxService.h"

#include <QFile>
#include <QList>
#include <QSaveFile>

#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace modMP3Support {

MP3Options udtOptions;
QString strCommands;
QString strDelSrcFile;
bool blnRetLoad = false;
bool blnRetSave = false;

namespace {

constexpr std::array<std::pair<qint32, qint32>, 18> BitrateTicks{{
    {8, 1},
    {16, 2},
    {24, 3},
    {32, 4},
    {40, 5},
    {48, 6},
    {56, 7},
    {64, 8},
    {80, 9},
    {96, 10},
    {112, 11},
    {128, 12},
    {144, 13},
    {160, 14},
    {192, 15},
    {224, 16},
    {256, 17},
    {320, 18},
}};

QString number(double value) {
    return QString::number(value, 'g', 15);
}

// The fields of the record in file order; `text` marks the one quoted field.
struct Field {
    qint32 *integer = nullptr;
    double *real = nullptr;
    QString *text = nullptr;
};

QList<Field> fieldsOf(MP3Options &o) {
    return {
        {&o.Bitrate},
        {&o.Mode},
        {&o.Optimization},
        {&o.IncludeCRC},
        {&o.Copy},
        {&o.Copyright},
        {&o.Filing},
        {&o.EnableVBR},
        {&o.VBRBitrate},
        {&o.Quality},
        {&o.DisableVBRTag},
        {&o.EnforceBitrate},
        {&o.UseABR},
        {&o.ABRBitrate},
        {&o.BlockTypes},
        {&o.DisableFiltering},
        {&o.DisableBitRes},
        {&o.DisableShort},
        {&o.ComplyISO},
        {&o.ATHControl},
        {&o.QLevel},
        {nullptr, nullptr, &o.CustomOptions},
        {&o.UseCustom},
        {nullptr, &o.OutputFrequency},
        {&o.UseHighPassFilter},
        {&o.UseHighPassWidth},
        {nullptr, &o.HighPassFreq},
        {nullptr, &o.HighPassWidth},
        {&o.UseLowPassFilter},
        {&o.UseLowPassWidth},
        {nullptr, &o.LowPassFreq},
        {nullptr, &o.LowPassWidth},
    };
}

// Splits one line at the commas outside double quotes; a quoted field keeps its inside as it
// is, blanks included. False when a quote is left open or stray text follows a closing one.
bool splitLine(const QByteArray &line, QList<QByteArray> &parts, QList<bool> &quoted) {
    qsizetype at = 0;
    const qsizetype size = line.size();
    for (;;) {
        while (at < size && line[at] == ' ')
            ++at;
        if (at < size && line[at] == '"') {
            const qsizetype end = line.indexOf('"', at + 1);
            if (end < 0)
                return false;
            parts.append(line.mid(at + 1, end - at - 1));
            quoted.append(true);
            at = end + 1;
            while (at < size && line[at] == ' ')
                ++at;
        } else {
            qsizetype end = line.indexOf(',', at);
            if (end < 0)
                end = size;
            parts.append(line.mid(at, end - at).trimmed());
            quoted.append(false);
            at = end;
        }
        if (at >= size)
            return true;
        if (line[at] != ',')
            return false;
        ++at;
    }
}

bool parseRecord(const QByteArray &line, MP3Options &options) {
    QList<QByteArray> parts;
    QList<bool> quoted;
    if (!splitLine(line, parts, quoted))
        return false;
    MP3Options record;
    const QList<Field> fields = fieldsOf(record);
    if (parts.size() != fields.size())
        return false;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const Field &field = fields[i];
        if (field.text) {
            *field.text = QString::fromLatin1(parts[i]);
            continue;
        }
        if (quoted[i])
            return false;
        bool ok = false;
        const double value = parts[i].toDouble(&ok); // QByteArray parses in the C locale
        if (!ok || !std::isfinite(value))
            return false;
        if (field.real) {
            *field.real = value;
            continue;
        }
        const double rounded = std::nearbyint(value);
        if (rounded < std::numeric_limits<qint32>::min() ||
            rounded > std::numeric_limits<qint32>::max())
            return false;
        *field.integer = qint32(rounded);
    }
    options = record;
    return true;
}

} // namespace

QString OptionsFile() {
    return App::pathOf(QStringLiteral("/Dat/OptMP3.dat"));
}

QByteArray RecordLine(const MP3Options &options) {
    MP3Options copy = options;
    QByteArray line;
    for (const Field &field : fieldsOf(copy)) {
        if (!line.isEmpty())
            line += ',';
        if (field.text) {
            // The file has no escape for a quote inside the text.
            QString text = *field.text;
            line += '"' + text.replace(u'"', u'\'').toLatin1() + '"';
        } else if (field.real) {
            line += number(*field.real).toLatin1();
        } else {
            line += QByteArray::number(*field.integer);
        }
    }
    return line + "\r\n";
}

bool ParseRecords(const QByteArray &bytes, MP3Options &options) {
    bool allRead = true;
    for (QByteArray line : bytes.split('\n')) {
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.trimmed().isEmpty())
            continue;
        if (!parseRecord(line, options))
            allRead = false;
    }
    return allRead;
}

void SetDefaultOptions() {
    udtOptions = MP3Options{};
}

bool SaveOptions() {
    QSaveFile file(OptionsFile());
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray line = RecordLine(udtOptions);
    if (file.write(line) != line.size())
        return false;
    return file.commit();
}

bool LoadOptions() {
    QFile file(OptionsFile());
    if (!file.open(QIODevice::ReadOnly)) {
        SetDefaultOptions();
        // A first start is no failure: the new file with the defaults is what was read.
        if (!SaveOptions()) {
            MsgBox(QStringLiteral("Error Creating ") + OptionsFile(), vbCritical);
            return false;
        }
        return true;
    }
    const QByteArray bytes = file.readAll();
    const bool readOk = file.error() == QFileDevice::NoError;
    file.close();
    return ParseRecords(bytes, udtOptions) && readOk;
}

void BuildMP3String() {
    const MP3Options &o = udtOptions;
    QString s = QStringLiteral("-b ") + QString::number(o.Bitrate);
    static const char *const modes[] = {" -m s", " -m j", " -m f", " -m m"};
    if (o.Mode >= 0 && o.Mode <= 3)
        s += QLatin1String(modes[o.Mode]);
    if (o.Optimization == 1)
        s += QLatin1String(" -f");
    else if (o.Optimization == 2)
        s += QLatin1String(" -h");
    if (o.IncludeCRC == 1)
        s += QLatin1String(" -p");
    if (o.Copy == 1)
        s += QLatin1String(" -o");
    if (o.Copyright == 1)
        s += QLatin1String(" -c");
    if (o.EnableVBR == 1) {
        if (o.UseABR == 0)
            s += QLatin1String(" -V ") + QString::number(o.Quality);
        s += QLatin1String(" -B ") + QString::number(o.VBRBitrate);
        if (o.DisableVBRTag == 1)
            s += QLatin1String(" -t");
        if (o.EnforceBitrate == 1)
            s += QLatin1String(" -F");
        if (o.UseABR == 1)
            s += QLatin1String(" --abr ") + QString::number(o.ABRBitrate);
    }
    static const char *const rates[] = {"16", "22.05", "24", "32", "44.1", "48"};
    for (int i = 1; i <= 6; ++i) {
        if (o.OutputFrequency == double(i))
            s += QLatin1String(" --resample ") + QLatin1String(rates[i - 1]);
    }
    if (o.UseHighPassFilter == 1) {
        s += QLatin1String(" --highpass ") + number(o.HighPassFreq);
        if (o.UseHighPassWidth == 1)
            s += QLatin1String(" --highpass-width ") + number(o.HighPassWidth);
    }
    if (o.UseLowPassFilter == 1) {
        s += QLatin1String(" --lowpass ") + number(o.LowPassFreq);
        if (o.UseLowPassWidth == 1)
            s += QLatin1String(" --lowpass-width ") + number(o.LowPassWidth);
    }
    strCommands = s;
}

qint32 BitrateToTicks(qint32 lngBitrate) {
    for (const auto &[rate, tick] : BitrateTicks) {
        if (rate == lngBitrate)
            return tick;
    }
    return 0;
}

qint32 TicksToBitrate(qint32 lngTick) {
    // Position 16 has no rate of its own and 26 stands for 224, as the slider has always done.
    if (lngTick == 16)
        return 0;
    if (lngTick == 26)
        return 224;
    for (const auto &[rate, tick] : BitrateTicks) {
        if (tick == lngTick)
            return rate;
    }
    return 0;
}

} // namespace modMP3Support
