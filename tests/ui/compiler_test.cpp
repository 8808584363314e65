// SPDX-License-Identifier: GPL-3.0-or-later

// The library compiler.

#include "ui/cli.h"
#include "ui/registry.h"
#include "ui/rig.h"

#include <QListWidget>

namespace morvane::test {

class CompilerTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void defaults();
    void choosingADesignFillsTheFields();
    void designWithoutScaleIsTold();
    void addRefusals();
    void addedObjectsAreListed();
    void linesCarryTheNumberOfTheirEntry();
    void clickingALineShowsItsEntry();
    void modifyNeedsALine();
    void modifyRefillsTheEntry();
    void removeTakesTheLineOut();
    void createRefusals();
    void libraryEqualsTheCommandLine();
};

namespace {

QWidget& open_compiler(Rig& rig) {
    click(*rig.form, "Command13");
    return rig.window("frmLibComp");
}

/// A design in the rig's folder; gives its base path.
QString write_design(const Rig& rig, const std::string& name, const std::string& scale) {
    rig.folder.write(name + ".asm",
                     "    SCALE_AGL OBJ_END, 5, 40, " + scale + ", 0100h, 0, 0200h, 0, 0, 0\r\n");
    rig.folder.write(name + "_0.asm", "    BGL_RETURN\r\n");
    return QString::fromStdString(rig.folder.file(name));
}

void choose_design(Rig& rig, QWidget& compiler, const QString& base) {
    rig.dialogs.files = {base + QStringLiteral(".asm")};
    click(compiler, "Command1");
}

void add(Rig& rig, QWidget& compiler, const QString& base, const QString& guid) {
    choose_design(rig, compiler, base);
    type(compiler, "libGUID", guid);
    click(compiler, "Command2");
}

QListWidget& list(const QWidget& compiler) {
    return control<QListWidget>(compiler, "libFileList");
}

void click_line(QWidget& compiler, int line) {
    QListWidget& lines = list(compiler);
    QTest::mouseClick(lines.viewport(), Qt::LeftButton, {},
                      lines.visualItemRect(lines.item(line)).center());
}

} // namespace

void CompilerTest::defaults() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    QCOMPARE(compiler.windowTitle(), QStringLiteral("Library Compiler"));
    QCOMPARE(text_of(compiler, "libGUID"),
             QStringLiteral("0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 000000001"));
    QCOMPARE(text_of(compiler, "libObjName"), QStringLiteral("NewObject"));
}

void CompilerTest::choosingADesignFillsTheFields() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    const QString base = write_design(rig, "tower", "131072");
    choose_design(rig, compiler, base);
    QVERIFY(rig.dialogs.filters[0].startsWith(QStringLiteral("*.asm (*.asm)")));
    QCOMPARE(text_of(compiler, "libFileAdd"), base);
    QCOMPARE(text_of(compiler, "libScale"), QStringLiteral("0.5"));
    QCOMPARE(text_of(compiler, "libObjSize"), QStringLiteral("40"));
    QCOMPARE(text_of(compiler, "libObjName"), QStringLiteral("tower"));
}

void CompilerTest::designWithoutScaleIsTold() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    rig.folder.write("bare.asm", "nothing\r\n");
    rig.folder.write("bare_0.asm", "nothing\r\n");
    const QString base = QString::fromStdString(rig.folder.file("bare"));
    choose_design(rig, compiler, base);
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::Exclamation);
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("The file %1.asm has not SCALE command.").arg(base));
}

void CompilerTest::addRefusals() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    click(compiler, "Command2");
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("Invalid Filename."));
    for (const char* wrong : {"1, 2, 3", "1, 2, 3, 4, 5"}) {
        add(rig, compiler, write_design(rig, "tower", "65536"), QString::fromLatin1(wrong));
        QCOMPARE(rig.dialogs.take_box(), QStringLiteral("Invalid GUID."));
    }
    QCOMPARE(list(compiler).count(), 0);
}

void CompilerTest::addedObjectsAreListed() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    const QString base = write_design(rig, "tower", "65536");
    add(rig, compiler, base, QStringLiteral("1,2,3,4"));
    QVERIFY2(rig.dialogs.boxes.empty(), qPrintable(rig.dialogs.take_box()));
    QCOMPARE(list(compiler).count(), 1);
    QCOMPARE(list(compiler).item(0)->text(), base);
}

