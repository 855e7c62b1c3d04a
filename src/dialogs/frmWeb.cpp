#include "frmWeb.h"
#include "base/App.h"
#include "engine/system/EngineVersions.h"
#include "frmAbout.h"
#include "widgets/DefaultInstance.h"

#include <QLabel>

frmWeb::frmWeb(const WindowContext &context)
    : SupportDialog(context, "frmWeb", App::ProductName() + QStringLiteral(" On The Web")) {
    lblLinks = new QLabel(this);
    lblLinks->setTextFormat(Qt::RichText);
    lblLinks->setOpenExternalLinks(true);
    lblLinks->setTextInteractionFlags(Qt::TextBrowserInteraction);
    lblLinks->setWordWrap(true);
    lblLinks->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    setBody(lblLinks, 520, 430);
}

frmWeb::~frmWeb() {
    DefaultInstance<frmWeb>::release(this);
}

void frmWeb::Form_Load() {
    frmAbout::applyTransparency(this);
    lblLinks->setText(linksHtml());
}

QString frmWeb::linksHtml() {
    const auto link = [](const QString &url, const QString &text) {
        return QStringLiteral("<a href=\"%1\">%2</a>").arg(url, text.toHtmlEscaped());
    };
    QString html = QStringLiteral("<p>Tessaly has no web site of its own yet: its help is in the "
                                  "Help menu, and its source comes with the package.</p>") +
                   QStringLiteral("<p><b>The licence</b><br>") +
                   link(QStringLiteral("https://www.gnu.org/licenses/gpl-3.0.html"),
                        QStringLiteral("GNU General Public License, version 3")) +
                   QStringLiteral("</p><p><b>The projects Tessaly is built on</b><br>");
    QStringList seen;
    for (const EngineVersion &engine : engineVersions()) {
        // libburn and libisofs share one home.
        if (seen.contains(engine.site))
            continue;
        seen.append(engine.site);
        html += link(engine.site, engine.name) + QStringLiteral(": ") +
                engine.role.toHtmlEscaped() + QStringLiteral("<br>");
    }
    return html + QStringLiteral("</p>");
}
