#include "FormRegistry.h"

#include <QApplication>
#include <QHash>
#include <QWidget>

namespace {
QHash<QString, FormRegistry::Opener> &openers() {
    static QHash<QString, FormRegistry::Opener> table;
    return table;
}
} // namespace

void FormRegistry::add(const QString &name, Opener opener) {
    openers().insert(name, std::move(opener));
}

void FormRegistry::remove(const QString &name) {
    openers().remove(name);
}

bool FormRegistry::contains(const QString &name) {
    return openers().contains(name);
}

bool FormRegistry::open(const QString &name, QWidget *owner) {
    const auto it = openers().constFind(name);
    if (it == openers().constEnd())
        return false;
    // A copy: the opener may add or remove others while it runs.
    const Opener opener = *it;
    opener(owner);
    return true;
}

QWidget *FormRegistry::find(const QString &name) {
    for (QWidget *top : QApplication::topLevelWidgets()) {
        if (top->objectName() == name)
            return top;
        if (auto *child = top->findChild<QWidget *>(name))
            return child;
    }
    return nullptr;
}
