#pragma once

#include <QString>
#include <functional>
#include <optional>

// The one door to open and save boxes, so that tests can answer them: a request carries its
// caption, suggested name, "Description|*.ext" filter pairs and flags. UI thread.
class FileBoxService {
public:
    enum class Mode { Open, Save, Folder };

    struct Request {
        Mode mode = Mode::Open;
        QString title;
        QString fileName; // proposed name, or a path whose folder the box opens in
        QString filter;
        int flags = 0;
        QString initialDirectory;
    };
    // The chosen path, or nothing when the user cancelled.
    using Answerer = std::function<std::optional<QString>(const Request &)>;

    static std::optional<QString> ask(const Request &request);
    // As ask(), with the box set so that cancelling raises Cancel was selected (32755).
    static QString askOrThrow(const Request &request);

    static void setAnswerer(Answerer answerer);

    // "ISO file (*.iso)|*.iso" as the toolkit's filter list.
    static QString toNameFilters(const QString &filter);

private:
    static std::optional<QString> askReal(const Request &request);
};
