// SPDX-License-Identifier: GPL-3.0-or-later

// The lists' models keep to the rules of item models, whatever index they are asked about.

#include "source/open_set.h"
#include "ui/models/material_model.h"
#include "ui/models/object_model.h"
#include "ui/registry.h"
#include "ui/rig.h"

#include <QAbstractItemModelTester>

namespace morvane::test {

class ModelsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void materialsKeepTheRules();
    void materialsAnswerForForeignIndexes();
    void objectsKeepTheRules();
    void objectsAnswerForForeignIndexes();
};

namespace {

constexpr auto fatal = QAbstractItemModelTester::FailureReportingMode::Fatal;

OpenSet airport(Rig& rig) {
    QtReporter reporter(rig.log, rig.dialogs, rig.form.get());
    OpenSet set;
    open_source_set({*rig.disk, reporter}, set, rig.copy_example("airport").toStdString());
    return set;
}

std::vector<LibraryObject> three_objects() {
    std::vector<LibraryObject> objects(3);
    for (LibraryObject& object : objects) {
        object.stored_scale = 65536;
    }
    return objects;
}

// An index of another model, and one that was good before the rows went.
void ask_for_strange_indexes(const QAbstractItemModel& asked, const QModelIndex& stale) {
    const ObjectModel other;
    for (const int role : {Qt::DisplayRole, Qt::DecorationRole, Qt::TextAlignmentRole}) {
        QVERIFY(!asked.data({}, role).isValid());
        QVERIFY(!asked.data(other.index(0, 0), role).isValid());
        QVERIFY(!asked.data(stale, role).isValid());
    }
    QVERIFY(!asked.headerData(-1, Qt::Horizontal, Qt::DisplayRole).isValid());
    QVERIFY(!asked.headerData(99, Qt::Horizontal, Qt::DisplayRole).isValid());
}

} // namespace

void ModelsTest::materialsKeepTheRules() {
    Rig rig;
    OpenSet set = airport(rig);
    MaterialModel model;
    const QAbstractItemModelTester tester(&model, fatal);
    model.show_set(set);
    QCOMPARE(model.rowCount(), 13);
    model.show_processed(0, QStringLiteral("Lights"));
    model.show_processed(12, QStringLiteral("Lights"));
    model.show_processed(13, QStringLiteral("Lights")); // no such row
    model.show_processed(-1, QStringLiteral("Lights"));
    set.opened = false;
    model.show_set(set);
    QCOMPARE(model.rowCount(), 0);
}

void ModelsTest::materialsAnswerForForeignIndexes() {
    Rig rig;
    OpenSet set = airport(rig);
    MaterialModel model;
    model.show_set(set);
    const QModelIndex last = model.index(12, 0);
    set.opened = false;
    model.show_set(set);
    ask_for_strange_indexes(model, last);
}

void ModelsTest::objectsKeepTheRules() {
    ObjectModel model;
    const QAbstractItemModelTester tester(&model, fatal);
    ObjectFilter filter;
    filter.setSourceModel(&model);
    const QAbstractItemModelTester filter_tester(&filter, fatal);
    model.add("a.bgl", three_objects());
    model.add("b.bgl", {});
    model.add("c.bgl", three_objects());
    filter.set_text(QStringLiteral("c.bgl"));
    QCOMPARE(model.rowCount(), 6);
    QCOMPARE(filter.rowCount(), 3);
    model.clear();
    QCOMPARE(filter.rowCount(), 0);
}

void ModelsTest::objectsAnswerForForeignIndexes() {
    ObjectModel model;
    model.add("a.bgl", three_objects());
    const QModelIndex last = model.index(2, 0);
    model.clear();
    ask_for_strange_indexes(model, last);
}

namespace {
const Registration<ModelsTest> registration("models");
}

} // namespace morvane::test

#include "models_test.moc"
