// SPDX-License-Identifier: GPL-3.0-or-later

// The picture in the middle of the main window.

#include "ui/picture_rig.h"
#include "ui/registry.h"
#include "ui/scene_view/object_drag.h"
#include "ui/scene_view/scene_details.h"

#include <QCheckBox>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTextBlock>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <memory>

namespace morvane::test {

class PictureTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void isOpenByDefaultAndItsStateIsKept();
    void showsTheOpenSet();
    void keysAndButtonsChooseTheView();
    void leftDragTurns();
    void middleDragAndShiftPan();
    void wheelZoomsAtThePointer();
    void doubleClickAndHomeShowEverything();
    void arrowKeysTurn();
    void clickOnATriangleSelectsItsMaterial();
    void clickOnAnUnmarkedTriangleLightsItsMaterial();
    void clickedTriangleIsShownInTheSource();
    void selectionLightsTheMaterialAndDimsTheRest();
    void hoveredRowIsOutlined();
    void ghostFollowsKindAndParameters();
    void ghostIsWhatTheDialogShowsUntilItIsCancelled();
    void ghostIgnoresAColorThatIsHalfTyped();
    void ghostGivesWayToWhatIsMade();
    void refusedTriangleIsRed();
    void boxesSayWhatIsDrawn();
    void boxesAreKept();
    void planSaysThePlaceUnderThePointer();
    void wordsSayWhatIsNotShown();
    void codeThatIsNeverReachedIsReported();
    void textureFolderIsSearchedToo();
    void followsTheTheme();
    void wideWindowCanBecomeNarrowAgain();
    void droppedObjectBecomesLibraryNew_data();
    void droppedObjectBecomesLibraryNew();
    void otherThingsCannotBeDropped();
    void largeSetsStayFluent();
};

namespace {

const QString identifier = QStringLiteral("0AAAAAAAAh,0BBBBBBBBh,000000003h,000000004h");

void open_airport(Rig& rig) {
    rig.form->resize(1180, 760);
    rig.open(rig.copy_example("airport"));
    settle();
    scene_view(rig).picture(); // drawn, and all of it in view
}

QString words(const Rig& rig) {
    return control<QLabel>(*rig.form, "sceneWords").text();
}

QString status(const Rig& rig) {
    return control<QLabel>(*rig.form, "statusText").text();
}

void click_at(SceneView& view, const QPoint& place) {
    QTest::mouseClick(&view, Qt::LeftButton, {}, place);
}

void drag(SceneView& view, Qt::MouseButton button, Qt::KeyboardModifiers keys, const QPoint& from,
          const QPoint& to) {
    QTest::mousePress(&view, button, keys, from);
    for (const QPoint& place : {from + (to - from) / 2, to}) {
        QMouseEvent move(QEvent::MouseMove, place, view.mapToGlobal(place), Qt::NoButton, button,
                         keys);
        QApplication::sendEvent(&view, &move);
    }
    QTest::mouseRelease(&view, button, keys, to);
}

void turn_wheel(SceneView& view, const QPoint& place, int steps) {
    QWheelEvent wheel(place, view.mapToGlobal(place), {}, QPoint(0, 120 * steps), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view, &wheel);
}

void move_pointer(QWidget& widget, const QPoint& place) {
    QMouseEvent move(QEvent::MouseMove, place, widget.mapToGlobal(place), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &move);
}

QPoint middle_of(const QWidget& widget) {
    return widget.rect().center();
}

int selected_material(const Rig& rig) {
    const auto rows = rig.form->selected_rows();
    return rows.size() == 1
               ? static_cast<int>(rig.form->document().set().translation(rows.front()).number)
               : -1;
}

std::size_t row_of(const Rig& rig, int material) {
    return scene::row_of_material(rig.form->document().set(), material);
}

// Comes so near to a material that its triangles, of a fifth of a metre, are seen. Nothing is
// selected afterwards.
void come_near(const Rig& rig, int material) {
    rig.form->select_row(row_of(rig, material));
    scene_view(rig).fit_selected();
    control<QTreeView>(*rig.form, "lstMat2proc").clearSelection();
}

raster::Colour pixel(SceneView& view, const QPoint& place) {
    const raster::Picture& picture = view.picture();
    return picture.pixels[picture.at(place.x(), place.y())];
}

int distance(raster::Colour a, raster::Colour b) {
    int sum = 0;
    for (const int shift : {0, 8, 16}) {
        sum += std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF));
    }
    return sum;
}