// Numbers are given in the order of adding, for good: that of a removed entry is not given again.
void CompilerTest::linesCarryTheNumberOfTheirEntry() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    const QString base = write_design(rig, "tower", "65536");
    for (const char* guid : {"1,2,3,4", "5,6,7,8", "9,10,11,12"}) {
        add(rig, compiler, base, QString::fromLatin1(guid));
    }
    click_line(compiler, 1);
    click(compiler, "Command3");
    add(rig, compiler, base, QStringLiteral("13,14,15,16"));
    QList<int> numbers;
    for (int line = 0; line < list(compiler).count(); ++line) {
        numbers.append(list(compiler).item(line)->data(Qt::UserRole).toInt());
    }
    const int first = numbers.value(0);
    QCOMPARE(numbers, QList<int>({first, first + 2, first + 3}));
}

void CompilerTest::clickingALineShowsItsEntry() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    add(rig, compiler, write_design(rig, "tower", "65536"), QStringLiteral("1,2,3,4"));
    add(rig, compiler, write_design(rig, "hangar", "131072"), QStringLiteral("5,6,7,8"));
    click_line(compiler, 0);
    QCOMPARE(text_of(compiler, "libObjName"), QStringLiteral("tower"));
    QCOMPARE(text_of(compiler, "libGUID"),
             QStringLiteral("000000001, 000000002, 000000003, 000000004"));
    click_line(compiler, 1);
    QCOMPARE(text_of(compiler, "libObjName"), QStringLiteral("hangar"));
    QCOMPARE(text_of(compiler, "libScale"), QStringLiteral("0.5"));
}

void CompilerTest::modifyNeedsALine() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    click(compiler, "Command4");
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("Select an object first."));
}

void CompilerTest::modifyRefillsTheEntry() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    add(rig, compiler, write_design(rig, "tower", "65536"), QStringLiteral("1,2,3,4"));
    add(rig, compiler, write_design(rig, "hangar", "65536"), QStringLiteral("5,6,7,8"));
    click_line(compiler, 0);
    type(compiler, "libObjName", QStringLiteral("Big tower"));
    click(compiler, "Command4");
    click_line(compiler, 1);
    click_line(compiler, 0);
    QCOMPARE(text_of(compiler, "libObjName"), QStringLiteral("Big tower"));
}

void CompilerTest::removeTakesTheLineOut() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    add(rig, compiler, write_design(rig, "tower", "65536"), QStringLiteral("1,2,3,4"));
    add(rig, compiler, write_design(rig, "hangar", "65536"), QStringLiteral("5,6,7,8"));
    click_line(compiler, 0);
    click(compiler, "Command3");
    QCOMPARE(list(compiler).count(), 1);
    click_line(compiler, 0);
    QCOMPARE(text_of(compiler, "libObjName"), QStringLiteral("hangar"));
}

void CompilerTest::createRefusals() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    click(compiler, "Command6");
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("Enter an output file."));
    const QString base = write_design(rig, "tower", "65536");
    add(rig, compiler, base, QStringLiteral("1,2,3,4"));
    add(rig, compiler, base, QStringLiteral("1,2,3,4"));
    type(compiler, "libOutFile", QString::fromStdString(rig.folder.file("lib.asm")));
    click(compiler, "Command6");
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("Duplicated ID found : 000000001h, 000000002h, 000000003h, "
                            "000000004h"));
    QVERIFY(!rig.folder.has("lib.asm"));
}

void CompilerTest::libraryEqualsTheCommandLine() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    const QString tower = write_design(rig, "tower", "65536");
    const QString hangar = write_design(rig, "hangar", "131072");
    add(rig, compiler, tower, QStringLiteral("1,2,3,4"));
    add(rig, compiler, hangar, QStringLiteral("5,6,7,8"));
    const QString out = QString::fromStdString(rig.folder.file("lib.asm"));
    rig.dialogs.files = {out};
    click(compiler, "Command5");
    click(compiler, "Command6");
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("The output file was created successfully. Compile with 'BGLC /BGL "
                            "%1'.")
                 .arg(out));
    const std::string made = rig.folder.read("lib.asm");
    const auto object = [](const QString& base, const char* guid) {
        return "[[object]]\ndesign = '" + base.toStdString() + "'\nguid = \"" + guid + "\"\n";
    };
    const std::string file =
        rig.folder.write("list.toml", object(tower, "1,2,3,4") + object(hangar, "5,6,7,8"));
    QCOMPARE(run_cli(QString::fromStdString(rig.settings.path()),
                     {QStringLiteral("library"), QStringLiteral("create"),
                      QString::fromStdString(file), QStringLiteral("--output"), out}),
             0);
    QVERIFY(rig.folder.read("lib.asm") == made);
}

namespace {
const Registration<CompilerTest> registration("compiler");
}

} // namespace morvane::test

#include "compiler_test.moc"
