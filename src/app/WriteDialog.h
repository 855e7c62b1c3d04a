#pragma once

class QString;

// What the ISO file box chose, for the write dialog to show while it follows that write.
struct IsoWriteChoices {
    bool mode2XA = false;
    bool burnProof = false;
    bool finalize = false;
    bool logging = false;
    bool testWrite = false;
};

// What the frame's write handlers ask of the open write dialog at the end of a job; the dialog
// follows the progress events and the disc itself. It registers itself while it is open.
// UI thread.
class WriteDialog {
public:
    virtual ~WriteDialog();

    // The open dialog, or null.
    static WriteDialog *open();

    virtual void EnableFormWrite(bool blnEnable) = 0;
    virtual void RefreshForm() = 0;
    // Closes the dialog as its own close does; refused during a write.
    virtual void Unload() = 0;
    // The job has ended: the clock stops, the bars empty, the line and the animation tell how.
    virtual void writeEnded(const QString &action, const QString &animation) = 0;
    // After a test write the same dialog offers the real write, once the disc is back.
    virtual void offerRealWrite() = 0;
    // "Close Windows When Finished" is ticked.
    virtual bool closeWindowsWhenFinished() const = 0;
    // An ISO file is about to be written from elsewhere: the dialog shows those choices, runs
    // its clock and offers no write of its own.
    virtual void followIsoWrite(const IsoWriteChoices &choices) = 0;

protected:
    // The dialog says when it opens and when it has closed.
    static void setOpen(WriteDialog *dialog);
};
