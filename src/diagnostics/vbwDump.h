#pragma once

#include "base/Checked.h"

#include <QList>
#include <QPair>
#include <QString>
#include <functional>

// The variable dumps of a report in their fixed text form. C++ can't list a window's fields,
// so every window and module registers a hook that reports them by their own names:
//   vbwModuleDump m_dump{"frmData", [this] { vbwReportVariable("mblnBusy", mblnBusy); }};
// UI thread only.

// A string as the dumps show it: quoted, cut to the dump limit with "{...}", line breaks
// spelled out; a marker ending in "}" stays as it is.
QString FormatString(const QString &text, int maxLength);
QString FormatString(const QString &text);

// Bounds of an array, one pair a dimension; dimensioned false for one not dimensioned yet.
struct vbwBounds {
    QList<QPair<int, int>> dims;
    bool dimensioned = true;
};
// "name(0 To 9,1 To 3)", or "name(Undimensioned Array)".
QString vbwReportParameter(const QString &name, const vbwBounds &bounds);
QString vbwReportParameter(const QString &name, const QString &value);
QString vbwReportParameter(const QString &name, qint64 value);
// The head line of an array in a dump.
QString vbwArrayHead(const QString &name, const vbwBounds &bounds, const QString &typeName);

struct vbwParameter;
// "()" without arguments, else "(" each argument ", " between them ") ".
QString vbwTraceParameters(const QList<vbwParameter> &parameters);
// The handler's arguments as the local variables of a report.
void vbwReportLocals(const QList<vbwParameter> &parameters);

void vbwSetDumpFile(const QString &path);
QString vbwDumpFile();
void vbwOpenDumpFile();
void vbwCloseDumpFile();
void vbwReportToFile(const QString &text);

// One variable a line: tabs by depth, "name = value (Type)".
void vbwReportVariable(const QString &name, const QString &value, int depth = 0);
void vbwReportVariable(const QString &name, bool value, int depth = 0);
void vbwReportVariable(const QString &name, double value, int depth = 0);
void vbwReportVariable(const QString &name, Integer value, int depth = 0);
void vbwReportVariable(const QString &name, Long value, int depth = 0);
void vbwReportVariable(const QString &name, int value, int depth = 0);
// An array: the head, then an entry a line with its indices, by recursion over the dimensions.
void vbwReportArray(const QString &name, const vbwBounds &bounds, const QString &typeName,
                    const std::function<QString(const QList<int> &index)> &valueAt, int depth = 0);
template<qsizetype N>
void vbwReportVariable(const QString &name, const CheckedArray<bool, N> &array, int depth = 0) {
    vbwReportArray(
        name, {{{0, int(N) - 1}}}, QStringLiteral("Boolean"),
        [&](const QList<int> &i) {
            return array(i.first()) ? QStringLiteral("True") : QStringLiteral("False");
        },
        depth);
}

// The module-level block of one window or module, and the global block.
void vbwDumpModule(const QString &module);
void vbwDumpGlobals();
// Globals of a module, reported by their full names in the global block.
void vbwRegisterGlobals(const QString &module, std::function<void()> hook);

// Registers a window's or module's field dump for as long as it lives.
class vbwModuleDump {
public:
    vbwModuleDump(QString module, std::function<void()> hook);
    ~vbwModuleDump();
    vbwModuleDump(const vbwModuleDump &) = delete;
    vbwModuleDump &operator=(const vbwModuleDump &) = delete;

private:
    QString m_module;
};