// Lines of a model file, changed.
void change_model(const QString& base, const std::string& from, const std::string& to) {
    const std::string path = base.toStdString() + "_0.asm";
    std::string text = read_file(path);
    const std::size_t at = text.find(from);
    QVERIFY(at != std::string::npos);
    write_file(path, text.replace(at, from.size(), to));
}

} // namespace

void PictureTest::isOpenByDefaultAndItsStateIsKept() {
    Rig rig;
    QVERIFY(scene_view(rig).isVisible());
    trigger(*rig.form, "actionPicture");
    QVERIFY(!scene_view(rig).isVisible());
    rig.restart();
    QVERIFY(!scene_view(rig).isVisible());
    trigger(*rig.form, "actionPicture");
    open_airport(rig);
    QVERIFY(!scene_view(rig).scene().triangles.empty());
    rig.restart();
    QVERIFY(scene_view(rig).isVisible());
    trigger(*rig.form, "actionPicture");
    trigger(*rig.form, "actionResetLayout");
    QVERIFY(scene_view(rig).isVisible());
}

void PictureTest::showsTheOpenSet() {
    Rig rig;
    rig.form->resize(1180, 760);
    QCOMPARE(words(rig), QStringLiteral("No source set is open."));
    open_airport(rig);
    SceneView& view = scene_view(rig);
    QVERIFY(count_ids(view, [](std::uint32_t id) { return (id & scene::mark_bit) == 0; }) > 1000);
    // All of it is in the picture, with a margin: nothing touches the edge.
    const raster::Picture& picture = view.picture();
    for (int x = 0; x < picture.size.width; ++x) {
        QCOMPARE(picture.ids[picture.at(x, 0)], raster::no_id);
        QCOMPARE(picture.ids[picture.at(x, picture.size.height - 1)], raster::no_id);
    }
}

void PictureTest::keysAndButtonsChooseTheView() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    view.setFocus();
    const std::tuple<Qt::Key, raster::View, const char*> views[] = {
        {Qt::Key_7, raster::View::Plan, "viewPlan"},
        {Qt::Key_1, raster::View::Front, "viewFront"},
        {Qt::Key_3, raster::View::Side, "viewSide"},
        {Qt::Key_0, raster::View::Orbit, "viewOrbit"}};
    for (const auto& [key, wanted, button] : views) {
        QTest::keyClick(&view, key);
        QVERIFY(view.camera().view == wanted);
        QVERIFY(control<QToolButton>(*rig.form, button).isChecked());
    }
    for (const auto& [key, wanted, button] : views) {
        click(*rig.form, button);
        QVERIFY(view.camera().view == wanted);
        QVERIFY(!control<QToolButton>(*rig.form, button).toolTip().isEmpty());
    }
}

void PictureTest::leftDragTurns() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    const raster::Camera before = view.camera();
    drag(view, Qt::LeftButton, {}, middle_of(view), middle_of(view) + QPoint(40, 20));
    QCOMPARE(view.camera().heading, before.heading + 20); // half a degree a point
    QCOMPARE(view.camera().pitch, before.pitch + 10);
    QVERIFY(view.camera().target == before.target);
    QVERIFY(rig.form->selected_rows().empty()); // it was no click
}

void PictureTest::middleDragAndShiftPan() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    view.look(raster::View::Plan);
    for (const auto& [button, keys] :
         {std::pair(Qt::MiddleButton, Qt::KeyboardModifiers()),
          std::pair(Qt::LeftButton, Qt::KeyboardModifiers(Qt::ShiftModifier))}) {
        const raster::Camera before = view.camera();
        drag(view, button, keys, middle_of(view), middle_of(view) + QPoint(50, 0));
        QVERIFY(view.camera().view == raster::View::Plan);
        const double metres = 50 * before.height / view.height();
        QVERIFY(std::fabs(before.target.x - view.camera().target.x - metres) < 1e-6);
        QCOMPARE(view.camera().target.z, before.target.z);
    }
}

