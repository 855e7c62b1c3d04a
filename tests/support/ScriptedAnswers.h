#pragma once

#include "widgets/FileBoxService.h"
#include "widgets/MessageBoxService.h"

#include <QtCore>
#include <optional>

// Stands in for the user at every box: records what was asked and answers from a script, or by
// the box's default button when the script is empty. Installed for the life of the object.
class ScriptedAnswers {
public:
    ScriptedAnswers();
    ~ScriptedAnswers();
    ScriptedAnswers(const ScriptedAnswers &) = delete;
    ScriptedAnswers &operator=(const ScriptedAnswers &) = delete;
    // Every box by its default button with a warning; no real box ever opens.
    static void installFallback();
    void answerBox(int button) { m_boxAnswers.enqueue(button); }
    void answerFile(std::optional<QString> path) { m_fileAnswers.enqueue(std::move(path)); }
    void answerError(int code) { m_errorAnswers.enqueue(code); }
    QList<MessageBoxService::Request> boxes;
    QList<FileBoxService::Request> fileBoxes;
    QList<QString> errors; // the trap dialog's messages

private:
    QQueue<int> m_boxAnswers;
    QQueue<std::optional<QString>> m_fileAnswers;
    QQueue<int> m_errorAnswers;
};
