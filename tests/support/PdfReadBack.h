#pragma once

#include <QString>

// Printed lists read back out of PDF files by poppler's tools (run through ReadBack::run).
namespace PdfReadBack {

// `pdftotext -layout` of one page (from 1), or of all pages for 0, with the blank lines left
// out and the runs of spaces between columns squeezed to one.
QString text(const QString &pdf, int page = 0);
// One field of `pdfinfo` ("Pages", "Title"), trimmed.
QString info(const QString &pdf, const QString &field);
// The left edge in points of the first word `word` on a page, as `pdftotext -bbox` places it;
// -1 when the word is not there.
double wordLeft(const QString &pdf, const QString &word, int page = 1);

} // namespace PdfReadBack
