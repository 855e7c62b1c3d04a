#include "PdfReadBack.h"
#include "ReadBack.h"

#include <QRegularExpression>
#include <QStringList>

namespace PdfReadBack {

QString text(const QString &pdf, int page) {
    QStringList args{QStringLiteral("-layout")};
    if (page > 0)
        args << QStringLiteral("-f") << QString::number(page) << QStringLiteral("-l")
             << QString::number(page);
    QStringList lines;
    for (const QString &line :
         QString::fromUtf8(ReadBack::run(QStringLiteral("pdftotext"), args << pdf << "-"))
             .split(u'\n'))
        if (!line.simplified().isEmpty())
            lines.append(line.simplified());
    return lines.join(u'\n');
}

QString info(const QString &pdf, const QString &field) {
    const QString all = QString::fromUtf8(ReadBack::run(QStringLiteral("pdfinfo"), {pdf}));
    const QRegularExpression line(QStringLiteral("^%1:\\s*(.*)$").arg(field),
                                  QRegularExpression::MultilineOption);
    return line.match(all).captured(1).trimmed();
}

double wordLeft(const QString &pdf, const QString &word, int page) {
    const QString html = QString::fromUtf8(
        ReadBack::run(QStringLiteral("pdftotext"),
                      {QStringLiteral("-bbox"), QStringLiteral("-f"), QString::number(page),
                       QStringLiteral("-l"), QString::number(page), pdf, "-"}));
    const QRegularExpression at(QStringLiteral("<word xMin=\"([0-9.]+)\"[^>]*>%1</word>")
                                    .arg(QRegularExpression::escape(word)));
    const QRegularExpressionMatch found = at.match(html);
    return found.hasMatch() ? found.captured(1).toDouble() : -1;
}

} // namespace PdfReadBack
