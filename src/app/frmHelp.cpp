#include "frmHelp.h"
#include "base/App.h"
#include "diagnostics/ErrorTrap.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
QPointer<frmHelp> &slot() {
    static QPointer<frmHelp> window;
    return window;
}
} // namespace

frmHelp *frmHelp::instance() {
    return slot();
}

void frmHelp::showHelp(const QString &helpFile, Request request, qint32 contextId, QWidget *owner) {
    if (helpFile.isEmpty())
        return;
    // The help is a page of HTML shipped under the help file's own name.
    const QString html = App::resourcePath(
        QStringLiteral("help/") + QFileInfo(helpFile).completeBaseName() + QStringLiteral(".html"));
    if (!slot())
        slot() = new frmHelp(owner);
    frmHelp *window = slot();
    if (window->loadedFile() != html || html.isEmpty())
        window->load(html);
    switch (request) {
    case Contents:
        window->tabNavigation->setCurrentIndex(0);
        window->showAnchor(QString());
        break;
    case Index:
        window->tabNavigation->setCurrentIndex(1);
        window->txtIndex->clear();
        window->txtIndex->setFocus();
        break;
    case Context:
        window->showAnchor(QStringLiteral("context-%1").arg(contextId));
        break;
    }
    window->show();
    window->raise();
    window->activateWindow();
}

namespace {

// F1 seen before any window handles it, so that it also works in a modal dialog, where the
// frame's own shortcuts are blocked. Lives as long as the frame it is made for.
class HelpKeyFilter : public QObject {
public:
    HelpKeyFilter(QWidget *frame, const QString &helpFile)
        : QObject(frame)
        , m_frame(frame)
        , m_helpFile(helpFile) {}

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() != QEvent::KeyPress ||
            static_cast<QKeyEvent *>(event)->key() != Qt::Key_F1 || !watched->isWidgetType())
            return false;
        ErrorTrap::run("HelpKey_Pressed", "frmHelp", [&] {
            QWidget *focus = QApplication::focusWidget();
            // Under a modal dialog the help is its child, or the dialog would block it.
            QWidget *modal = QApplication::activeModalWidget();
            frmHelp::showHelpFor(focus ? focus : QApplication::activeWindow(), m_helpFile,
                                 modal ? modal : m_frame.data());
        });
        return true;
    }

private:
    QPointer<QWidget> m_frame;
    QString m_helpFile;
};

} // namespace

void frmHelp::installHelpKey(QWidget *frame, const QString &helpFile) {
    qApp->installEventFilter(new HelpKeyFilter(frame, helpFile));
}

void frmHelp::showHelpFor(QWidget *focus, const QString &helpFile, QWidget *owner) {
    // F1 while reading the help leaves the page where it is.
    if (slot() && focus && (focus == slot() || slot()->isAncestorOf(focus))) {
        slot()->raise();
        return;
    }
    if (slot() && owner && slot()->parentWidget() != owner)
        slot()->setParent(owner, slot()->windowFlags());
    showHelp(helpFile, Context, 1, owner);
    frmHelp *window = slot();
    // The innermost window with a topic of its own; the help window itself has none.
    for (QWidget *w = focus; w && w != window; w = w->parentWidget()) {
        if (window && window->hasAnchor(w->objectName())) {
            window->showAnchor(w->objectName());
            return;
        }
    }
}