void PictureTest::wheelZoomsAtThePointer() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    view.look(raster::View::Plan);
    const QPoint place(view.width() / 4, view.height() / 3);
    const auto ground = [&] {
        return *raster::ground_at(view.camera(), {view.width(), view.height()}, place.x(),
                                  place.y());
    };
    const raster::Vec3 before = ground();
    const double height = view.camera().height;
    turn_wheel(view, place, 3);
    QVERIFY(std::fabs(view.camera().height - height / std::pow(1.2, 3)) < height * 1e-9);
    QVERIFY(raster::length(ground() - before) < 1e-6 * height);
    turn_wheel(view, place, -3);
    QVERIFY(std::fabs(view.camera().height - height) < height * 1e-9);
}

void PictureTest::doubleClickAndHomeShowEverything() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    view.picture();
    const raster::Camera whole = view.camera();
    const auto go_away = [&] {
        drag(view, Qt::MiddleButton, {}, middle_of(view), QPoint(1, 1));
        turn_wheel(view, middle_of(view), 8);
        view.picture();
        QVERIFY(!(view.camera() == whole));
    };
    const auto is_whole = [&] {
        view.picture();
        return std::fabs(view.camera().height - whole.height) < 1e-6 * whole.height &&
               raster::length(view.camera().target - whole.target) < 1e-6 * whole.height;
    };
    go_away();
    QTest::keyClick(&view, Qt::Key_Home);
    QVERIFY(is_whole());
    go_away();
    QTest::mouseDClick(&view, Qt::LeftButton, {}, QPoint(3, 3));
    QVERIFY(is_whole());
    go_away();
    click(*rig.form, "viewAll");
    QVERIFY(is_whole());
}

void PictureTest::arrowKeysTurn() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    view.setFocus();
    const raster::Camera before = view.camera();
    QTest::keyClick(&view, Qt::Key_Right);
    QCOMPARE(view.camera().heading, before.heading + 5);
    QTest::keyClick(&view, Qt::Key_Left);
    QTest::keyClick(&view, Qt::Key_Down);
    QCOMPARE(view.camera().heading, before.heading);
    QCOMPARE(view.camera().pitch, before.pitch + 5);
    QTest::keyClick(&view, Qt::Key_Up);
    QCOMPARE(view.camera().pitch, before.pitch);
}

// MATERIAL 8 of the airport, the lights of its tower, has three triangles in lines 350 to 352.
void PictureTest::clickOnATriangleSelectsItsMaterial() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    const QStringList texts{
        QStringLiteral(
            "airport_0.asm:350, MATERIAL 8, triangle 1 of 3, first vertex (120.0 24.6 70.0)"),
        QStringLiteral(
            "airport_0.asm:351, MATERIAL 8, triangle 2 of 3, first vertex (123.5 24.6 70.0)"),
        QStringLiteral(
            "airport_0.asm:352, MATERIAL 8, triangle 3 of 3, first vertex (121.75 31.2 71.5)")};
    come_near(rig, 8);
    QStringList seen;
    for (const std::uint32_t line : {350U, 351U, 352U}) {
        rig.select(1);
        const auto place = place_of_line(view, line);
        QVERIFY2(place, qPrintable(QString::number(line)));
        click_at(view, *place);
        QCOMPARE(selected_material(rig), 8);
        seen.append(status(rig));
    }
    QCOMPARE(seen, texts);
}

void PictureTest::clickOnAnUnmarkedTriangleLightsItsMaterial() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    rig.select(1);
    const auto place = place_of_material(view, 6); // a wall, which is not marked
    QVERIFY(place);
    click_at(view, *place);
    QTRY_VERIFY(rig.form->selected_rows().empty());
    QVERIFY(view.options().selected == std::vector<int>{6});
    QVERIFY(status(rig).contains(QStringLiteral("MATERIAL 6,")));
}

void PictureTest::clickedTriangleIsShownInTheSource() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    come_near(rig, 8);
    const auto place = place_of_line(view, 351);
    QVERIFY(place);
    click_at(view, *place);
    trigger(*rig.form, "actionShowSource");
    const auto& text = control<QPlainTextEdit>(rig.window("TextViewer"), "viewerText");
    QCOMPARE(text.textCursor().blockNumber() + 1, 351);
}

