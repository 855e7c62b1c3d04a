#pragma once

#include <QString>
#include <functional>

class QPrinter;
class QWidget;
class VSPrinter;

// The printer and the paper the user chose, kept for the run, and the one door to the printer
// and page boxes, so that tests answer them instead of a real modal box. UI thread.
class PrinterDialogService {
public:
    enum Kind { PrinterBox = 0, PageBox = 1 };
    // Changes the printer as the user would and says whether the box was accepted.
    using Answerer = std::function<bool(Kind kind, QPrinter &printer)>;

    // The run's printer; its page layout is the one documents are composed on.
    static QPrinter &printer();
    // Shows the printer box (0) or the page box (1) on the run's printer; true when accepted.
    static bool PrinterDialog(Kind kind, QWidget *parent);
    static void setAnswerer(Answerer answerer);

    // Whether the system has a printer to send to.
    static bool hasPrinter();
    // Sends every page of a composed document to the run's printer, or, with no printer
    // installed, to a PDF file the user names (saying so first). False when nothing was
    // printed: cancelled, or the printer refused (told to the user).
    static bool PrintDoc(const VSPrinter &document, QWidget *parent);
    // Writes the pages into a PDF file; false when it can't be written.
    static bool printToPdf(const VSPrinter &document, const QString &path);

private:
    static bool printOn(const VSPrinter &document, QPrinter &printer);
};
