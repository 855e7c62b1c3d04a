#include "App.h"
#include "Version.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString App::s_path;
QStringList App::s_arguments;

bool App::initialize(const QStringList &arguments) {
    s_arguments = arguments;
    QString folder = argumentValue(QStringLiteral("--app-folder"));
    if (folder.isEmpty()) {
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                 QStringLiteral("/tessaly");
    }
    setPath(QDir(folder).absolutePath());
    return QDir().mkpath(s_path + QStringLiteral("/Dat"));
}

void App::setPath(const QString &folder) {
    s_path = QDir::cleanPath(folder);
}

QString App::Path() {
    return s_path;
}

QString App::pathOf(const QString &relativeName) {
    QString name = relativeName;
    name.replace(u'\\', u'/');
    if (!name.startsWith(u'/'))
        name.prepend(u'/');
    return s_path + name;
}

QString App::resourcePath(const QString &relativeName) {
    QString name = relativeName;
    name.replace(u'\\', u'/');
    while (name.startsWith(u'/'))
        name.remove(0, 1);
    const QStringList candidates = {
        pathOf(name),
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/tessaly/") + name,
        QStringLiteral(TESSALY_SOURCE_RESOURCES "/") + name,
    };
    for (const QString &c : candidates) {
        if (QFileInfo::exists(c))
            return QDir::cleanPath(c);
    }
    return QString();
}

QString App::LegalCopyright() {
    return QStringLiteral(
        "Copyright (C) 2026 the Tessaly developers. Free software under the GPL.");
}

int App::Major() {
    return TessalyVersion::Major;
}
int App::Minor() {
    return TessalyVersion::Minor;
}
int App::Revision() {
    return TessalyVersion::Revision;
}

QString App::versionText() {
    return QStringLiteral("%1.%2.%3").arg(Major()).arg(Minor()).arg(Revision());
}

QStringList App::arguments() {
    return s_arguments;
}

QString App::argumentValue(const QString &option) {
    for (qsizetype i = 0; i < s_arguments.size(); ++i) {
        const QString &a = s_arguments.at(i);
        if (a == option && i + 1 < s_arguments.size())
            return s_arguments.at(i + 1);
        if (a.startsWith(option + u'='))
            return a.mid(option.size() + 1);
    }
    return QString();
}

bool App::hasArgument(const QString &option) {
    for (const QString &a : s_arguments) {
        if (a.compare(option, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}
