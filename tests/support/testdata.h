#pragma once

#include <QTest>

/// The columns of a test's data: their types in the order of their names.
template <typename... Types, typename... Names>
void addColumns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

/// One row of a test's data; as a call, since literals joined by << stand one to a line.
template <typename... Values>
void addRow(const char *name, const Values &...values)
{
    (QTest::newRow(name) << ... << values);
}
