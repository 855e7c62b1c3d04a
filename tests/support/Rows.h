#pragma once

#include <QtTest>

#include <initializer_list>
#include <tuple>
#include <utility>

// A data-driven test whose rows are whole structs in one column, "row": the row's fields are
// named where they are used, and a table is one line per case.
template<class Row> void addRows(std::initializer_list<std::pair<const char *, Row>> rows) {
    QTest::addColumn<Row>("row");
    for (const auto &[name, row] : rows)
        QTest::newRow(name) << row;
}

// A table of one column: rows<int>("kind", {{"data", 0}, {"audio", 1}}).
template<class T>
void rows(const char *column, std::initializer_list<std::pair<const char *, T>> list) {
    QTest::addColumn<T>(column);
    for (const auto &[name, value] : list)
        QTest::newRow(name) << value;
}

// A table's columns declared in one line, columns<QString, int>("medium", "blocks"), and the
// running row's values fetched by name in one: auto [medium, blocks] = fetch<QString, int>(...).
template<class... T, class... Name> void columns(Name... names) {
    (QTest::addColumn<T>(names), ...);
}
template<class... T, class... Name> std::tuple<T...> fetch(Name... names) {
    return {*static_cast<T *>(QTest::qData(names, qMetaTypeId<T>()))...};
}