void PictureTest::selectionLightsTheMaterialAndDimsTheRest() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    trigger(*rig.form, "actionColorsLight");
    control<QCheckBox>(*rig.form, "showLabels").setChecked(false);
    const auto wall = place_of_material(view, 6);
    QVERIFY(wall);
    const raster::Colour ground = scene::theme_of(false, false).background;
    const raster::Colour before = pixel(view, *wall);
    rig.form->select_row(row_of(rig, 12));
    QVERIFY(distance(pixel(view, *wall), ground) < distance(before, ground));
    control<QTreeView>(*rig.form, "lstMat2proc").clearSelection();
    QCOMPARE(pixel(view, *wall), before);
    // The selected one keeps its colour.
    click(*rig.form, "showMarks");
    come_near(rig, 9);
    const auto lit = place_of_material(view, 9);
    QVERIFY(lit);
    const raster::Colour colour = pixel(view, *lit);
    rig.form->select_row(row_of(rig, 9));
    const auto still = place_of_line(view, 357);
    QVERIFY(still);
    QCOMPARE(pixel(view, *still), colour);
    rig.form->select_row(row_of(rig, 12));
    QVERIFY(pixel(view, *still) != colour);
}

void PictureTest::hoveredRowIsOutlined() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    come_near(rig, 2);
    const auto plain = view.picture().pixels;
    move_pointer(*list.viewport(), list.visualRect(list.model()->index(0, 0)).center());
    QVERIFY(view.picture().pixels != plain);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(list.viewport(), &leave);
    QVERIFY(view.picture().pixels == plain);
}

void PictureTest::ghostFollowsKindAndParameters() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    QVERIFY(view.ghost().marks.empty());
    const std::size_t row = row_of(rig, 12); // three triangles
    rig.form->select_row(row);
    QCOMPARE(view.ghost().marks.size(), 3U);
    QVERIFY(view.ghost().marks[0].kind == scene::MarkKind::Light);
    QCOMPARE(view.ghost().marks[0].name, std::string("LIGHT_STROBE"));
    QWidget& dialog = rig.parameters();
    choose(dialog, "LightType", QStringLiteral("LIGHT_LANDING"));
    QVERIFY(view.ghost().marks[0].cone); // before O.K.
    click(dialog, "Command1");
    QVERIFY2(view.ghost().marks.size() == 3, view.ghost().trouble.c_str());
    QCOMPARE(view.ghost().marks[0].name, std::string("LIGHT_LANDING"));
    QVERIFY(view.ghost().marks[0].cone);
    choose(*rig.form, "typeOfObj", QStringLiteral("Effects"));
    QCOMPARE(view.ghost().marks.size(), 3U);
    QVERIFY(view.ghost().marks[0].kind == scene::MarkKind::Effect);
    QVERIFY(count_ids(view, [](std::uint32_t id) {
                return (id & scene::mark_bit) != 0 && (id & scene::ghost_bit) != 0;
            }) > 0);
    QVERIFY(rig.form->document().set().replacements.empty());
}

void PictureTest::ghostIsWhatTheDialogShowsUntilItIsCancelled() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    rig.form->select_row(row_of(rig, 12));
    const Parameters before = rig.form->document().document().parameters();
    QWidget& lights = rig.parameters();
    choose(lights, "LightType", QStringLiteral("LIGHT_TAXI"));
    QCOMPARE(view.ghost().marks[0].name, std::string("LIGHT_TAXI"));
    click(lights, "Command2");
    QCOMPARE(view.ghost().marks[0].name, std::string("LIGHT_STROBE"));

    choose(*rig.form, "typeOfObj", QStringLiteral("Library New"));
    QWidget& placer = rig.parameters();
    type(placer, "libGUID", identifier);
    QVERIFY(view.ghost().marks[0].guid[2] == 3);
    click(placer, "Command4");
    QVERIFY(view.ghost().marks[0].guid[2] != 3);
    QVERIFY(rig.form->document().document().parameters() == before);
}

void PictureTest::ghostIgnoresAColorThatIsHalfTyped() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    rig.form->select_row(row_of(rig, 12));
    choose(*rig.form, "typeOfObj", QStringLiteral("Windsock"));
    const std::size_t refused = view.ghost().refused.size();
    QWidget& windsock = rig.parameters();
    type(windsock, "ws_mastColor", QStringLiteral("12"));
    QCOMPARE(view.ghost().refused.size(), refused);
    type(windsock, "ws_mastColor", QStringLiteral("123456"));
    QCOMPARE(view.ghost().refused.size(), refused);
    click(windsock, "Command2");
}

