#pragma once

#include <QImage>
#include <QList>
#include <QObject>
#include <QPageLayout>
#include <QPointF>
#include <QString>

class QPainter;

// The document of a printed list, composed once into pages that the preview and the printer
// both draw, so they can't differ. Positions are millimetres from the paper's corner; the page
// lengths it answers are twips (56.7 a millimetre). The page head and foot are drawn when a page
// is, so "%d" in the foot is always the page's own number. UI thread.
class VSPrinter : public QObject {
    Q_OBJECT
public:
    static constexpr double TwipsPerMm = 56.7;

    explicit VSPrinter(QObject *parent = nullptr);

    // The paper and its margins; read when the next document is composed.
    QPageLayout pageLayout() const { return m_layout; }
    void setPageLayout(const QPageLayout &layout) { m_layout = layout; }
    double MarginLeft() const { return marginsTwips().left(); }
    double MarginTop() const { return marginsTwips().top(); }
    double MarginRight() const { return marginsTwips().right(); }
    double PageWidth() const { return paperTwips().width(); }
    double PageHeight() const { return paperTwips().height(); }

    QString DocName;
    // Up to three texts with a bar between them: flush left, centred, flush right.
    QString Header;
    QString Footer;

    QString FontName = QStringLiteral("Tahoma");
    double FontSize = 8;
    bool FontBold = false;
    bool FontEmphasis = false;
    double CurrentX = 0; // millimetres
    double CurrentY = 0;
    double PenWidth = 0.1;
    // How far from CurrentX a text may reach before it is cut short with an ellipsis; 0 for the
    // right margin.
    double TextWidth = 0;

    // Prints the text at the current position in the current font.
    void setText(const QString &text);
    void DrawLine(double x1, double y1, double x2, double y2);
    void DrawPicture(const QImage &picture, double x, double y, double width, double height);

    void StartDoc();
    void NewPage();
    void EndDoc();
    bool composing() const { return m_composing; }
    int PageCount() const { return int(m_pages.size()); }

    // Draws page `page` (from 1) with its top left corner at `origin` (device pixels), at
    // `pixelsPerMm`; the margins are outlined when `showMargins`.
    void renderPage(int page, QPainter &painter, QPointF origin, double pixelsPerMm,
                    bool showMargins = false) const;

    // The printing face: Tahoma where it is installed, else a sans face of the same widths.
    static QString resolvedFamily(const QString &family);

signals:
    void EndPage();
    void EndDocument();

private:
    struct Item {
        enum class Kind { Text, Line, Picture } kind = Kind::Text;
        QPointF at;
        QPointF to; // a line's end, a picture's size
        QString text{};
        QString family{};
        double size = 8;
        bool bold = false;
        bool italic = false;
        double width = 0; // the text's room, or the line's pen
        QImage picture{};
    };
    using Page = QList<Item>;

    QMarginsF marginsTwips() const {
        return m_layout.margins(QPageLayout::Millimeter) * TwipsPerMm;
    }
    QSizeF paperTwips() const {
        return m_layout.fullRect(QPageLayout::Millimeter).size() * TwipsPerMm;
    }
    void drawText(QPainter &painter, QPointF origin, double scale, const Item &item) const;
    QList<Item> frameItems(int page) const;

    QPageLayout m_layout;
    QList<Page> m_pages;
    bool m_composing = false;
};
