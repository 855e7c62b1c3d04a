#include "ScriptedAnswers.h"
#include "diagnostics/vbwFrmErrHandler.h"

ScriptedAnswers::ScriptedAnswers() {
    MessageBoxService::setAnswerer([this](const MessageBoxService::Request &r) {
        boxes.append(r);
        return m_boxAnswers.isEmpty() ? MessageBoxService::defaultButton(r.buttons)
                                      : m_boxAnswers.dequeue();
    });
    FileBoxService::setAnswerer([this](const FileBoxService::Request &r) {
        fileBoxes.append(r);
        return m_fileAnswers.isEmpty() ? std::nullopt : m_fileAnswers.dequeue();
    });
    vbwFrmErrHandler::setAnswerer([this](const QString &message) {
        errors.append(message);
        return m_errorAnswers.isEmpty() ? 5 : m_errorAnswers.dequeue();
    });
}

ScriptedAnswers::~ScriptedAnswers() {
    installFallback();
}

void ScriptedAnswers::installFallback() {
    // A box nobody scripted is a fault of the test, never a real modal box that would hang it.
    MessageBoxService::setAnswerer([](const MessageBoxService::Request &r) {
        qWarning("unscripted message box: [%s] %s", qPrintable(r.title), qPrintable(r.prompt));
        return MessageBoxService::defaultButton(r.buttons);
    });
    FileBoxService::setAnswerer([](const FileBoxService::Request &r) -> std::optional<QString> {
        qWarning("unscripted file box: %s", qPrintable(r.title));
        return std::nullopt;
    });
    vbwFrmErrHandler::setAnswerer([](const QString &message) {
        qWarning("unscripted error trap: %s", qPrintable(message));
        return 5;
    });
}
