#include "FileBoxService.h"
#include "base/RuntimeError.h"

#include <QApplication>
#include <QFileDialog>
#include <QStringList>

namespace {
FileBoxService::Answerer &answererSlot() {
    static FileBoxService::Answerer answerer;
    return answerer;
}
} // namespace

std::optional<QString> FileBoxService::ask(const Request &request) {
    if (answererSlot())
        return answererSlot()(request);
    return askReal(request);
}

QString FileBoxService::askOrThrow(const Request &request) {
    const auto answer = ask(request);
    if (!answer)
        throw RuntimeError(RuntimeError::CancelSelected);
    return *answer;
}

void FileBoxService::setAnswerer(Answerer answerer) {
    answererSlot() = std::move(answerer);
}

QString FileBoxService::toNameFilters(const QString &filter) {
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts.at(i + 1);
        patterns.replace(u';', u' ');
        filters.append(parts.at(i).trimmed() + QStringLiteral(" (") + patterns + u')');
    }
    return filters.join(QStringLiteral(";;"));
}

std::optional<QString> FileBoxService::askReal(const Request &request) {
    QWidget *parent = QApplication::activeWindow();
    QString start = request.fileName;
    if (!request.initialDirectory.isEmpty())
        start = request.initialDirectory + u'/' + request.fileName;
    QString chosen;
    switch (request.mode) {
    case Mode::Open:
        chosen = QFileDialog::getOpenFileName(parent, request.title, start,
                                              toNameFilters(request.filter));
        break;
    case Mode::Save:
        // Without the overwrite-prompt flag (2) the caller asks itself, once it has settled
        // the name (an extension added), so the user is not asked twice.
        chosen = QFileDialog::getSaveFileName(
            parent, request.title, start, toNameFilters(request.filter), nullptr,
            (request.flags & 2) ? QFileDialog::Options() : QFileDialog::DontConfirmOverwrite);
        break;
    case Mode::Folder:
        chosen = QFileDialog::getExistingDirectory(parent, request.title, start);
        break;
    }
    if (chosen.isEmpty())
        return std::nullopt;
    return chosen;
}
