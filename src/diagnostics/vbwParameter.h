#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <type_traits>

// One argument of a traced handler as the trace and the dump show it: its name, its value as
// text (strings already formatted) and its type name.
struct vbwParameter {
    QString name;
    QString value;
    QString type;
    bool isString = false;
    bool isObject = false;

    template<typename T> static vbwParameter of(const QString &name, const T &value) {
        using V = std::decay_t<T>;
        if constexpr (std::is_same_v<V, bool>)
            return {name, value ? QStringLiteral("True") : QStringLiteral("False"),
                    QStringLiteral("Boolean")};
        else if constexpr (std::is_integral_v<V> || std::is_enum_v<V>)
            return {name, QString::number(qint64(value)),
                    sizeof(V) <= 2 ? QStringLiteral("Integer") : QStringLiteral("Long")};
        else if constexpr (std::is_floating_point_v<V>)
            return {name, QString::number(double(value)), QStringLiteral("Double")};
        else if constexpr (std::is_convertible_v<V, QString>)
            return {name, QString(value), QStringLiteral("String"), true};
        else if constexpr (std::is_pointer_v<V> &&
                           std::is_base_of_v<QObject, std::remove_pointer_t<V>>)
            return {name, value ? value->objectName() : QStringLiteral("Nothing"),
                    value ? QString::fromLatin1(value->metaObject()->className())
                          : QStringLiteral("Object"),
                    false, true};
        else
            return {name, QStringLiteral("{Object}"), QStringLiteral("Object")};
    }
};

// The parameters of a handler from its values, named after the signal's parameters.
template<typename... Args>
QList<vbwParameter> vbwParametersOf(const QList<QByteArray> &names, const Args &...args) {
    QList<vbwParameter> out;
    [[maybe_unused]] int i = 0;
    [[maybe_unused]] auto add = [&](const auto &value) {
        const QString name = i < names.size() ? QString::fromLatin1(names.at(i))
                                              : QStringLiteral("Arg%1").arg(i + 1);
        out.append(vbwParameter::of(name, value));
        ++i;
    };
    (add(args), ...);
    return out;
}
