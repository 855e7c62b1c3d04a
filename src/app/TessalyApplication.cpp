#include "TessalyApplication.h"
#include "base/App.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/vbwFrmErrHandler.h"
#include "diagnostics/vbwTrace.h"
#include "modMain.h"
#include "widgets/FileBoxService.h"
#include "widgets/MessageBoxService.h"

#include <cstdio>

TessalyApplication::TessalyApplication(int &argc, char **argv)
    : QApplication(argc, argv) {
    setApplicationName(App::ProductName());
    setApplicationVersion(App::versionText());
    setOrganizationName(App::ProductName());
}

bool TessalyApplication::notify(QObject *receiver, QEvent *event) {
    bool result = false;
    ErrorTrap::runUntraced("notify", "TessalyApplication",
                           [&] { result = QApplication::notify(receiver, event); });
    return result;
}

void TessalyApplication::installUnattendedAnswers() {
    MessageBoxService::setAnswerer([](const MessageBoxService::Request &r) {
        const int answer = MessageBoxService::defaultButton(r.buttons);
        std::fprintf(stderr, "MsgBox [%s] %s -> %d\n", qPrintable(r.title), qPrintable(r.prompt),
                     answer);
        return answer;
    });
    FileBoxService::setAnswerer([](const FileBoxService::Request &r) -> std::optional<QString> {
        std::fprintf(stderr, "FileBox [%s] cancelled\n", qPrintable(r.title));
        return std::nullopt;
    });
    vbwFrmErrHandler::setAnswerer([](const QString &message) {
        std::fprintf(stderr, "Error trap: %s -> Ignore\n", qPrintable(message));
        return 5;
    });
}

int TessalyApplication::run() {
    if (!App::initialize(arguments()))
        std::fprintf(stderr, "tessaly: can't make the application folder %s\n",
                     qPrintable(App::Path()));
    if (App::hasArgument(QStringLiteral("--unattended")))
        installUnattendedAnswers();
    vbwInitialize(arguments());
    modMain::Main();
    if (!modMain::Started())
        return 0;
    const int code = exec();
    modMain::ReleaseInstance();
    return code;
}
