#pragma once

#include <QApplication>

// The application object. Every event is delivered inside the error trap, so that an error a
// handler did not trap itself still reaches the dialog and never crosses the event loop.
class TessalyApplication : public QApplication {
    Q_OBJECT
public:
    TessalyApplication(int &argc, char **argv);

    bool notify(QObject *receiver, QEvent *event) override;

    // What the program does from its start to its end: the application folder, the options
    // of the command line, Main, and the event loop while a window is loaded.
    int run();

    // Answers every box by its default button and prints it to the error output, for runs with
    // nobody at the screen (--unattended).
    static void installUnattendedAnswers();
};
