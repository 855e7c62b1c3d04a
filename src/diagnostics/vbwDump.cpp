#include "vbwDump.h"
#include "base/App.h"
#include "vbwErrHandler.h"
#include "vbwParameter.h"
#include "vbwTrace.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QScreen>
#include <memory>

namespace {
QString dumpPath;
std::unique_ptr<QFile> dumpFile;
QString globalPrefix;
QHash<QString, std::function<void()>> moduleHooks;
QList<QPair<QString, std::function<void()>>> globalHooks;

QString tabs(int depth) {
    return QString(depth, u'\t');
}

void plain(const QString &name, const QString &value, const char *type, int depth) {
    vbwReportToFile(tabs(depth) + globalPrefix + name + QStringLiteral(" = ") + value +
                    QStringLiteral(" (") + QLatin1String(type) + u')');
}

QString boundsText(const vbwBounds &bounds) {
    QStringList parts;
    for (const auto &d : bounds.dims)
        parts << QStringLiteral("%1 To %2").arg(d.first).arg(d.second);
    return u'(' + parts.join(u',') + u')';
}

void entries(const QString &name, const vbwBounds &bounds, const QString &typeName,
             const std::function<QString(const QList<int> &)> &valueAt, QList<int> &index,
             int depth) {
    const int dim = int(index.size());
    if (dim == bounds.dims.size()) {
        QStringList at;
        for (int i : index)
            at << QString::number(i);
        vbwReportToFile(tabs(depth) + name + u'(' + at.join(u',') + QStringLiteral(") = ") +
                        valueAt(index) + QStringLiteral(" (") + typeName + u')');
        return;
    }
    for (int i = bounds.dims[dim].first; i <= bounds.dims[dim].second; ++i) {
        index.append(i);
        entries(name, bounds, typeName, valueAt, index, depth);
        index.removeLast();
    }
}

void globalsOfDiagnostics() {
    const vbwOptions &o = vbwCurrentOptions();
    globalPrefix = QStringLiteral("vbwCommon.");
    vbwReportVariable(QStringLiteral("nStackCalls"), vbwStackDepth());
    vbwReportVariable(QStringLiteral("vbwLogFile"), vbwLogFile());
    vbwReportVariable(QStringLiteral("vbwDumpFile"), dumpPath);
    vbwReportVariable(QStringLiteral("vbwTraceProc"), o.vbwTraceProc);
    vbwReportVariable(QStringLiteral("vbwTraceParameters"), o.vbwTraceParameters);
    vbwReportVariable(QStringLiteral("vbwLog"), o.vbwLog);
    vbwReportVariable(QStringLiteral("vbwDumpStringMaxLength"), o.vbwDumpStringMaxLength);
    const vbwErrorState &s = vbwState();
    globalPrefix = QStringLiteral("vbwErrHandler.");
    vbwReportVariable(QStringLiteral("vbwRetCode"), s.vbwRetCode);
    vbwReportVariable(QStringLiteral("vbwMessageString"), s.vbwMessageString);
    vbwReportVariable(QStringLiteral("vbwCircumstancesString"), s.vbwCircumstancesString);
    vbwReportVariable(QStringLiteral("vbwErrorPath"), s.vbwErrorPath);
    vbwReportVariable(QStringLiteral("vbwfHasReported"), s.vbwfHasReported);
    globalPrefix.clear();
}

void objects() {
    vbwReportToFile(QStringLiteral("**** App ****"));
    vbwReportVariable(QStringLiteral("App.Path"), App::Path());
    vbwReportVariable(QStringLiteral("App.ProductName"), App::ProductName());
    vbwReportVariable(QStringLiteral("App.Major"), App::Major());
    vbwReportVariable(QStringLiteral("App.Minor"), App::Minor());
    vbwReportVariable(QStringLiteral("App.Revision"), App::Revision());
    const vbwErrorState &s = vbwState();
    vbwReportToFile(QStringLiteral("**** ErrObject Err ****"));
    vbwReportVariable(QStringLiteral("Err.Description"), s.lastDescription);
    vbwReportVariable(QStringLiteral("Err.HelpContext"), 0);
    vbwReportVariable(QStringLiteral("Err.HelpFile"), QString());
    vbwReportVariable(QStringLiteral("Err.LastDllError"), 0);
    vbwReportVariable(QStringLiteral("Err.Number"), s.lastNumber);
    vbwReportVariable(QStringLiteral("Err.Source"), s.lastModule);
    if (QScreen *screen = QGuiApplication::primaryScreen()) {
        vbwReportToFile(QStringLiteral("**** Screen ****"));
        vbwReportVariable(QStringLiteral("Screen.Width"), screen->size().width());
        vbwReportVariable(QStringLiteral("Screen.Height"), screen->size().height());
    }
}
} // namespace

QString FormatString(const QString &text, int maxLength) {
    if (text.endsWith(u'}'))
        return text;
    QString s = text;
    if (maxLength != 0 && s.size() > maxLength) {
        int cut = maxLength;
        if (s.at(cut - 1) == u'\r' && s.at(cut) == u'\n')
            ++cut;
        s = s.left(cut) + QStringLiteral("{...}");
    }
    s.replace(QStringLiteral("\r\n"), QStringLiteral("<CrLf>"));
    s.replace(u'\r', QStringLiteral("<Cr>"));
    s.replace(u'\n', QStringLiteral("<Lf>"));
    return u'"' + s + u'"';
}

