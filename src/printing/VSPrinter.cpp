#include "VSPrinter.h"

#include <QFile>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPageSize>
#include <QPaintDevice>
#include <QPainter>
#include <QPen>

namespace {

// Wine's Tahoma stands where no other is installed; it is not in the font folders.
void addWineTahoma() {
    static bool tried = false;
    if (tried)
        return;
    tried = true;
    for (const char *file :
         {"/usr/share/wine/fonts/tahoma.ttf", "/usr/share/wine/fonts/tahomabd.ttf"})
        if (QFile::exists(QString::fromLatin1(file)))
            QFontDatabase::addApplicationFont(QString::fromLatin1(file));
}

} // namespace

VSPrinter::VSPrinter(QObject *parent)
    : QObject(parent)
    , m_layout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(25.4, 25.4, 25.4, 25.4),
               QPageLayout::Millimeter) {}

QString VSPrinter::resolvedFamily(const QString &family) {
    addWineTahoma();
    const QStringList known = QFontDatabase::families();
    if (known.contains(family, Qt::CaseInsensitive))
        return family;
    for (const char *alike : {"Liberation Sans", "DejaVu Sans"})
        if (known.contains(QString::fromLatin1(alike)))
            return QString::fromLatin1(alike);
    return family;
}

void VSPrinter::StartDoc() {
    m_pages = {Page()};
    m_composing = true;
}

void VSPrinter::NewPage() {
    if (!m_composing)
        return;
    m_pages.append(Page());
    emit EndPage();
}

void VSPrinter::EndDoc() {
    if (!m_composing)
        return;
    m_composing = false;
    emit EndDocument();
}

void VSPrinter::setText(const QString &text) {
    if (!m_composing)
        return;
    Item item;
    item.at = {CurrentX, CurrentY};
    item.text = text;
    item.family = FontName;
    item.size = FontSize;
    item.bold = FontBold;
    item.italic = FontEmphasis;
    item.width = TextWidth > 0 ? TextWidth
                               : PageWidth() / TwipsPerMm - MarginRight() / TwipsPerMm - CurrentX;
    m_pages.last().append(item);
}

void VSPrinter::DrawLine(double x1, double y1, double x2, double y2) {
    if (m_composing)
        m_pages.last().append(
            {.kind = Item::Kind::Line, .at = {x1, y1}, .to = {x2, y2}, .width = PenWidth});
}

void VSPrinter::DrawPicture(const QImage &picture, double x, double y, double width,
                            double height) {
    if (m_composing && !picture.isNull())
        m_pages.last().append(
            {.kind = Item::Kind::Picture, .at = {x, y}, .to = {width, height}, .picture = picture});
}

QList<VSPrinter::Item> VSPrinter::frameItems(int page) const {
    // The head sits in the middle of the top margin, the foot in the middle of the bottom one.
    const QMarginsF margins = m_layout.margins(QPageLayout::Millimeter);
    const QRectF paper = m_layout.fullRect(QPageLayout::Millimeter);
    const double room = paper.width() - margins.left() - margins.right();
    QList<Item> items;
    auto place = [&](const QString &parts, double y, double size, bool bold) {
        const QStringList part = parts.split(u'|');
        for (int i = 0; i < part.size() && i < 3; ++i) {
            if (part.at(i).isEmpty())
                continue;
            Item item;
            item.text = QString(part.at(i)).replace(QStringLiteral("%d"), QString::number(page));
            item.family = FontName;
            item.size = size;
            item.bold = bold;
            item.at = {margins.left(), y};
            item.to = {double(i), 0}; // 0 left, 1 centred, 2 right
            item.width = room;
            items.append(item);
        }
    };
    place(Header, std::max(0.0, margins.top() / 2 - 2.5), 10, true);
    place(Footer, paper.height() - std::max(2.0, margins.bottom() / 2 + 2), 8, false);
    return items;
}

void VSPrinter::drawText(QPainter &painter, QPointF origin, double scale, const Item &item) const {
    QFont font(resolvedFamily(item.family));
    // Point sizes are resolved against the device; the scale may not be the device's own.
    const double deviceDpi = painter.device() ? painter.device()->logicalDpiY() : 96.0;
    font.setPointSizeF(item.size * scale * 25.4 / deviceDpi);
    font.setBold(item.bold);
    font.setItalic(item.italic);
    painter.setFont(font);
    const QFontMetricsF metrics(font, painter.device());
    const double room = item.width * scale;
    const QString shown = metrics.elidedText(item.text, Qt::ElideRight, room);
    double x = origin.x() + item.at.x() * scale;
    const double align = item.to.x();
    if (align == 1)
        x += (room - metrics.horizontalAdvance(shown)) / 2;
    else if (align == 2)
        x += room - metrics.horizontalAdvance(shown);
    painter.drawText(QPointF(x, origin.y() + item.at.y() * scale + metrics.ascent()), shown);
}

void VSPrinter::renderPage(int page, QPainter &painter, QPointF origin, double pixelsPerMm,
                           bool showMargins) const {
    if (page < 1 || page > m_pages.size())
        return;
    painter.save();
    painter.setPen(Qt::black);
    for (const Item &item : m_pages.at(page - 1)) {
        switch (item.kind) {
        case Item::Kind::Text:
            drawText(painter, origin, pixelsPerMm, item);
            break;
        case Item::Kind::Line:
            painter.setPen(QPen(Qt::black, std::max(item.width * pixelsPerMm, 1.0)));
            painter.drawLine(origin + item.at * pixelsPerMm, origin + item.to * pixelsPerMm);
            painter.setPen(Qt::black);
            break;
        case Item::Kind::Picture:
            painter.drawImage(QRectF(origin + item.at * pixelsPerMm,
                                     QSizeF(item.to.x(), item.to.y()) * pixelsPerMm),
                              item.picture);
            break;
        }
    }
    for (const Item &item : frameItems(page))
        drawText(painter, origin, pixelsPerMm, item);
    if (showMargins) {
        const QRectF inner = m_layout.paintRect(QPageLayout::Millimeter);
        painter.setPen(QPen(Qt::gray, 1, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(
            QRectF(origin + inner.topLeft() * pixelsPerMm, inner.size() * pixelsPerMm));
    }
    painter.restore();
}
