#pragma once

#include <QtTest>

#include <initializer_list>
#include <utility>

// A data-driven test whose rows are whole structs in one column, "row": the row's fields are
// named where they are used, and a table is one line per case.
template<class Row> void addRows(std::initializer_list<std::pair<const char *, Row>> rows) {
    QTest::addColumn<Row>("row");
    for (const auto &[name, row] : rows)
        QTest::newRow(name) << row;
}