QString FormatString(const QString &text) {
    return FormatString(text, vbwCurrentOptions().vbwDumpStringMaxLength);
}

QString vbwReportParameter(const QString &name, const vbwBounds &bounds) {
    if (!bounds.dimensioned)
        return name + QStringLiteral("(Undimensioned Array)");
    return name + boundsText(bounds);
}

QString vbwReportParameter(const QString &name, const QString &value) {
    return name + QStringLiteral(" = ") + FormatString(value);
}

QString vbwReportParameter(const QString &name, qint64 value) {
    return name + QStringLiteral(" = ") + QString::number(value);
}

QString vbwArrayHead(const QString &name, const vbwBounds &bounds, const QString &typeName) {
    if (!bounds.dimensioned)
        return name + QStringLiteral(" (Undimensioned Array)");
    if (bounds.dims.size() > 4)
        return name + QStringLiteral("() not processed: %1 dimensions").arg(bounds.dims.size());
    return QStringLiteral("Array ") + name + boundsText(bounds) + QStringLiteral(" As ") + typeName;
}

QString vbwTraceParameters(const QList<vbwParameter> &parameters) {
    if (parameters.isEmpty())
        return QStringLiteral("()");
    QStringList parts;
    for (const vbwParameter &p : parameters) {
        if (p.isString)
            parts << vbwReportParameter(p.name, p.value);
        else if (p.isObject)
            parts << p.name + u' ' + p.type + QStringLiteral(" = ") + p.value;
        else
            parts << p.name + QStringLiteral(" = ") + p.value;
    }
    return u'(' + parts.join(QStringLiteral(", ")) + QStringLiteral(") ");
}

void vbwReportLocals(const QList<vbwParameter> &parameters) {
    for (const vbwParameter &p : parameters) {
        vbwReportToFile(p.name + QStringLiteral(" = ") +
                        (p.isString ? FormatString(p.value) : p.value) + QStringLiteral(" (") +
                        p.type + u')');
    }
}

void vbwSetDumpFile(const QString &path) {
    dumpPath = path;
}

QString vbwDumpFile() {
    return dumpPath.isEmpty() ? vbwDefaultDumpFile() : dumpPath;
}

void vbwOpenDumpFile() {
    dumpFile = std::make_unique<QFile>(vbwDumpFile());
    if (!dumpFile->open(QIODevice::Append))
        dumpFile.reset();
}

void vbwCloseDumpFile() {
    dumpFile.reset();
}

void vbwReportToFile(const QString &text) {
    if (dumpFile)
        dumpFile->write(text.toUtf8() + "\r\n");
}

void vbwReportVariable(const QString &name, const QString &value, int depth) {
    plain(name, FormatString(value), "String", depth);
}
void vbwReportVariable(const QString &name, bool value, int depth) {
    plain(name, value ? QStringLiteral("True") : QStringLiteral("False"), "Boolean", depth);
}
void vbwReportVariable(const QString &name, double value, int depth) {
    plain(name, QString::number(value), "Double", depth);
}
void vbwReportVariable(const QString &name, Integer value, int depth) {
    plain(name, QString::number(value.value()), "Integer", depth);
}
void vbwReportVariable(const QString &name, Long value, int depth) {
    plain(name, QString::number(value.value()), "Long", depth);
}
void vbwReportVariable(const QString &name, int value, int depth) {
    plain(name, QString::number(value), "Long", depth);
}

void vbwReportArray(const QString &name, const vbwBounds &bounds, const QString &typeName,
                    const std::function<QString(const QList<int> &index)> &valueAt, int depth) {
    const QString fullName = globalPrefix + name;
    vbwReportToFile(tabs(depth) + vbwArrayHead(fullName, bounds, typeName));
    if (!bounds.dimensioned || bounds.dims.size() > 4)
        return;
    QList<int> index;
    entries(fullName, bounds, typeName, valueAt, index, depth + 1);
}

void vbwDumpModule(const QString &module) {
    const auto hook = moduleHooks.value(module);
    if (!hook)
        return;
    vbwReportToFile(QStringLiteral("\r\n**************************\r\n* MODULE LEVEL VARIABLES "
                                   "*\r\n**************************\r\n"));
    hook();
}

void vbwDumpGlobals() {
    vbwReportToFile(QStringLiteral("\r\n**************************\r\n* GLOBAL LEVEL VARIABLES "
                                   "*\r\n**************************\r\n"));
    globalsOfDiagnostics();
    for (const auto &[module, hook] : globalHooks) {
        globalPrefix = module + u'.';
        hook();
    }
    globalPrefix.clear();
    objects();
}

void vbwRegisterGlobals(const QString &module, std::function<void()> hook) {
    for (auto &entry : globalHooks) {
        if (entry.first == module) {
            entry.second = std::move(hook);
            return;
        }
    }
    globalHooks.append({module, std::move(hook)});
}

vbwModuleDump::vbwModuleDump(QString module, std::function<void()> hook)
    : m_module(std::move(module)) {
    moduleHooks.insert(m_module, std::move(hook));
}

vbwModuleDump::~vbwModuleDump() {
    moduleHooks.remove(m_module);
}
