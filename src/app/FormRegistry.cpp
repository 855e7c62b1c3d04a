#include "FormRegistry.h"

#include <QHash>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace {
struct Entry {
    FormRegistry::Opener opener;
    std::function<QWidget *()> find;
};

QHash<QString, Entry> &entries() {
    static QHash<QString, Entry> table;
    return table;
}

WindowContext &sharedContext() {
    static WindowContext context;
    return context;
}
} // namespace

FrameServices::~FrameServices() = default;

void FormRegistry::add(const QString &name, Opener opener) {
    addWithFinder(name, std::move(opener), {});
}

void FormRegistry::add(const QString &name, std::function<void(QWidget *owner)> opener) {
    addWithFinder(name,
                  [opener = std::move(opener)](const WindowContext &context) {
                      opener(context.frame ? context.frame->frameWidget() : nullptr);
                  },
                  {});
}

void FormRegistry::addWithFinder(const QString &name, Opener opener,
                                 std::function<QWidget *()> find) {
    entries().insert(name, {std::move(opener), std::move(find)});
}

void FormRegistry::remove(const QString &name) {
    entries().remove(name);
}

bool FormRegistry::contains(const QString &name) {
    return entries().contains(name);
}

bool FormRegistry::open(const QString &name) {
    const auto it = entries().constFind(name);
    if (it == entries().constEnd())
        return false;
    // A copy: the opener may add or remove others while it runs.
    const Opener opener = it->opener;
    opener(context());
    return true;
}

QWidget *FormRegistry::find(const QString &name) {
    const auto it = entries().constFind(name);
    return it != entries().constEnd() && it->find ? it->find() : nullptr;
}

void FormRegistry::setContext(const WindowContext &context) {
    sharedContext() = context;
}

const WindowContext &FormRegistry::context() {
    return sharedContext();
}

void FormRegistry::bringToFront(QWidget *window) {
    if (!window)
        return;
    window->show();
    if (auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget())) {
        sub->show();
        if (sub->isMinimized())
            sub->showNormal();
        if (QMdiArea *area = sub->mdiArea())
            area->setActiveSubWindow(sub);
        return;
    }
    window->raise();
    window->activateWindow();
}
