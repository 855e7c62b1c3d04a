#include "ScriptedAnswers.h"
#include "diagnostics/vbwFrmErrHandler.h"

ScriptedAnswers::ScriptedAnswers()
{
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

ScriptedAnswers::~ScriptedAnswers()
{
    MessageBoxService::setAnswerer({});
    FileBoxService::setAnswerer({});
    vbwFrmErrHandler::setAnswerer({});
}