void PictureTest::ghostGivesWayToWhatIsMade() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    const std::size_t triangles = view.scene().triangles.size();
    rig.form->select_row(row_of(rig, 12));
    click(*rig.form, "Command1");
    QTRY_COMPARE(view.scene().marks.size(), 3U);
    QCOMPARE(view.scene().triangles.size(), triangles - 3);
    QVERIFY(view.ghost().marks.empty());
    view.fit_selected();
    const auto place = place_of_material(view, 12); // a mark leads to its material too
    QVERIFY(place);
    rig.select(1);
    click_at(view, *place);
    QCOMPARE(selected_material(rig), 12);
    QVERIFY2(status(rig).startsWith(QStringLiteral("light LIGHT_STROBE of airport_0.asm:37")),
             qPrintable(status(rig)));
    trigger(*rig.form, "actionUndo");
    QTRY_COMPARE(view.scene().marks.size(), 0U);
    QCOMPARE(view.scene().triangles.size(), triangles);
    QCOMPARE(view.ghost().marks.size(), 3U);
}

// The triangle of MATERIAL 9 stands up; those of 12 lie flat: no mast fits them.
void PictureTest::refusedTriangleIsRed() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    trigger(*rig.form, "actionColorsLight");
    rig.form->select_row(row_of(rig, 9));
    choose(*rig.form, "typeOfObj", QStringLiteral("Windsock"));
    QVERIFY(view.ghost().refused.empty());
    QCOMPARE(view.ghost().marks.size(), 1U);
    rig.form->select_row(row_of(rig, 12));
    QVERIFY((view.ghost().refused == std::vector<std::uint32_t>{373, 374, 375}));
    view.fit_selected();
    QVERIFY2(words(rig).contains(QStringLiteral("zero height")), qPrintable(words(rig)));
    const raster::Colour alarm = scene::theme_of(false, false).alarm;
    int red = 0;
    const raster::Picture& picture = view.picture();
    for (std::size_t i = 0; i < picture.ids.size(); ++i) {
        const auto triangle = scene::picked_triangle(view.scene(), picture.ids[i]);
        if (triangle && triangle->material == 12) {
            const raster::Colour c = picture.pixels[i];
            red += (c >> 16 & 0xFF) > 2 * (c >> 8 & 0xFF) ? 1 : 0;
            QVERIFY((alarm >> 16 & 0xFF) >= (c >> 16 & 0xFF));
        }
    }
    QVERIFY(red > 0);
}

void PictureTest::boxesSayWhatIsDrawn() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    const auto triangles = [](std::uint32_t id) { return (id & scene::mark_bit) == 0; };
    const auto marks = [](std::uint32_t id) { return (id & scene::mark_bit) != 0; };
    rig.select(1);
    click(*rig.form, "Command1");
    QTRY_VERIFY(count_ids(view, marks) > 0);
    QVERIFY(count_ids(view, triangles) > 0);
    click(*rig.form, "showModel");
    QCOMPARE(count_ids(view, triangles), 0);
    click(*rig.form, "showMarks");
    QCOMPARE(count_ids(view, marks), 0);
    click(*rig.form, "showModel");
    for (const char* box : {"showNormals", "showBackSides", "showNight"}) {
        const auto before = view.picture().pixels;
        click(*rig.form, box);
        QVERIFY2(view.picture().pixels != before, box);
    }
    QVERIFY(view.options().labels);
    QTest::keyClick(&view, Qt::Key_3, Qt::AltModifier); // its key
    QTRY_VERIFY(!view.options().labels);
}

void PictureTest::boxesAreKept() {
    Rig rig;
    rig.form->resize(1180, 760);
    click(*rig.form, "showNight");
    rig.restart();
    QVERIFY(control<QCheckBox>(*rig.form, "showNight").isChecked());
    QVERIFY(scene_view(rig).options().night);
}

