#pragma once

#include <QString>
#include <QTemporaryDir>

// A fresh application folder with its "Dat" folder for one test, and the globals as at start.
class TestEnvironment {
public:
    TestEnvironment();
    ~TestEnvironment();

    QString appFolder() const { return m_dir.path(); }
    QString iniFile() const { return m_dir.path() + QStringLiteral("/Dat/tessaly.ini"); }
    // Writes a file under the application folder with the given bytes.
    void writeFile(const QString &relativeName, const QByteArray &bytes) const;

    // Starts the program's windows as Main does and runs the splash's ticks at once; returns
    // whether the main frame stands.
    bool startProgram();
    // Closes every window without asking, and gives the instance lock back.
    void stopProgram();

    // The tessaly program built beside the tests.
    static QString programPath();

private:
    QTemporaryDir m_dir;
};
