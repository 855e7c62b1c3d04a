#include "frmCoder.h"
#include "base/App.h"
#include "engine/system/EngineVersions.h"
#include "widgets/DefaultInstance.h"

#include <QTextBrowser>

frmCoder::frmCoder(const WindowContext &context)
    : SupportDialog(context, "frmCoder", QStringLiteral("Credits")) {
    txtCredits = new QTextBrowser(this);
    txtCredits->setOpenExternalLinks(true);
    setBody(txtCredits, 560, 460);
}

frmCoder::~frmCoder() {
    DefaultInstance<frmCoder>::release(this);
}

void frmCoder::Form_Load() {
    QString html = QStringLiteral("<h3>%1 %2</h3><p>Written by the Tessaly developers.</p>"
                                  "<p>Tessaly would be nothing without the work of these "
                                  "projects, whose libraries it uses as they are:</p><table "
                                  "cellpadding=\"3\"><tr><th align=\"left\">Library</th>"
                                  "<th align=\"left\">Version</th><th align=\"left\">Licence</th>"
                                  "<th align=\"left\">Used for</th></tr>")
                       .arg(App::ProductName(), App::versionText());
    for (const EngineVersion &engine : engineVersions())
        html += QStringLiteral("<tr><td><a href=\"%1\">%2</a></td><td>%3</td><td>%4</td>"
                               "<td>%5</td></tr>")
                    .arg(engine.site, engine.name.toHtmlEscaped(), engine.version.toHtmlEscaped(),
                         engine.licence, engine.role);
    txtCredits->setHtml(html + QStringLiteral("</table>"));
}