void PictureTest::planSaysThePlaceUnderThePointer() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    move_pointer(view, QPoint(2, 2));
    QVERIFY(view.pointer_text().isEmpty());
    view.look(raster::View::Plan);
    move_pointer(view, QPoint(2, 2));
    static const QRegularExpression form(
        QStringLiteral(R"(^[\d.]+ m west, [\d.]+ m north; \d+\.\d{5} [NS], \d+\.\d{5} [EW]$)"));
    QVERIFY2(form.match(view.pointer_text()).hasMatch(), qPrintable(view.pointer_text()));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&view, &leave);
    QVERIFY(view.pointer_text().isEmpty());
}

void PictureTest::wordsSayWhatIsNotShown() {
    Rig rig;
    open_airport(rig);
    QCOMPARE(words(rig),
             QStringLiteral("textures: 0 of 5 found; animation at rest; finest detail"));
}

void PictureTest::codeThatIsNeverReachedIsReported() {
    Rig rig;
    rig.form->resize(1180, 760);
    const QString base = rig.copy_example("airport");
    change_model(base, "    MATERIAL 16,3", "    BGL_RETURN\r\n    MATERIAL 16,3");
    rig.open(base);
    settle();
    const auto& blocks = scene_view(rig).scene().blocks;
    QVERIFY(std::any_of(blocks.begin(), blocks.end(), [](const auto& b) { return !b.reached; }));
    click(*rig.form, "sceneDetails");
    const auto& list = control<QListWidget>(rig.window("sceneDetailsDialog"), "sceneDetailList");
    const auto notes = list.findItems(QStringLiteral("never reached"), Qt::MatchContains);
    QVERIFY(!notes.empty());
    Q_EMIT const_cast<QListWidget&>(list).itemActivated(notes.front());
    const auto* text = rig.window("TextViewer").findChild<QPlainTextEdit*>();
    QVERIFY(text->textCursor().blockNumber() > 390); // at the code in question
}

void PictureTest::textureFolderIsSearchedToo() {
    Rig rig;
    open_airport(rig);
    rig.folder.write("more/pave_01.bmp", "");
    click(*rig.form, "sceneDetails");
    QWidget& dialog = rig.window("sceneDetailsDialog");
    type(dialog, "textureFolder", QString::fromStdString(rig.folder.file("more")));
    QTest::keyClick(&control<QLineEdit>(dialog, "textureFolder"), Qt::Key_Return);
    QTRY_VERIFY2(words(rig).startsWith(QStringLiteral("textures: 1 of 5 found")),
                 qPrintable(words(rig)));
    dialog.close();
    rig.restart();
    rig.open(QString::fromStdString(rig.folder.file("airport/airport")));
    QTRY_VERIFY(words(rig).startsWith(QStringLiteral("textures: 1 of 5 found")));
}

void PictureTest::followsTheTheme() {
    Rig rig;
    SceneView& view = scene_view(rig);
    for (const auto& [action, dark] :
         {std::pair("actionColorsDark", true), std::pair("actionColorsLight", false)}) {
        trigger(*rig.form, action);
        settle();
        QCOMPARE(pixel(view, QPoint(view.width() - 2, view.height() - 2)),
                 scene::theme_of(dark, false).background);
    }
}

void PictureTest::wideWindowCanBecomeNarrowAgain() {
    Rig rig;
    for (const QSize& size : {QSize(1600, 800), QSize(960, 540)}) {
        rig.form->resize(size);
        QTest::qWait(20);
        QCOMPARE(rig.form->size(), size);
    }
}

void PictureTest::droppedObjectBecomesLibraryNew_data() {
    QTest::addColumn<bool>("onPicture");
    QTest::newRow("on the list") << false;
    QTest::newRow("on the picture") << true;
}