frmHelp::frmHelp(QWidget *owner)
    : QWidget(owner, Qt::Window) {
    setObjectName(QStringLiteral("frmHelp"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(App::ProductName() + QStringLiteral(" Help"));
    resize(900, 620);
    auto *split = new QSplitter(this);
    tabNavigation = new QTabWidget(split);
    tvwContents = new QTreeWidget(tabNavigation);
    tvwContents->setHeaderHidden(true);
    tabNavigation->addTab(tvwContents, QStringLiteral("Contents"));
    auto *indexPage = new QWidget(tabNavigation);
    auto *indexColumn = new QVBoxLayout(indexPage);
    txtIndex = new QLineEdit(indexPage);
    txtIndex->setPlaceholderText(QStringLiteral("Type the keyword to find"));
    lstIndex = new QListWidget(indexPage);
    indexColumn->addWidget(txtIndex);
    indexColumn->addWidget(lstIndex);
    tabNavigation->addTab(indexPage, QStringLiteral("Index"));
    txtTopic = new QTextBrowser(split);
    txtTopic->setOpenExternalLinks(true);
    split->addWidget(tabNavigation);
    split->addWidget(txtTopic);
    split->setStretchFactor(1, 1);
    split->setSizes({250, 650});
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(split);
    connect(tvwContents, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *item) {
        ErrorTrap::run("tvwContents_NodeClick", "frmHelp",
                       [&] { showAnchor(item->data(0, Qt::UserRole).toString()); });
    });
    connect(txtIndex, &QLineEdit::textChanged, this, [this](const QString &text) {
        ErrorTrap::run("txtIndex_Change", "frmHelp", [&] { fillIndex(text); });
    });
    connect(lstIndex, &QListWidget::itemActivated, this, [this](QListWidgetItem *item) {
        ErrorTrap::run("lstIndex_DblClick", "frmHelp",
                       [&] { showAnchor(item->data(Qt::UserRole).toString()); });
    });
    connect(lstIndex, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) {
        ErrorTrap::run("lstIndex_Click", "frmHelp",
                       [&] { showAnchor(item->data(Qt::UserRole).toString()); });
    });
}

bool frmHelp::load(const QString &htmlFile) {
    m_file = htmlFile;
    tvwContents->clear();
    m_index.clear();
    m_anchors.clear();
    QFile f(htmlFile);
    if (htmlFile.isEmpty() || !f.open(QIODevice::ReadOnly)) {
        txtTopic->setPlainText(QStringLiteral("The help file can't be found."));
        fillIndex(QString());
        return false;
    }
    const QString html = QString::fromUtf8(f.readAll());
    // The screenshots stand beside the page.
    txtTopic->setSearchPaths({QFileInfo(htmlFile).absolutePath()});
    txtTopic->setHtml(html);
    m_anchors.clear();
    static const QRegularExpression anchor(QStringLiteral(R"re(<a name="([^"]+)")re"));
    for (auto it = anchor.globalMatch(html); it.hasNext();)
        m_anchors.append(it.next().captured(1));
    // Contents: the headings that carry an anchor, two levels.
    static const QRegularExpression heading(
        QStringLiteral(R"re(<h([23])><a name="([^"]+)"></a>(.*?)</h\1>)re"));
    QTreeWidgetItem *chapter = nullptr;
    for (auto it = heading.globalMatch(html); it.hasNext();) {
        const auto m = it.next();
        QString title = m.captured(3);
        title.remove(QRegularExpression(QStringLiteral("<[^>]*>")));
        QTreeWidgetItem *item = nullptr;
        if (m.captured(1) == QLatin1String("2") || !chapter) {
            item = new QTreeWidgetItem(tvwContents, {title});
            chapter = item;
        } else {
            item = new QTreeWidgetItem(chapter, {title});
        }
        item->setData(0, Qt::UserRole, m.captured(2));
    }
    tvwContents->expandAll();
    // Index: "index: keyword = anchor" lines in a comment of the page.
    static const QRegularExpression entry(QStringLiteral(R"re(index:\s*(.+?)\s*=\s*(\S+))re"));
    for (auto it = entry.globalMatch(html); it.hasNext();) {
        const auto m = it.next();
        m_index.insert(m.captured(1), m.captured(2));
    }
    fillIndex(QString());
    return true;
}

void frmHelp::fillIndex(const QString &filter) {
    lstIndex->clear();
    for (auto it = m_index.cbegin(); it != m_index.cend(); ++it) {
        if (!filter.isEmpty() && !it.key().startsWith(filter, Qt::CaseInsensitive))
            continue;
        auto *item = new QListWidgetItem(it.key(), lstIndex);
        item->setData(Qt::UserRole, it.value());
    }
}

void frmHelp::showAnchor(const QString &anchor) {
    m_anchor = anchor;
    if (anchor.isEmpty()) {
        txtTopic->moveCursor(QTextCursor::Start);
        txtTopic->ensureCursorVisible();
    } else {
        txtTopic->scrollToAnchor(anchor);
    }
}
