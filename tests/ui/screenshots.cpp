// Takes the pictures of the user guide: every form, in light and dark.
//   screenshots FOLDER SUFFIX     QT_SCALE_FACTOR sets the size

#include "ui/appearance.h"
#include "ui/program.h"
#include "ui/rig.h"

#include <QApplication>
#include <QPixmap>

namespace morvane::test {
namespace {

class Album {
  public:
    Album(QString folder, QString suffix)
        : folder_(std::move(folder)), suffix_(std::move(suffix)) {}

    void take(QWidget& window, const QString& name) const {
        QTest::qWait(80); // lists of folders fill themselves behind the scenes
        const QString file = folder_ + QLatin1Char('/') + name + suffix_ + QStringLiteral(".png");
        if (!window.grab().save(file)) {
            qFatal("cannot write %s", qPrintable(file));
        }
    }

  private:
    QString folder_;
    QString suffix_;
};

void take_dialog(Rig& rig, const Album& album, const QString& kind, const QString& name) {
    choose(*rig.form, "typeOfObj", kind);
    QWidget& dialog = rig.parameters();
    album.take(dialog, name);
    dialog.close();
}

void take_main_window(Rig& rig, const Album& album) {
    rig.open(rig.copy_example("airport"));
    rig.select(1);
    click(*rig.form, "Command1");
    rig.select(2);
    choose(*rig.form, "typeOfObj", QStringLiteral("Library New"));
    click(*rig.form, "Command1");
    rig.select(3);
    choose(*rig.form, "typeOfObj", QStringLiteral("Lights"));
    album.take(*rig.form, QStringLiteral("form1"));
}

void take_dialogs(Rig& rig, const Album& album) {
    take_dialog(rig, album, QStringLiteral("Lights"), QStringLiteral("frm_lights"));
    take_dialog(rig, album, QStringLiteral("Effects"), QStringLiteral("frm_effects"));
    take_dialog(rig, album, QStringLiteral("Windsock"), QStringLiteral("frm_windsock"));
    take_dialog(rig, album, QStringLiteral("Library"), QStringLiteral("frm_library"));
}

void take_tools(Rig& rig, const Album& album) {
    click(*rig.form, "Command7");
    album.take(rig.window("LibView"), QStringLiteral("lib_view"));
    click(*rig.form, "Command9");
    album.take(rig.window("frmLabelRename"), QStringLiteral("frm_label_rename"));
}

void take_all(const QString& folder, const QString& suffix) {
    for (const Appearance appearance : {Appearance::Light, Appearance::Dark}) {
        apply_appearance(appearance);
        Rig rig;
        const Album album(folder, QLatin1Char('-') + appearance_name(appearance) + suffix);
        take_main_window(rig, album);
        take_dialogs(rig, album);
        take_tools(rig, album);
        rig.dialogs.unsaved = Unsaved::Discard;
        rig.form->close();
    }
}

} // namespace
} // namespace morvane::test

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    morvane::prepare_application(application);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        qFatal("usage: screenshots FOLDER [SUFFIX]");
    }
    morvane::test::take_all(arguments.at(1), arguments.value(2));
}