void PictureTest::droppedObjectBecomesLibraryNew() {
    QFETCH(bool, onPicture);
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    const std::size_t row = row_of(rig, 8);
    come_near(rig, 8);
    const QModelIndex index = list.model()->index(static_cast<int>(row) - 1, 0);
    list.scrollTo(index);
    QWidget& target = onPicture ? static_cast<QWidget&>(view) : *list.viewport();
    const QPoint place =
        onPicture ? place_of_material(view, 8).value() : list.visualRect(index).center();
    const std::unique_ptr<QMimeData> mime(object_mime({identifier, QStringLiteral("0.25")}));
    QDragEnterEvent enter(place, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
    QVERIFY(drop.isAccepted());
    QCOMPARE(QString::fromStdString(rig.form->document().set().translation(row).processed),
             QStringLiteral("Library New"));
    const std::vector<std::string>* code = rig.form->document().document().code_of(row);
    QVERIFY(code != nullptr);
    const auto has = [&](const std::string& text) {
        return std::any_of(code->begin(), code->end(), [&](const std::string& line) {
            return line.find(text) != std::string::npos;
        });
    };
    QVERIFY(has("KZM_LIBRARY_CALL " + identifier.toStdString()));
    QCOMPARE(rig.form->document().document().parameters().library.libScale, std::string("0.25"));
    QVERIFY(rig.form->kind() == Kind::LibraryNew);
    QTRY_COMPARE(view.scene().marks.size(), 3U);
}

void PictureTest::otherThingsCannotBeDropped() {
    Rig rig;
    open_airport(rig);
    SceneView& view = scene_view(rig);
    QMimeData text;
    text.setText(identifier);
    QDragEnterEvent enter(middle_of(view), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &enter);
    QVERIFY(!enter.isAccepted());
    const std::unique_ptr<QMimeData> object(object_mime({identifier, QStringLiteral("1")}));
    QDropEvent drop(QPoint(1, 1), Qt::CopyAction, object.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &drop); // on the background
    QVERIFY(!drop.isAccepted());
    QCOMPARE(rig.form->document().set().unprocessed(), 13U);
}

namespace {

// Hills of 100,000 triangles in 300 materials.
scene::Scene hills() {
    constexpr std::uint32_t side = 224;
    scene::Scene scene;
    scene.materials.push_back({0xFF88AA66, 0xFF88AA66});
    for (std::uint32_t z = 0; z <= side; ++z) {
        for (std::uint32_t x = 0; x <= side; ++x) {
            scene.points.push_back({x * 2.0, 6 * std::sin(x * 0.3) * std::cos(z * 0.2), z * 2.0});
            scene.box.add(scene.points.back());
        }
    }
    scene.normals.resize(scene.points.size());
    for (std::uint32_t i = 0; i < 50000; ++i) {
        const std::uint32_t a = i / side * (side + 1) + i % side;
        if (i * 300 / 50000 == scene.blocks.size()) {
            scene.blocks.push_back({.material = static_cast<int>(scene.blocks.size()), .look = 0});
        }
        for (const auto& corners :
             {std::array{a, a + 1, a + side + 2}, std::array{a, a + side + 2, a + side + 1}}) {
            scene::SceneTriangle triangle;
            triangle.corners = corners;
            triangle.block = static_cast<std::uint32_t>(scene.blocks.size() - 1);
            triangle.light = raster::light_on(scene.points[corners[0]], scene.points[corners[1]],
                                              scene.points[corners[2]]);
            scene.triangles.push_back(triangle);
        }
    }
    return scene;
}

} // namespace

void PictureTest::largeSetsStayFluent() {
    Rig rig;
    rig.form->resize(1280, 720);
    SceneView& view = scene_view(rig);
    view.set_scene(hills(), true);
    QCOMPARE(view.scene().triangles.size(), 100000U);
    QCOMPARE(view.scene().blocks.size(), 300U);
    settle();
    QTest::mousePress(&view, Qt::LeftButton, {}, middle_of(view));
    QElapsedTimer watch;
    watch.start();
    constexpr int steps = 12;
    raster::Camera last = view.camera();
    int frames = 0;
    for (int i = 1; i <= steps; ++i) {
        const QPoint place = middle_of(view) + QPoint(20 * i, 0);
        QMouseEvent move(QEvent::MouseMove, place, view.mapToGlobal(place), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &move);
        view.repaint();
        frames += view.camera() == last ? 0 : 1;
        last = view.camera();
    }
    const double seconds = static_cast<double>(watch.elapsed()) / 1000;
    QTest::mouseRelease(&view, Qt::LeftButton, {}, middle_of(view) + QPoint(20 * steps, 0));
    QCOMPARE(frames, steps); // none was passed over
    qInfo("%d frames of 100,000 triangles in %.2f s: %.1f a second", frames, seconds,
          frames / seconds);
    QCOMPARE(view.picture().size.width, static_cast<int>(view.width() * view.devicePixelRatioF()));
}

namespace {
const Registration<PictureTest> registration("picture");
}

} // namespace morvane::test

#include "picture_test.moc"
