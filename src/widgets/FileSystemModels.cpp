#include "FileSystemModels.h"

#include <QCoreApplication>
#include <QFileSystemModel>

namespace {
QFileSystemModel *make(QDir::Filters filters) {
    auto *model = new QFileSystemModel(QCoreApplication::instance());
    model->setFilter(filters);
    model->setReadOnly(false);
    model->setRootPath(QStringLiteral("/"));
    return model;
}
} // namespace

QFileSystemModel *FileSystemModels::folders() {
    static QFileSystemModel *model = make(QDir::AllDirs | QDir::NoDotAndDotDot | QDir::Drives);
    return model;
}

QFileSystemModel *FileSystemModels::entries() {
    static QFileSystemModel *model = make(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Drives);
    return model;
}
