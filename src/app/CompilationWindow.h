#pragma once

#include <QList>
#include <QString>

class QWidget;

// The content of a compilation as a printed list shows it: a data compilation's folders in the
// order they were added, each with its files as its list shows them; an audio compilation's
// tracks. Texts are the windows' own.
struct CompilationListing {
    struct File {
        QString name;
        QString size;
    };
    struct Folder {
        QString fullPath; // the names from the root down, joined by "\"
        QList<File> files;
    };
    struct Track {
        QString track;
        QString fileName;
        QString time;
    };
    bool isData = true;
    QList<Folder> folders;
    QList<Track> tracks;
};

// What the frame and the write dialog ask of the open compilation, data or audio, whichever it
// is. The window registers itself while it exists; only one compilation is open at a time.
// UI thread.
class CompilationWindow {
public:
    virtual ~CompilationWindow();

    // The open compilation, or null.
    static CompilationWindow *current();

    virtual QWidget *widget() = 0;
    // The views taken out of reach during a write, and given back.
    virtual void EnableForm(bool blnEnable) = 0;
    // Shown again after the disc changed or was written: the size against the new free
    // space, the audio tracks read again.
    virtual void Reload() = 0;
    // The frame has made this window's document window the active one.
    virtual void Form_Activate() = 0;
    // Removes the selected directory (or file) from the compilation; false with nothing selected.
    virtual bool removeSelected(bool directory) = 0;
    // Opens the editor on the selected directory's (or file's) name; false with nothing selected.
    virtual bool renameSelected(bool directory) = 0;
    // The engine's image took over a disc's last session: the tree opens on it and the list
    // shows it. Only a data compilation has anything to show.
    virtual void sessionImported() {}
    // What a printed list of the compilation shows.
    virtual CompilationListing listing() = 0;

protected:
    CompilationWindow();
};
