#pragma once

#include <QtCore>

// A fresh application folder with its "Dat" folder for one test, and the globals as at start.
class TestEnvironment {
public:
    TestEnvironment();
    ~TestEnvironment();
    QString appFolder() const { return m_dir.path(); }
    QString iniFile() const { return m_dir.path() + QStringLiteral("/Dat/tessaly.ini"); }
    void writeFile(const QString &relativeName, const QByteArray &bytes) const;
    // As Main does, with the splash's ticks run at once; whether the main frame stands.
    bool startProgram();
    // Closes every window without asking, and gives the instance lock back.
    void stopProgram();
    static QString programPath();

private:
    QTemporaryDir m_dir;
};
